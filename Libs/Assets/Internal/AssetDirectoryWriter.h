// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <QString>
#include <QUrl>

#include <string>

class kxAssetItem;
class kxLocalUrlManager;

namespace kxAssetsInternal {

/// Writes the files of one asset into its directory: first begin(), then the payload. Each file is replaced whole or not
/// at all, and what was written stays when a later one fails.
class AssetDirectoryWriter
{
public:
    explicit AssetDirectoryWriter(kxLocalUrlManager &manager) : _manager(manager) {}

    /// Makes the item's directory in \a parent, or finds the one it has, and writes the metadata. \a name is the one that
    /// the directory and its files are called after. False, logged where people have to know.
    bool begin(const QUrl &parent, kxAssetItem &item, const std::string &name);

    /// What the lines on standard output call an operation and what it saves.
    struct Announcement
    {
        const char *operation;
        const char *what;
    };
    /// The same, and says so on standard output.
    bool begin(const QUrl &parent, kxAssetItem &item, const std::string &name, const Announcement &announcement);

    enum class Composite {
        Kept,   ///< the payload holds all the parts
        Rebuilt ///< from the metadata: it has no payload
    };
    /// False, with the failure in the log, when the payload cannot be written.
    bool writePayload(const osg::MaterialPtr &material, Composite composite);

    /// False, with the failure in the log, when the payload cannot be written.
    bool writeNode(const osg::NodePtr &node);

    const QUrl &directory() const { return _directory; }
    /// The path of the files without their extensions.
    const QString &basePath() const { return _basePath; }
    QString payloadPath() const { return _basePath + QStringLiteral(".osb"); }

private:
    bool begin(const QUrl &parent, kxAssetItem &item, const std::string &name, const Announcement *announcement);
    bool makeDirectory(const QUrl &parent, kxAssetItem &item, const QString &fileName);
    void removeStalePayload() const;

    kxLocalUrlManager &_manager;
    QUrl _directory;
    QString _basePath;
};

/// Whether the material is made of others.
bool isComposite(const osg::MaterialPtr &material);

} // namespace kxAssetsInternal

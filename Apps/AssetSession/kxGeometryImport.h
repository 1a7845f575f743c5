// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "AssetSession/kxUnsavedPart.h"
#include "SceneGraph/Node.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <string>
#include <vector>

/// Keeps foreign scenes as geometry assets of a library. Main thread only.
class KX_ASSETSESSION_EXPORT kxGeometryImport
{
public:
    struct Saved
    {
        std::string uuid;
        std::string name;
    };
    struct Outcome
    {
        std::vector<Saved> saved;
        std::vector<std::string> failures;    ///< each names the file or part and the reason
        std::vector<kxUnsavedPart> unsaved{}; ///< where the file could be read: what each failure is about
    };

    /// Whether each node below a file's topmost ones becomes an asset of its own, instead of the whole file one.
    void setSplit(bool split) { _isSplit = split; }
    /// What is asked many times a second while a file is read, and may handle events; false stops that, and the import
    /// fails.
    void setWhileReading(const std::function<bool()> &goOn) { _whileReading = goOn; }

    /// Saves the scene of the file as a new asset, named like the file, or its parts, named like their nodes, in \a folder.
    /// The scene document is as before afterwards. \a goOn is asked before each asset; false ends the import.
    Outcome importFile(const QString &path, const QUrl &folder, const std::function<bool()> &goOn) const;

private:
    static void save(const osg::NodePtr &node, const std::string &name, const QUrl &folder, Outcome &outcome);

    bool _isSplit = false;
    std::function<bool()> _whileReading;
};

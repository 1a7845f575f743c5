// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "Assets/kxAssetCategory.h"
#include "SceneGraph/Result.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <set>
#include <string>
#include <vector>

class QProgressDialog;
class kxAssetItem;

/// A library folder and the assets found in it. Main thread only.
///
/// Assets are named by UUID and looked up again at each use, since every save may replace items.
class KX_ASSETSESSION_EXPORT kxAssetLibrary
{
public:
    /// \a path need not exist: then the library is empty, and the first asset that is saved makes the folder.
    explicit kxAssetLibrary(const QString &path);

    const QUrl &url() const { return _url; }
    QString path() const { return _url.toLocalFile(); }
    bool exists() const;

    /// Reads what is on disk. Null or a dialog whose cancelling ends the scan.
    void open(QProgressDialog *progress);

    /// The assets in it, of one category or of all, by name, then folder, so that the order is the same for everybody.
    std::vector<kxAssetItem *> items(kxAssetCategoryType category = Undefined) const;

    /// The UUID of the asset that a person means: by UUID, by the beginning of one, or by exact name. The reason says
    /// when it is none or several.
    osg::Result<std::string> resolve(const QString &text) const;

    /// The folder of the library's part with this relative path; it need not exist. A failure for a path that leads out.
    osg::Result<QUrl> folder(const QString &relativePath) const;
    /// Where an item is, relative to the library.
    QString relativePath(kxAssetItem &item) const;

    /// The asset's tags, in their order.
    static QStringList tagsOf(kxAssetItem &item);

private:
    QUrl _url;
};

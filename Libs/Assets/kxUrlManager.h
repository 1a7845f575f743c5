// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <QDateTime>
#include <QDir>
#include <QIcon>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

class QDomDocument;
class QImage;
class QPixmap;
class QProgressDialog;
class kxAssetItem;
class kxEnvironmentNodeAssetItem;
class kxGeometrySceneplateCommon;
class kxMaterialAssetItem;

/// A place where assets are kept: one interface to directories and files that are addressed by URL.
///
/// Back-ends register once, on the main thread, before anything else is done, and live until the process ends. Failures
/// are results; nothing throws. Main thread only, but for loadImageFromDir() and what it calls (files(), fileName(),
/// loadImageFromFile()), which run on worker threads too and must not change shared state.
///
/// Implementing one: the pure operations; the others are written in terms of those. Their order, arguments and constness
/// are part of the interface that other back-ends override.
class KX_ASSETS_EXPORT kxUrlManager
{
public:
    /// Adds a back-end, which is not owned. Null and a second time are ignored.
    static void registerManager(kxUrlManager *manager);
    /// The first registered back-end, by address, that accepts the URL; null when none does.
    static kxUrlManager *getUrlManager(const QUrl &url);
    /// The URL as its back-end shows it to people; its own text when no back-end accepts it.
    static QString getUiString(const QUrl &url);
    /// Has the item read the metadata in its directory again; false, and nothing changes, when there is none with its UUID.
    static bool updateItem(kxAssetItem *item);

    /// Index of the extension that previews are written with: 0 "png", 1 "vif". Not tested.
    static void setPreviewImageFileFormat(int index);
    /// Whether composite materials get a payload for the external converter, which then runs.
    static void setWriteAutomotiveMaterialFiles(bool write);

    kxUrlManager();

    bool showMaterialLoadProgress() const { return _showMaterialLoadProgress; }
    /// Whether the host shows progress while a material file loads.
    void setShowMaterialLoadProgress(bool show) { _showMaterialLoadProgress = show; }

    virtual bool accepts(const QUrl &url) const = 0;
    virtual int subDirectoryCount(const QUrl &url) const = 0;
    virtual std::vector<QUrl> subDirectories(const QUrl &url) = 0;
    virtual std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) = 0;

    /// Registers every asset of the category (Undefined: of any) found in \a url and below. Nothing below an asset's
    /// directory is searched. With a dialog, pending events are processed between files and cancelling ends the scan;
    /// its range, value and text are the caller's.
    virtual void collectItems(const QUrl &url, kxAssetCategoryType category, QProgressDialog *progress) const;
    /// The same, and adds the items to \a items, which may come to hold items that somebody deleted while events were
    /// processed: find them in the registry before use.
    virtual void collectItems(const QUrl &url, kxAssetCategoryType category, std::set<kxAssetItem *> &items,
                              QProgressDialog *progress, bool nonRecursive) const;
    /// Whether \a url itself, not its subdirectories, holds an asset of the category.
    virtual bool containsItems(const QUrl &url, kxAssetCategoryType category) const;
    virtual bool containsItem(const QUrl &url, kxAssetCategoryType category, const std::string &uuid) const;

    virtual bool isDirectory(const QUrl &url) const = 0;
    virtual bool isFile(const QUrl &url) const = 0;
    virtual bool exists(const QUrl &url) const = 0;
    virtual QUrl expand(const QUrl &url) = 0;
    virtual QUrl extendByDirectory(const QUrl &url, const QString &name) = 0;
    /// The URL itself when it is a directory, else the directory that holds it.
    virtual QUrl getDirectoryUrl(const QUrl &url) = 0;
    virtual QUrl getParentDirectoryUrl(const QUrl &url) = 0;
    /// \a name, or with the first free number behind it when the directory has such an entry.
    virtual QString getUniqueDirectoryName(const QUrl &url, const QString &name) = 0;
    virtual bool isSameDirectory(const QUrl &a, const QUrl &b) const = 0;
    /// Makes a directory, or finds the one that holds \a item already. The URL of the parent when that fails.
    virtual QUrl makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *item) = 0;
    virtual QUrl makeDirectory(const QUrl &url, const QString &name) = 0;
    virtual QUrl makePath(const QUrl &url, const QString &relativePath) = 0;
    /// Removes the directory with all that is in it, and its items from the registry.
    virtual bool removeDirectory(const QUrl &url) const = 0;
    /// Removes what an asset left behind that now lives in the new item's directory, and its registry entry: the old item
    /// may be gone afterwards. False when the old directory cannot be removed; then the new one is.
    virtual bool removeOldItemDirectory(kxAssetItem *oldItem, kxAssetItem *newItem) const;
    virtual bool rename(const QUrl &from, const QUrl &to) const = 0;
    virtual QUrl rename(const QUrl &url, const QString &oldName, const QString &newName) = 0;
    /// Moves a folder into another one. \a resultUrl gets its new place. May ask whether to merge.
    virtual bool move(const QUrl &source, const QUrl &targetDirectory, QUrl &resultUrl,
                      bool mergeWithoutAsking) const = 0;
    virtual bool writeMaterialFiles(const QUrl &payload) const = 0;

    virtual bool loadPixmapFromDir(const QUrl &url, QPixmap &pixmap) const;
    virtual bool loadPixmapFromFile(const QUrl &url, QPixmap &pixmap) const = 0;
    virtual bool loadImageFromDir(const QUrl &url, QImage *image) const;
    virtual bool loadImageFromFile(const QUrl &url, QImage *image) const = 0;
    /// The caller owns one reference on \a material. A directory without a payload that loads has its material rebuilt
    /// from the metadata.
    virtual bool loadMaterialFromDir(const QUrl &url, osg::MaterialPtr &material) const;
    virtual bool loadMaterialFromFile(const QUrl &url, osg::MaterialPtr &material) const = 0;
    virtual bool loadDocumentFromDir(const QUrl &url, QDomDocument &document, QUrl &file) const;
    virtual bool loadDocumentFromDir(const QUrl &url, QDomDocument &document) const;
    virtual bool loadDocumentFromFile(const QUrl &url, QDomDocument &document) const = 0;
    /// The first payload that holds a node; nobody owns it yet.
    virtual bool loadSceneplateFromDir(const QUrl &url, osg::NodePtr &node) const;
    virtual bool loadSceneplateFromFile(const QUrl &url, osg::NodePtr &node) const = 0;
    /// The same, with polygons cut into triangles and without the tags that a loaded asset puts on materials.
    virtual bool loadNodeFromDir(const QUrl &url, osg::NodePtr &node) const;
    virtual bool loadNodeFromFile(const QUrl &url, osg::NodePtr &node) const = 0;
    virtual bool saveDocumentToFile(const QUrl &url, const QDomDocument &document) const = 0;

    /// Write an asset into a directory of its own below \a parent; on success the item knows it.
    virtual bool saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const = 0;
    virtual bool saveEnvironmentNodeAsset(const QUrl &parent, kxEnvironmentNodeAssetItem *item) const = 0;
    virtual bool saveSceneNodeAsset(const QUrl &parent, kxGeometrySceneplateCommon *item) const = 0;

    virtual QString directoryName(const QUrl &url) = 0;
    /// Null for what is no file.
    virtual QString fileName(const QUrl &url) = 0;
    virtual QString owner(const QUrl &url) = 0;
    virtual QDateTime lastModified(const QUrl &url) = 0;
    virtual QString uiString(const QUrl &url) = 0;
    virtual QIcon icon(const QUrl &url) = 0;
    virtual std::uint32_t checksum(const QUrl &url) const = 0;

protected:
    // Back-ends are never deleted through the interface.
    ~kxUrlManager() = default;

    /// The digits at the end of the text; null when there are none, nothing else, or too many for an int.
    static QString getNumberSuffix(const QString &text);
    /// The names that the preview of the asset in this directory may have.
    QStringList getImageFileFilter(const QUrl &directory) const;

    static std::vector<std::string> _previewImageFileFormats;
    static int _previewImageFileFormat;
    static bool _writeAutomotiveMaterialFiles;

private:
    /// The listing operations are not const by their interface; they change nothing.
    kxUrlManager &self() const { return const_cast<kxUrlManager &>(*this); }

    bool isBelow(QUrl url, const QUrl &directory) const;
    bool collectFromDirectory(const QUrl &url, kxAssetCategoryType category, std::set<kxAssetItem *> &items,
                              QProgressDialog *progress, bool &hasFound) const;
    template <class Accept> QUrl findDocument(const QUrl &url, Accept accept) const;

    static std::set<kxUrlManager *> _registeredManagers;

    bool _showMaterialLoadProgress = false;
};

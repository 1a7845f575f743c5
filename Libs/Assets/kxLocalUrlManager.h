// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxUrlManager.h"
#include "SceneGraph/Image.h"

#include <QCoreApplication>
#include <QFileIconProvider>

/// Assets on local and mounted disks: every URL with the file scheme.
///
/// Nothing is cached; every call asks the file system. Failures are results, and what people need to know of them stands
/// in the host log. The only dialog is the question of move() whether to merge.
class KX_ASSETS_EXPORT kxLocalUrlManager : public kxUrlManager
{
    Q_DECLARE_TR_FUNCTIONS(kxLocalUrlManager)

public:
    /// Made on first use, which has to be on the main thread; lives until the process ends.
    static kxLocalUrlManager *the();

    bool accepts(const QUrl &url) const override;
    int subDirectoryCount(const QUrl &url) const override;
    std::vector<QUrl> subDirectories(const QUrl &url) override;
    std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) override;

    bool isDirectory(const QUrl &url) const override;
    bool isFile(const QUrl &url) const override;
    bool exists(const QUrl &url) const override;
    QUrl expand(const QUrl &url) override;
    QUrl extendByDirectory(const QUrl &url, const QString &name) override;
    QUrl getDirectoryUrl(const QUrl &url) override;
    QUrl getParentDirectoryUrl(const QUrl &url) override;
    QString getUniqueDirectoryName(const QUrl &url, const QString &name) override;
    bool isSameDirectory(const QUrl &a, const QUrl &b) const override;
    QUrl makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *item) override;
    QUrl makeDirectory(const QUrl &url, const QString &name) override;
    QUrl makePath(const QUrl &url, const QString &relativePath) override;
    bool removeDirectory(const QUrl &url) const override;
    bool rename(const QUrl &from, const QUrl &to) const override;
    QUrl rename(const QUrl &url, const QString &oldName, const QString &newName) override;
    bool move(const QUrl &source, const QUrl &targetDirectory, QUrl &resultUrl, bool mergeWithoutAsking) const override;
    /// Joins two folders. Assets keep their directories, with another name where theirs is taken; a file whose name is
    /// taken stays, which makes the result false. Goes on after a failure.
    bool merge(const QUrl &source, const QUrl &target) const;
    bool writeMaterialFiles(const QUrl &payload) const override;

    bool loadPixmapFromFile(const QUrl &url, QPixmap &pixmap) const override;
    bool loadImageFromFile(const QUrl &url, QImage *image) const override;
    /// The caller owns one reference on \a material.
    bool loadMaterialFromFile(const QUrl &url, osg::MaterialPtr &material) const override;
    bool loadDocumentFromFile(const QUrl &url, QDomDocument &document) const override;
    /// The file's first node, which nobody owns yet.
    bool loadSceneplateFromFile(const QUrl &url, osg::NodePtr &node) const override;
    /// The same; what the file's material pools hold moves into the scene's.
    bool loadNodeFromFile(const QUrl &url, osg::NodePtr &node) const override;
    bool saveDocumentToFile(const QUrl &url, const QDomDocument &document) const override;

    bool saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const override;
    bool saveEnvironmentNodeAsset(const QUrl &parent, kxEnvironmentNodeAssetItem *item) const override;
    bool saveSceneNodeAsset(const QUrl &parent, kxGeometrySceneplateCommon *item) const override;

    QString directoryName(const QUrl &url) override;
    QString fileName(const QUrl &url) override;
    QString owner(const QUrl &url) override;
    QDateTime lastModified(const QUrl &url) override;
    QString uiString(const QUrl &url) override;
    QIcon icon(const QUrl &url) override;
    std::uint32_t checksum(const QUrl &url) const override;

    /// Starts the external converter on a payload and does not wait for it; with \a removeAfter the payload goes when the
    /// converter has ended. Always false.
    virtual bool writeMaterialFiles(const QUrl &payload, bool removeAfter) const;

    /// Removes what is in the directory and then the directory, without following links. Goes on after a failure.
    static bool removeRecursively(const QDir &directory);

protected:
    kxLocalUrlManager() = default;

private:
    static QDir getDir(const QUrl &url);
    static bool ensureDirectoryExists(const QUrl &url);
    bool isHomeOf(const QUrl &directory, kxAssetItem &item) const;
    void saveImageFile(const QString &basePath, const osg::ImagePtr &image) const;

    /// As in the base, for operations of this class.
    kxLocalUrlManager &self() const { return const_cast<kxLocalUrlManager &>(*this); }

    static kxLocalUrlManager *_instance;

    QFileIconProvider _iconProvider;
};

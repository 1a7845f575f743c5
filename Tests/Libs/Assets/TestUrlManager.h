// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxUrlManager.h"

#include <QByteArray>

#include <map>

/// A small complete back-end that keeps its files in memory, for URLs like "test:/library/MAT_Red/Red.xml".
///
/// Directories exist as far as files lie below them, and by being made. Counts what it is asked, and can be slow.
class TestUrlManager : public kxUrlManager
{
public:
    void write(const QString &path, const QByteArray &bytes) { _files[path] = bytes; }
    static QUrl url(const QString &path) { return QUrl(QStringLiteral("test:") + path); }

    using kxUrlManager::getImageFileFilter;
    using kxUrlManager::getNumberSuffix;

    mutable std::map<QString, int> documentReads;
    mutable int calls = 0;
    int delayInMilliseconds = 0;
    mutable std::vector<QString> log; ///< "operation path", in order

    bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("test"); }
    int subDirectoryCount(const QUrl &url) const override;
    std::vector<QUrl> subDirectories(const QUrl &url) override;
    std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) override;
    bool isDirectory(const QUrl &url) const override;
    bool isFile(const QUrl &url) const override { return _files.contains(url.path()); }
    bool exists(const QUrl &url) const override { return isFile(url) || isDirectory(url); }
    QUrl expand(const QUrl &url) override { return url; }
    QUrl extendByDirectory(const QUrl &url, const QString &name) override;
    QUrl getDirectoryUrl(const QUrl &url) override { return isDirectory(url) ? url : getParentDirectoryUrl(url); }
    QUrl getParentDirectoryUrl(const QUrl &url) override;
    QString getUniqueDirectoryName(const QUrl &, const QString &name) override { return name; }
    bool isSameDirectory(const QUrl &a, const QUrl &b) const override { return a == b; }
    QUrl makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *) override;
    QUrl makeDirectory(const QUrl &url, const QString &name) override
    {
        return makeUniqueDirectory(url, name, nullptr);
    }
    QUrl makePath(const QUrl &url, const QString &path) override { return makeUniqueDirectory(url, path, nullptr); }
    bool removeDirectory(const QUrl &url) const override;
    bool rename(const QUrl &, const QUrl &) const override { return false; }
    QUrl rename(const QUrl &url, const QString &, const QString &) override { return url; }
    bool move(const QUrl &, const QUrl &, QUrl &, bool) const override { return false; }
    bool writeMaterialFiles(const QUrl &) const override { return false; }
    bool loadPixmapFromFile(const QUrl &url, QPixmap &pixmap) const override;
    bool loadImageFromFile(const QUrl &url, QImage *image) const override;
    bool loadMaterialFromFile(const QUrl &url, osg::MaterialPtr &material) const override;
    bool loadDocumentFromFile(const QUrl &url, QDomDocument &document) const override;
    bool loadSceneplateFromFile(const QUrl &, osg::NodePtr &) const override { return false; }
    bool loadNodeFromFile(const QUrl &, osg::NodePtr &) const override { return false; }
    bool saveDocumentToFile(const QUrl &url, const QDomDocument &document) const override;
    bool saveMaterialAsset(const QUrl &, kxMaterialAssetItem *) const override { return false; }
    bool saveEnvironmentNodeAsset(const QUrl &, kxEnvironmentNodeAssetItem *) const override { return false; }
    bool saveSceneNodeAsset(const QUrl &, kxGeometrySceneplateCommon *) const override { return false; }
    QString directoryName(const QUrl &url) override { return url.fileName(); }
    QString fileName(const QUrl &url) override { return isFile(url) ? url.fileName() : QString(); }
    QString owner(const QUrl &) override { return QStringLiteral("nobody"); }
    QDateTime lastModified(const QUrl &) override { return QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)); }
    QString uiString(const QUrl &url) override { return QStringLiteral("memory") + url.path(); }
    QIcon icon(const QUrl &) override { return {}; }
    std::uint32_t checksum(const QUrl &url) const override;

    /// Directories that removeDirectory() leaves alone.
    std::set<QString> stubborn;

private:
    void note(const char *operation, const QUrl &url) const;
    QByteArray bytes(const QUrl &url) const;

    mutable std::map<QString, QByteArray> _files;
};

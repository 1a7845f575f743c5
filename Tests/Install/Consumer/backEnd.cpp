// SPDX-License-Identifier: Apache-2.0
// A foreign storage back-end: one asset, which can be read and not changed.
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"

#include <QApplication>
#include <QDomDocument>
#include <QIcon>
#include <QImage>
#include <QPixmap>

#include <cstdio>

namespace {

const QString Folder = QStringLiteral("/library/MAT_Red");
const QString File = Folder + QStringLiteral("/Red.xml");
const QString Metadata = QStringLiteral(
    "<item><category>Materials</category><uuid>0f6e3d5c-2f0b-4f5e-9a38-6a1c3e0d7b21</uuid><name>Red</name>"
    "<material><type>UBRDFMaterial</type></material></item>");

QUrl at(const QString &path)
{
    return QUrl(QStringLiteral("one:") + path);
}

class OneAsset : public kxUrlManager
{
public:
    bool accepts(const QUrl &url) const override { return url.scheme() == QStringLiteral("one"); }
    std::vector<QUrl> subDirectories(const QUrl &url) override
    {
        return url == at(QStringLiteral("/library")) ? std::vector{at(Folder)} : std::vector<QUrl>();
    }
    std::vector<QUrl> files(const QUrl &url, const QStringList &filters, QDir::SortFlags) override
    {
        return url == at(Folder) && QDir::match(filters, QStringLiteral("Red.xml")) ? std::vector{at(File)}
                                                                                    : std::vector<QUrl>();
    }
    int subDirectoryCount(const QUrl &url) const override { return url == at(QStringLiteral("/library")) ? 1 : 0; }
    bool isDirectory(const QUrl &url) const override { return !isFile(url); }
    bool isFile(const QUrl &url) const override { return url == at(File); }
    bool exists(const QUrl &) const override { return true; }
    bool isSameDirectory(const QUrl &a, const QUrl &b) const override { return a == b; }
    QUrl expand(const QUrl &url) override { return url; }
    QUrl getDirectoryUrl(const QUrl &url) override { return isFile(url) ? at(Folder) : url; }
    QUrl getParentDirectoryUrl(const QUrl &) override { return at(QStringLiteral("/library")); }
    QString directoryName(const QUrl &url) override { return url.fileName(); }
    QString fileName(const QUrl &url) override { return isFile(url) ? url.fileName() : QString(); }
    QString owner(const QUrl &) override { return {}; }
    QDateTime lastModified(const QUrl &) override { return {QDate(2020, 1, 2), QTime(3, 4)}; }
    QString uiString(const QUrl &url) override { return url.path(); }
    QIcon icon(const QUrl &) override { return {}; }
    std::uint32_t checksum(const QUrl &) const override { return 0; }
    bool loadDocumentFromFile(const QUrl &, QDomDocument &document) const override
    {
        return document.setContent(Metadata);
    }

    // It has no pictures and no payloads, and nothing can be changed.
    bool loadPixmapFromFile(const QUrl &, QPixmap &) const override { return false; }
    bool loadImageFromFile(const QUrl &, QImage *) const override { return false; }
    bool loadMaterialFromFile(const QUrl &, osg::MaterialPtr &) const override { return false; }
    bool loadSceneplateFromFile(const QUrl &, osg::NodePtr &) const override { return false; }
    bool loadNodeFromFile(const QUrl &, osg::NodePtr &) const override { return false; }
    QUrl extendByDirectory(const QUrl &, const QString &) override { return {}; }
    QString getUniqueDirectoryName(const QUrl &, const QString &name) override { return name; }
    QUrl makeUniqueDirectory(const QUrl &, const QString &, kxAssetItem *) override { return {}; }
    QUrl makeDirectory(const QUrl &, const QString &) override { return {}; }
    QUrl makePath(const QUrl &, const QString &) override { return {}; }
    bool removeDirectory(const QUrl &) const override { return false; }
    bool rename(const QUrl &, const QUrl &) const override { return false; }
    QUrl rename(const QUrl &, const QString &, const QString &) override { return {}; }
    bool move(const QUrl &, const QUrl &, QUrl &, bool) const override { return false; }
    bool writeMaterialFiles(const QUrl &) const override { return false; }
    bool saveDocumentToFile(const QUrl &, const QDomDocument &) const override { return false; }
    bool saveMaterialAsset(const QUrl &, kxMaterialAssetItem *) const override { return false; }
    bool saveEnvironmentNodeAsset(const QUrl &, kxEnvironmentNodeAssetItem *) const override { return false; }
    bool saveSceneNodeAsset(const QUrl &, kxGeometrySceneplateCommon *) const override { return false; }
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    OneAsset backEnd;
    kxUrlManager::registerManager(&backEnd);
    const QUrl library = at(QStringLiteral("/library"));
    kxUrlManager::getUrlManager(library)->collectItems(library, Undefined, nullptr);
    kxAssetItem *item = kxAssetItemFactory::the().findItem("0f6e3d5c-2f0b-4f5e-9a38-6a1c3e0d7b21");
    std::puts(item ? item->name().c_str() : "nothing");
}

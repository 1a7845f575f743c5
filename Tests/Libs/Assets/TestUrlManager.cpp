// SPDX-License-Identifier: Apache-2.0
#include "TestUrlManager.h"

#include "SceneGraph/UBRDFMaterial.h"

#include <QDomDocument>
#include <QImage>
#include <QPixmap>
#include <QThread>

#include <algorithm>

namespace {

QString below(const QUrl &url)
{
    return url.path().endsWith(QLatin1Char('/')) ? url.path() : url.path() + QLatin1Char('/');
}

} // namespace

void TestUrlManager::note(const char *operation, const QUrl &url) const
{
    ++calls;
    log.push_back(QLatin1String(operation) + QLatin1Char(' ') + url.path());
    if (delayInMilliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(delayInMilliseconds));
}

QByteArray TestUrlManager::bytes(const QUrl &url) const
{
    const auto found = _files.find(url.path());
    return found != _files.end() ? found->second : QByteArray();
}

int TestUrlManager::subDirectoryCount(const QUrl &url) const
{
    return static_cast<int>(const_cast<TestUrlManager *>(this)->subDirectories(url).size());
}

std::vector<QUrl> TestUrlManager::subDirectories(const QUrl &url)
{
    note("subDirectories", url);
    std::set<QString> names;
    const QString prefix = below(url);
    for (const auto &[path, content] : _files)
        if (const QString rest = path.startsWith(prefix) ? path.mid(prefix.size()) : QString();
            rest.contains(QLatin1Char('/')))
            names.insert(rest.section(QLatin1Char('/'), 0, 0));
    std::vector<QUrl> urls;
    urls.reserve(names.size());
    for (const QString &name : names)
        urls.push_back(TestUrlManager::url(prefix + name));
    return urls;
}

std::vector<QUrl> TestUrlManager::files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags)
{
    note("files", url);
    std::vector<QUrl> urls;
    const QString prefix = below(url);
    for (const auto &[path, content] : _files) {
        const QString name = path.startsWith(prefix) ? path.mid(prefix.size()) : QString();
        if (!name.isEmpty() && !name.contains(QLatin1Char('/')) &&
            (nameFilters.isEmpty() || QDir::match(nameFilters, name)))
            urls.push_back(TestUrlManager::url(path));
    }
    return urls;
}

bool TestUrlManager::isDirectory(const QUrl &url) const
{
    const QString prefix = below(url);
    return std::any_of(_files.begin(), _files.end(),
                       [&prefix](const auto &file) { return file.first.startsWith(prefix); });
}

QUrl TestUrlManager::extendByDirectory(const QUrl &url, const QString &name)
{
    return TestUrlManager::url(below(getDirectoryUrl(url)) + name);
}

QUrl TestUrlManager::getParentDirectoryUrl(const QUrl &url)
{
    return TestUrlManager::url(url.path().section(QLatin1Char('/'), 0, -2));
}

QUrl TestUrlManager::makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *)
{
    return TestUrlManager::url(below(url) + name);
}

bool TestUrlManager::removeDirectory(const QUrl &url) const
{
    note("removeDirectory", url);
    if (stubborn.contains(url.path()))
        return false;
    const QString prefix = below(url);
    std::erase_if(_files, [&prefix](const auto &file) { return file.first.startsWith(prefix); });
    return true;
}

bool TestUrlManager::loadPixmapFromFile(const QUrl &url, QPixmap &pixmap) const
{
    note("loadPixmapFromFile", url);
    return pixmap.loadFromData(bytes(url));
}

bool TestUrlManager::loadImageFromFile(const QUrl &url, QImage *image) const
{
    return image->loadFromData(bytes(url));
}

/// The file's text is the roughness; what is no number does not load.
bool TestUrlManager::loadMaterialFromFile(const QUrl &url, osg::MaterialPtr &material) const
{
    note("loadMaterialFromFile", url);
    if (bytes(url) == "null")
        return true;
    bool isNumber = false;
    bytes(url).toFloat(&isNumber);
    if (!isNumber)
        return false;
    osg::FCRef<osg::Material> made(osg::UBRDFMaterial::create());
    material = made.take();
    return true;
}

bool TestUrlManager::loadDocumentFromFile(const QUrl &url, QDomDocument &document) const
{
    note("loadDocumentFromFile", url);
    ++documentReads[url.path()];
    return document.setContent(bytes(url));
}

bool TestUrlManager::saveDocumentToFile(const QUrl &url, const QDomDocument &document) const
{
    _files[url.path()] = document.toByteArray();
    return true;
}

std::uint32_t TestUrlManager::checksum(const QUrl &url) const
{
    return static_cast<std::uint32_t>(bytes(url).size());
}

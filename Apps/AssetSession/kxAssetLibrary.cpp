// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace {

constexpr std::size_t MinPrefix = 4;

std::string listed(const std::vector<kxAssetItem *> &items)
{
    std::string text;
    for (kxAssetItem *item : items)
        text.append(text.empty() ? "" : ", ").append(item->uuid());
    return text;
}

} // namespace

kxAssetLibrary::kxAssetLibrary(const QString &path) : _url(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()))
{
    if (const QString real = QFileInfo(path).canonicalFilePath(); !real.isEmpty())
        _url = QUrl::fromLocalFile(real);
}

bool kxAssetLibrary::exists() const
{
    return QFileInfo(path()).isDir();
}

void kxAssetLibrary::open(QProgressDialog *progress)
{
    if (const kxUrlManager *manager = kxUrlManager::getUrlManager(_url))
        manager->collectItems(_url, Undefined, progress);
}

std::vector<kxAssetItem *> kxAssetLibrary::items(kxAssetCategoryType category) const
{
    const std::set<kxAssetItem *> found = kxAssetItemFactory::the().findItems(category, _url);
    std::vector<kxAssetItem *> sorted(found.begin(), found.end());
    const auto key = [](kxAssetItem *item) {
        return std::tuple(item->name(), item->directoryUrl().path(), item->uuid());
    };
    std::sort(sorted.begin(), sorted.end(), [&key](kxAssetItem *a, kxAssetItem *b) { return key(a) < key(b); });
    return sorted;
}

osg::Result<std::string> kxAssetLibrary::resolve(const QString &text) const
{
    const std::string wanted = text.toStdString();
    const std::vector<kxAssetItem *> all = items();
    std::vector<kxAssetItem *> matches;
    const auto collect = [&](auto isMatch) {
        std::copy_if(all.begin(), all.end(), std::back_inserter(matches), isMatch);
    };
    collect([&](kxAssetItem *item) { return item->uuid() == wanted; });
    if (matches.empty())
        collect([&](kxAssetItem *item) { return item->name() == wanted; });
    if (matches.empty() && wanted.size() >= MinPrefix)
        collect([&](kxAssetItem *item) { return item->uuid().starts_with(wanted); });

    if (matches.size() == 1)
        return matches.front()->uuid();
    if (matches.empty())
        return osg::Failure{"no asset '" + wanted + "' in " + path().toStdString()};
    return osg::Failure{"'" + wanted + "' may be any of " + listed(matches)};
}

osg::Result<QUrl> kxAssetLibrary::folder(const QString &relativePath) const
{
    const QString root = path();
    const QString absolute = QDir::cleanPath(QDir(root).absoluteFilePath(relativePath));
    if (absolute != root && !absolute.startsWith(root + QLatin1Char('/')))
        return osg::Failure{"'" + relativePath.toStdString() + "' is not inside the library " + root.toStdString()};
    return QUrl::fromLocalFile(absolute);
}

QString kxAssetLibrary::relativePath(kxAssetItem &item) const
{
    return QDir(path()).relativeFilePath(item.directoryUrl().toLocalFile());
}

QStringList kxAssetLibrary::tagsOf(kxAssetItem &item)
{
    const QString tags = item.data(kxAssetCategory::getTagsColumn(), Qt::DisplayRole).toString();
    return tags.split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

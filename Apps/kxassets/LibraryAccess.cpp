// SPDX-License-Identifier: Apache-2.0
#include "kxassets/LibraryAccess.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "kxassets/Command.h"
#include "kxassets/Interrupt.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/Reporting.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProgressDialog>
#include <QTimer>

#include <limits>

namespace {

constexpr int PollInterval = 50; // ms

} // namespace

std::optional<kxAssetLibrary> openLibrary(const Options &options, bool mustExist)
{
    if (options.library.empty()) {
        complain("which library? Give --library DIR, or set KXASSETS_LIBRARY");
        return std::nullopt;
    }
    kxAssetLibrary library(QString::fromStdString(options.library));
    if (mustExist && !library.exists()) {
        complain("there is no folder '" + options.library + "'");
        return std::nullopt;
    }

    // Never shown: the scan looks at it for whether it is to stop.
    QProgressDialog dialog;
    dialog.setMinimumDuration(std::numeric_limits<int>::max());
    ProgressLine line("Reading the library", "assets");
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        line.show(static_cast<std::size_t>(kxAssetItemFactory::the().itemCount()), 0);
        if (Interrupt::wasRequested())
            dialog.cancel();
    });
    poll.start(PollInterval);
    library.open(&dialog);
    line.clear();
    if (Interrupt::wasRequested()) {
        complain("stopped before the end");
        return std::nullopt; // half a library would be taken for the whole
    }
    return library;
}

osg::Result<kxAssetItem *> lookUp(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<std::string> uuid = library.resolve(QString::fromStdString(text));
    if (!uuid)
        return osg::Failure{uuid.reason()};
    return kxAssetItemFactory::the().findItem(uuid.value());
}

osg::Result<kxMaterialAssetItem *> lookUpMaterial(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<kxAssetItem *> item = lookUp(library, text);
    if (!item)
        return osg::Failure{item.reason()};
    if (auto *material = dynamic_cast<kxMaterialAssetItem *>(item.value()))
        return material;
    return osg::Failure{"'" + item.value()->name() + "' is no material"};
}

kxAssetItem *findAsset(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<kxAssetItem *> item = lookUp(library, text);
    if (item)
        return item.value();
    complain(item.reason());
    return nullptr;
}

kxMaterialAssetItem *findMaterialAsset(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<kxMaterialAssetItem *> item = lookUpMaterial(library, text);
    if (item)
        return item.value();
    complain(item.reason());
    return nullptr;
}

std::optional<QUrl> findFolder(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<QUrl> folder = library.folder(QString::fromStdString(text));
    if (folder)
        return folder.value();
    complain(folder.reason());
    return {};
}

QJsonObject describe(const kxAssetLibrary &library, kxAssetItem &item)
{
    QJsonObject object{
        {"uuid", QString::fromStdString(item.uuid())},
        {"name", QString::fromStdString(item.name())},
        {"category", QString::fromStdString(kxAssetCategory::getInternalCategoryName(item.category()))},
        {"type", item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole).toString()},
        {"modified", item.lastModified().toUTC().toString(Qt::ISODate)},
        {"path", library.relativePath(item)},
        {"checksum", static_cast<qint64>(item.checksum())},
    };
    if (auto *material = dynamic_cast<kxMaterialAssetItem *>(&item)) {
        object["tags"] = QJsonArray::fromStringList(kxAssetLibrary::tagsOf(item));
        QJsonArray parts;
        for (const std::string &uuid : material->subMaterialUUIDs())
            parts.append(QString::fromStdString(uuid));
        if (!parts.isEmpty())
            object["subMaterials"] = parts;
        if (material->switchChoice() >= 0)
            object["choice"] = material->switchChoice();
    }
    return object;
}

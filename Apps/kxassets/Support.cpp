// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Support.h"

#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "kxassets/Interrupt.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>

#include <QJsonDocument>
#include <QProgressDialog>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int PollInterval = 50; // ms

std::size_t widthOf(const std::string &text)
{
    return static_cast<std::size_t>(QString::fromStdString(text).normalized(QString::NormalizationForm_C).size());
}

} // namespace

void declareLibrary(CLI::App &app, Options &options)
{
    app.add_option("-l,--library", options.library, "The library's folder")->envname("KXASSETS_LIBRARY");
}

void declareJson(CLI::App &app, Options &options)
{
    app.add_flag("--json", options.isJson, "Print JSON");
}

void complain(const std::string &text)
{
    std::fprintf(stderr, "kxassets: %s\n", text.c_str());
}

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
    return library;
}

kxAssetItem *findAsset(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<std::string> uuid = library.resolve(QString::fromStdString(text));
    if (uuid)
        return kxAssetItemFactory::the().findItem(uuid.value());
    complain(uuid.reason());
    return nullptr;
}

kxMaterialAssetItem *findMaterialAsset(const kxAssetLibrary &library, const std::string &text)
{
    kxAssetItem *item = findAsset(library, text);
    auto *material = dynamic_cast<kxMaterialAssetItem *>(item);
    if (item && !material)
        complain("'" + item->name() + "' is no material");
    return material;
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
        const QString tags = item.data(kxAssetCategory::getTagsColumn(), Qt::DisplayRole).toString();
        object["tags"] = QJsonArray::fromStringList(tags.split(QStringLiteral(", "), Qt::SkipEmptyParts));
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

void printJson(Context &context, const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    context.results.write(document.toJson(QJsonDocument::Indented).toStdString());
}

void printTable(Context &context, const std::vector<std::vector<std::string>> &rows)
{
    std::vector<std::size_t> widths;
    for (const auto &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    }
    for (const auto &row : rows) {
        std::string text;
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i];
            if (i + 1 < row.size())
                text.append(widths[i] - widthOf(row[i]) + 2, ' ');
        }
        text.erase(text.find_last_not_of(' ') + 1);
        context.results.line(text);
    }
}

void reread(kxAssetItem &item)
{
    kxUrlManager::updateItem(&item);
}

ExitCode finishBatch(const std::vector<std::string> &failures)
{
    if (Interrupt::wasRequested())
        complain("stopped before the end");
    if (failures.size() > 1)
        complain(std::to_string(failures.size()) + " failed:");
    for (const std::string &failure : failures)
        complain(failure);
    return failures.empty() && !Interrupt::wasRequested() ? ExitCode::Done : ExitCode::Failed;
}

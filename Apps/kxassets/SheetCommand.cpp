// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxContactSheet.h"
#include "Assets/kxAssetItem.h"
#include "kxassets/AssetFilter.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Interrupt.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QJsonObject>
#include <QPixmap>
#include <QSaveFile>

#include <memory>

namespace {

struct Arguments
{
    std::string output;
    std::string title;
    int columns = 0;
    int size = 220;
    bool isByFolder = false;
    AssetFilter filter;
};

/// Scaled before the icon that marks composites is painted, which has a size of its own.
kxContactSheet::Tile tileOf(kxAssetItem &item, int size)
{
    kxContactSheet::Tile tile;
    tile.name = QString::fromStdString(item.name());
    tile.detail = item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole).toString();
    if (!item.loadPreviewImage(false))
        return tile;
    QPixmap pixmap = QPixmap::fromImage(
        item.previewImage().scaled(size, size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation));
    item.addOverlayIcon(pixmap);
    tile.preview = pixmap.toImage();
    // A sheet of thousands would otherwise keep all their previews.
    item.setPreviewImage({});
    return tile;
}

/// Relative to the library; "" for the library itself.
QString folderOf(const kxAssetLibrary &library, kxAssetItem &item)
{
    const QString folder = QFileInfo(library.relativePath(item)).path();
    return folder == QLatin1String(".") ? QString() : folder;
}

bool writePng(const QImage &image, const QString &path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const QString title =
        arguments.title.empty() ? QFileInfo(library->path()).fileName() : QString::fromStdString(arguments.title);
    kxContactSheet sheet(title);
    sheet.setColumns(arguments.columns);
    sheet.setTileSize(arguments.size);
    ProgressLine progress("Drawing", "assets");
    std::vector<kxAssetItem *> items = arguments.filter.items(*library);
    if (arguments.isByFolder)
        std::stable_sort(items.begin(), items.end(), [&library](kxAssetItem *a, kxAssetItem *b) {
            return folderOf(*library, *a) < folderOf(*library, *b);
        });
    for (std::size_t i = 0; i < items.size() && !Interrupt::wasRequested(); ++i) {
        progress.show(i, items.size());
        kxContactSheet::Tile tile = tileOf(*items[i], arguments.size);
        if (arguments.isByFolder)
            tile.detail = folderOf(*library, *items[i]);
        sheet.addTile(tile);
    }
    progress.clear();
    if (Interrupt::wasRequested())
        return finishBatch({});
    const QImage image = sheet.paint();
    if (image.isNull() || !writePng(image, QString::fromStdString(arguments.output))) {
        complain("the sheet could not be written to '" + arguments.output + "'");
        return ExitCode::Failed;
    }
    if (context.options.isJson)
        printJson(context, QJsonObject{{"file", QString::fromStdString(arguments.output)},
                                       {"assets", static_cast<int>(items.size())},
                                       {"width", image.width()},
                                       {"height", image.height()}});
    else
        context.results.line(std::to_string(items.size()) + " assets on " + arguments.output);
    return ExitCode::Done;
}

} // namespace

Run declareSheet(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("-o,--output", arguments->output, "The picture to write")->type_name("FILE.png")->required();
    app.add_option("--title", arguments->title, "Instead of the library's name")->type_name("TEXT");
    app.add_option("--columns", arguments->columns, "Previews side by side")
        ->type_name("N")
        ->check(CLI::Range(1, 200).description(""));
    app.add_option("--size", arguments->size, "Width of a preview in pixels")
        ->type_name("N")
        ->check(CLI::Range(48, 1024).description(""))
        ->capture_default_str();
    app.add_flag("--by-folder", arguments->isByFolder, "Folder by folder, with their names instead of the types");
    arguments->filter.declare(app);
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets sheet --library ~/Materials --tag metal --by-folder -o metals.png");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "SceneGraph/Image.h"
#include "kxassets/Interrupt.h"
#include "kxassets/PreviewOptions.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/ResultStream.h"
#include "kxassets/Support.h"

#include <CLI/CLI.hpp>

#include <QFileInfo>
#include <QImage>

#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> assets;
    bool isAll = false;
    bool isMissing = false;
    PreviewOptions preview;
};

/// The file that is looked for as the preview of the asset in this directory; empty when there is no asset.
QString previewFile(kxUrlManager &manager, const QUrl &directory)
{
    for (const char *pattern : {"*.osb", "*.xml"})
        for (const QUrl &file : manager.files(directory, {QLatin1String(pattern)}, QDir::NoSort)) {
            const QFileInfo info(file.toLocalFile());
            return info.dir().filePath(info.completeBaseName() + QStringLiteral(".png"));
        }
    return {};
}

bool hasPreview(kxAssetItem &item)
{
    QImage image;
    kxUrlManager *manager = kxUrlManager::getUrlManager(item.directoryUrl());
    return manager && manager->loadImageFromDir(item.directoryUrl(), &image) && !image.isNull();
}

/// Why there is no new preview, or "". The material's own file stays untouched, so that nothing counts as changed.
std::string renderPreview(kxMaterialAssetItem &item)
{
    if (!item.loadMaterial())
        return "'" + item.name() + "' cannot be loaded; 'kxassets verify' tells more";
    kxMessage message;
    message.set("materials", std::vector<osg::MaterialPtr>{item.getMaterial()});
    message.set("showProgress", false);
    kxController::call("renderPreviewImages", message);
    const osg::ImagePtr image = kxMaterials::getPreviewImage(item.getMaterial());
    const QString file = previewFile(*kxUrlManager::getUrlManager(item.directoryUrl()), item.directoryUrl());
    if (!image || file.isEmpty() || !image->write(file.toStdString()))
        return "the preview of '" + item.name() + "' could not be written";
    return {};
}

std::vector<std::string> chosen(const kxAssetLibrary &library, const Arguments &arguments, bool &isComplete)
{
    std::vector<std::string> uuids;
    if (!arguments.isAll && !arguments.isMissing)
        for (const std::string &asset : arguments.assets) {
            kxMaterialAssetItem *item = findMaterialAsset(library, asset);
            isComplete = isComplete && item;
            if (item)
                uuids.push_back(item->uuid());
        }
    else
        for (kxAssetItem *item : library.items())
            if (dynamic_cast<kxMaterialAssetItem *>(item) && (arguments.isAll || !hasPreview(*item)))
                uuids.push_back(item->uuid());
    return uuids;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    arguments.preview.apply();
    bool isComplete = true;
    const std::vector<std::string> uuids = chosen(*library, arguments, isComplete);
    ProgressLine progress("Rendering", "previews");
    std::vector<std::string> failures;
    QJsonArray rendered;
    for (std::size_t i = 0; i < uuids.size() && !Interrupt::wasRequested(); ++i) {
        progress.show(i, uuids.size());
        auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuids[i]));
        if (!item)
            continue;
        if (const std::string reason = renderPreview(*item); !reason.empty()) {
            failures.push_back(reason);
            continue;
        }
        item->invalidateMaterial();
        progress.clear();
        rendered.append(QString::fromStdString(uuids[i]));
        if (!context.options.isJson)
            context.results.line(uuids[i] + "  rendered  " + item->name());
    }
    progress.clear();
    if (context.options.isJson)
        printJson(context, rendered);
    const ExitCode code = finishBatch(failures);
    return isComplete ? code : ExitCode::Failed;
}

} // namespace

Run declarePreview(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    auto *which = app.add_option_group("which", "Which previews");
    which->add_option("assets", arguments->assets, "The assets");
    which->add_flag("--all", arguments->isAll, "Every material of the library");
    which->add_flag("--missing", arguments->isMissing, "Only where there is none that can be shown");
    which->require_option(1);
    arguments->preview.declare(app);
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets preview --missing --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "SceneGraph/Image.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Interrupt.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/PreviewOptions.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

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

/// The UUIDs; what is no material of the library goes to \a failures.
std::vector<std::string> chosen(const kxAssetLibrary &library, const Arguments &arguments,
                                std::vector<std::string> &failures)
{
    std::vector<std::string> uuids;
    for (const std::string &asset : arguments.assets) {
        const osg::Result<kxMaterialAssetItem *> item = lookUpMaterial(library, asset);
        if (item)
            uuids.push_back(item.value()->uuid());
        else
            failures.push_back(item.reason());
    }
    if (arguments.assets.empty())
        for (kxAssetItem *item : library.items())
            if (dynamic_cast<kxMaterialAssetItem *>(item) && (arguments.isAll || !hasPreview(*item)))
                uuids.push_back(item->uuid());
    return uuids;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    if (!arguments.assets.empty() + arguments.isAll + arguments.isMissing != 1) {
        complain("which previews? Name assets, or give --all or --missing");
        return ExitCode::Usage;
    }
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    arguments.preview.apply();
    std::vector<std::string> failures;
    const std::vector<std::string> uuids = chosen(*library, arguments, failures);
    ProgressLine progress("Rendering", "previews");
    QJsonArray rendered;
    for (std::size_t i = 0; i < uuids.size() && !Interrupt::wasRequested(); ++i) {
        progress.show(i, uuids.size());
        auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuids[i]));
        if (!item)
            continue;
        const std::string reason = renderPreview(*item);
        item->invalidateMaterial();
        if (!reason.empty()) {
            failures.push_back(reason);
            continue;
        }
        rendered.append(
            QJsonObject{{"uuid", QString::fromStdString(uuids[i])}, {"name", QString::fromStdString(item->name())}});
        if (!context.options.isJson) {
            progress.clear();
            context.results.line(uuids[i] + "  rendered  " + item->name());
        }
    }
    progress.clear();
    if (context.options.isJson)
        printJson(context, rendered);
    return finishBatch(failures);
}

} // namespace

Run declarePreview(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("assets", arguments->assets, "The assets")->type_name("ASSET");
    app.add_flag("--all", arguments->isAll, "Every material of the library");
    app.add_flag("--missing", arguments->isMissing, "Only where there is none that can be shown");
    arguments->preview.declare(app);
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets preview --missing --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetOperations.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Interrupt.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/PreviewOptions.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
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
            if (dynamic_cast<kxMaterialAssetItem *>(item) &&
                (arguments.isAll || !kxAssetOperations::hasPreview(item->uuid())))
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
        kxAssetItem *item = kxAssetItemFactory::the().findItem(uuids[i]);
        if (!item)
            continue;
        if (const osg::Result<void> done = kxAssetOperations::renderPreview(uuids[i]); !done) {
            failures.push_back(done.reason());
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

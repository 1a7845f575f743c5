// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxGeometryImport.h"
#include "AssetSession/kxMaterialImport.h"
#include "Rendering/kxPreviewSettings.h"
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
    std::vector<std::string> files;
    std::string folder;
    std::vector<std::string> tags;
    bool isGeometry = false;
    bool isSplit = false;
    PreviewOptions preview;
};

QJsonObject toJson(const std::string &file, const kxMaterialImport::Saved &saved)
{
    return {{"uuid", QString::fromStdString(saved.uuid)},
            {"name", QString::fromStdString(saved.name)},
            {"file", QString::fromStdString(file)},
            {"updated", saved.isUpdate}};
}

/// Models as assets that are placed into scenes, instead of their materials.
ExitCode importGeometry(const Arguments &arguments, const QUrl &folder, Context &context)
{
    kxGeometryImport import;
    import.setSplit(arguments.isSplit);
    ProgressLine progress("Importing", "files");
    std::vector<std::string> failures;
    QJsonArray imported;
    for (std::size_t i = 0; i < arguments.files.size() && !Interrupt::wasRequested(); ++i) {
        const std::string &file = arguments.files[i];
        progress.show(i, arguments.files.size());
        const kxGeometryImport::Outcome outcome =
            import.importFile(QString::fromStdString(file), folder, [] { return !Interrupt::wasRequested(); });
        progress.clear();
        for (const kxGeometryImport::Saved &saved : outcome.saved) {
            imported.append(toJson(file, {saved.uuid, saved.name, false}));
            if (!context.options.isJson)
                context.results.line(saved.uuid + "  imported  " + saved.name);
        }
        failures.insert(failures.end(), outcome.failures.begin(), outcome.failures.end());
    }
    if (context.options.isJson)
        printJson(context, imported);
    return finishBatch(failures);
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, false);
    if (!library)
        return ExitCode::Failed;
    const osg::Result<QUrl> folder = library->folder(QString::fromStdString(arguments.folder));
    if (!folder) {
        complain(folder.reason());
        return ExitCode::Failed;
    }
    arguments.preview.apply();
    if (arguments.isGeometry || arguments.isSplit)
        return importGeometry(arguments, folder.value(), context);
    kxMaterialImport import(*library);
    import.setTags(arguments.tags);

    ProgressLine progress("Importing", "files");
    std::vector<std::string> failures;
    QJsonArray imported;
    for (std::size_t i = 0; i < arguments.files.size() && !Interrupt::wasRequested(); ++i) {
        const std::string &file = arguments.files[i];
        progress.show(i, arguments.files.size());
        const kxMaterialImport::Outcome outcome =
            import.importFile(QString::fromStdString(file), folder.value(), [] { return !Interrupt::wasRequested(); });
        progress.clear();
        for (const kxMaterialImport::Saved &saved : outcome.saved) {
            imported.append(toJson(file, saved));
            if (!context.options.isJson)
                context.results.line(saved.uuid + (saved.isUpdate ? "  updated   " : "  imported  ") + saved.name);
        }
        failures.insert(failures.end(), outcome.failures.begin(), outcome.failures.end());
    }
    if (context.options.isJson)
        printJson(context, imported);
    return finishBatch(failures);
}

} // namespace

Run declareImport(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("files", arguments->files, "3D models, pictures, or descriptions (*.materials.json)")
        ->type_name("FILE")
        ->required();
    declareLibrary(app, options);
    app.add_option("--folder", arguments->folder, "Folder inside the library for what is new")->type_name("DIR");
    app.add_option("--tag", arguments->tags, "Tag for what is imported; may be repeated")
        ->type_name("TAG")
        ->check(CLI::Validator(checkTag, ""))
        ->allow_extra_args(false)
        ->take_all();
    app.add_flag("--geometry", arguments->isGeometry, "Keep each model itself as an asset, not its materials");
    app.add_flag("--split", arguments->isSplit, "The same, with an asset for each of the model's topmost parts");
    arguments->preview.declare(app);
    declareJson(app, options);
    app.footer("A file that was imported before updates its assets where they are, and keeps their names and tags: a\n"
               "material is known again by its name and its file. Equal materials of a file become one asset.\n"
               "With --geometry or --split every import makes new assets.\n"
               "A file that fails does not keep the others from being imported.\n\n"
               "Example: kxassets import car.glb studio.exr --library ~/Materials --folder Cars --tag paint");
    return [arguments](Context &context) { return run(*arguments, context); };
}

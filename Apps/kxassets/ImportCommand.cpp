// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxGeometryImport.h"
#include "AssetSession/kxMaterialImport.h"
#include "AssetSession/kxPictureImport.h"
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

#include <functional>
#include <memory>
#include <optional>

namespace {

struct Arguments
{
    std::vector<std::string> files;
    std::string folder;
    std::vector<std::string> tags;
    bool isGeometry = false;
    bool isSplit = false;
    bool isEnvironment = false;
    bool isFrontplate = false;
    bool isBackplate = false;
    PreviewOptions preview;
};

using Outcome = kxMaterialImport::Outcome;
using ImportFile = std::function<Outcome(const QString &file)>;

bool goesOn()
{
    return !Interrupt::wasRequested();
}

QJsonObject toJson(const std::string &file, const kxMaterialImport::Saved &saved)
{
    return {{"uuid", QString::fromStdString(saved.uuid)},
            {"name", QString::fromStdString(saved.name)},
            {"file", QString::fromStdString(file)},
            {"updated", saved.isUpdate}};
}

Outcome asNew(const kxGeometryImport::Outcome &outcome)
{
    Outcome result{{}, outcome.failures};
    for (const kxGeometryImport::Saved &saved : outcome.saved)
        result.saved.push_back({saved.uuid, saved.name, false});
    return result;
}

std::optional<kxPictureImport::Kind> pictureKind(const Arguments &arguments)
{
    if (arguments.isEnvironment)
        return kxPictureImport::Kind::Environment;
    if (arguments.isFrontplate)
        return kxPictureImport::Kind::Frontplate;
    if (arguments.isBackplate)
        return kxPictureImport::Kind::Backplate;
    return std::nullopt;
}

/// What the files are to become.
ImportFile importerFor(const Arguments &arguments, const kxAssetLibrary &library, const QUrl &folder)
{
    if (const auto kind = pictureKind(arguments))
        return [import = kxPictureImport(*kind), folder](const QString &file) {
            return asNew(import.importFile(file, folder));
        };
    if (arguments.isGeometry || arguments.isSplit) {
        kxGeometryImport import;
        import.setSplit(arguments.isSplit);
        return [import, folder](const QString &file) { return asNew(import.importFile(file, folder, goesOn)); };
    }
    const auto import = std::make_shared<kxMaterialImport>(library);
    import->setTags(arguments.tags);
    return [import, folder](const QString &file) { return import->importFile(file, folder, goesOn); };
}

ExitCode importAll(const std::vector<std::string> &files, const ImportFile &importFile, Context &context)
{
    ProgressLine progress("Importing", "files");
    std::vector<std::string> failures;
    QJsonArray imported;
    for (std::size_t i = 0; i < files.size() && goesOn(); ++i) {
        progress.show(i, files.size());
        const Outcome outcome = importFile(QString::fromStdString(files[i]));
        progress.clear();
        for (const kxMaterialImport::Saved &saved : outcome.saved) {
            imported.append(toJson(files[i], saved));
            if (!context.options.isJson)
                context.results.line(saved.uuid + (saved.isUpdate ? "  updated   " : "  imported  ") + saved.name);
        }
        failures.insert(failures.end(), outcome.failures.begin(), outcome.failures.end());
    }
    if (context.options.isJson)
        printJson(context, imported);
    return finishBatch(failures);
}

ExitCode run(const Arguments &arguments, Context &context)
{
    if (!arguments.tags.empty() && (pictureKind(arguments) || arguments.isGeometry || arguments.isSplit)) {
        complain("--tag is for materials: other assets have no tags of their own");
        return ExitCode::Usage;
    }
    const auto library = openLibrary(context.options, false);
    if (!library)
        return ExitCode::Failed;
    const std::optional<QUrl> folder = findFolder(*library, arguments.folder);
    if (!folder)
        return ExitCode::Failed;
    arguments.preview.apply();
    return importAll(arguments.files, importerFor(arguments, *library, *folder), context);
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
    CLI::Option_group *kinds = app.add_option_group("kind", "What the files become; without any of these, materials");
    kinds->add_flag("--geometry", arguments->isGeometry, "Keep each model itself as an asset");
    kinds->add_flag("--split", arguments->isSplit, "The same, with an asset for each of the model's topmost parts");
    kinds->add_flag("--environment", arguments->isEnvironment,
                    "Keep each picture as an environment to switch to, with a node of its own");
    kinds->add_flag("--frontplate", arguments->isFrontplate, "Keep each picture as a plate over the rendered image");
    kinds->add_flag("--backplate", arguments->isBackplate, "Keep each picture as a plate under the rendered image");
    kinds->require_option(0, 1);
    arguments->preview.declare(app);
    declareJson(app, options);
    app.footer("A file that was imported before updates its assets where they are, and keeps their names and tags: a\n"
               "material is known again by its name and its file. Equal materials of a file become one asset.\n"
               "As anything but materials every import makes new assets. A picture imported as a material is an\n"
               "environment for surfaces and scenes that has no node.\n"
               "A file that fails does not keep the others from being imported.\n\n"
               "Example: kxassets import car.glb studio.exr --library ~/Materials --folder Cars --tag paint");
    return [arguments](Context &context) { return run(*arguments, context); };
}

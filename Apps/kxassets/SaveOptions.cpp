// SPDX-License-Identifier: Apache-2.0
#include "kxassets/SaveOptions.h"

#include "AssetSession/kxNodePath.h"
#include "AssetSession/kxSceneOpener.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonObject>

void SaveOptions::declare(CLI::App &app, Options &options)
{
    app.add_option("scene", scene, "The scene file; it stays as it is")->type_name("SCENE.osb")->required();
    app.add_option("--folder", folder, "Folder inside the library for what is new")->type_name("DIR");
    app.add_flag("--make-ordinary", makesReferencesOrdinary,
                 "Save references to other files as ordinary nodes; without it what holds some is not saved");
    app.add_flag("--no-asset-root", refusesAssetRoot,
                 "Do not save what cannot be placed; without it, it is put below a new node that can");
    declareLibrary(app, options);
    declareJson(app, options);
}

std::optional<SaveOptions::Opened> SaveOptions::open(bool libraryMustExist, Context &context) const
{
    const auto library = openLibrary(context.options, libraryMustExist);
    if (!library)
        return std::nullopt;
    const osg::Result<QUrl> target = library->folder(QString::fromStdString(folder));
    const auto opened = kxSceneOpener::open(QString::fromStdString(scene));
    if (target && opened)
        return Opened{target.value(), opened.value().allNodes()};
    complain(!target ? target.reason() : opened.reason());
    return std::nullopt;
}

osg::NodePtr SaveOptions::Opened::find(const std::string &path) const
{
    const osg::Result<osg::NodePtr> node = kxNodePath::find(path, nodes);
    if (node)
        return node.value();
    complain(node.reason());
    return nullptr;
}

kxNodeSaving SaveOptions::answers() const
{
    return kxNodeSaving({makesReferencesOrdinary, !refusesAssetRoot});
}

ExitCode SaveOptions::report(const osg::Result<kxNodeSaving::Saved> &saved, Context &context)
{
    if (!saved) {
        complain(saved.reason());
        return ExitCode::Failed;
    }
    const kxNodeSaving::Saved &asset = saved.value();
    if (context.options.isJson) {
        QJsonArray remarks;
        for (const std::string &remark : asset.remarks)
            remarks.append(QString::fromStdString(remark));
        printJson(context, QJsonObject{{"uuid", QString::fromStdString(asset.uuid)},
                                       {"name", QString::fromStdString(asset.name)},
                                       {"remarks", remarks}});
        return ExitCode::Done;
    }
    context.results.line(asset.uuid + "  saved  " + asset.name);
    for (const std::string &remark : asset.remarks)
        complain("'" + asset.name + "': " + remark);
    return ExitCode::Done;
}

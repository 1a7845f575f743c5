// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxMaterialAssetItem.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> assets;
    std::string output;
    bool isCompressed = false;
};

/// The environments that light surfaces belong to the scene they are loaded into.
bool isEnvironmentOfSurface(const osg::FieldContainer &owner, const osg::FieldInfo &field)
{
    return &owner.getType() == &osg::UBRDFMaterial::getClassType() &&
           field.mask == osg::UBRDFMaterial::EnvironmentFieldMask;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    std::vector<std::string> uuids;
    QJsonArray loaded;
    for (const std::string &asset : arguments.assets) {
        kxMaterialAssetItem *item = findMaterialAsset(*library, asset);
        if (!item)
            return ExitCode::Failed;
        uuids.push_back(item->uuid());
        loaded.append(QJsonObject{{"uuid", QString::fromStdString(item->uuid())},
                                  {"name", QString::fromStdString(item->name())}});
    }
    // All at once, so that composites share what they have in common.
    const std::vector<osg::MaterialPtr> materials = kxMaterialAssetItem::getMaterialsFromUUIDs(uuids);
    if (const auto missing = std::find(materials.begin(), materials.end(), nullptr); missing != materials.end()) {
        const auto index = static_cast<std::size_t>(missing - materials.begin());
        complain("'" + arguments.assets[index] + "' cannot be loaded; 'kxassets verify' tells more");
        return ExitCode::Failed;
    }
    const std::vector<osg::FieldContainerPtr> roots(materials.begin(), materials.end());
    osg::SceneWriteOptions options;
    options.isCompressed = arguments.isCompressed;
    options.leavesOut = isEnvironmentOfSurface;
    if (const osg::Result<void> written = osg::writeSceneFile(arguments.output, roots, options); !written) {
        complain(written.reason());
        return ExitCode::Failed;
    }
    if (context.options.isJson)
        printJson(context, loaded);
    else
        for (const QJsonValue &entry : loaded)
            context.results.line("loaded " + entry["name"].toString().toStdString() + " into " + arguments.output);
    return ExitCode::Done;
}

} // namespace

Run declareLoad(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("assets", arguments->assets, "The assets")->type_name("ASSET")->required();
    app.add_option("-o,--output", arguments->output, "The scene file to write")->type_name("FILE.osb")->required();
    app.add_flag("--compress", arguments->isCompressed, "Compress the file: smaller, slower to write");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets load 3f2a 'Car paint red' --library ~/Materials -o scene.osb");
    return [arguments](Context &context) { return run(*arguments, context); };
}

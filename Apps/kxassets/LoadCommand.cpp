// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "kxassets/ResultStream.h"
#include "kxassets/Support.h"

#include <CLI/CLI.hpp>

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
    std::vector<osg::FCRef<osg::Material>> materials;
    std::vector<osg::FieldContainerPtr> roots;
    QJsonArray loaded;
    for (const std::string &asset : arguments.assets) {
        const kxMaterialAssetItem *item = findMaterialAsset(*library, asset);
        if (!item)
            return ExitCode::Failed;
        const std::string uuid = const_cast<kxMaterialAssetItem *>(item)->uuid();
        const osg::MaterialPtr material = kxMaterialAssetItem::getMaterialFromUUID(uuid);
        if (!material) {
            complain("'" + asset + "' cannot be loaded; 'kxassets verify' tells more");
            return ExitCode::Failed;
        }
        materials.emplace_back(material);
        roots.emplace_back(material);
        loaded.append(QJsonObject{{"uuid", QString::fromStdString(uuid)},
                                  {"name", QString::fromStdString(kxMaterials::getName(material))}});
    }
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
    app.add_option("assets", arguments->assets, "The assets")->required();
    app.add_option("-o,--output", arguments->output, "The scene file to write")->required();
    app.add_flag("--compress", arguments->isCompressed, "Compress the file: smaller, slower to write");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets load 3f2a 'Car paint red' --library ~/Materials -o scene.osb");
    return [arguments](Context &context) { return run(*arguments, context); };
}

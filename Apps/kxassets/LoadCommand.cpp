// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"
#include "SceneGraph/EditCP.h"
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

/// Null where it cannot be loaded; an environment hangs in the scene, and is taken from there.
osg::FCRef<osg::Node> loadNode(kxAssetItem &item)
{
    if (auto *node = dynamic_cast<kxGeometrySceneplateCommon *>(&item))
        return node->loadNode() ? osg::FCRef<osg::Node>(node->getNode()) : osg::FCRef<osg::Node>();
    auto *environment = dynamic_cast<kxEnvironmentNodeAssetItem *>(&item);
    if (!environment || !environment->loadEnvironmentNode(false))
        return nullptr;
    osg::FCRef<osg::Node> node(environment->getEnvironmentNode());
    if (const osg::NodePtr parent = node ? node->getParent() : osg::NodePtr()) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(node);
    }
    return node;
}

ExitCode complainOfLoading(const std::string &asset)
{
    complain("'" + asset + "' cannot be loaded; 'kxassets verify' tells more");
    return ExitCode::Failed;
}

/// What the assets stand for, in their order.
bool loadAssets(const std::vector<std::string> &assets, const std::vector<kxAssetItem *> &items,
                std::vector<osg::FCRef<osg::FieldContainer>> &loaded)
{
    // Materials all at once, so that composites share what they have in common.
    std::vector<std::string> uuids;
    for (kxAssetItem *item : items)
        if (dynamic_cast<kxMaterialAssetItem *>(item))
            uuids.push_back(item->uuid());
    const std::vector<osg::MaterialPtr> materials = kxMaterialAssetItem::getMaterialsFromUUIDs(uuids);
    auto material = materials.begin();
    for (std::size_t i = 0; i < items.size(); ++i) {
        osg::FCRef<osg::FieldContainer> container;
        if (dynamic_cast<kxMaterialAssetItem *>(items[i]))
            container = osg::FCRef<osg::FieldContainer>(*material++);
        else
            container = osg::FCRef<osg::FieldContainer>(loadNode(*items[i]).get());
        if (!container) {
            complainOfLoading(assets[i]);
            return false;
        }
        loaded.push_back(container);
    }
    return true;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    std::vector<kxAssetItem *> items;
    QJsonArray described;
    for (const std::string &asset : arguments.assets) {
        kxAssetItem *item = findAsset(*library, asset);
        if (!item)
            return ExitCode::Failed;
        items.push_back(item);
        described.append(QJsonObject{{"uuid", QString::fromStdString(item->uuid())},
                                     {"name", QString::fromStdString(item->name())}});
    }
    std::vector<osg::FCRef<osg::FieldContainer>> loaded;
    if (!loadAssets(arguments.assets, items, loaded))
        return ExitCode::Failed;
    std::vector<osg::FieldContainerPtr> roots;
    roots.reserve(loaded.size());
    for (const auto &container : loaded)
        roots.push_back(container.get());
    osg::SceneWriteOptions options;
    options.isCompressed = arguments.isCompressed;
    options.leavesOut = isEnvironmentOfSurface;
    if (const osg::Result<void> written = osg::writeSceneFile(arguments.output, roots, options); !written) {
        complain(written.reason());
        return ExitCode::Failed;
    }
    if (context.options.isJson)
        printJson(context, described);
    else
        for (const QJsonValue entry : described)
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

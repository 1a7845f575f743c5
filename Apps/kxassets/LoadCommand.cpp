// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSaveEnvironment.h"
#include "Kernel/kxModalQuestion.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QDialog>
#include <QJsonArray>
#include <QJsonObject>
#include <QListWidget>

#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> assets;
    std::string output;
    std::string environment;
    bool isCompressed = false;
};

/// The environments that light surfaces belong to the scene they are loaded into.
bool isEnvironmentOfSurface(const osg::FieldContainer &owner, const osg::FieldInfo &field)
{
    return &owner.getType() == &osg::UBRDFMaterial::getClassType() &&
           field.mask == osg::UBRDFMaterial::EnvironmentFieldMask;
}

using Loaded = osg::FCRef<osg::FieldContainer>;

/// Makes the choice that loading an environment may ask for, while it lives: the material of this name.
class EnvironmentChooser
{
public:
    explicit EnvironmentChooser(const std::string &name)
    {
        _before = kxModalQuestion::setDialogAnswerer([this, name = QString::fromStdString(name)](QDialog &dialog) {
            auto *list = dialog.findChild<QListWidget *>();
            const auto matching =
                list && !name.isEmpty() ? list->findItems(name, Qt::MatchExactly) : QList<QListWidgetItem *>();
            if (!matching.isEmpty()) {
                list->setCurrentItem(matching.front());
                return static_cast<int>(QDialog::Accepted);
            }
            for (int row = 0; list && row < list->count(); ++row)
                _names += (row == 0 ? "'" : ", '") + list->item(row)->text().toStdString() + "'";
            return static_cast<int>(QDialog::Rejected);
        });
    }
    ~EnvironmentChooser() { kxModalQuestion::setDialogAnswerer(_before); }
    EnvironmentChooser(const EnvironmentChooser &) = delete;
    EnvironmentChooser &operator=(const EnvironmentChooser &) = delete;

    /// What there was to choose from where the choice could not be made; "" otherwise.
    const std::string &names() const { return _names; }

private:
    kxModalQuestion::DialogAnswerer _before;
    std::string _names;
};

/// An environment joins those of the scene document and is current there.
osg::Result<Loaded> loadEnvironment(kxEnvironmentNodeAssetItem &item, const std::string &choice)
{
    const EnvironmentChooser chooser(choice);
    if (item.loadEnvironmentNode(true))
        return Loaded(item.getEnvironmentNode());
    if (chooser.names().empty())
        return osg::Failure{"cannot be loaded; 'kxassets verify' tells more"};
    return osg::Failure{"holds several environments; --environment says which is to be used: " + chooser.names()};
}

osg::Result<Loaded> loadNode(kxAssetItem &item, const std::string &choice)
{
    if (auto *environment = dynamic_cast<kxEnvironmentNodeAssetItem *>(&item))
        return loadEnvironment(*environment, choice);
    auto *node = dynamic_cast<kxGeometrySceneplateCommon *>(&item);
    if (node && node->loadNode())
        return Loaded(node->getNode());
    return osg::Failure{"cannot be loaded; 'kxassets verify' tells more"};
}

/// What the assets stand for, in their order.
bool loadAssets(const Arguments &arguments, const std::vector<kxAssetItem *> &items, std::vector<Loaded> &loaded)
{
    // Materials all at once, so that composites share what they have in common.
    std::vector<std::string> uuids;
    for (kxAssetItem *item : items)
        if (dynamic_cast<kxMaterialAssetItem *>(item))
            uuids.push_back(item->uuid());
    const std::vector<osg::MaterialPtr> materials = kxMaterialAssetItem::getMaterialsFromUUIDs(uuids);
    auto material = materials.begin();
    for (std::size_t i = 0; i < items.size(); ++i) {
        osg::Result<Loaded> container = osg::Failure{"cannot be loaded; 'kxassets verify' tells more"};
        if (!dynamic_cast<kxMaterialAssetItem *>(items[i]))
            container = loadNode(*items[i], arguments.environment);
        else if (const osg::MaterialPtr found = *material++)
            container = Loaded(found);
        if (!container) {
            complain("'" + arguments.assets[i] + "' " + container.reason());
            return false;
        }
        loaded.push_back(container.value());
    }
    return true;
}

/// Environments are written with what they light with now, and not with the whole choice of this document.
osg::Result<void> write(const Arguments &arguments, const std::vector<Loaded> &loaded)
{
    std::vector<osg::FieldContainerPtr> roots;
    std::vector<std::unique_ptr<kxSaveEnvironment>> preparations;
    for (const Loaded &container : loaded) {
        roots.push_back(container.get());
        const auto node = osg::NodePtr::dcast(container.get());
        if (!node || !isOfType(node->getCore(), osg::Environment::getClassType()))
            continue;
        preparations.push_back(std::make_unique<kxSaveEnvironment>());
        preparations.back()->prepare(node);
    }
    osg::SceneWriteOptions options;
    options.isCompressed = arguments.isCompressed;
    options.leavesOut = isEnvironmentOfSurface;
    return osg::writeSceneFile(arguments.output, roots, options);
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
    std::vector<Loaded> loaded;
    if (!loadAssets(arguments, items, loaded))
        return ExitCode::Failed;
    if (const osg::Result<void> written = write(arguments, loaded); !written) {
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
    app.add_option("--environment", arguments->environment,
                   "Of an environment asset with several environment materials, the one to switch to")
        ->type_name("NAME");
    app.add_flag("--compress", arguments->isCompressed, "Compress the file: smaller, slower to write");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets load 3f2a 'Car paint red' --library ~/Materials -o scene.osb");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodePath.h"
#include "AssetSession/kxSceneOpener.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/NodeWalk.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace {

struct Row
{
    std::string path;
    std::string type;
    std::string uuid;
};

std::vector<Row> rowsOf(const std::vector<osg::NodePtr> &roots)
{
    std::vector<Row> rows;
    for (const osg::NodePtr &root : roots)
        osg::forEachNode(root, [&](const osg::NodePtr &node) {
            const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(node);
            rows.push_back({kxNodePath::of(node, roots), node->getCore() ? node->getCore()->getType().getCName() : "",
                            asset ? asset->getUuid() : std::string()});
        });
    return rows;
}

ExitCode run(const std::string &file, Context &context)
{
    const auto scene = kxSceneOpener::open(QString::fromStdString(file));
    if (!scene) {
        complain(scene.reason());
        return ExitCode::Failed;
    }
    QJsonArray all;
    std::vector<std::vector<std::string>> table{{"PATH", "TYPE", "ASSET"}};
    for (const Row &row : rowsOf(scene.value().allNodes())) {
        table.push_back({row.path, row.type, row.uuid});
        all.append(QJsonObject{{"path", QString::fromStdString(row.path)},
                               {"type", QString::fromStdString(row.type)},
                               {"uuid", QString::fromStdString(row.uuid)}});
    }
    if (context.options.isJson)
        printJson(context, all);
    else if (all.isEmpty())
        context.results.line("no nodes in " + file);
    else
        printTable(context, table);
    return ExitCode::Done;
}

} // namespace

Run declareTree(CLI::App &app, Options &options)
{
    const auto file = std::make_shared<std::string>();
    app.add_option("scene", *file, "The scene file")->type_name("SCENE.osb")->required();
    declareJson(app, options);
    app.footer("Example: kxassets tree room.osb");
    return [file](Context &context) { return run(*file, context); };
}

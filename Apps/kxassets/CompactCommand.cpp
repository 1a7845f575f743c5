// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QJsonObject>

#include <memory>

namespace {

ExitCode run(const std::string &path, Context &context)
{
    const QFileInfo info(QString::fromStdString(path));
    const qint64 before = info.size();
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(path);
    if (!roots) {
        complain(roots.reason());
        return ExitCode::Failed;
    }
    const std::vector<osg::FieldContainerPtr> handles(roots.value().begin(), roots.value().end());
    osg::SceneWriteOptions options;
    options.isCompressed = true;
    if (const osg::Result<void> written = osg::writeSceneFile(path, handles, options); !written) {
        complain(written.reason());
        return ExitCode::Failed;
    }
    const qint64 after = QFileInfo(info.filePath()).size();
    if (context.options.isJson)
        printJson(context, QJsonObject{{"before", before}, {"after", after}});
    else
        context.results.line(path + ": " + std::to_string(before) + " -> " + std::to_string(after) + " bytes");
    return ExitCode::Done;
}

} // namespace

Run declareCompact(CLI::App &app, Options &options)
{
    const auto path = std::make_shared<std::string>();
    app.add_option("file", *path, "The scene file")->type_name("FILE.osb")->required();
    declareJson(app, options);
    app.footer("An asset's own file counts as changed afterwards wherever the asset is used.\n\n"
               "Example: kxassets compact scene.osb");
    return [path](Context &context) { return run(*path, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxLocalUrlManager.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QJsonObject>

#include <memory>

namespace {

struct Arguments
{
    std::string source;
    std::string target;
};

bool isPlainFolder(const osg::Result<QUrl> &folder, const std::string &text)
{
    if (!folder) {
        complain(folder.reason());
        return false;
    }
    if (!QFileInfo(folder.value().toLocalFile()).isDir()) {
        complain("there is no folder '" + text + "' in the library");
        return false;
    }
    if (kxLocalUrlManager::the()->containsItems(folder.value(), Undefined)) {
        complain("'" + text + "' is an asset, and assets are never merged");
        return false;
    }
    return true;
}

/// Why the one cannot be emptied into the other, or "".
std::string obstacleOf(const QString &source, const QString &target)
{
    if (target == source || target.startsWith(source + QLatin1Char('/')))
        return "a folder cannot be merged into itself or into a folder that lies in it";
    // What comes up to the parent would be merged with the very folder that is being emptied.
    const QFileInfo info(source);
    if (info.path() == target && QFileInfo::exists(source + QLatin1Char('/') + info.fileName()))
        return "the folder holds one of its own name, which has no place beside it";
    return {};
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const osg::Result<QUrl> source = library->folder(QString::fromStdString(arguments.source));
    const osg::Result<QUrl> target = library->folder(QString::fromStdString(arguments.target));
    if (!isPlainFolder(source, arguments.source) || !isPlainFolder(target, arguments.target))
        return ExitCode::Failed;
    if (const std::string obstacle = obstacleOf(source.value().toLocalFile(), target.value().toLocalFile());
        !obstacle.empty()) {
        complain(obstacle);
        return ExitCode::Failed;
    }
    if (!kxLocalUrlManager::the()->merge(source.value(), target.value())) {
        complain("not everything could be moved from '" + arguments.source + "'; what is left is still there");
        return ExitCode::Failed;
    }
    if (context.options.isJson)
        printJson(context, QJsonObject{{"from", QString::fromStdString(arguments.source)},
                                       {"to", QString::fromStdString(arguments.target)}});
    else
        context.results.line("merged " + arguments.source + " into " + arguments.target);
    return ExitCode::Done;
}

} // namespace

Run declareMerge(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("source", arguments->source, "The folder that goes, relative to the library")
        ->type_name("DIR")
        ->required();
    app.add_option("target", arguments->target, "The folder that stays, relative to the library")
        ->type_name("DIR")
        ->required();
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Assets are kept whole: one whose folder name is taken gets a number behind it.\n\n"
               "Example: kxassets merge New Metals --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> sources;
    std::string target;
    bool merges = false;
};

/// The folder of the library, or else the directory of the asset, that the text means.
osg::Result<QUrl> placeOf(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<QUrl> folder = library.folder(QString::fromStdString(text));
    if (folder && folder.value() != library.url() && QFileInfo(folder.value().toLocalFile()).isDir())
        return folder;
    const osg::Result<kxAssetItem *> item = lookUp(library, text);
    if (!item)
        return osg::Failure{item.reason()};
    return item.value()->directoryUrl();
}

/// Where it went.
osg::Result<QUrl> moveInto(const QUrl &target, const std::string &source, const kxAssetLibrary &library, bool merges)
{
    kxUrlManager *manager = kxUrlManager::getUrlManager(library.url());
    const osg::Result<QUrl> from = placeOf(library, source);
    if (!from)
        return from;
    const QUrl wanted = manager->extendByDirectory(target, manager->directoryName(from.value()));
    if (!merges && manager->exists(wanted))
        return osg::Failure{"'" + source + "' was not moved: the target holds a folder of that name; --merge merges"};
    QUrl to;
    if (!manager->move(from.value(), target, to, merges))
        return osg::Failure{"'" + source + "' could not be moved as a whole to " + wanted.toLocalFile().toStdString()};
    return to;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const std::optional<QUrl> target = findFolder(*library, arguments.target);
    if (!target)
        return ExitCode::Failed;
    if (!QDir().mkpath(target->toLocalFile()) ||
        kxUrlManager::getUrlManager(library->url())->containsItems(*target, Undefined)) {
        complain("'" + arguments.target + "' is no folder for assets");
        return ExitCode::Failed;
    }
    std::vector<std::string> failures;
    QJsonArray moved;
    for (const std::string &source : arguments.sources) {
        const osg::Result<QUrl> to = moveInto(*target, source, *library, arguments.merges);
        if (!to) {
            failures.push_back(to.reason());
            continue;
        }
        const QString place = QDir(library->path()).relativeFilePath(to.value().toLocalFile());
        moved.append(QJsonObject{{"source", QString::fromStdString(source)}, {"path", place}});
        if (!context.options.isJson)
            context.results.line(source + " -> " + place.toStdString());
    }
    if (context.options.isJson)
        printJson(context, moved);
    return finishBatch(failures);
}

} // namespace

Run declareMove(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("sources", arguments->sources, "Assets, or folders relative to the library")
        ->type_name("ASSET")
        ->required();
    app.add_option("--to", arguments->target, "The folder to move into, relative to the library; made when missing")
        ->type_name("DIR")
        ->required();
    app.add_flag("--merge", arguments->merges, "Merge with a folder of the same name instead of leaving it");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets move 'Brushed steel' Chrome --to Metals --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}

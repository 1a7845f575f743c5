// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "kxassets/ResultStream.h"
#include "kxassets/Support.h"

#include <CLI/CLI.hpp>

#include <QDir>
#include <QFileInfo>

#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> sources;
    std::string target;
    bool merges = false;
};

/// The directory of an asset, or a folder of the library; invalid with a complaint.
QUrl placeOf(const kxAssetLibrary &library, const std::string &text)
{
    const osg::Result<QUrl> folder = library.folder(QString::fromStdString(text));
    if (folder && folder.value() != library.url() && QFileInfo(folder.value().toLocalFile()).isDir())
        return folder.value();
    kxAssetItem *item = findAsset(library, text);
    return item ? item->directoryUrl() : QUrl();
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const osg::Result<QUrl> target = library->folder(QString::fromStdString(arguments.target));
    if (!target) {
        complain(target.reason());
        return ExitCode::Failed;
    }
    kxUrlManager *manager = kxUrlManager::getUrlManager(library->url());
    if (!QDir().mkpath(target.value().toLocalFile()) || manager->containsItems(target.value(), Undefined)) {
        complain("'" + arguments.target + "' is no folder for assets");
        return ExitCode::Failed;
    }
    std::vector<std::string> failures;
    QJsonArray moved;
    for (const std::string &source : arguments.sources) {
        const QUrl from = placeOf(*library, source);
        QUrl to;
        if (from.isEmpty())
            failures.push_back("'" + source + "' was not moved");
        else if (QUrl wanted = manager->extendByDirectory(target.value(), manager->directoryName(from));
                 !arguments.merges && manager->exists(wanted))
            failures.push_back("'" + source + "' was not moved: the target holds a folder of that name; --merge merges");
        else if (!manager->move(from, target.value(), to, arguments.merges))
            failures.push_back("'" + source + "' could not be moved as a whole into '" + arguments.target + "'");
        else
            moved.append(QJsonObject{{"from", QDir(library->path()).relativeFilePath(from.toLocalFile())},
                                     {"to", QDir(library->path()).relativeFilePath(to.toLocalFile())}});
    }
    if (context.options.isJson)
        printJson(context, moved);
    else
        for (const QJsonValue &entry : moved)
            context.results.line(entry["from"].toString().toStdString() + " -> " + entry["to"].toString().toStdString());
    return finishBatch(failures);
}

} // namespace

Run declareMove(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("sources", arguments->sources, "Assets, or folders relative to the library")->required();
    app.add_option("--to", arguments->target, "The folder to move into, relative to the library; made when missing")
        ->required();
    app.add_flag("--merge", arguments->merges, "Merge with a folder of the same name instead of leaving it");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets move 'Brushed steel' Chrome --to Metals --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxSceneCheck.h"
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

ExitCode run(const std::string &file, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const auto entries = kxSceneCheck::check(QString::fromStdString(file));
    if (!entries) {
        complain(entries.reason());
        return ExitCode::Failed;
    }
    QJsonArray all;
    std::vector<std::vector<std::string>> rows;
    for (const kxSceneCheck::Entry &entry : entries.value()) {
        all.append(QJsonObject{{"uuid", QString::fromStdString(entry.uuid)},
                               {"name", QString::fromStdString(entry.name)},
                               {"state", QString::fromUtf8(kxSceneCheck::textOf(entry.state))},
                               {"same", entry.state == kxSceneCheck::State::Same},
                               {"detail", QString::fromStdString(entry.detail)}});
        rows.push_back({kxSceneCheck::textOf(entry.state), entry.uuid, entry.name, entry.detail});
    }
    if (context.options.isJson)
        printJson(context, all);
    else if (rows.empty())
        context.results.line("no assets in " + file);
    else
        printTable(context, rows);
    const bool allSame = std::all_of(entries.value().begin(), entries.value().end(),
                                     [](const auto &entry) { return entry.state == kxSceneCheck::State::Same; });
    return allSame ? ExitCode::Done : ExitCode::Findings;
}

} // namespace

Run declareCheck(CLI::App &app, Options &options)
{
    const auto file = std::make_shared<std::string>();
    app.add_option("file", *file, "The scene file")->type_name("FILE.osb")->required();
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("The exit code is 1 when something differs.\n\n"
               "Example: kxassets check scene.osb --library ~/Materials");
    return [file](Context &context) { return run(*file, context); };
}

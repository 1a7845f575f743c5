// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxLibraryVerifier.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/Interrupt.h"
#include "kxassets/ProgressLine.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace {

ExitCode run(const std::string &argument, Context &context)
{
    const std::string &folder = argument.empty() ? context.options.library : argument;
    if (folder.empty()) {
        complain("which library? Name its folder, or set KXASSETS_LIBRARY");
        return ExitCode::Usage;
    }
    if (!QFileInfo(QString::fromStdString(folder)).isDir()) {
        complain("there is no folder '" + folder + "'");
        return ExitCode::Failed;
    }
    ProgressLine progress("Verifying", "folders");
    kxLibraryVerifier verifier(QString::fromStdString(folder));
    verifier.setProgress([&progress](int done) {
        progress.show(static_cast<std::size_t>(done), 0);
        return !Interrupt::wasRequested();
    });
    const std::vector<kxLibraryVerifier::Finding> findings = verifier.verify();
    progress.clear();

    QJsonArray all;
    for (const kxLibraryVerifier::Finding &finding : findings) {
        all.append(QJsonObject{{"kind", QString::fromStdString(finding.kind)},
                               {"path", QString::fromStdString(finding.path)},
                               {"text", QString::fromStdString(finding.text)}});
        if (!context.options.isJson)
            context.results.line(finding.path + ": " + finding.text);
    }
    if (context.options.isJson)
        printJson(context, QJsonObject{{"assets", verifier.assetCount()}, {"findings", all}});
    else
        context.results.line(std::to_string(verifier.assetCount()) +
                             (verifier.assetCount() == 1 ? " asset, " : " assets, ") + std::to_string(findings.size()) +
                             (findings.size() == 1 ? " finding" : " findings"));
    if (Interrupt::wasRequested())
        return finishBatch({});
    return findings.empty() ? ExitCode::Done : ExitCode::Findings;
}

} // namespace

Run declareVerify(CLI::App &app, Options &options)
{
    const auto folder = std::make_shared<std::string>();
    app.add_option("folder", *folder, "The library; without it, what --library says")->type_name("DIR");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Reads every asset: metadata, material, preview, and what switch and multi-pass materials are made of.\n"
               "Changes nothing. One line for each finding; the exit code is 1 when there are some.\n\n"
               "Example: kxassets verify ~/Materials");
    return [folder](Context &context) { return run(*folder, context); };
}

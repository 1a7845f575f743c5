// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ImportJob.h"

#include "AssetManager/DiskTrouble.h"
#include "AssetManager/ImportTrouble.h"
#include "AssetManager/SaveLeftovers.h"
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxGeometryImport.h"
#include "AssetSession/kxMaterialDescription.h"
#include "AssetSession/kxMaterialImport.h"
#include "AssetSession/kxPictureImport.h"
#include "Import/kxForeignFormats.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProgressBar>
#include <QProgressDialog>

namespace {

kxPictureImport::Kind kindOf(ImportOptions::Pictures pictures)
{
    switch (pictures) {
    case ImportOptions::Pictures::Frontplate:
        return kxPictureImport::Kind::Frontplate;
    case ImportOptions::Pictures::Backplate:
        return kxPictureImport::Kind::Backplate;
    case ImportOptions::Pictures::Environment:
        break;
    }
    return kxPictureImport::Kind::Environment;
}

} // namespace

ImportJob::ImportJob(const QString &library, const QString &folder, const ImportOptions &options, QObject *parent)
    : QObject(parent), _library(library), _folder(folder), _options(options)
{}

ImportJob::Outcome ImportJob::run(const QStringList &files, QWidget *window)
{
    QProgressDialog progress(tr("Importing"), tr("Cancel"), 0, files.size(), window);
    progress.findChild<QProgressBar *>()->setAccessibleName(progress.labelText());
    progress.setObjectName(QStringLiteral("importProgress"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    const auto goOn = [&progress] {
        QCoreApplication::processEvents();
        return !progress.wasCanceled();
    };
    Outcome outcome;
    for (int i = 0; i < files.size(); ++i) {
        progress.setValue(i);
        progress.setLabelText(
            tr("Importing \"%1\" (%2 of %3)").arg(QFileInfo(files[i]).fileName()).arg(i + 1).arg(files.size()));
        if (!goOn())
            break;
        const SaveLeftovers leftovers(_folder);
        const FileOutcome file = importFile(files[i], goOn);
        outcome.saved.insert(outcome.saved.end(), file.saved.begin(), file.saved.end());
        if (file.failures.empty())
            continue;
        leftovers.removeEmpty();
        if (!progress.wasCanceled() || !file.unsaved.empty())
            outcome.failures += explain(files[i], file);
    }
    progress.reset();
    return outcome;
}

QStringList ImportJob::explain(const QString &file, const FileOutcome &outcome) const
{
    QStringList result;
    if (!outcome.saved.empty()) {
        for (const kxUnsavedPart &part : outcome.unsaved)
            result.append(ImportTrouble::ofPart(file, part));
        return result;
    }
    // What holds for all in the file is said once.
    if (!outcome.unsaved.empty())
        return {ImportTrouble::ofAll(file, outcome.unsaved)};
    if (const QString reason = DiskTrouble::advice(_folder, {}); !reason.isEmpty())
        return {tr("\"%1\" could not be imported.").arg(QFileInfo(file).fileName()) + ' ' + reason};
    for (const std::string &failure : outcome.failures)
        result.append(ImportTrouble::sentences(file, QString::fromStdString(failure)));
    return result;
}

template <class Result> ImportJob::FileOutcome ImportJob::outcomeOf(const Result &result)
{
    FileOutcome outcome{{}, result.failures, result.unsaved};
    for (const auto &saved : result.saved)
        outcome.saved.push_back(saved.uuid);
    return outcome;
}

ImportJob::FileOutcome ImportJob::importFile(const QString &file, const std::function<bool()> &goOn) const
{
    const QUrl folder = QUrl::fromLocalFile(_folder);
    const bool isModel = kxForeignFormats::isSceneFile(file.toStdString());
    if (!isModel && kxForeignFormats::isImageFile(file.toStdString())) {
        kxPictureImport import(kindOf(_options.pictures));
        import.setWhileReading(goOn);
        return outcomeOf(import.importFile(file, folder));
    }
    if (isModel && _options.models != ImportOptions::Models::Materials) {
        kxGeometryImport import;
        import.setSplit(_options.models == ImportOptions::Models::Parts);
        import.setWhileReading(goOn);
        return outcomeOf(import.importFile(file, folder, goOn));
    }
    const kxAssetLibrary library(_library);
    kxMaterialImport import(library);
    import.setWhileReading(goOn);
    return outcomeOf(import.importFile(file, folder, goOn));
}

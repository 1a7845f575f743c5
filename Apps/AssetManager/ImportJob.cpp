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

template <class Result> void add(const Result &result, ImportJob::Outcome &outcome)
{
    for (const auto &saved : result.saved)
        outcome.saved.push_back(saved.uuid);
    for (const std::string &failure : result.failures)
        outcome.failures.append(QString::fromStdString(failure));
}

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
    Outcome outcome;
    for (int i = 0; i < files.size(); ++i) {
        progress.setValue(i);
        progress.setLabelText(
            tr("Importing \"%1\" (%2 of %3)").arg(QFileInfo(files[i]).fileName()).arg(i + 1).arg(files.size()));
        QCoreApplication::processEvents();
        if (progress.wasCanceled())
            break;
        const int before = outcome.failures.size();
        const SaveLeftovers leftovers(_folder);
        importFile(files[i], outcome, progress);
        if (outcome.failures.size() > before) {
            leftovers.removeEmpty();
            explain(files[i], before, outcome.failures);
        }
    }
    progress.reset();
    return outcome;
}

/// Where nothing can be written, that is said of the file once, and not of all in it.
void ImportJob::explain(const QString &file, int first, QStringList &failures) const
{
    const QString reason = DiskTrouble::advice(_folder, {});
    if (reason.isEmpty()) {
        for (auto failure = failures.begin() + first; failure != failures.end(); ++failure)
            *failure = ImportTrouble::sentences(file, *failure);
        return;
    }
    failures.erase(failures.begin() + first, failures.end());
    failures.append(tr("\"%1\" could not be imported.").arg(QFileInfo(file).fileName()) + ' ' + reason);
}

void ImportJob::importFile(const QString &file, Outcome &outcome, QProgressDialog &progress) const
{
    const QUrl folder = QUrl::fromLocalFile(_folder);
    const auto goOn = [&progress] {
        QCoreApplication::processEvents();
        return !progress.wasCanceled();
    };
    const bool isModel = kxForeignFormats::isSceneFile(file.toStdString());
    const bool isPicture = !isModel && kxForeignFormats::isImageFile(file.toStdString());
    if (isPicture) {
        add(kxPictureImport(kindOf(_options.pictures)).importFile(file, folder), outcome);
    } else if (isModel && _options.models != ImportOptions::Models::Materials) {
        kxGeometryImport import;
        import.setSplit(_options.models == ImportOptions::Models::Parts);
        add(import.importFile(file, folder, goOn), outcome);
    } else {
        const kxAssetLibrary library(_library);
        add(kxMaterialImport(library).importFile(file, folder, goOn), outcome);
    }
}

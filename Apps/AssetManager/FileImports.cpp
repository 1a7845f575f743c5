// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FileImports.h"

#include "AssetManager/ImportDialog.h"
#include "AssetManager/ImportJob.h"
#include "AssetManager/LibrarySide.h"
#include "Kernel/kxModalQuestion.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QScopedValueRollback>

FileImports::FileImports(LibrarySide &libraries, QWidget &window)
    : QObject(&window), _libraries(libraries), _window(window)
{}

void FileImports::choose(const QString &folder)
{
    const QStringList files = QFileDialog::getOpenFileNames(&_window, tr("Import files"));
    if (!files.isEmpty())
        importFiles(files, folder);
}

void FileImports::importFiles(const QStringList &files, const QString &folder)
{
    _waiting.emplace_back(files, folder);
    if (_isBusy)
        return;
    const QScopedValueRollback<bool> busy(_isBusy, true);
    while (!_waiting.empty()) {
        const auto [next, target] = _waiting.front();
        _waiting.erase(_waiting.begin());
        importNow(next, target);
    }
}

void FileImports::importNow(const QStringList &files, const QString &folder)
{
    const QString library = _libraries.folders().libraryOf(folder);
    if (library.isEmpty()) {
        emit failed({tr("Add a library first: there is no folder to import into.")});
        return;
    }
    QStringList others;
    const QStringList importable = ImportDialog::importable(files, others);
    QStringList failures;
    for (const QString &file : others)
        failures.append(tr("\"%1\" is of a kind that cannot be imported.").arg(QFileInfo(file).fileName()));
    if (!importable.isEmpty()) {
        ImportDialog dialog(importable, folder, &_window);
        if (kxModalQuestion::exec(dialog) != QDialog::Accepted)
            return;
        ImportJob job(library, folder, dialog.options());
        failures += run(job, importable, folder);
    }
    if (!failures.isEmpty())
        emit failed(failures);
}

QStringList FileImports::run(ImportJob &job, const QStringList &files, const QString &folder)
{
    const ImportJob::Outcome outcome = job.run(files, &_window);
    const auto count = static_cast<int>(outcome.saved.size());
    _libraries.actions().remember(outcome.saved, tr("Import of %n asset(s)", nullptr, count));
    _libraries.scan().refresh(folder);
    emit succeeded(tr("%n asset(s) imported", nullptr, count));
    return outcome.failures;
}

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/ImportOptions.h"
#include "AssetSession/kxUnsavedPart.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

class QWidget;

/// Imports files into a folder of a library, with progress and a way to stop. Main thread only.
class ImportJob final : public QObject
{
    Q_OBJECT

public:
    struct Outcome
    {
        std::vector<std::string> saved; ///< UUIDs
        QStringList failures;           ///< sentences that name the file
    };

    ImportJob(const QString &library, const QString &folder, const ImportOptions &options, QObject *parent = nullptr);

    /// Returns when everything was imported or a person cancelled; a file that fails does not stop the others. Events are
    /// handled meanwhile.
    Outcome run(const QStringList &files, QWidget *window);

private:
    struct FileOutcome
    {
        std::vector<std::string> saved;     ///< UUIDs
        std::vector<std::string> failures;  ///< as importers word them
        std::vector<kxUnsavedPart> unsaved; ///< where the file could be read: what each failure is about
    };

    template <class Result> static FileOutcome outcomeOf(const Result &result);
    FileOutcome importFile(const QString &file, const std::function<bool()> &goOn) const;
    QStringList explain(const QString &file, const FileOutcome &outcome) const;

    QString _library;
    QString _folder;
    ImportOptions _options;
};

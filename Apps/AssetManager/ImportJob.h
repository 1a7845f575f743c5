// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/ImportOptions.h"

#include <QObject>
#include <QStringList>

#include <string>
#include <vector>

class QProgressDialog;
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
    void explain(const QString &file, int first, QStringList &failures) const;
    void importFile(const QString &file, Outcome &outcome, QProgressDialog &progress) const;

    QString _library;
    QString _folder;
    ImportOptions _options;
};

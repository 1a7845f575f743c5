// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QString>

/// Says to people why a file could not be imported. Main thread only.
class ImportTrouble
{
    Q_DECLARE_TR_FUNCTIONS(ImportTrouble)

public:
    ImportTrouble() = delete;

    /// A sentence with the file's name, and one about what is wrong with the file; what importers say of it follows in
    /// brackets where nothing better is known, for those who can make use of it.
    static QString sentences(const QString &file, const QString &reason);
};

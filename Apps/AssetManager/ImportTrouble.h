// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/kxUnsavedPart.h"

#include <QCoreApplication>
#include <QString>

#include <vector>

/// Says to people why a file could not be imported. Main thread only.
class ImportTrouble
{
    Q_DECLARE_TR_FUNCTIONS(ImportTrouble)

public:
    ImportTrouble() = delete;

    /// A sentence with the file's name, and one about what is wrong with the file; what importers say of it follows in
    /// brackets where nothing better is known, for those who can make use of it.
    static QString sentences(const QString &file, const QString &reason);
    /// The same of one thing in a file of which others were saved.
    static QString ofPart(const QString &file, const kxUnsavedPart &part);
    /// The same of a file of which nothing was saved.
    static QString ofAll(const QString &file, const std::vector<kxUnsavedPart> &parts);

private:
    static QString beginning(const QString &file);
    static QString reasonFor(const kxUnsavedPart &part);
};

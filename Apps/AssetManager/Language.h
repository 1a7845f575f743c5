// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QLocale;

/// The languages that the program speaks.
class Language
{
public:
    /// Codes of the languages that have a catalogue, as in "de".
    static QStringList available();

    /// The language that a command line wants with --language; that of the desktop when it wants none.
    ///
    /// A look at the plain arguments, because the texts of the command line itself are translated already.
    static QLocale wanted(const QStringList &arguments);

    /// Makes the running application speak the language of \a locale, and English where there is no catalogue of it; also
    /// dates and numbers are written as \a locale does.
    ///
    /// Expects that no text was made yet: some are made once and kept.
    static void install(const QLocale &locale);
};

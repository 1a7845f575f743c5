// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QPalette;

/// How the program looks: as the desktop wants it, or light or dark whatever the desktop is.
class Appearance
{
public:
    enum class Kind { Desktop, Light, Dark };

    /// The names on the command line: "light" and "dark".
    static QStringList names();
    /// Desktop for every name that is not among names().
    static Kind byName(const QString &name);

    /// Gives the running application its colours, before windows are made.
    static void apply(Kind kind);

    static QPalette light();
    static QPalette dark();
};

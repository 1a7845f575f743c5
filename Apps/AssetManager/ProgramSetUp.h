// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// What the program is before it has a window, for whatever runs its window.
class ProgramSetUp
{
public:
    /// How screens with many dots are drawn on; before there is a QApplication.
    static void begin();
    /// Names the running application and has it speak the language that the arguments want; before any text is made.
    static void introduce(const QStringList &arguments);
};

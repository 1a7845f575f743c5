// SPDX-License-Identifier: Apache-2.0
#pragma once

class QAction;
class QString;

/// What an action of a menu leads to, said before it is chosen.
namespace MenuTip {

/// Beside the pointer and in the status bar, where also those see it who use the keys, and for readers of the screen.
void add(QAction &action, const QString &text);

} // namespace MenuTip

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MenuTip.h"

#include <QAction>

void MenuTip::add(QAction &action, const QString &text)
{
    action.setToolTip(text);
    action.setStatusTip(text);
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/OwnKeys.h"

#include <QAction>
#include <QKeyEvent>
#include <QWidget>

OwnKeys::OwnKeys(QWidget &widget) : QObject(&widget), _widget(widget)
{
    widget.installEventFilter(this);
}

OwnKeys::~OwnKeys() = default;

QAction *OwnKeys::actionFor(const QKeyEvent &event) const
{
    const QKeySequence pressed(event.key() | static_cast<int>(event.modifiers() & ~Qt::KeypadModifier));
    for (QAction *action : _widget.actions())
        if (action->isEnabled() && action->shortcuts().contains(pressed))
            return action;
    return nullptr;
}

bool OwnKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    QAction *action = actionFor(*static_cast<QKeyEvent *>(event));
    if (!action)
        return QObject::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress)
        action->trigger();
    return true;
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptInput.h"

#include "AssetManager/ScriptRunner.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace {

bool isFromPerson(QEvent::Type type)
{
    switch (type) {
    case QEvent::Close:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Shortcut:
    case QEvent::TabletPress:
    case QEvent::TouchBegin:
    case QEvent::Wheel:
        return true;
    default:
        return false;
    }
}

} // namespace

ScriptInput::ScriptInput(ScriptRunner &runner, QWidget &allowed, QObject *parent)
    : QObject(parent), _runner(runner), _allowed(allowed)
{
    connect(&runner, &ScriptRunner::started, this, [this] { QCoreApplication::instance()->installEventFilter(this); });
    connect(&runner, &ScriptRunner::finished, this, [this] { QCoreApplication::instance()->removeEventFilter(this); });
}

ScriptInput::~ScriptInput() = default;

bool ScriptInput::isAllowed(const QObject *receiver) const
{
    // What arrives at a window goes on to the widgets in it, and is looked at there.
    if (receiver->isWindowType() || QApplication::activeModalWidget())
        return true;
    for (; receiver; receiver = receiver->parent())
        if (receiver == &_allowed)
            return true;
    return false;
}

bool ScriptInput::eventFilter(QObject *watched, QEvent *event)
{
    if (!isFromPerson(event->type()) || isAllowed(watched))
        return QObject::eventFilter(watched, event);
    if (event->type() == QEvent::Close)
        _runner.stop();
    event->ignore();
    return true;
}

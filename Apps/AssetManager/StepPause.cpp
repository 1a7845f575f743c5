// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/StepPause.h"

#include "Rendering/kxViewport.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QKeyEvent>

#include <utility>

namespace {

bool isStepKey(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool begins(const QObject *watched, const QEvent *event)
{
    if (!qobject_cast<const QAbstractSpinBox *>(watched))
        return false;
    // A click into the text goes to a widget of its own.
    return event->type() == QEvent::MouseButtonPress ||
           (event->type() == QEvent::KeyPress && isStepKey(static_cast<const QKeyEvent *>(event)->key()));
}

/// Wherever it goes: the box may be gone by then.
bool ends(const QEvent *event)
{
    if (event->type() == QEvent::KeyRelease)
        return !static_cast<const QKeyEvent *>(event)->isAutoRepeat();
    return event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::WindowDeactivate;
}

} // namespace

StepPause::StepPause(kxViewport &view) : QObject(&view), _view(view)
{
    qApp->installEventFilter(this);
}

StepPause::~StepPause() = default;

bool StepPause::eventFilter(QObject *watched, QEvent *event)
{
    if (begins(watched, event))
        setPaused(true);
    else if (_isPaused && ends(event))
        setPaused(false);
    return false;
}

void StepPause::setPaused(bool paused)
{
    if (std::exchange(_isPaused, paused) != paused)
        _view.setRefinementPaused(paused);
}

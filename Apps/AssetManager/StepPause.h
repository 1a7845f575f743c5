// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class kxViewport;

/// Has the picture not refine while a number is stepped, by a key or an arrow of its box that is held down. Main thread only.
class StepPause final : public QObject
{
    Q_OBJECT

public:
    /// A child of the view.
    explicit StepPause(kxViewport &view);
    ~StepPause() override;

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void setPaused(bool paused);

    kxViewport &_view;
    bool _isPaused = false;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QAction;
class QKeyEvent;
class QWidget;

/// Has a widget's actions take their keys before actions of the window with the same keys, while the widget has the focus.
///
/// Without that Qt calls such keys ambiguous and triggers neither.
class OwnKeys final : public QObject
{
    Q_OBJECT

public:
    /// The widget owns it.
    explicit OwnKeys(QWidget &widget);
    ~OwnKeys() override;

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    QAction *actionFor(const QKeyEvent &event) const;

    QWidget &_widget;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>

#include <functional>

class QAbstractItemView;

/// Says in the middle of a view without content what to do there.
class EmptyHint final : public QLabel
{
    Q_OBJECT

public:
    /// Shown as long as \a isEmpty answers true; asked whenever rows of the view's model come and go.
    EmptyHint(const QString &text, QAbstractItemView &view, std::function<bool()> isEmpty);
    ~EmptyHint() override;

    void refresh();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    QAbstractItemView &_view;
    std::function<bool()> _isEmpty;
};

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EmptyHint.h"

#include <QAbstractItemView>
#include <QEvent>

EmptyHint::EmptyHint(const QString &text, QAbstractItemView &view, std::function<bool()> isEmpty)
    : QLabel(text, view.viewport()), _view(view), _isEmpty(std::move(isEmpty))
{
    setObjectName("emptyHint");
    setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    setMargin(fontMetrics().height());
    setWordWrap(true);
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    view.viewport()->installEventFilter(this);
    const QAbstractItemModel *model = view.model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyHint::refresh);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyHint::refresh);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyHint::refresh);
    refresh();
}

EmptyHint::~EmptyHint() = default;

void EmptyHint::refresh()
{
    setGeometry(_view.viewport()->rect());
    setVisible(_isEmpty());
}

bool EmptyHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        setGeometry(_view.viewport()->rect());
    return QLabel::eventFilter(watched, event);
}

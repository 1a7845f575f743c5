// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <utility>
#include <vector>

class QHBoxLayout;
class QMenu;
class QToolButton;

/// Tags as buttons that narrow down what is shown.
class TagBar final : public QWidget
{
    Q_OBJECT

public:
    explicit TagBar(QWidget *parent = nullptr);

    /// Offers these, with how many assets have them, in this order; what is chosen stays, also when it is not among them.
    void setTags(const std::vector<std::pair<QString, int>> &counts);
    const QStringList &chosen() const { return _chosen; }
    void setChosen(const QStringList &tags);

    /// As narrow as one likes: what finds no place is in a menu.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chosenChanged(const QStringList &tags);

private:
    void arrange();
    void catchUp();
    void fill(QMenu &menu, std::vector<std::pair<QString, int>> tags);
    QToolButton *makeButton(const QString &tag, int count);
    void resizeEvent(QResizeEvent *event) override;
    void toggle(const QString &tag, bool isChosen);

    QHBoxLayout *_layout;
    QStringList _chosen;
    QPointer<QMenu> _menu; ///< of what finds no room
    bool _isStale = false; ///< what changed while the menu was open is not shown yet
    std::vector<std::pair<QString, int>> _counts;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <QWidget>

#include <utility>
#include <vector>

class QHBoxLayout;

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

Q_SIGNALS:
    void chosenChanged(const QStringList &tags);

private:
    void addButton(const QString &tag, int count);
    void toggle(const QString &tag, bool isChosen);

    QHBoxLayout *_layout;
    QStringList _chosen;
};

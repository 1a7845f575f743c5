// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLayout>

#include <memory>
#include <vector>

/// Places widgets beside each other, and in as many rows as their width needs.
class FlowLayout final : public QLayout
{
public:
    explicit FlowLayout(QWidget *parent);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    int count() const override;

    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSize(); }
    /// That of the widest item.
    QSize minimumSize() const override;
    void setGeometry(const QRect &place) override;

private:
    /// Calls \a place with each item and where it goes; answers the height of all rows.
    template <class Place> int arrange(const QRect &room, const Place &place) const;

    std::vector<std::unique_ptr<QLayoutItem>> _items;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTableView>

class PreviewCache;

/// Assets as lines with columns, which sort by a click on their headers.
class AssetTable final : public QTableView
{
    Q_OBJECT

public:
    AssetTable(PreviewCache &previews, QWidget *parent = nullptr);
    ~AssetTable() override;

    void setModel(QAbstractItemModel *model) override;

    /// Of the columns whose width a person can choose, also of those that the shown kind of assets does not have.
    const QList<int> &columnWidths() const { return _widths; }
    /// Those that are missing or too narrow to be grasped stay as they are.
    void setColumnWidths(const QList<int> &widths);

protected:
    void startDrag(Qt::DropActions actions) override;

private:
    class NameDelegate;

    void layOutColumns();
    void keepWidth(int column, int width);

    PreviewCache &_previews;
    QList<int> _widths; ///< pixels
};

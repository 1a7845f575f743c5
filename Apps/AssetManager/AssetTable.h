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

protected:
    void startDrag(Qt::DropActions actions) override;

private:
    class NameDelegate;

    void layOutColumns();

    PreviewCache &_previews;
};

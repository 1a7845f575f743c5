// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/AssetFilter.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QSet>

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class AssetStates;

/// The registered assets that a filter accepts, in the order of a column. Main thread only.
///
/// It holds a copy of what is shown of each asset, so that filtering a hundred thousand is a matter of milliseconds; whoever
/// changes assets says so with refresh(). Assets are named by UUID, since items come and go.
class AssetModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role { UuidRole = Qt::UserRole + 1, CategoryRole, DirectoryRole, StateRole, FavouriteRole };

    /// \a states may be null and has to live longer than the model.
    explicit AssetModel(const AssetStates *states, QObject *parent = nullptr);
    ~AssetModel() override;

    /// Reads these assets again from the registry, adds those that are new and removes those that are gone. Selections stay.
    void refresh(const std::vector<std::string> &uuids);
    /// What is marked, and what was used lately, the latest last.
    void setFavourites(const QStringList &uuids);
    void setRecent(const QStringList &uuids);

    void setFilter(const AssetFilter &filter);
    const AssetFilter &filter() const { return _filter; }

    /// The entry of a row; expects that the row exists.
    const AssetEntry &entry(int row) const { return *_rows[static_cast<std::size_t>(row)]; }
    /// Null when it is not known.
    const AssetEntry *find(const std::string &uuid) const;
    QModelIndex indexOf(const std::string &uuid) const;
    /// Those with \a isWanted, whatever the filter says.
    std::vector<std::string> uuids(const std::function<bool(const AssetEntry &)> &isWanted) const;
    int knownCount() const { return static_cast<int>(_entries.size()); }
    /// How often tags occur among the rows; the most frequent ones, and they first.
    std::vector<std::pair<QString, int>> tagCounts(int most) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    void sort(int column, Qt::SortOrder order) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }

Q_SIGNALS:
    /// A person typed another name for an asset.
    void renameRequested(const QString &uuid, const QString &name);
    /// The number of rows may be another.
    void countChanged();

private:
    struct Known;
    using Order = std::function<bool(const Known *, const Known *)>;

    QString shared(const QString &text);
    void read(const std::string &uuid, std::vector<Known *> &changed);
    static void takeOut(const std::vector<Known *> &entries, std::vector<Known *> &sorted);
    static void mergeIn(std::vector<Known *> &entries, const Order &isBefore, std::vector<Known *> &sorted);
    bool isSortedByName() const;
    Order order() const;
    void copyOrderOfNames();
    std::vector<qint64> sortKeys() const;
    void rebuildRows();
    void narrowRows();
    void updateRows(const std::function<void()> &change);
    QString toolTip(const AssetEntry &entry) const;
    QString spoken(const AssetEntry &entry) const;

    const AssetStates *_states;
    AssetFilter _filter;
    QCollator _collator;
    std::unordered_map<std::string, std::unique_ptr<Known>> _entries;
    std::vector<Known *> _byName; ///< all, ascending
    std::vector<Known *> _sorted; ///< all, in order
    std::vector<const AssetEntry *> _rows;
    QSet<QString> _sharedTexts;
    QStringList _favourites;
    QStringList _recent;
    int _sortColumn = 0;
    Qt::SortOrder _sortOrder = Qt::AscendingOrder;
};

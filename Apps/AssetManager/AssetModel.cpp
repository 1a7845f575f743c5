// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"

#include "AssetManager/AssetStates.h"
#include "AssetManager/DragData.h"
#include "AssetManager/NaturalOrder.h"
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QFileInfo>
#include <QMimeData>

#include <algorithm>
#include <numeric>
#include <unordered_set>

struct AssetModel::Known : AssetEntry
{
    explicit Known(const QCollatorSortKey &nameKey) : key(nameKey) {}

    QCollatorSortKey key; ///< of the name
};

namespace {

/// Everybody sees the same order.
template <class Known> bool isNameBefore(const Known *a, const Known *b)
{
    const int comparison = a->key.compare(b->key);
    return comparison != 0 ? comparison < 0 : a->uuid < b->uuid;
}

/// Orders lists of tags like lists of their names.
class TagOrder
{
public:
    bool operator()(const std::vector<int> &a, const std::vector<int> &b) const
    {
        const auto isBefore = [this](int left, int right) { return rankOf(left) < rankOf(right); };
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), isBefore);
    }

private:
    int rankOf(int number) const { return _ranks[static_cast<std::size_t>(number)]; }

    std::vector<int> _ranks = AssetTags::ranks();
};

std::size_t hashOf(const QString &text)
{
    return reinterpret_cast<std::size_t>(text.constData()); // equal ones are the same one
}

std::size_t hashOf(const std::vector<int> &numbers)
{
    std::size_t hash = numbers.size();
    for (const int number : numbers)
        hash = hash * 1000003U + static_cast<std::size_t>(number);
    return hash;
}

/// The place of each entry's key among all different keys, of which there are few.
template <class Key, class Entry, class KeyOf, class Order>
std::vector<qint64> ranksOfAll(const std::vector<Entry *> &entries, const KeyOf &keyOf, const Order &isBefore)
{
    struct Hash
    {
        std::size_t operator()(const Key &key) const { return hashOf(key); }
    };
    std::unordered_map<Key, qint64, Hash> ranks; // at first, the numbers in which they were met
    std::vector<const Key *> keys;
    std::vector<qint64> found;
    found.reserve(entries.size());
    for (const Entry *entry : entries) {
        const auto [key, isNew] = ranks.try_emplace(keyOf(*entry), static_cast<qint64>(ranks.size()));
        if (isNew)
            keys.push_back(&key->first);
        found.push_back(key->second);
    }
    std::vector<std::size_t> sorted(keys.size());
    std::iota(sorted.begin(), sorted.end(), 0U);
    std::sort(sorted.begin(), sorted.end(), [&](std::size_t a, std::size_t b) { return isBefore(*keys[a], *keys[b]); });
    std::vector<qint64> rankOf(keys.size());
    for (std::size_t rank = 0; rank < sorted.size(); ++rank)
        rankOf[sorted[rank]] = static_cast<qint64>(rank);
    for (qint64 &number : found)
        number = rankOf[static_cast<std::size_t>(number)];
    return found;
}

} // namespace

AssetModel::AssetModel(const AssetStates *states, QObject *parent)
    : QAbstractTableModel(parent), _states(states), _collator(NaturalOrder::collator())
{
    if (states)
        connect(states, &AssetStates::changed, this, [this] {
            if (!_rows.empty())
                emit dataChanged(index(0, 0), index(rowCount() - 1, 0),
                                 {StateRole, Qt::ToolTipRole, Qt::AccessibleTextRole});
        });
}

AssetModel::~AssetModel() = default;

const AssetEntry *AssetModel::find(const std::string &uuid) const
{
    const auto found = _entries.find(uuid);
    return found == _entries.end() ? nullptr : found->second.get();
}

QModelIndex AssetModel::indexOf(const std::string &uuid) const
{
    const auto found = std::find(_rows.begin(), _rows.end(), find(uuid));
    return found == _rows.end() ? QModelIndex() : index(static_cast<int>(found - _rows.begin()), 0);
}

std::vector<std::string> AssetModel::uuids(const std::function<bool(const AssetEntry &)> &isWanted) const
{
    std::vector<std::string> found;
    for (const Known *entry : _sorted)
        if (isWanted(*entry))
            found.push_back(entry->uuid);
    return found;
}

std::vector<std::pair<QString, int>> AssetModel::tagCounts(int most) const
{
    std::vector<std::pair<int, int>> counts(static_cast<std::size_t>(AssetTags::numberCount()));
    for (std::size_t number = 0; number < counts.size(); ++number)
        counts[number].second = static_cast<int>(number);
    for (const AssetEntry *entry : _rows)
        for (const int number : entry->tags.numbers())
            --counts[static_cast<std::size_t>(number)].first; // so that the most frequent comes first
    const std::size_t wanted = std::min(counts.size(), static_cast<std::size_t>(most));
    std::partial_sort(counts.begin(), counts.begin() + static_cast<std::ptrdiff_t>(wanted), counts.end());
    std::vector<std::pair<QString, int>> sorted;
    for (std::size_t i = 0; i < wanted && counts[i].first < 0; ++i)
        sorted.emplace_back(AssetTags::nameOf(counts[i].second), -counts[i].first);
    std::sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    return sorted;
}

/// The same text for all assets that have it: folders and types are few.
QString AssetModel::shared(const QString &text)
{
    return *_sharedTexts.insert(text);
}

/// Brings what is known of the asset up to date; it is in \a changed when it is still there.
void AssetModel::read(const std::string &uuid, std::vector<Known *> &changed)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    if (!item)
        return;
    const QString name = QString::fromStdString(item->name());
    auto known = std::make_unique<Known>(_collator.sortKey(name));
    known->uuid = uuid;
    known->category = item->category();
    known->name = name;
    known->type = shared(item->data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole).toString());
    known->tags = kxAssetLibrary::tagsOf(*item);
    known->directory = item->directoryUrl().toLocalFile();
    known->folder = shared(QFileInfo(known->directory).path());
    known->modified = item->lastModified().toMSecsSinceEpoch();
    const QString id = QString::fromStdString(uuid);
    known->isFavourite = _favourites.contains(id);
    known->recentRank = _recent.indexOf(id) + 1;
    known->searched = AssetFilter::folded(name + '\n' + known->type);
    changed.push_back(known.get());
    _entries[uuid] = std::move(known);
}

void AssetModel::takeOut(const std::vector<Known *> &entries, std::vector<Known *> &sorted)
{
    const std::unordered_set<const Known *> gone(entries.begin(), entries.end());
    if (!gone.empty())
        std::erase_if(sorted, [&gone](const Known *entry) { return gone.count(entry) != 0; });
}

void AssetModel::mergeIn(std::vector<Known *> &entries, const Order &isBefore, std::vector<Known *> &sorted)
{
    std::sort(entries.begin(), entries.end(), isBefore);
    // Few among many: places are searched for, since comparing with all of them would take longer.
    std::vector<Known *> merged;
    merged.reserve(sorted.size() + entries.size());
    auto from = sorted.begin();
    for (Known *entry : entries) {
        const auto to = std::upper_bound(from, sorted.end(), entry, isBefore);
        merged.insert(merged.end(), from, to);
        merged.push_back(entry);
        from = to;
    }
    merged.insert(merged.end(), from, sorted.end());
    sorted = std::move(merged);
}

void AssetModel::refresh(const std::vector<std::string> &uuids)
{
    updateRows([&] {
        std::vector<Known *> former;
        std::vector<std::unique_ptr<Known>> kept; // until nothing points at them any more
        for (const std::string &uuid : uuids)
            if (const auto found = _entries.find(uuid); found != _entries.end()) {
                former.push_back(found->second.get());
                kept.push_back(std::move(found->second));
                _entries.erase(found);
            }
        takeOut(former, _byName);
        std::vector<Known *> changed;
        for (const std::string &uuid : uuids)
            if (!_entries.count(uuid))
                read(uuid, changed);
        mergeIn(changed, isNameBefore<Known>, _byName);
        if (isSortedByName()) {
            copyOrderOfNames();
        } else {
            takeOut(former, _sorted);
            mergeIn(changed, order(), _sorted);
        }
        rebuildRows();
    });
}

void AssetModel::setFavourites(const QStringList &uuids)
{
    _favourites = uuids;
    updateRows([this] {
        for (const auto &[uuid, entry] : _entries)
            entry->isFavourite = false;
        for (const QString &uuid : _favourites)
            if (const auto found = _entries.find(uuid.toStdString()); found != _entries.end())
                found->second->isFavourite = true;
        rebuildRows();
    });
}

void AssetModel::setRecent(const QStringList &uuids)
{
    _recent = uuids;
    updateRows([this] {
        for (const auto &[uuid, entry] : _entries)
            entry->recentRank = 0;
        for (int i = 0; i < _recent.size(); ++i)
            if (const auto found = _entries.find(_recent[i].toStdString()); found != _entries.end())
                found->second->recentRank = i + 1;
        rebuildRows();
    });
}

void AssetModel::setFilter(const AssetFilter &filter)
{
    const bool hasOtherColumns = filter.category != _filter.category;
    if (hasOtherColumns)
        beginResetModel();
    const bool isNarrower = filter.isNarrowerThan(_filter);
    updateRows([&] {
        _filter = filter;
        if (isNarrower)
            narrowRows();
        else
            rebuildRows();
    });
    if (hasOtherColumns)
        endResetModel();
}

void AssetModel::rebuildRows()
{
    _rows.clear();
    for (const Known *entry : _sorted)
        if (_filter.accepts(*entry))
            _rows.push_back(entry);
    if (_filter.special == AssetFilter::Special::Recent)
        std::stable_sort(_rows.begin(), _rows.end(),
                         [](const AssetEntry *a, const AssetEntry *b) { return a->recentRank > b->recentRank; });
}

/// What was not shown before need not be looked at.
void AssetModel::narrowRows()
{
    std::erase_if(_rows, [this](const AssetEntry *entry) { return !_filter.accepts(*entry); });
}

/// Changes rows and has what points at rows, such as the selection, follow.
void AssetModel::updateRows(const std::function<void()> &change)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<std::string> pointed;
    for (const QModelIndex &index : before)
        pointed.push_back(entry(index.row()).uuid);
    change();
    std::unordered_map<const AssetEntry *, int> rows; // -1: not shown any more
    for (const std::string &uuid : pointed)
        rows.emplace(find(uuid), -1);
    for (std::size_t row = 0; row < _rows.size() && !rows.empty(); ++row)
        if (const auto found = rows.find(_rows[row]); found != rows.end())
            found->second = static_cast<int>(row);
    for (int i = 0; i < before.size(); ++i) {
        const int row = rows.at(find(pointed[static_cast<std::size_t>(i)]));
        changePersistentIndex(before[i], row < 0 ? QModelIndex() : index(row, before[i].column()));
    }
    emit layoutChanged();
    emit countChanged();
}

bool AssetModel::isSortedByName() const
{
    return _sortColumn != kxAssetCategory::getTypeColumn() && _sortColumn != kxAssetCategory::getLastModifiedColumn() &&
           _sortColumn != kxAssetCategory::getStorageLocationColumn() &&
           _sortColumn != kxAssetCategory::getTagsColumn();
}

AssetModel::Order AssetModel::order() const
{
    const auto by = [](auto key) -> Order {
        return [key](const Known *a, const Known *b) {
            const auto &left = key(a);
            const auto &right = key(b);
            return left != right ? left < right : isNameBefore(a, b);
        };
    };
    Order ascending = isNameBefore<Known>;
    if (_sortColumn == kxAssetCategory::getTypeColumn())
        ascending = by([](const Known *entry) -> const QString & { return entry->type; });
    else if (_sortColumn == kxAssetCategory::getLastModifiedColumn())
        ascending = by([](const Known *entry) -> const qint64 & { return entry->modified; });
    else if (_sortColumn == kxAssetCategory::getStorageLocationColumn())
        ascending = by([](const Known *entry) -> const QString & { return entry->folder; });
    else if (_sortColumn == kxAssetCategory::getTagsColumn())
        ascending = [isBefore = TagOrder()](const Known *a, const Known *b) {
            const std::vector<int> &left = a->tags.numbers();
            const std::vector<int> &right = b->tags.numbers();
            return left != right ? isBefore(left, right) : isNameBefore(a, b);
        };
    if (_sortOrder == Qt::AscendingOrder)
        return ascending;
    return [ascending](const Known *a, const Known *b) { return ascending(b, a); };
}

void AssetModel::copyOrderOfNames()
{
    if (_sortOrder == Qt::AscendingOrder)
        _sorted = _byName;
    else
        _sorted.assign(_byName.rbegin(), _byName.rend());
}

/// Of all by name: numbers with the order of what the column says, in which assets share few texts.
std::vector<qint64> AssetModel::sortKeys() const
{
    const auto type = [](const Known &entry) -> const QString & { return entry.type; };
    const auto folder = [](const Known &entry) -> const QString & { return entry.folder; };
    const auto tags = [](const Known &entry) -> const std::vector<int> & { return entry.tags.numbers(); };
    if (_sortColumn == kxAssetCategory::getTypeColumn())
        return ranksOfAll<QString>(_byName, type, std::less<>());
    if (_sortColumn == kxAssetCategory::getStorageLocationColumn())
        return ranksOfAll<QString>(_byName, folder, std::less<>());
    if (_sortColumn == kxAssetCategory::getTagsColumn())
        return ranksOfAll<std::vector<int>>(_byName, tags, TagOrder());
    std::vector<qint64> times;
    times.reserve(_byName.size());
    for (const Known *entry : _byName)
        times.push_back(entry->modified);
    return times;
}

void AssetModel::sort(int column, Qt::SortOrder order)
{
    updateRows([&] {
        _sortColumn = std::max(column, 0);
        _sortOrder = order;
        if (isSortedByName()) {
            copyOrderOfNames();
        } else {
            // Numbers, since comparing what they stand for a million times would take long enough to be felt.
            const std::vector<qint64> keys = sortKeys();
            std::vector<std::pair<qint64, std::size_t>> places;
            places.reserve(keys.size());
            for (std::size_t place = 0; place < keys.size(); ++place)
                places.emplace_back(keys[place], place);
            std::sort(places.begin(), places.end());
            if (order == Qt::DescendingOrder)
                std::reverse(places.begin(), places.end());
            for (std::size_t i = 0; i < places.size(); ++i)
                _sorted[i] = _byName[places[i].second];
        }
        rebuildRows();
    });
}

int AssetModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

int AssetModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    const kxAssetCategoryType widest = _filter.category == Undefined ? Material : _filter.category;
    return kxAssetCategory::getColumnCount(widest);
}

QVariant AssetModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const AssetEntry &shown = entry(index.row());
    switch (role) {
    case UuidRole:
        return QString::fromStdString(shown.uuid);
    case CategoryRole:
        return static_cast<int>(shown.category);
    case DirectoryRole:
        return shown.directory;
    case FavouriteRole:
        return shown.isFavourite;
    case StateRole:
        return _states ? static_cast<int>(_states->stateOf(shown.uuid)) : 0;
    case Qt::ToolTipRole:
        return toolTip(shown);
    case Qt::AccessibleTextRole:
        if (index.column() == 0)
            return spoken(shown);
        role = Qt::DisplayRole; // in a list each cell is read for itself
        break;
    case Qt::EditRole:
        return shown.name;
    case Qt::DisplayRole:
        break;
    default:
        return {};
    }
    kxAssetItem *item = kxAssetItemFactory::the().findItem(shown.uuid);
    return item ? item->data(index.column(), role) : QVariant();
}

QString AssetModel::toolTip(const AssetEntry &entry) const
{
    QStringList lines{QStringLiteral("<b>%1</b>").arg(entry.name.toHtmlEscaped()), entry.type.toHtmlEscaped(),
                      entry.folder.toHtmlEscaped()};
    if (!entry.tags.isEmpty())
        lines.append(tr("Tags: %1").arg(entry.tags.names().join(", ").toHtmlEscaped()));
    if (_states)
        for (const QString &reason : _states->reasonsOf(entry.uuid))
            lines.append(reason.toHtmlEscaped());
    return lines.join(QStringLiteral("<br>"));
}

/// What tiles show by their marks as well, for those who do not see them.
QString AssetModel::spoken(const AssetEntry &entry) const
{
    QStringList parts{entry.name, entry.type};
    if (entry.isFavourite)
        parts.append(tr("favourite"));
    const QStringList reasons = _states ? _states->reasonsOf(entry.uuid) : QStringList();
    const QString asset = parts.join(QStringLiteral(", "));
    return reasons.isEmpty() ? asset : asset + ". " + reasons.join(' ');
}

QVariant AssetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (_filter.category == Undefined && section == 0)
        return role == Qt::DisplayRole ? QVariant(tr("Name")) : QVariant();
    return kxAssetCategory::getHeaderData(_filter.category == Undefined ? Material : _filter.category, section, role);
}

Qt::ItemFlags AssetModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
    return index.column() == 0 ? flags | Qt::ItemIsEditable : flags;
}

bool AssetModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const QString name = value.toString().trimmed();
    if (role != Qt::EditRole || !index.isValid() || name.isEmpty() || name == entry(index.row()).name)
        return false;
    emit renameRequested(QString::fromStdString(entry(index.row()).uuid), name);
    return true;
}

QStringList AssetModel::mimeTypes() const
{
    QStringList types;
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        types.append(DragData::mimeTypeOf(category));
    return types;
}

QMimeData *AssetModel::mimeData(const QModelIndexList &indexes) const
{
    std::vector<DragData::Asset> assets;
    for (const QModelIndex &index : indexes)
        if (index.column() == 0)
            assets.push_back({entry(index.row()).category, entry(index.row()).uuid});
    auto data = std::make_unique<QMimeData>();
    DragData::setAssets(*data, assets);
    return data.release(); // the caller's
}

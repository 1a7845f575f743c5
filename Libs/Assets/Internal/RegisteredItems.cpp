// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/RegisteredItems.h"

#include "Assets/kxAssetItem.h"

#include <algorithm>
#include <cassert>
#include <unordered_set>
#include <utility>

namespace kxAssetsInternal {

namespace {

std::uint64_t leadingBytes(const std::string &uuid)
{
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof prefix; ++i)
        prefix = prefix << 8U | (i < uuid.size() ? static_cast<unsigned char>(uuid[i]) : 0U);
    return prefix;
}

/// Where \a uuid belongs among the first \a count items, in front of its equals. Looks near the end first, in growing
/// steps: what is sorted in comes in descending order, so the place is close to the one before.
std::size_t lowerBoundFromEnd(const std::vector<kxAssetItem *> &items, std::size_t count, const std::string &uuid)
{
    std::size_t step = 1;
    std::size_t first = count;
    while (first > 0 && !(items[first - 1]->uuid() < uuid)) {
        count = first - 1;
        first -= std::min(step, first);
        step *= 2;
    }
    const auto begin = items.begin();
    return static_cast<std::size_t>(
        std::lower_bound(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(count), uuid,
                         [](kxAssetItem *item, const std::string &wanted) { return item->uuid() < wanted; }) -
        begin);
}

} // namespace

kxAssetItem *RegisteredItems::find(const std::string &uuid) const
{
    const auto found = _byUuid.find(uuid);
    if (found == _byUuid.end())
        return nullptr;
    assert(found->second.newest->uuid() == uuid && "the UUID of a registered item changed");
    return found->second.newest;
}

void RegisteredItems::insert(kxAssetItem *item)
{
    const auto [entry, isNew] = _byUuid.try_emplace(item->uuid(), SameUuid{item, {}});
    if (!isNew)
        entry->second.older.push_front(std::exchange(entry->second.newest, item));
    _waiting.push_back({leadingBytes(entry->first), &entry->first, item});
}

std::vector<kxAssetItem *> RegisteredItems::take(const std::vector<std::string> &uuids)
{
    sortIn(); // what waits refers to the keys of the look-up

    std::vector<kxAssetItem *> taken;
    for (const std::string &uuid : uuids)
        if (kxAssetItem *item = takeNewest(uuid))
            taken.push_back(item);

    if (taken.size() == 1) {
        const auto range = std::equal_range(_sorted.begin(), _sorted.end(), taken.front(),
                                            [](kxAssetItem *a, kxAssetItem *b) { return a->uuid() < b->uuid(); });
        _sorted.erase(std::remove(range.first, range.second, taken.front()), range.second);
    } else if (!taken.empty()) {
        const std::unordered_set<kxAssetItem *> gone(taken.begin(), taken.end());
        std::erase_if(_sorted, [&gone](kxAssetItem *item) { return gone.contains(item); });
    }
    return taken;
}

kxAssetItem *RegisteredItems::takeNewest(const std::string &uuid)
{
    const auto found = _byUuid.find(uuid);
    if (found == _byUuid.end())
        return nullptr;
    SameUuid &same = found->second;
    kxAssetItem *newest = same.newest;
    same.older.remove(newest);
    if (same.older.empty()) {
        _byUuid.erase(found);
    } else {
        same.newest = same.older.front();
        same.older.pop_front();
    }
    return newest;
}

std::vector<kxAssetItem *> RegisteredItems::takeAll()
{
    sortIn();
    _byUuid.clear();
    std::vector<kxAssetItem *> items = std::exchange(_sorted, {});
    std::unordered_set<kxAssetItem *> seen;
    seen.reserve(items.size());
    std::erase_if(items, [&seen](kxAssetItem *item) { return !seen.insert(item).second; });
    return items;
}

const std::vector<kxAssetItem *> &RegisteredItems::sorted() const
{
    sortIn();
    return _sorted;
}

std::ptrdiff_t RegisteredItems::position(kxAssetItem *item) const
{
    sortIn();
    const std::string uuid = item->uuid();
    auto at = std::lower_bound(_sorted.begin(), _sorted.end(), uuid,
                               [](kxAssetItem *other, const std::string &wanted) { return other->uuid() < wanted; });
    for (; at != _sorted.end() && (*at)->uuid() == uuid; ++at)
        if (*at == item)
            return at - _sorted.begin();
    return -1;
}

void RegisteredItems::sortIn() const
{
    if (_waiting.empty())
        return;
    // The newest first, and a sort that keeps their order, so that it stays first among its equals.
    std::reverse(_waiting.begin(), _waiting.end());
    std::stable_sort(_waiting.begin(), _waiting.end(), [](const Waiting &a, const Waiting &b) {
        return a.prefix != b.prefix ? a.prefix < b.prefix : *a.uuid < *b.uuid;
    });

    // From the back, so that each item of the array moves once, straight to its final place.
    std::size_t oldEnd = _sorted.size();
    _sorted.resize(oldEnd + _waiting.size());
    for (std::size_t left = _waiting.size(); left > 0; --left) {
        const std::size_t place = lowerBoundFromEnd(_sorted, oldEnd, *_waiting[left - 1].uuid);
        const auto begin = _sorted.begin();
        std::move_backward(begin + static_cast<std::ptrdiff_t>(place), begin + static_cast<std::ptrdiff_t>(oldEnd),
                           begin + static_cast<std::ptrdiff_t>(oldEnd + left));
        _sorted[place + left - 1] = _waiting[left - 1].item;
        oldEnd = place;
    }
    _waiting.clear();
}

} // namespace kxAssetsInternal

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <unordered_map>
#include <vector>

class kxAssetItem;

namespace kxAssetsInternal {

/// The registry's items: an array in ascending order of UUID, and a look-up by UUID that does not need the order.
///
/// New items wait beside the array until somebody looks at it, so that filling it with a million costs one sort and not a
/// million insertions. Of several items with one UUID the newest stands first, and is the one that look-ups find. An object
/// that is inserted again behind a newer one stands in the array twice, and is taken out as one. Owns nothing; an item's
/// UUID must not change while it is held.
class RegisteredItems
{
public:
    /// The newest item with this UUID; null when there is none.
    kxAssetItem *find(const std::string &uuid) const;
    void insert(kxAssetItem *item);

    /// Takes out the newest item of each UUID in turn, in one pass over the array, and returns those that there were.
    std::vector<kxAssetItem *> take(const std::vector<std::string> &uuids);
    /// Each object once.
    std::vector<kxAssetItem *> takeAll();

    std::size_t size() const { return _sorted.size() + _waiting.size(); }
    /// The array. Expects nobody to change the items' UUIDs.
    const std::vector<kxAssetItem *> &sorted() const;
    /// The item's position in the array; -1 when this very object is not held.
    std::ptrdiff_t position(kxAssetItem *item) const;

private:
    struct SameUuid
    {
        kxAssetItem *newest;
        std::forward_list<kxAssetItem *> older;
    };
    /// The first eight bytes of the UUID, as a number that orders like them, decide nearly every comparison.
    struct Waiting
    {
        std::uint64_t prefix;
        const std::string *uuid;
        kxAssetItem *item;
    };

    kxAssetItem *takeNewest(const std::string &uuid);
    void sortIn() const;

    std::unordered_map<std::string, SameUuid> _byUuid;
    mutable std::vector<kxAssetItem *> _sorted;
    mutable std::vector<Waiting> _waiting;
};

} // namespace kxAssetsInternal

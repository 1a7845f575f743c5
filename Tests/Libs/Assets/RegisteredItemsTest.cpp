// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/RegisteredItems.h"

#include "PlainItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

using kxAssetsInternal::RegisteredItems;

namespace {

/// Owns the items that a test puts in.
class RegisteredItemsTest : public testing::Test
{
protected:
    kxAssetItem *insert(const std::string &uuid)
    {
        _owned.push_back(std::make_unique<PlainItem>(Material, uuid));
        _items.insert(_owned.back().get());
        return _owned.back().get();
    }

    std::vector<std::string> uuids() const
    {
        std::vector<std::string> all;
        for (kxAssetItem *item : _items.sorted())
            all.push_back(item->uuid());
        return all;
    }

    RegisteredItems _items;

private:
    std::vector<std::unique_ptr<kxAssetItem>> _owned;
};

} // namespace

TEST_F(RegisteredItemsTest, BeginsEmpty)
{
    PlainItem stranger(Material, "a");

    EXPECT_EQ(_items.size(), 0U);
    EXPECT_TRUE(_items.sorted().empty());
    EXPECT_EQ(_items.find("a"), nullptr);
    EXPECT_EQ(_items.position(&stranger), -1);
    EXPECT_TRUE(_items.take({"a"}).empty());
    EXPECT_TRUE(_items.takeAll().empty());
}

TEST_F(RegisteredItemsTest, OrdersByBytes)
{
    for (const char *uuid : {"b", "", "ä", "a", "B", "aa", "12345678b", "12345678a", "1234567", "~"})
        insert(uuid);

    EXPECT_EQ(uuids(),
              (std::vector<std::string>{"", "1234567", "12345678a", "12345678b", "B", "a", "aa", "b", "~", "ä"}));
}

TEST_F(RegisteredItemsTest, OrdersUuidsWithEmbeddedZeros)
{
    const std::string shorter("a\0", 2);
    const std::string longer("a\0\0", 3);
    insert(longer);
    insert("a");
    insert(shorter);

    EXPECT_EQ(uuids(), (std::vector<std::string>{"a", shorter, longer}));
}

TEST_F(RegisteredItemsTest, FindsWhatWasNotSortedInYet)
{
    kxAssetItem *b = insert("b");
    kxAssetItem *a = insert("a");

    EXPECT_EQ(_items.find("a"), a);
    EXPECT_EQ(_items.find("b"), b);
    EXPECT_EQ(_items.find("c"), nullptr);
    EXPECT_EQ(_items.size(), 2U);
}

TEST_F(RegisteredItemsTest, StaysInOrderWhateverComesInBetween)
{
    insert("m");
    EXPECT_EQ(uuids(), (std::vector<std::string>{"m"}));
    insert("z");
    insert("a");
    EXPECT_EQ(uuids(), (std::vector<std::string>{"a", "m", "z"}));
    insert("n");
    EXPECT_EQ(uuids(), (std::vector<std::string>{"a", "m", "n", "z"}));
}

TEST_F(RegisteredItemsTest, PutsTheNewestOfEqualsFirst)
{
    kxAssetItem *first = insert("a");
    kxAssetItem *second = insert("a");
    EXPECT_EQ(_items.sorted(), (std::vector<kxAssetItem *>{second, first}));

    kxAssetItem *third = insert("a");
    kxAssetItem *fourth = insert("a");

    EXPECT_EQ(_items.sorted(), (std::vector<kxAssetItem *>{fourth, third, second, first}));
    EXPECT_EQ(_items.find("a"), fourth);
    EXPECT_EQ(_items.position(fourth), 0);
    EXPECT_EQ(_items.position(first), 3);
}

TEST_F(RegisteredItemsTest, KnowsObjectsApart)
{
    insert("a");
    PlainItem twin(Material, "a");

    EXPECT_EQ(_items.position(&twin), -1);
}

TEST_F(RegisteredItemsTest, TakesTheNewestOfEquals)
{
    kxAssetItem *first = insert("a");
    kxAssetItem *second = insert("a");

    EXPECT_EQ(_items.take({"a"}), std::vector<kxAssetItem *>{second});
    EXPECT_EQ(_items.find("a"), first);
    EXPECT_EQ(_items.sorted(), std::vector<kxAssetItem *>{first});
    EXPECT_EQ(_items.take({"a"}), std::vector<kxAssetItem *>{first});
    EXPECT_EQ(_items.find("a"), nullptr);
    EXPECT_EQ(_items.size(), 0U);
}

TEST_F(RegisteredItemsTest, TakesAsOneWhatIsHeldTwice)
{
    kxAssetItem *first = insert("a");
    kxAssetItem *second = insert("a");
    _items.insert(first);
    kxAssetItem *other = insert("b");
    EXPECT_EQ(_items.sorted(), (std::vector<kxAssetItem *>{first, second, first, other}));

    EXPECT_EQ(_items.take({"a", "b"}), (std::vector<kxAssetItem *>{first, other}));
    EXPECT_EQ(_items.sorted(), std::vector<kxAssetItem *>{second});

    _items.insert(first);
    _items.insert(second);
    EXPECT_EQ(_items.take({"a"}), std::vector<kxAssetItem *>{second});
    EXPECT_EQ(_items.sorted(), std::vector<kxAssetItem *>{first});

    insert("a");
    _items.insert(first);
    EXPECT_EQ(_items.takeAll().size(), 2U);
    EXPECT_EQ(_items.size(), 0U);
}

TEST_F(RegisteredItemsTest, TakesSeveralAtOnceInTheOrderAskedFor)
{
    kxAssetItem *a1 = insert("a");
    kxAssetItem *b = insert("b");
    kxAssetItem *c = insert("c");
    kxAssetItem *a2 = insert("a");

    EXPECT_EQ(_items.take({"c", "none", "a", "a", "a"}), (std::vector<kxAssetItem *>{c, a2, a1}));
    EXPECT_EQ(_items.sorted(), std::vector<kxAssetItem *>{b});
}

TEST_F(RegisteredItemsTest, TakesAllInOrder)
{
    kxAssetItem *b = insert("b");
    kxAssetItem *a = insert("a");

    EXPECT_EQ(_items.takeAll(), (std::vector<kxAssetItem *>{a, b}));
    EXPECT_EQ(_items.size(), 0U);
    EXPECT_EQ(_items.find("a"), nullptr);
}

TEST_F(RegisteredItemsTest, AgreesWithASortedArrayWhateverIsDone)
{
    std::mt19937 random(7);
    std::vector<kxAssetItem *> model;
    const auto place = [&model](const std::string &uuid) {
        return std::lower_bound(model.begin(), model.end(), uuid,
                                [](kxAssetItem *item, const std::string &wanted) { return item->uuid() < wanted; });
    };
    for (int step = 0; step < 4000; ++step) {
        const std::string uuid = std::to_string(random() % 300);
        const auto at = place(uuid);
        const bool isThere = at != model.end() && (*at)->uuid() == uuid;
        switch (random() % 8) {
        case 0:
            ASSERT_EQ(_items.take({uuid}), isThere ? std::vector<kxAssetItem *>{*at} : std::vector<kxAssetItem *>{});
            if (isThere)
                model.erase(at);
            break;
        case 1:
            ASSERT_EQ(_items.sorted(), model);
            break;
        default:
            ASSERT_EQ(_items.find(uuid), isThere ? *at : nullptr);
            model.insert(at, insert(uuid));
        }
        ASSERT_EQ(_items.size(), model.size());
    }
    EXPECT_EQ(_items.sorted(), model);
}

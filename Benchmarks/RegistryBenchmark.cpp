// SPDX-License-Identifier: Apache-2.0
// Registering a million items, the array in order at the end, against one sort of the same pointers.
#include "Assets/Internal/RegisteredItems.h"
#include "Assets/kxAssetItem.h"
#include "Support/Comparison.h"

#include <QApplication>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int Count = 1000000;

/// An item that is nothing but registered.
class Item : public kxAssetItem
{
public:
    Item()
    {
        initUUID(nullptr, "", false);
        _key = uuid();
    }
    bool save(const QUrl &) override { return false; }
    void initFrom(osg::AttachmentContainerPtr, const std::string &, bool) override {}
    QString mimeType() override { return {}; }
    const std::string &key() const { return _key; }

private:
    std::string _key;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    std::vector<std::unique_ptr<Item>> items(Count);
    std::generate(items.begin(), items.end(), [] { return std::make_unique<Item>(); });
    std::vector<const Item *> unsorted(Count);
    std::transform(items.begin(), items.end(), unsorted.begin(), [](const auto &item) { return item.get(); });

    std::vector<const Item *> sorted;
    auto registry = std::make_unique<kxAssetsInternal::RegisteredItems>();
    kxbench::Comparison comparison(
        [&] {
            for (const auto &item : items)
                if (!registry->find(item->key())) // as the factory asks
                    registry->insert(item.get());
            if (registry->sorted().size() != items.size())
                qFatal("items were lost");
        },
        // Keys are read without the virtual uuid() and its copy: no sort could do with less.
        [&] { std::sort(sorted.begin(), sorted.end(), [](auto *a, auto *b) { return a->key() < b->key(); }); });
    comparison
        .preparedBy([&] { registry = std::make_unique<kxAssetsInternal::RegisteredItems>(); },
                    [&] { sorted = unsorted; })
        .run(5);
    if (!std::equal(sorted.begin(), sorted.end(), registry->sorted().begin()))
        qFatal("the order is wrong");
    kxbench::note("registering 1,000,000 items", comparison);
    kxbench::report("registering 1,000,000 items", "one final sort", 10, 4, comparison.ratio());
}

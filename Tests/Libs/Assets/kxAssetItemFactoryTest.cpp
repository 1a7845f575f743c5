// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemFactory.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxSceneplateService.h"
#include "PlainItem.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

/// Counts what the host is told of sceneplates.
class CountingSceneplateService : public kxSceneplateService
{
public:
    void nodesChanged() override { ++count; }
    QImage previewImage(const kxdNodePtr &) override { return {}; }

    int count = 0;
};

/// Says when it is deleted.
class MortalItem : public PlainItem
{
public:
    MortalItem(std::vector<std::string> &deaths, kxAssetCategoryType category, const std::string &uuid)
        : PlainItem(category, uuid), _deaths(deaths)
    {}
    ~MortalItem() override { _deaths.push_back(PlainItem::uuid()); }

private:
    std::vector<std::string> &_deaths;
};

/// Has a category that its own name for it does not tell.
class DisguisedPlate final : public PlainItem
{
public:
    explicit DisguisedPlate(const std::string &uuid) : PlainItem(Material, uuid) {}
    bool hasCategory(kxAssetCategoryType category) const override { return category == Sceneplate; }
};

/// Says when it is asked for its UUID, and when it is deleted.
class LoggingItem : public PlainItem
{
public:
    LoggingItem(std::vector<std::string> &log, const std::string &uuid) : PlainItem(Material, uuid), _log(log) {}
    ~LoggingItem() override { _log.emplace_back("gone"); }

    std::string uuid() override
    {
        _log.emplace_back("asked");
        return PlainItem::uuid();
    }

private:
    std::vector<std::string> &_log;
};

/// Notes the materials that are destroyed.
class MaterialDeaths : public osg::SceneListener
{
public:
    MaterialDeaths() { osg::FieldContainerFactory::the().addListener(*this); }
    ~MaterialDeaths() override { osg::FieldContainerFactory::the().removeListener(*this); }

    void containerChanged(osg::FieldContainer &, osg::FieldMask) override {}
    void containerDestroyed(osg::FieldContainer &container) override
    {
        if (container.getType().isDerivedFrom(osg::Material::getClassType()))
            ids.push_back(container.getFieldContainerId());
    }

    std::vector<std::uint32_t> ids;
};

// What each of them asks is whether code of any class may do it.
template <class Factory>
concept OffersAdding = requires(Factory &factory)
{
    factory.addItem(nullptr);
};
template <class Factory>
concept OffersMaterialItems = requires(Factory &factory)
{
    factory.materialItems();
};
template <class Factory>
concept OffersTelling = requires(Factory &factory)
{
    factory.sendSceneplatesChangeNotification();
};
template <class Factory>
concept OffersDeleting = requires(Factory &factory)
{
    factory.deleteAllItems();
};

kxAssetItemDocument documentOf(kxAssetCategoryType category, const std::string &uuid, const std::string &name = "x")
{
    kxAssetItemDocument document;
    document.setAssetType(category);
    document.setAssetUUID(uuid);
    document.setAssetName(name);
    return document;
}

kxAssetItemDocument materialOf(kxAssetCategoryType category, const std::string &uuid,
                               osg::FieldContainerType &type = osg::UBRDFMaterial::getClassType())
{
    kxAssetItemDocument document = documentOf(category, uuid);
    document.setMaterialType(type);
    return document;
}

} // namespace

class kxAssetItemFactoryTest : public testing::Test
{
protected:
    kxAssetItemFactoryTest()
    {
        _factory.deleteAllItems();
        QCoreApplication::processEvents();
        kxKernelServiceFactory::the().setService<kxSceneplateService>(&_service);
    }
    ~kxAssetItemFactoryTest() override
    {
        _factory.deleteAllItems();
        QCoreApplication::processEvents();
        kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
    }

    bool tryToAdd(kxAssetItem *item) { return _factory.addItem(item); }

    /// Registers a new item, which the registry owns.
    PlainItem *add(kxAssetCategoryType category, const std::string &uuid, const QUrl &directory = {})
    {
        auto item = std::make_unique<MortalItem>(_deaths, category, uuid);
        item->setDirectoryUrl(directory);
        EXPECT_TRUE(_factory.addItem(item.get()));
        return item.release();
    }

    std::set<kxMaterialAssetItem *> materialItems() { return _factory.materialItems(); }

    /// How often the host was told in the next pass of the event loop.
    int notifications()
    {
        QCoreApplication::processEvents();
        return std::exchange(_service.count, 0);
    }

    kxAssetItemFactory &_factory = kxAssetItemFactory::the();
    std::vector<std::string> _deaths;
    CountingSceneplateService _service;
};

TEST_F(kxAssetItemFactoryTest, IsOneAndTheSame)
{
    EXPECT_EQ(&kxAssetItemFactory::the(), &_factory);
}

TEST_F(kxAssetItemFactoryTest, LetsNobodyMakeASecondOneOrAddItems)
{
    EXPECT_FALSE(std::is_default_constructible_v<kxAssetItemFactory>);
    EXPECT_FALSE(OffersAdding<kxAssetItemFactory>);
    EXPECT_FALSE(OffersMaterialItems<kxAssetItemFactory>);
    EXPECT_FALSE(OffersTelling<kxAssetItemFactory>);

    // What is public is seen.
    EXPECT_TRUE(OffersDeleting<kxAssetItemFactory>);
}

TEST_F(kxAssetItemFactoryTest, OrdersItemsByUuid)
{
    PlainItem *three = add(Material, "3");
    PlainItem *one = add(Material, "1");
    PlainItem *two = add(Material, "2");

    EXPECT_EQ(_factory.itemFromIndex(0), one);
    EXPECT_EQ(_factory.itemFromIndex(1), two);
    EXPECT_EQ(_factory.itemFromIndex(2), three);
    EXPECT_EQ(_factory.indexFromItem(one), 0);
    EXPECT_EQ(_factory.indexFromItem(three), 2);
    EXPECT_EQ(_factory.itemCount(), 3);
}

TEST_F(kxAssetItemFactoryTest, HasNoItemsBesideItsIndices)
{
    EXPECT_EQ(_factory.itemFromIndex(0), nullptr);
    add(Material, "1");

    EXPECT_EQ(_factory.itemFromIndex(-1), nullptr);
    EXPECT_EQ(_factory.itemFromIndex(_factory.itemCount()), nullptr);
}

TEST_F(kxAssetItemFactoryTest, HasNoIndexForStrangers)
{
    add(Material, "1");
    const PlainItem twin(Material, "1");
    const PlainItem stranger(Material, "2");

    EXPECT_EQ(_factory.indexFromItem(&twin), -1);
    EXPECT_EQ(_factory.indexFromItem(&stranger), -1);
    EXPECT_EQ(_factory.indexFromItem(nullptr), -1);
}

TEST_F(kxAssetItemFactoryTest, FindsTheIndexAmongEqualUuids)
{
    PlainItem *first = add(Material, "1");
    PlainItem *second = add(Material, "1");

    EXPECT_EQ(_factory.indexFromItem(second), 0);
    EXPECT_EQ(_factory.indexFromItem(first), 1);
}

TEST_F(kxAssetItemFactoryTest, FindsItemsByExactUuid)
{
    PlainItem *item = add(Material, "ab");

    EXPECT_EQ(_factory.findItem("ab"), item);
    EXPECT_EQ(_factory.findItem("AB"), nullptr);
    EXPECT_EQ(_factory.findItem("a"), nullptr);
    EXPECT_EQ(_factory.findItem(""), nullptr);
}

TEST_F(kxAssetItemFactoryTest, FindsAllItemsWithoutFilters)
{
    PlainItem *material = add(Material, "1", QUrl("file:///lib/m"));
    PlainItem *geometry = add(Geometry, "2");

    EXPECT_EQ(_factory.findItems(Undefined, QUrl()), (std::set<kxAssetItem *>{material, geometry}));
}

TEST_F(kxAssetItemFactoryTest, FindsItemsOfACategory)
{
    PlainItem *material = add(Material, "1");
    add(Geometry, "2");

    EXPECT_EQ(_factory.findItems(Material, QUrl()), std::set<kxAssetItem *>{material});
    EXPECT_TRUE(_factory.findItems(Sceneplate, QUrl()).empty());
}

TEST_F(kxAssetItemFactoryTest, GoesByTheCategoryThatAnItemSaysItHas)
{
    auto item = std::make_unique<DisguisedPlate>("1");
    ASSERT_TRUE(tryToAdd(item.get()));
    kxAssetItem *plate = item.release();

    EXPECT_EQ(_factory.findItems(Sceneplate, QUrl()), std::set<kxAssetItem *>{plate});
    EXPECT_TRUE(_factory.findItems(Material, QUrl()).empty());
    EXPECT_EQ(notifications(), 1) << "the host is told of it";
}

TEST_F(kxAssetItemFactoryTest, FindsItemsAnywhereBelowAFolder)
{
    PlainItem *near = add(Material, "1", QUrl("file:///lib/near"));
    PlainItem *far = add(Material, "2", QUrl("file:///lib/a/b/far"));
    add(Material, "3", QUrl("file:///lib"));
    add(Material, "4", QUrl("file:///library/x"));
    add(Material, "5", QUrl("file:///LIB/x"));
    add(Material, "6");

    EXPECT_EQ(_factory.findItems(Undefined, QUrl("file:///lib")), (std::set<kxAssetItem *>{near, far}));
}

TEST_F(kxAssetItemFactoryTest, FindsNothingBelowAFolderWithASlashAtItsEnd)
{
    // The slash that separates is put behind the text as it is.
    add(Material, "1", QUrl("file:///lib/x"));

    EXPECT_TRUE(_factory.findItems(Undefined, QUrl("file:///lib/")).empty());
}

TEST_F(kxAssetItemFactoryTest, FindsItemsWithoutADirectoryInNone)
{
    PlainItem *nowhere = add(Material, "1");
    add(Material, "2", QUrl("file:///lib/x"));

    EXPECT_EQ(_factory.findItems(QUrl()), std::set<kxAssetItem *>{nowhere});
}

TEST_F(kxAssetItemFactoryTest, CombinesBothFilters)
{
    add(Geometry, "1", QUrl("file:///lib/x"));
    PlainItem *inside = add(Material, "2", QUrl("file:///lib/y"));
    add(Material, "3", QUrl("file:///other/y"));

    EXPECT_EQ(_factory.findItems(Material, QUrl("file:///lib")), std::set<kxAssetItem *>{inside});
}

TEST_F(kxAssetItemFactoryTest, FindsItemsInExactlyOneDirectory)
{
    const QUrl directory("file:///lib/x");
    PlainItem *item = add(Material, "1", directory);
    PlainItem *other = add(Geometry, "2", directory);
    add(Material, "3", QUrl("file:///lib/x/y"));

    EXPECT_EQ(_factory.findItems(directory), (std::set<kxAssetItem *>{item, other}));
    EXPECT_FALSE(_factory.findItems(Undefined, directory).contains(item));
    EXPECT_TRUE(_factory.findItems(QUrl("file:///lib")).empty());
}

TEST_F(kxAssetItemFactoryTest, CreatesMaterialItems)
{
    kxAssetItem *item = _factory.createOrUpdateItem(materialOf(Material, "1"));

    ASSERT_NE(item, nullptr);
    EXPECT_NE(dynamic_cast<kxMaterialAssetItem *>(item), nullptr);
    EXPECT_EQ(dynamic_cast<kxEnvironmentMaterialAssetItem *>(item), nullptr);
    EXPECT_EQ(item->uuid(), "1");
    EXPECT_EQ(item->name(), "x");
    EXPECT_EQ(_factory.findItem("1"), item);
    EXPECT_EQ(_factory.itemCount(), 1);
}

TEST_F(kxAssetItemFactoryTest, CreatesEnvironmentMaterialItems)
{
    kxAssetItem *item =
        _factory.createOrUpdateItem(materialOf(Environment, "1", osg::USkyEnvironmentMaterial::getClassType()));

    ASSERT_NE(item, nullptr);
    EXPECT_NE(dynamic_cast<kxEnvironmentMaterialAssetItem *>(item), nullptr);
    EXPECT_TRUE(item->hasCategory(Environment));
    EXPECT_NE(dynamic_cast<kxEnvironmentMaterialAssetItem *>(
                  _factory.createOrUpdateItem(materialOf(Environment, "2", osg::UBRDFMaterial::getClassType()))),
              nullptr)
        << "whatever type it is";
}

TEST_F(kxAssetItemFactoryTest, CreatesNothingForUnknownCategories)
{
    const kxLogRecorder log;

    EXPECT_EQ(_factory.createOrUpdateItem(documentOf(Undefined, "1")), nullptr);

    EXPECT_EQ(_factory.itemCount(), 0);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(kxAssetItemFactoryTest, MakesItemsOfTheClassThatTheDocumentCallsFor)
{
    QDomDocument unknownType("document");
    ASSERT_TRUE(unknownType.setContent(QByteArray("<item><category>Environments</category><uuid>4</uuid>"
                                                  "<material><type>NoSuchType</type></material></item>")));
    const auto make = [this](const kxAssetItemDocument &document) { return _factory.createOrUpdateItem(document); };

    EXPECT_TRUE(dynamic_cast<kxGeometryAssetItem *>(make(documentOf(Geometry, "1", "Chair"))));
    EXPECT_TRUE(dynamic_cast<kxSceneplateAssetItem *>(make(documentOf(Sceneplate, "2", "Logo"))));
    EXPECT_TRUE(dynamic_cast<kxEnvironmentNodeAssetItem *>(make(documentOf(Environment, "3", "Forest"))));
    EXPECT_TRUE(dynamic_cast<kxEnvironmentNodeAssetItem *>(make(kxAssetItemDocument(unknownType))));

    EXPECT_EQ(_factory.itemCount(), 4);
    EXPECT_EQ(_factory.findItem("1")->name(), "Chair");
}

TEST_F(kxAssetItemFactoryTest, UpdatesAKnownItemInPlace)
{
    kxAssetItem *item = _factory.createOrUpdateItem(materialOf(Material, "1"));
    kxAssetItemDocument changed = documentOf(Geometry, "1", "Renamed");

    EXPECT_EQ(_factory.createOrUpdateItem(changed), item);

    EXPECT_EQ(_factory.itemCount(), 1);
    EXPECT_EQ(item->name(), "Renamed");
    EXPECT_EQ(item->category(), Geometry);
    EXPECT_NE(dynamic_cast<kxMaterialAssetItem *>(item), nullptr);
}

TEST_F(kxAssetItemFactoryTest, UpdatesAKnownItemWhateverItsNewCategory)
{
    PlainItem *item = add(Material, "1");

    EXPECT_EQ(_factory.createOrUpdateItem(documentOf(Undefined, "1", "Renamed")), item);

    EXPECT_EQ(item->name(), "Renamed");
    EXPECT_EQ(item->category(), Undefined);
}

TEST_F(kxAssetItemFactoryTest, CountsEnvironmentMaterialsAmongMaterialItemsButNotInTheCategory)
{
    kxAssetItem *material = _factory.createOrUpdateItem(materialOf(Material, "1"));
    kxAssetItem *environment =
        _factory.createOrUpdateItem(materialOf(Environment, "2", osg::USkyEnvironmentMaterial::getClassType()));
    add(Material, "3");

    EXPECT_FALSE(_factory.findItems(Material, QUrl()).contains(environment));
    EXPECT_TRUE(_factory.findItems(Environment, QUrl()).contains(environment));
    EXPECT_EQ(materialItems(), (std::set<kxMaterialAssetItem *>{dynamic_cast<kxMaterialAssetItem *>(material),
                                                                dynamic_cast<kxMaterialAssetItem *>(environment)}));
}

TEST_F(kxAssetItemFactoryTest, RefusesNull)
{
    EXPECT_FALSE(tryToAdd(nullptr));
    EXPECT_EQ(_factory.itemCount(), 0);
}

TEST_F(kxAssetItemFactoryTest, RefusesTheSameObjectTwice)
{
    PlainItem *item = add(Material, "1-2%s");
    const kxLogRecorder log;

    EXPECT_FALSE(tryToAdd(item));

    EXPECT_EQ(log.lines(kxLogLevel::Error), std::vector<std::string>{"Item UUID already in use! 1-2%s"});
    EXPECT_EQ(_factory.itemCount(), 1);
}

TEST_F(kxAssetItemFactoryTest, LooksForTheSameObjectInFrontOnly)
{
    PlainItem *item = add(Material, "1");
    PlainItem *newer = add(Material, "1");
    const kxLogRecorder log;

    EXPECT_TRUE(tryToAdd(item));

    EXPECT_TRUE(log.lines().empty());
    ASSERT_EQ(_factory.itemCount(), 3);
    EXPECT_EQ(_factory.itemFromIndex(0), item);
    EXPECT_EQ(_factory.itemFromIndex(1), newer);
    EXPECT_EQ(_factory.itemFromIndex(2), item);
    EXPECT_EQ(_factory.findItem("1"), item);
    EXPECT_FALSE(tryToAdd(item)) << "now it is in front";
}

TEST_F(kxAssetItemFactoryTest, DeletesOnceWhatStandsThereTwice)
{
    PlainItem *item = add(Material, "1");
    PlainItem *newer = add(Material, "1");
    tryToAdd(item);

    _factory.deleteItem("1");

    EXPECT_EQ(_deaths, std::vector<std::string>{"1"});
    ASSERT_EQ(_factory.itemCount(), 1) << "no place of it is left";
    EXPECT_EQ(_factory.itemFromIndex(0), newer);

    add(Material, "1");
    tryToAdd(newer);
    _factory.deleteAllItems();
    EXPECT_EQ(_deaths.size(), 3U) << "each once";
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostNothingOfWhatItRefuses)
{
    PlainItem *plate = add(Sceneplate, "1");
    EXPECT_EQ(notifications(), 1);

    EXPECT_FALSE(tryToAdd(plate));
    EXPECT_FALSE(tryToAdd(nullptr));

    EXPECT_EQ(notifications(), 0);
}

TEST_F(kxAssetItemFactoryTest, PutsAnotherObjectWithTheSameUuidInFront)
{
    PlainItem *first = add(Material, "1");
    const kxLogRecorder log;

    PlainItem *second = add(Material, "1");

    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(_factory.itemFromIndex(0), second);
    EXPECT_EQ(_factory.itemFromIndex(1), first);
    EXPECT_EQ(_factory.findItem("1"), second);
}

TEST_F(kxAssetItemFactoryTest, DeletesOneItem)
{
    add(Material, "1");
    PlainItem *kept = add(Material, "2");

    _factory.deleteItem("1");
    _factory.deleteItem("none");

    EXPECT_EQ(_deaths, std::vector<std::string>{"1"});
    EXPECT_EQ(_factory.findItem("1"), nullptr);
    EXPECT_EQ(_factory.itemFromIndex(0), kept);
    EXPECT_EQ(_factory.itemCount(), 1);
}

TEST_F(kxAssetItemFactoryTest, DeletesASetOfItems)
{
    PlainItem *one = add(Material, "1");
    PlainItem *two = add(Material, "2");
    PlainItem *three = add(Material, "3");

    _factory.deleteItems({nullptr, one, three});

    EXPECT_EQ(std::set<std::string>(_deaths.begin(), _deaths.end()), (std::set<std::string>{"1", "3"}));
    EXPECT_EQ(_deaths.size(), 2U);
    EXPECT_EQ(_factory.itemFromIndex(0), two);
    EXPECT_EQ(_factory.itemCount(), 1);
}

TEST_F(kxAssetItemFactoryTest, DeletesASetInItsOrder)
{
    const std::set<kxAssetItem *> items = {add(Material, "2"), add(Geometry, "3"), add(Sceneplate, "1")};
    std::vector<std::string> uuids;
    uuids.reserve(items.size());
    for (kxAssetItem *item : items)
        uuids.push_back(item->uuid());

    _factory.deleteItems(items);

    EXPECT_EQ(_deaths, uuids);
}

TEST_F(kxAssetItemFactoryTest, DeletesTheRegisteredItemOfAStrangersUuid)
{
    add(Material, "1");
    PlainItem twin(Material, "1");
    PlainItem stranger(Material, "2");

    _factory.deleteItems({&twin, &stranger});

    EXPECT_EQ(_deaths, std::vector<std::string>{"1"});
    EXPECT_EQ(_factory.itemCount(), 0);
}

TEST_F(kxAssetItemFactoryTest, ReadsAllUuidsOfASetBeforeDeletingAny)
{
    // Deleting the one through the other's UUID must not leave the set with an item that is gone.
    PlainItem *first = add(Material, "1");
    PlainItem *second = add(Material, "1");

    _factory.deleteItems({first, second});

    EXPECT_EQ(_deaths, (std::vector<std::string>{"1", "1"}));
    EXPECT_EQ(_factory.itemCount(), 0);
}

TEST_F(kxAssetItemFactoryTest, ReadsNoUuidOfASetAfterTheFirstDeletion)
{
    std::vector<std::string> log;
    std::set<kxAssetItem *> items;
    for (const char *uuid : {"1", "2", "3"}) {
        auto item = std::make_unique<LoggingItem>(log, uuid);
        ASSERT_TRUE(tryToAdd(item.get()));
        items.insert(item.release());
    }
    log.clear();

    _factory.deleteItems(items);

    const auto firstDeath = std::find(log.begin(), log.end(), "gone");
    EXPECT_EQ(std::vector<std::string>(firstDeath, log.end()), (std::vector<std::string>{"gone", "gone", "gone"}));
}

TEST_F(kxAssetItemFactoryTest, DeletesAllItemsInOrder)
{
    add(Material, "3");
    add(Sceneplate, "1");
    add(Geometry, "2");

    _factory.deleteAllItems();

    EXPECT_EQ(_deaths, (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_EQ(_factory.itemCount(), 0);
    EXPECT_EQ(_factory.findItem("2"), nullptr);
}

TEST_F(kxAssetItemFactoryTest, LeavesItsItemsUndeletedWhenItGoesItself)
{
    // It went through them even when the program ended by exit(), which leaves the application object alive.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    struct DeadlyItem : PlainItem
    {
        ~DeadlyItem() override { std::_Exit(1); }
    };

    EXPECT_EXIT(
        {
            // Static, so that nobody takes what is left for lost.
            static kxAssetItem *const item = std::make_unique<DeadlyItem>().release();
            tryToAdd(item);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostOfNewSceneplates)
{
    add(Sceneplate, "1");

    EXPECT_EQ(notifications(), 1);
    EXPECT_EQ(notifications(), 0);
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostOfACreatedSceneplateButNotOfAnUpdatedOne)
{
    kxAssetItem *created = _factory.createOrUpdateItem(documentOf(Sceneplate, "1"));
    EXPECT_EQ(notifications(), 1);

    EXPECT_EQ(_factory.createOrUpdateItem(documentOf(Sceneplate, "1", "Renamed")), created);
    EXPECT_EQ(notifications(), 0);
}

TEST_F(kxAssetItemFactoryTest, KeepsOtherNewItemsToItself)
{
    add(Material, "1");
    add(Geometry, "2");
    add(Environment, "3");
    _factory.createOrUpdateItem(materialOf(Material, "4"));

    EXPECT_EQ(notifications(), 0);
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostNothingAtOnce)
{
    CountingSceneplateService immediate;
    kxKernelServiceFactory::the().setService<kxSceneplateService>(&immediate);
    add(Sceneplate, "1");

    EXPECT_EQ(immediate.count, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(immediate.count, 1);
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostOnceForManyChanges)
{
    for (const char *uuid : {"1", "2", "3"})
        add(Sceneplate, uuid);
    EXPECT_EQ(notifications(), 1);

    for (const char *uuid : {"1", "2", "3"})
        _factory.deleteItem(uuid);
    EXPECT_EQ(notifications(), 1);
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostAsSoonAsTheFirstOfManyChangesAllows)
{
    // Timers fire in the order in which they were started: one that a change started anew would fire after this one.
    add(Sceneplate, "1");
    QTimer between;
    between.setSingleShot(true);
    int toldBefore = -1;
    QObject::connect(&between, &QTimer::timeout, &between, [this, &toldBefore] { toldBefore = _service.count; });
    between.start(0);

    _factory.deleteItem("1");
    add(Sceneplate, "2");

    EXPECT_EQ(notifications(), 1);
    EXPECT_EQ(toldBefore, 1);
}

TEST_F(kxAssetItemFactoryTest, TellsTheHostOfEveryDeletionWhateverItWas)
{
    add(Geometry, "1");
    EXPECT_EQ(notifications(), 0);

    _factory.deleteItem("1");
    EXPECT_EQ(notifications(), 1);
    _factory.deleteItem("none");
    EXPECT_EQ(notifications(), 1);
    _factory.deleteItems({});
    EXPECT_EQ(notifications(), 1);
    _factory.deleteAllItems();
    EXPECT_EQ(notifications(), 1);
}

TEST_F(kxAssetItemFactoryTest, DoesWithoutASceneplateService)
{
    kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
    kxtest::CapturedOutput errors(kxtest::CapturedOutput::StandardError);

    _factory.deleteItem("1");
    QCoreApplication::processEvents();

    EXPECT_EQ(errors.text(), "kxKernelServiceFactory: service 'kxSceneplateService' is NULL!\n");
}

TEST_F(kxAssetItemFactoryTest, PrintsTheItemsBelowAUrl)
{
    add(Material, "2", QUrl("file:///lib/b ü"));
    add(Material, "1", QUrl("file:///library/a"));
    add(Material, "3", QUrl("file:///other"));
    add(Material, "4", QUrl("file:///LIB/c"));
    kxtest::CapturedOutput output;

    _factory.printItems(QUrl("file:///lib"));

    EXPECT_EQ(output.text(), "printItems\nfile:///library/a\n   1\nfile:///lib/b ü\n   2\n");
}

TEST_F(kxAssetItemFactoryTest, PrintsAllItemsForAnEmptyUrl)
{
    add(Material, "2", QUrl("file:///lib/b"));
    add(Material, "1");
    kxtest::CapturedOutput output;

    _factory.printItems(QUrl());

    EXPECT_EQ(output.text(), "printItems\n\n   1\nfile:///lib/b\n   2\n");
}

TEST_F(kxAssetItemFactoryTest, HasMaterialItemsReleaseTheirMaterials)
{
    auto item = std::make_unique<kxMaterialAssetItem>();
    osg::FCRef<osg::Material> material = osg::MaterialPtr(osg::UBRDFMaterial::create());
    item->initFrom(material, "1", true);
    ASSERT_TRUE(tryToAdd(item.get()));
    const kxMaterialAssetItem *registered = item.release();
    ASSERT_EQ(material->getRefCount(), 2);

    _factory.cleanupMaterialItems();
    EXPECT_EQ(material->getRefCount(), 1);
    EXPECT_EQ(registered->getMaterial(), material.get());

    material.reset();
    EXPECT_FALSE(registered->getMaterial());
}

TEST_F(kxAssetItemFactoryTest, HasMaterialItemsReleaseTheirMaterialsInTheOrderOfTheirAddresses)
{
    std::set<kxMaterialAssetItem *> items;
    while (items.size() < 3)
        items.insert(std::make_unique<kxMaterialAssetItem>().release());
    std::vector<std::uint32_t> expected;
    int number = 3; // so that the order of UUIDs is the other way round
    for (kxMaterialAssetItem *item : items) {
        const osg::FCRef<osg::Material> material = osg::MaterialPtr(osg::UBRDFMaterial::create());
        item->initFrom(material, std::to_string(number--), true);
        expected.push_back(material->getFieldContainerId());
        ASSERT_TRUE(tryToAdd(item));
    }
    const MaterialDeaths deaths;

    _factory.cleanupMaterialItems();

    EXPECT_EQ(deaths.ids, expected);
}

#ifndef NDEBUG
TEST(kxAssetItemFactoryThreadTest, IsFirstUsedOnTheMainThread)
{
    // In a process of its own, in which nobody has used it before.
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(std::thread([] { kxAssetItemFactory::the(); }).join(),
                 "the registry is first used on the main thread");
}
#endif

// SPDX-License-Identifier: Apache-2.0
// What back-ends that were compiled elsewhere rely on: the order of the operations, and what all back-ends share.
#include "Assets/kxLocalUrlManager.h"
#include "TestUrlManager.h"
#include "VirtualTable.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <type_traits>
#include <utility>

namespace {

/// The place of a virtual operation in the table of its class: a pointer to it holds the offset there, plus one.
template <class Operation> std::size_t slotOf(Operation operation)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof operation >= sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    return static_cast<std::size_t>(offset - 1) / sizeof(void *);
}

using Base = kxUrlManager;
using Category = kxAssetCategoryType;
using Items = std::set<kxAssetItem *>;

/// The settings that all back-ends share, seen as a back-end sees them.
class Settings final : public TestUrlManager
{
public:
    using kxUrlManager::_previewImageFileFormat;
    using kxUrlManager::_previewImageFileFormats;
    using kxUrlManager::_writeAutomotiveMaterialFiles;
};

// What each of them asks is whether code of any class may use it.
template <class T>
concept OffersNumberSuffix = requires
{
    T::getNumberSuffix(QString());
};
template <class T>
concept OffersImageFilter = requires(T &manager)
{
    manager.getImageFileFilter(QUrl());
};
template <class T>
concept OffersFormats = requires
{
    T::_previewImageFileFormats;
};
template <class T>
concept OffersFormat = requires
{
    T::_previewImageFileFormat;
};
template <class T>
concept OffersConverterSetting = requires
{
    T::_writeAutomotiveMaterialFiles;
};
template <class T>
concept OffersBackEnds = requires
{
    T::_registeredManagers;
};
template <class T>
concept OffersInstance = requires
{
    T::_instance;
};
template <class T>
concept OffersDirectory = requires
{
    T::getDir(QUrl());
};
template <class T>
concept OffersEnsuring = requires
{
    T::ensureDirectoryExists(QUrl());
};
template <class T>
concept OffersSavingImages = requires(T &manager)
{
    manager.saveImageFile(QString(), nullptr);
};
template <class T>
concept OffersUiString = requires
{
    T::getUiString(QUrl());
};
template <class T>
concept OffersRemoving = requires
{
    T::removeRecursively(QDir());
};

} // namespace

TEST(kxUrlManagerInterfaceTest, KeepsToBackEndsWhatOnlyTheyNeed)
{
    EXPECT_FALSE(OffersNumberSuffix<kxLocalUrlManager>);
    EXPECT_FALSE(OffersImageFilter<kxLocalUrlManager>);
    EXPECT_FALSE(OffersFormats<kxLocalUrlManager>);
    EXPECT_FALSE(OffersFormat<kxLocalUrlManager>);
    EXPECT_FALSE(OffersConverterSetting<kxLocalUrlManager>);
    EXPECT_FALSE(OffersBackEnds<kxLocalUrlManager>);
    EXPECT_FALSE(OffersBackEnds<Settings>) << "not even to them";
    EXPECT_FALSE(OffersInstance<kxLocalUrlManager>);
    EXPECT_FALSE(OffersDirectory<kxLocalUrlManager>);
    EXPECT_FALSE(OffersEnsuring<kxLocalUrlManager>);
    EXPECT_FALSE(OffersSavingImages<kxLocalUrlManager>);

    // What is public is seen.
    EXPECT_TRUE(OffersUiString<kxLocalUrlManager> && OffersRemoving<kxLocalUrlManager>);
    EXPECT_TRUE(OffersNumberSuffix<TestUrlManager> && OffersImageFilter<TestUrlManager>);
    EXPECT_TRUE(OffersFormats<Settings> && OffersFormat<Settings> && OffersConverterSetting<Settings>);
}

TEST(kxUrlManagerInterfaceTest, HasNoOperationsBesideThese)
{
    EXPECT_EQ(tableEntriesOf("_ZTV12kxUrlManager"), 50U);
    EXPECT_EQ(tableEntriesOf("_ZTV17kxLocalUrlManager"), 51U);
}

TEST(kxUrlManagerInterfaceTest, OffersWhatItImplementsToThoseWhoOnlyRead)
{
    using Loading = bool (Base::*)(const QUrl &, osg::NodePtr &) const;

    EXPECT_TRUE((std::is_same_v<decltype(&Base::containsItems), bool (Base::*)(const QUrl &, Category) const>));
    EXPECT_TRUE((std::is_same_v<decltype(&Base::containsItem),
                                bool (Base::*)(const QUrl &, Category, const std::string &) const>));
    EXPECT_TRUE(
        (std::is_same_v<decltype(&Base::removeOldItemDirectory), bool (Base::*)(kxAssetItem *, kxAssetItem *) const>));
    EXPECT_TRUE((std::is_same_v<decltype(&Base::loadPixmapFromDir), bool (Base::*)(const QUrl &, QPixmap &) const>));
    EXPECT_TRUE((std::is_same_v<decltype(&Base::loadImageFromDir), bool (Base::*)(const QUrl &, QImage *) const>));
    EXPECT_TRUE(
        (std::is_same_v<decltype(&Base::loadMaterialFromDir), bool (Base::*)(const QUrl &, osg::MaterialPtr &) const>));
    EXPECT_TRUE((std::is_same_v<decltype(&Base::loadSceneplateFromDir), Loading>));
    EXPECT_TRUE((std::is_same_v<decltype(&Base::loadNodeFromDir), Loading>));
}

TEST(kxUrlManagerInterfaceTest, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(slotOf(&Base::accepts), 0U);
    EXPECT_EQ(slotOf(&Base::subDirectoryCount), 1U);
    EXPECT_EQ(slotOf(&Base::subDirectories), 2U);
    EXPECT_EQ(slotOf(&Base::files), 3U);
    EXPECT_EQ(slotOf<void (Base::*)(const QUrl &, Category, QProgressDialog *) const>(&Base::collectItems), 4U);
    EXPECT_EQ(
        slotOf<void (Base::*)(const QUrl &, Category, Items &, QProgressDialog *, bool) const>(&Base::collectItems),
        5U);
    EXPECT_EQ(slotOf(&Base::containsItems), 6U);
    EXPECT_EQ(slotOf(&Base::containsItem), 7U);
    EXPECT_EQ(slotOf(&Base::isDirectory), 8U);
    EXPECT_EQ(slotOf(&Base::isFile), 9U);
    EXPECT_EQ(slotOf(&Base::exists), 10U);
    EXPECT_EQ(slotOf(&Base::expand), 11U);
    EXPECT_EQ(slotOf(&Base::extendByDirectory), 12U);
    EXPECT_EQ(slotOf(&Base::getDirectoryUrl), 13U);
    EXPECT_EQ(slotOf(&Base::getParentDirectoryUrl), 14U);
    EXPECT_EQ(slotOf(&Base::getUniqueDirectoryName), 15U);
    EXPECT_EQ(slotOf(&Base::isSameDirectory), 16U);
    EXPECT_EQ(slotOf(&Base::makeUniqueDirectory), 17U);
    EXPECT_EQ(slotOf(&Base::makeDirectory), 18U);
    EXPECT_EQ(slotOf(&Base::makePath), 19U);
    EXPECT_EQ(slotOf(&Base::removeDirectory), 20U);
    EXPECT_EQ(slotOf(&Base::removeOldItemDirectory), 21U);
    EXPECT_EQ(slotOf<bool (Base::*)(const QUrl &, const QUrl &) const>(&Base::rename), 22U);
    EXPECT_EQ(slotOf<QUrl (Base::*)(const QUrl &, const QString &, const QString &)>(&Base::rename), 23U);
    EXPECT_EQ(slotOf(&Base::move), 24U);
    EXPECT_EQ(slotOf(&Base::writeMaterialFiles), 25U);
}

TEST(kxUrlManagerInterfaceTest, KeepsTheOrderOfWhatLoadsAndSaves)
{
    EXPECT_EQ(slotOf(&Base::loadPixmapFromDir), 26U);
    EXPECT_EQ(slotOf(&Base::loadPixmapFromFile), 27U);
    EXPECT_EQ(slotOf(&Base::loadImageFromDir), 28U);
    EXPECT_EQ(slotOf(&Base::loadImageFromFile), 29U);
    EXPECT_EQ(slotOf(&Base::loadMaterialFromDir), 30U);
    EXPECT_EQ(slotOf(&Base::loadMaterialFromFile), 31U);
    EXPECT_EQ(slotOf<bool (Base::*)(const QUrl &, QDomDocument &, QUrl &) const>(&Base::loadDocumentFromDir), 32U);
    EXPECT_EQ(slotOf<bool (Base::*)(const QUrl &, QDomDocument &) const>(&Base::loadDocumentFromDir), 33U);
    EXPECT_EQ(slotOf(&Base::loadDocumentFromFile), 34U);
    EXPECT_EQ(slotOf(&Base::loadSceneplateFromDir), 35U);
    EXPECT_EQ(slotOf(&Base::loadSceneplateFromFile), 36U);
    EXPECT_EQ(slotOf(&Base::loadNodeFromDir), 37U);
    EXPECT_EQ(slotOf(&Base::loadNodeFromFile), 38U);
    EXPECT_EQ(slotOf(&Base::saveDocumentToFile), 39U);
    EXPECT_EQ(slotOf(&Base::saveMaterialAsset), 40U);
    EXPECT_EQ(slotOf(&Base::saveEnvironmentNodeAsset), 41U);
    EXPECT_EQ(slotOf(&Base::saveSceneNodeAsset), 42U);
    EXPECT_EQ(slotOf(&Base::directoryName), 43U);
    EXPECT_EQ(slotOf(&Base::fileName), 44U);
    EXPECT_EQ(slotOf(&Base::owner), 45U);
    EXPECT_EQ(slotOf(&Base::lastModified), 46U);
    EXPECT_EQ(slotOf(&Base::uiString), 47U);
    EXPECT_EQ(slotOf(&Base::icon), 48U);
    EXPECT_EQ(slotOf(&Base::checksum), 49U);
    EXPECT_EQ(slotOf<bool (kxLocalUrlManager::*)(const QUrl &, bool) const>(&kxLocalUrlManager::writeMaterialFiles),
              50U);
}

TEST(kxUrlManagerInterfaceTest, IsNotDeletedThroughTheInterfaceNorMadeByOthers)
{
    EXPECT_TRUE(std::is_abstract_v<kxUrlManager>);
    EXPECT_FALSE(std::has_virtual_destructor_v<kxUrlManager>);
    EXPECT_FALSE(std::is_default_constructible_v<kxLocalUrlManager>);
}

TEST(kxUrlManagerInterfaceTest, FindsNoBackEndWhereNoneIsRegistered)
{
    // In a process of its own: other tests register some for good.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const QUrl url("file:///a%20b");
            const bool isUnknown = !kxUrlManager::getUrlManager(url) && !kxUrlManager::getUrlManager(QUrl());
            std::_Exit(isUnknown && kxUrlManager::getUiString(url) == "file:///a b" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(kxUrlManagerInterfaceTest, StoresWhatItIsToldWithoutATest)
{
    EXPECT_EQ(Settings::_previewImageFileFormat, 0);
    EXPECT_FALSE(Settings::_writeAutomotiveMaterialFiles);

    for (const int index : {1, -3, 4711}) {
        kxUrlManager::setPreviewImageFileFormat(index);
        EXPECT_EQ(Settings::_previewImageFileFormat, index);
    }
    kxUrlManager::setWriteAutomotiveMaterialFiles(true);
    EXPECT_TRUE(Settings::_writeAutomotiveMaterialFiles);

    kxUrlManager::setPreviewImageFileFormat(0);
    kxUrlManager::setWriteAutomotiveMaterialFiles(false);
}

TEST(kxUrlManagerInterfaceTest, FillsTheFormatsOnlyWhereThereAreNone)
{
    const Settings first;
    const auto formats = std::exchange(Settings::_previewImageFileFormats, {"gif"});
    const Settings second;

    EXPECT_EQ(Settings::_previewImageFileFormats, (std::vector<std::string>{"gif"})) << "left as they are";
    Settings::_previewImageFileFormats.clear();
    const Settings third;
    EXPECT_EQ(Settings::_previewImageFileFormats, (std::vector<std::string>{"png", "vif"}));

    Settings::_previewImageFileFormats = formats;
}

#ifndef QT_NO_DEBUG
TEST(kxUrlManagerInterfaceTest, HasTheLocalBackEndAskedForOnTheMainThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(std::thread([] { kxLocalUrlManager::the(); }).join(), "ASSERT: .*isOnMainThread");
}
#endif

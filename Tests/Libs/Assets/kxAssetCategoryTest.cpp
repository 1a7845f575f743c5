// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetCategory.h"

#include <QTranslator>

#include <gtest/gtest.h>

#include <cstdlib>
#include <type_traits>
#include <vector>

namespace {

constexpr auto Seven = static_cast<kxAssetCategoryType>(7);
constexpr auto MinusOne = static_cast<kxAssetCategoryType>(-1);

/// Puts "<context>" and a hash sign before each text, so that both are seen in what was translated.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QStringLiteral("<%1>#%2").arg(QString::fromUtf8(context), QString::fromUtf8(text));
    }
    bool isEmpty() const override { return false; }
};

/// The maps are built once for a process: what depends on that moment runs in a fresh one.
class kxAssetCategoryProcessTest : public testing::Test
{
protected:
    kxAssetCategoryProcessTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// What each of them asks is whether code of any class may do it.
template <class Category>
concept OffersBuildingTheMaps = requires
{
    Category::setupAssetCategoriesMaps();
};
template <class Category>
concept OffersTheNames = requires
{
    Category::s_assetCategories;
};
template <class Category>
concept OffersTheNumbers = requires
{
    Category::s_assetCategoriesRev;
};
template <class Category>
concept OffersTheNamesForPeople = requires
{
    Category::s_assetCategoriesUI;
};
template <class Category>
concept OffersLookingUp = requires
{
    Category::getAllCategories();
};

[[noreturn]] void endProcess(bool isAsExpected)
{
    std::exit(isAsExpected ? 0 : 1);
}

} // namespace

TEST(kxAssetCategoryTest, NumbersTheCategories)
{
    EXPECT_EQ(static_cast<int>(Undefined), 0);
    EXPECT_EQ(static_cast<int>(Material), 1);
    EXPECT_EQ(static_cast<int>(Environment), 2);
    EXPECT_EQ(static_cast<int>(Geometry), 3);
    EXPECT_EQ(static_cast<int>(Sceneplate), 4);
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<kxAssetCategoryType>, int>));
}

TEST(kxAssetCategoryTest, IsUndefinedUnlessToldOtherwise)
{
    EXPECT_EQ(kxAssetCategory().getCategoryType(), Undefined);
    EXPECT_EQ(kxAssetCategory(Geometry).getCategoryType(), Geometry);
}

TEST(kxAssetCategoryTest, CopiesItsCategory)
{
    const kxAssetCategory geometry(Geometry);
    kxAssetCategory copy(geometry);
    EXPECT_EQ(copy.getCategoryType(), Geometry);

    copy = kxAssetCategory(Sceneplate);
    EXPECT_EQ(copy.getCategoryType(), Sceneplate);
    EXPECT_EQ(geometry.getCategoryType(), Geometry);
}

TEST(kxAssetCategoryTest, HasNoVirtualOperations)
{
    EXPECT_FALSE(std::is_polymorphic_v<kxAssetCategory>);
}

TEST(kxAssetCategoryTest, KeepsItsMapsToItself)
{
    EXPECT_FALSE(OffersBuildingTheMaps<kxAssetCategory>);
    EXPECT_FALSE(OffersTheNames<kxAssetCategory>);
    EXPECT_FALSE(OffersTheNumbers<kxAssetCategory>);
    EXPECT_FALSE(OffersTheNamesForPeople<kxAssetCategory>);

    // What is public is seen.
    EXPECT_TRUE(OffersLookingUp<kxAssetCategory>);
}

TEST(kxAssetCategoryTest, HandsOutCopiesThroughWhichNoCategoryIsAdded)
{
    auto &&categories = kxAssetCategory::getAllCategories();
    auto &&patterns = kxAssetCategory::getAcceptedFileTypes(Geometry);
    auto &&name = kxAssetCategory::getInternalCategoryName(Geometry);
    categories.insert(Seven);
    patterns.push_back("*.other");
    name = "Others";

    EXPECT_EQ(kxAssetCategory::getAllCategories(), (std::set{Material, Environment, Geometry, Sceneplate}));
    EXPECT_EQ(kxAssetCategory::getAcceptedFileTypes(Geometry), QStringList{"*.osb"});
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Geometry), "Geometries");
}

TEST(kxAssetCategoryTest, NamesCategoriesForFiles)
{
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Material), "Materials");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Environment), "Environments");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Geometry), "Geometries");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Sceneplate), "Sceneplates");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Undefined), "");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(Seven), "");
    EXPECT_EQ(kxAssetCategory::getInternalCategoryName(MinusOne), "");
}

TEST(kxAssetCategoryTest, FindsCategoriesByExactName)
{
    EXPECT_EQ(kxAssetCategory::getCategoryType("Materials"), Material);
    EXPECT_EQ(kxAssetCategory::getCategoryType("Environments"), Environment);
    EXPECT_EQ(kxAssetCategory::getCategoryType("Geometries"), Geometry);
    EXPECT_EQ(kxAssetCategory::getCategoryType("Sceneplates"), Sceneplate);
}

TEST(kxAssetCategoryTest, KnowsNoOtherFormsOfTheNames)
{
    for (const char *name : {"materials", "MATERIALS", "Material", " Materials", "Materials ", ""}) {
        EXPECT_EQ(kxAssetCategory::getCategoryType(name), Undefined) << name;
        EXPECT_FALSE(kxAssetCategory::isValid(name)) << name;
    }
}

TEST(kxAssetCategoryTest, CallsTheFourNamesValid)
{
    for (const char *name : {"Materials", "Environments", "Geometries", "Sceneplates"})
        EXPECT_TRUE(kxAssetCategory::isValid(name)) << name;
}

TEST(kxAssetCategoryTest, ListsAllCategoriesAscending)
{
    const std::set<kxAssetCategoryType> all = kxAssetCategory::getAllCategories();

    EXPECT_EQ(std::vector<int>(all.begin(), all.end()), (std::vector<int>{1, 2, 3, 4}));
}

TEST(kxAssetCategoryTest, NamesCategoriesForPeople)
{
    EXPECT_EQ(kxAssetCategory::getUICategoryName(Material), "Materials");
    EXPECT_EQ(kxAssetCategory::getUICategoryName(Environment), "Environments");
    EXPECT_EQ(kxAssetCategory::getUICategoryName(Geometry), "Geometries");
    EXPECT_EQ(kxAssetCategory::getUICategoryName(Sceneplate), "Sceneplates");
}

TEST(kxAssetCategoryTest, HasNoNameForPeopleWithoutACategory)
{
    EXPECT_TRUE(kxAssetCategory::getUICategoryName(Undefined).isNull());
    EXPECT_TRUE(kxAssetCategory::getUICategoryName(Seven).isNull());
    EXPECT_TRUE(kxAssetCategory::getUICategoryName(MinusOne).isNull());
}

TEST(kxAssetCategoryTest, AcceptsOnePayloadPatternEverywhere)
{
    for (const kxAssetCategoryType category : {Undefined, Material, Environment, Geometry, Sceneplate, Seven})
        EXPECT_EQ(kxAssetCategory::getAcceptedFileTypes(category), QStringList("*.osb"));
}

TEST(kxAssetCategoryTest, GivesMaterialsOneColumnMore)
{
    EXPECT_EQ(kxAssetCategory::getColumnCount(Material), 5);
    EXPECT_EQ(kxAssetCategory::getColumnCount(Environment), 4);
    EXPECT_EQ(kxAssetCategory::getColumnCount(Geometry), 4);
    EXPECT_EQ(kxAssetCategory::getColumnCount(Sceneplate), 4);
    EXPECT_EQ(kxAssetCategory::getColumnCount(Undefined), 0);
    EXPECT_EQ(kxAssetCategory::getColumnCount(Seven), 0);
    EXPECT_EQ(kxAssetCategory::getColumnCount(MinusOne), 0);
}

TEST(kxAssetCategoryTest, HeadsTheFirstColumnWithTheCategory)
{
    EXPECT_EQ(kxAssetCategory::getHeaderData(Material, 0, Qt::DisplayRole), QVariant("Material"));
    EXPECT_EQ(kxAssetCategory::getHeaderData(Environment, 0, Qt::DisplayRole), QVariant("Environment"));
    EXPECT_EQ(kxAssetCategory::getHeaderData(Geometry, 0, Qt::DisplayRole), QVariant("Geometry"));
    EXPECT_EQ(kxAssetCategory::getHeaderData(Sceneplate, 0, Qt::DisplayRole), QVariant("Sceneplate"));
}

TEST(kxAssetCategoryTest, HeadsTheOtherColumnsAlike)
{
    for (const kxAssetCategoryType category : {Material, Environment, Geometry, Sceneplate}) {
        EXPECT_EQ(kxAssetCategory::getHeaderData(category, 1, 0), QVariant("Type"));
        EXPECT_EQ(kxAssetCategory::getHeaderData(category, 2, 0), QVariant("Modified on"));
        EXPECT_EQ(kxAssetCategory::getHeaderData(category, 3, 0), QVariant("Storage Location"));
    }
    EXPECT_EQ(kxAssetCategory::getHeaderData(Material, 4, 0), QVariant("Tags"));
}

TEST(kxAssetCategoryTest, HeadsColumnsWithTexts)
{
    for (int section = 0; section < 5; ++section)
        EXPECT_EQ(kxAssetCategory::getHeaderData(Material, section, 0).userType(), QMetaType::QString) << section;
}

TEST(kxAssetCategoryTest, HasNoHeaderBesideTheColumns)
{
    EXPECT_FALSE(kxAssetCategory::getHeaderData(Material, 5, 0).isValid());
    EXPECT_FALSE(kxAssetCategory::getHeaderData(Environment, 4, 0).isValid());
    EXPECT_FALSE(kxAssetCategory::getHeaderData(Material, -1, 0).isValid());
    EXPECT_FALSE(kxAssetCategory::getHeaderData(Undefined, 0, 0).isValid());
    EXPECT_FALSE(kxAssetCategory::getHeaderData(Seven, 0, 0).isValid());
}

TEST(kxAssetCategoryTest, HasHeadersForDisplayOnly)
{
    for (const int role : {1, 2, 3, -1, 0x100})
        EXPECT_FALSE(kxAssetCategory::getHeaderData(Material, 0, role).isValid()) << role;
}

TEST(kxAssetCategoryTest, PrefixesFoldersAndLeavesNamesAsTheyAre)
{
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Material, "Steel"), "MAT_Steel");
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Environment, QString::fromUtf8("Dämmerung ")),
              QString::fromUtf8("ENV_Dämmerung "));
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Geometry, "Chair"), "GEO_Chair");
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Sceneplate, " a/b"), "SCP_ a/b");
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Undefined, "x"), "UNKNOWN_x");
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Seven, "x"), "UNKNOWN_x");
    EXPECT_EQ(kxAssetCategory::getItemFolderName(Material, QString()), "MAT_");
}

TEST(kxAssetCategoryTest, PrefixesTheTagsOfWhatIsPlacedInTheScene)
{
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Environment), "Environment Asset: ");
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Geometry), "Geometry Asset: ");
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Sceneplate), "Sceneplate Asset: ");
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Geometry).size(), 16U);
}

TEST(kxAssetCategoryTest, PrefixesNoOtherTags)
{
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Material), "");
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Undefined), "");
    EXPECT_EQ(kxAssetCategory::getTagPrefix(Seven), "");
}

TEST(kxAssetCategoryTest, NumbersColumnsAlikeInAllCategories)
{
    for (const kxAssetCategoryType category : {Undefined, Material, Environment, Geometry, Sceneplate, Seven}) {
        EXPECT_EQ(kxAssetCategory::getNameColumn(category), 0);
        EXPECT_EQ(kxAssetCategory::getTypeColumn(category), 1);
        EXPECT_EQ(kxAssetCategory::getLastModifiedColumn(category), 2);
        EXPECT_EQ(kxAssetCategory::getStorageLocationColumn(category), 3);
        EXPECT_EQ(kxAssetCategory::getTagsColumn(category), 4);
    }
    EXPECT_EQ(kxAssetCategory::getNameColumn(), 0);
    EXPECT_EQ(kxAssetCategory::getTagsColumn(), 4);
}

TEST(kxAssetCategoryTest, AnswersForTheCategoryItHolds)
{
    const kxAssetCategory environment(Environment);

    EXPECT_EQ(environment.getInternalCategoryName(), "Environments");
    EXPECT_EQ(environment.getAcceptedFileTypes(), QStringList("*.osb"));
    EXPECT_EQ(environment.getColumnCount(), 4);
    EXPECT_EQ(environment.getHeaderData(0, 0), QVariant("Environment"));
    EXPECT_FALSE(environment.getHeaderData(4, 0).isValid());
    EXPECT_FALSE(environment.getHeaderData(0, 1).isValid());
}

TEST(kxAssetCategoryTest, ShapesPreviewIcons)
{
    EXPECT_EQ(kxAssetCategory(Material).getDefaultIconAspectRatio(), 1.0F);
    EXPECT_EQ(kxAssetCategory(Environment).getDefaultIconAspectRatio(), 2.0F);
    EXPECT_EQ(kxAssetCategory(Geometry).getDefaultIconAspectRatio(), 1.3333F);
    EXPECT_EQ(kxAssetCategory(Sceneplate).getDefaultIconAspectRatio(), 1.3333F);
    EXPECT_EQ(kxAssetCategory().getDefaultIconAspectRatio(), 1.0F);
    EXPECT_EQ(kxAssetCategory(Seven).getDefaultIconAspectRatio(), 1.0F);
}

TEST(kxAssetCategoryTest, TranslatesInItsOwnContext)
{
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);

    const QString text = kxAssetCategory::tr("Anything");
    const QVariant header = kxAssetCategory::getHeaderData(Material, 3, 0);
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(text, "<kxAssetCategory>#Anything");
    EXPECT_EQ(header, QVariant("<kxAssetCategory>#Storage Location"));
}

TEST(kxAssetCategoryTest, TellsMeaningsAndNumbersApartWhenTranslating)
{
    struct NumberingTranslator : QTranslator
    {
        QString translate(const char *, const char *text, const char *meaning, int number) const override
        {
            return QStringLiteral("%1 %2 %3").arg(text, meaning).arg(number);
        }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);

    const QString text = kxAssetCategory::tr("%n plates", "in a scene", 3);
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(text, "3 plates in a scene 3");
}

TEST(kxAssetCategoryTest, TranslatesEveryHeader)
{
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);

    std::vector<QString> headers;
    for (const kxAssetCategoryType category : {Material, Environment, Geometry, Sceneplate})
        headers.push_back(kxAssetCategory::getHeaderData(category, 0, 0).toString());
    for (int section = 1; section < 5; ++section)
        headers.push_back(kxAssetCategory::getHeaderData(Material, section, 0).toString());
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(headers, (std::vector<QString>{"<kxAssetCategory>#Material", "<kxAssetCategory>#Environment",
                                             "<kxAssetCategory>#Geometry", "<kxAssetCategory>#Sceneplate",
                                             "<kxAssetCategory>#Type", "<kxAssetCategory>#Modified on",
                                             "<kxAssetCategory>#Storage Location", "<kxAssetCategory>#Tags"}));
}

TEST_F(kxAssetCategoryProcessTest, HasNoWidestCategoryBeforeTheFirstUse)
{
    EXPECT_EXIT(
        {
            const int before = kxAssetCategory::getMaxColumnCount();
            const kxAssetCategory category;
            endProcess(before == 0 && kxAssetCategory::getMaxColumnCount() == 5);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, BuildsNoMapsForOperationsThatReadNone)
{
    EXPECT_EXIT(
        {
            kxAssetCategory::getAcceptedFileTypes(Material);
            kxAssetCategory::getColumnCount(Material);
            kxAssetCategory::getHeaderData(Material, 0, 0);
            kxAssetCategory::getItemFolderName(Material, "x");
            kxAssetCategory::getTagPrefix(Geometry);
            kxAssetCategory::getTagsColumn(Material);
            endProcess(kxAssetCategory::getMaxColumnCount() == 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, BuildsTheMapsWithAConstructor)
{
    EXPECT_EXIT(
        {
            const kxAssetCategory category(Seven);
            endProcess(kxAssetCategory::getMaxColumnCount() == 5);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, BuildsTheMapsWithTheFirstLookUp)
{
    const auto isBuiltBy = [](auto lookUp) {
        lookUp();
        endProcess(kxAssetCategory::getMaxColumnCount() == 5);
    };
    const testing::ExitedWithCode success(0);

    EXPECT_EXIT(isBuiltBy([] { kxAssetCategory::getInternalCategoryName(Undefined); }), success, "");
    EXPECT_EXIT(isBuiltBy([] { kxAssetCategory::getCategoryType(""); }), success, "");
    EXPECT_EXIT(isBuiltBy([] { kxAssetCategory::isValid(""); }), success, "");
    EXPECT_EXIT(isBuiltBy([] { kxAssetCategory::getAllCategories(); }), success, "");
    EXPECT_EXIT(isBuiltBy([] { kxAssetCategory::getUICategoryName(Undefined); }), success, "");
}

TEST_F(kxAssetCategoryProcessTest, KeepsTheNamesForPeopleAsTheyWereTranslatedFirst)
{
    EXPECT_EXIT(
        {
            MarkingTranslator translator;
            QCoreApplication::installTranslator(&translator);
            const QString first = kxAssetCategory::getUICategoryName(Geometry);
            QCoreApplication::removeTranslator(&translator);
            const QString second = kxAssetCategory::getUICategoryName(Geometry);
            endProcess(first == "<kxAssetCategory>#Geometries" && second == first);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, TranslatesEveryNameForPeople)
{
    EXPECT_EXIT(
        {
            MarkingTranslator translator;
            QCoreApplication::installTranslator(&translator);
            QStringList names;
            for (const kxAssetCategoryType category : {Material, Environment, Geometry, Sceneplate})
                names.push_back(kxAssetCategory::getUICategoryName(category));
            endProcess(names == QStringList{"<kxAssetCategory>#Materials", "<kxAssetCategory>#Environments",
                                            "<kxAssetCategory>#Geometries", "<kxAssetCategory>#Sceneplates"});
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, IgnoresATranslatorThatComesTooLate)
{
    EXPECT_EXIT(
        {
            const kxAssetCategory category;
            MarkingTranslator translator;
            QCoreApplication::installTranslator(&translator);
            endProcess(kxAssetCategory::getUICategoryName(Sceneplate) == "Sceneplates");
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetCategoryProcessTest, NeverTranslatesTheNamesInFiles)
{
    EXPECT_EXIT(
        {
            MarkingTranslator translator;
            QCoreApplication::installTranslator(&translator);
            endProcess(kxAssetCategory::getInternalCategoryName(Material) == "Materials" &&
                       kxAssetCategory::getCategoryType("Materials") == Material);
        },
        testing::ExitedWithCode(0), "");
}

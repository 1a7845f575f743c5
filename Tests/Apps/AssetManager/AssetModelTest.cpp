// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"

#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::ElementsAre;

class AssetModelTest : public WindowFixture
{
protected:
    AssetModel &model() { return window->libraries().assets(); }
    std::vector<QString> sorted(int column, Qt::SortOrder order)
    {
        model().sort(column, order);
        return names();
    }
    void tag(const std::string &uuid, const QStringList &tags)
    {
        window->libraries().assetActions().editTags({id(uuid)}, tags, {});
    }
    void moveTo(const QString &place, const std::string &uuid)
    {
        QDir().mkpath(path(place));
        window->libraries().actions().moveAssets({id(uuid)}, path(place));
    }
};

} // namespace

TEST_F(AssetModelTest, SortsByEachColumnBothWays)
{
    const std::string ash = storeMaterial("Ash");
    const std::string elm = storeMaterial("Elm");
    const std::string oak = storeMaterial("Oak");
    storeEnvironment("Fog");
    open();
    tag(ash, {"wood", "old"});
    tag(elm, {"bark"});
    moveTo("B", ash);
    moveTo("A", elm);
    moveTo("B", oak);
    settle();
    const int name = kxAssetCategory::getNameColumn();
    const int type = kxAssetCategory::getTypeColumn();
    const int place = kxAssetCategory::getStorageLocationColumn();
    const int tags = kxAssetCategory::getTagsColumn();

    EXPECT_THAT(sorted(name, Qt::AscendingOrder), ElementsAre("Ash", "Elm", "Fog", "Oak"));
    EXPECT_THAT(sorted(name, Qt::DescendingOrder), ElementsAre("Oak", "Fog", "Elm", "Ash"));
    EXPECT_THAT(sorted(place, Qt::AscendingOrder), ElementsAre("Fog", "Elm", "Ash", "Oak"));
    EXPECT_THAT(sorted(place, Qt::DescendingOrder), ElementsAre("Oak", "Ash", "Elm", "Fog"));
    EXPECT_THAT(sorted(tags, Qt::AscendingOrder), ElementsAre("Fog", "Oak", "Elm", "Ash"));
    EXPECT_THAT(sorted(tags, Qt::DescendingOrder), ElementsAre("Ash", "Elm", "Oak", "Fog"));
    const std::vector<QString> byType = sorted(type, Qt::AscendingOrder);
    for (int row = 1; row < model().rowCount(); ++row)
        EXPECT_LE(model().entry(row - 1).type, model().entry(row).type);
    std::vector<QString> reversed = sorted(type, Qt::DescendingOrder);
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(reversed, byType);
}

TEST_F(AssetModelTest, PutsWhatChangesWhereItBelongs)
{
    const std::string ash = storeMaterial("Ash");
    storeMaterial("Beech");
    storeMaterial("Oak");
    open();
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder})
        for (const int column : {kxAssetCategory::getNameColumn(), kxAssetCategory::getTypeColumn(),
                                 kxAssetCategory::getLastModifiedColumn(), kxAssetCategory::getTagsColumn()}) {
            model().sort(column, order);
            tag(ash, {QStringLiteral("wood %1").arg(column)});
            const std::vector<QString> shown = names();
            EXPECT_EQ(shown.size(), 3U);
            EXPECT_EQ(sorted(column, order), shown) << column << ' ' << order;
        }
}

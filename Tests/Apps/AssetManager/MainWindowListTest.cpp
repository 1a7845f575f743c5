// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QDateTime>
#include <QDir>
#include <QHeaderView>
#include <QLocale>
#include <QTabBar>
#include <QTableView>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

/// The list with details, as a person sees it.
class MainWindowListTest : public WindowFixture
{
protected:
    /// The asset lies in a folder of the library, and was stored then. Expects that the library is not open yet.
    void put(const std::string &directory, const QString &into, const QDateTime &when) const
    {
        const QString from = path(QString::fromStdString(directory));
        const QString to = into.isEmpty() ? from : path(into + '/' + QString::fromStdString(directory));
        QDir().mkpath(QFileInfo(to).path());
        ASSERT_TRUE(from == to || QDir().rename(from, to));
        for (const QFileInfo &info : QDir(to).entryInfoList({"*.xml"}, QDir::Files)) {
            QFile file(info.filePath());
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(when, QFileDevice::FileModificationTime));
        }
    }
    static QDateTime day(int day) { return {{2021, 3, day}, {14, 30}}; }
    static QString shown(const QDateTime &time) { return QLocale().toString(time, QLocale::ShortFormat); }
    void openAsList()
    {
        open();
        press(Qt::Key_2, Qt::ControlModifier);
    }
    void showKind(int tab)
    {
        auto &tabs = widget<QTabBar>("categories");
        click(tabs, tabs.tabRect(tab).center());
    }
    QTableView &table() const { return widget<QTableView>("assetTable"); }
    QStringList headers() const
    {
        QStringList texts;
        for (int column = 0; column < table().model()->columnCount(); ++column)
            if (!table().isColumnHidden(column))
                texts.append(table().model()->headerData(column, Qt::Horizontal).toString());
        return texts;
    }
    QStringList cells(int row) const
    {
        QStringList texts;
        for (int column = 0; column < table().model()->columnCount(); ++column)
            texts.append(table().model()->index(row, column).data().toString());
        return texts;
    }
    void clickHeader(int column)
    {
        QHeaderView &header = *table().horizontalHeader();
        click(*header.viewport(), {header.sectionViewportPosition(column) + 20, header.height() / 2});
    }
    void tag(const std::string &uuid, const QStringList &tags)
    {
        window->libraries().assetActions().editTags({id(uuid)}, tags, {});
        settle();
    }
};

TEST_F(MainWindowListTest, HasTheColumnsAndCellsOfEachKind)
{
    const std::string oak = storeMaterial("Oak");
    storeEnvironment("Sky");
    storeGeometry("Chair");
    storePlate("Logo");
    put("MAT_Oak", "Wood", day(1));
    put("ENV_Sky", "", day(2));
    put("GEO_Chair", "Seats", day(3));
    put("SCP_Logo", "", day(4));
    openAsList();
    tag(oak, {"dark", "brown"});
    put("Wood/MAT_Oak", "", day(1));
    press(Qt::Key_F5);
    settle();

    showKind(1);
    EXPECT_EQ(headers(), (QStringList{"Material", "Type", "Modified on", "Storage Location", "Tags"}));
    EXPECT_EQ(cells(0), (QStringList{"Oak", "BRDF Material", shown(day(1)), path("Wood"), "brown, dark"}));
    showKind(2);
    EXPECT_EQ(headers(), (QStringList{"Environment", "Type", "Modified on", "Storage Location"}));
    EXPECT_EQ(cells(0), (QStringList{"Sky", "Environment Node", shown(day(2)), path()}));
    showKind(3);
    EXPECT_EQ(headers(), (QStringList{"Geometry", "Type", "Modified on", "Storage Location"}));
    EXPECT_EQ(cells(0), (QStringList{"Chair", "Node", shown(day(3)), path("Seats")}));
    showKind(4);
    EXPECT_EQ(headers(), (QStringList{"Sceneplate", "Type", "Modified on", "Storage Location"}));
    EXPECT_EQ(cells(0), (QStringList{"Logo", "Frontplate", shown(day(4)), path()}));
}

TEST_F(MainWindowListTest, HasTheColumnsOfAllKindsWhereAllAreShown)
{
    const std::string oak = storeMaterial("Oak");
    storePlate("Logo");
    openAsList();
    tag(oak, {"dark"});

    EXPECT_EQ(headers(), (QStringList{"Name", "Type", "Modified on", "Storage Location", "Tags"}));
    EXPECT_EQ(cells(0)[0], "Logo");
    EXPECT_EQ(cells(0)[1], "Frontplate");
    EXPECT_EQ(cells(0)[4], "");
    EXPECT_EQ(cells(1)[0], "Oak");
    EXPECT_EQ(cells(1)[1], "BRDF Material");
    EXPECT_EQ(cells(1)[4], "dark");
}

TEST_F(MainWindowListTest, SortsByEachColumnBothWays)
{
    // No two columns have the same order.
    const std::string ash = storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    storeEnvironmentMaterial("Beam");
    storePlate("Card");
    put("MAT_Ash", "d", day(3));
    put("MAT_Oak", "a", day(2));
    put("ENV_Beam", "b", day(4));
    put("SCP_Card", "c", day(1));
    openAsList();
    tag(ash, {"wood"});
    tag(oak, {"dark"});
    put("d/MAT_Ash", "", day(3)); // stored just now
    put("a/MAT_Oak", "", day(2));
    press(Qt::Key_F5);
    settle();

    EXPECT_THAT(names(), ElementsAre("Ash", "Beam", "Card", "Oak"));
    clickHeader(0);
    EXPECT_THAT(names(), ElementsAre("Oak", "Card", "Beam", "Ash"));
    clickHeader(1); // BRDF Material, Environment Material, Frontplate
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak", "Beam", "Card"));
    clickHeader(1);
    EXPECT_THAT(names(), ElementsAre("Card", "Beam", "Oak", "Ash"));
    clickHeader(2);
    EXPECT_THAT(names(), ElementsAre("Card", "Oak", "Ash", "Beam"));
    clickHeader(2);
    EXPECT_THAT(names(), ElementsAre("Beam", "Ash", "Oak", "Card"));
    clickHeader(3);
    EXPECT_THAT(names(), ElementsAre("Oak", "Beam", "Card", "Ash"));
    clickHeader(3);
    EXPECT_THAT(names(), ElementsAre("Ash", "Card", "Beam", "Oak"));
    clickHeader(4); // none, dark, wood
    EXPECT_THAT(names(), ElementsAre("Beam", "Card", "Oak", "Ash"));
    clickHeader(4);
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak", "Card", "Beam"));
}

TEST_F(MainWindowListTest, ReadsEachCellToThoseWhoDoNotSeeIt)
{
    storeMaterial("Oak");
    openAsList();

    const QAbstractItemModel &model = *table().model();
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleTextRole), "Oak, BRDF Material");
    EXPECT_EQ(model.index(0, 3).data(Qt::AccessibleTextRole), path());
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"
#include "AssetManager/DetailsPane.h"
#include "AssetManager/ElidedLine.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QDateTime>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

#include <gmock/gmock.h>

namespace {

/// The pane that tells of the selected assets, and where they are edited.
class MainWindowDetailsTest : public WindowFixture
{
protected:
    template <class Widget> Widget &part(const char *name) const
    {
        return *window->details().findChild<Widget *>(QLatin1String(name));
    }
    QString text(const char *label) const { return part<QLabel>(label).text(); }
    QStringList tagsOf(const std::string &uuid) const { return window->libraries().assets().find(uuid)->tags; }
    /// As buttons, each of which takes one away.
    QStringList shownTags() const
    {
        QStringList names;
        for (const QAbstractButton *button : part<QWidget>("tags").findChildren<QAbstractButton *>())
            names.append(button->objectName().mid(QStringLiteral("removeTag:").size()));
        return names;
    }
    void selectBoth(const std::string &one, const std::string &other)
    {
        clickAsset(one);
        clickAsset(other, Qt::ControlModifier);
    }
    void typeTag(const QString &tag)
    {
        auto &line = part<QLineEdit>("newTag");
        click(line, line.rect().center());
        type(tag);
        press(Qt::Key_Return);
    }
};

TEST_F(MainWindowDetailsTest, TellsEverythingThatIsKnownOfAnAsset)
{
    const std::string oak = storeMaterial("Oak");
    QFile metadata(path("MAT_Oak/" + QDir(path("MAT_Oak")).entryList({"*.xml"}, QDir::Files).value(0)));
    const QDateTime stored({2021, 3, 4}, {14, 30});
    ASSERT_TRUE(metadata.open(QIODevice::ReadWrite));
    ASSERT_TRUE(metadata.setFileTime(stored, QFileDevice::FileModificationTime));
    metadata.close();
    open();

    clickAsset(oak);

    EXPECT_EQ(part<QLineEdit>("name").text(), "Oak");
    EXPECT_EQ(text("type"), "BRDF Material");
    EXPECT_EQ(text("modified"), QLocale().toString(stored, QLocale::ShortFormat));
    EXPECT_EQ(text("location"), path());
    EXPECT_EQ(part<ElidedLine>("identity").wholeText(), id(oak));
    EXPECT_EQ(text("state"), "Not used in the scene.");
    EXPECT_FALSE(part<QAbstractButton>("favourite").isChecked());
    EXPECT_TRUE(shownTags().isEmpty());
    press(Qt::Key_D, Qt::ControlModifier);
    window->libraries().assetActions().editTags({id(oak)}, {"wood", "dark"}, {});
    settle();
    EXPECT_TRUE(part<QAbstractButton>("favourite").isChecked());
    EXPECT_EQ(shownTags(), (QStringList{"dark", "wood"}));
}

TEST_F(MainWindowDetailsTest, TakesBackByTheKeysWhatWasEnteredInItsFields)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    const auto enter = [this](const char *field, const QString &content) {
        auto &line = part<QLineEdit>(field);
        click(line, line.rect().center());
        press(Qt::Key_A, Qt::ControlModifier);
        type(content);
        press(Qt::Key_Return);
        settle();
    };

    enter("newTag", "wood");
    EXPECT_EQ(shownTags(), QStringList{"wood"});
    type("dark");
    undo();
    EXPECT_EQ(part<QLineEdit>("newTag").text(), "") << "what is typed is the line's own";
    EXPECT_EQ(shownTags(), QStringList{"wood"});
    redo();
    EXPECT_EQ(part<QLineEdit>("newTag").text(), "dark");
    undo();
    undo();
    EXPECT_EQ(shownTags(), QStringList());
    EXPECT_TRUE(part<QLineEdit>("newTag").hasFocus());
    enter("newTag", "hard");
    undo();
    redo();
    EXPECT_EQ(shownTags(), QStringList{"hard"});

    enter("name", "Bog oak");
    EXPECT_EQ(names(), std::vector<QString>{"Bog oak"});
    undo();
    EXPECT_EQ(names(), std::vector<QString>{"Oak"});
    EXPECT_EQ(part<QLineEdit>("name").text(), "Oak");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDetailsTest, TellsOfSeveralAssetsWhatIsTheSame)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    const std::string logo = storePlate("Logo");
    ASSERT_TRUE(QDir().mkpath(path("Wood")) && QDir().rename(path("MAT_Ash"), path("Wood/MAT_Ash")));
    open();
    window->libraries().assetActions().editTags({id(oak)}, {"wood", "dark"}, {});
    window->libraries().assetActions().editTags({id(ash)}, {"wood"}, {});
    settle();

    selectBoth(oak, ash);
    EXPECT_EQ(part<QLineEdit>("name").text(), "2 assets");
    EXPECT_FALSE(part<QLineEdit>("name").isEnabled());
    EXPECT_EQ(text("type"), "BRDF Material");
    EXPECT_EQ(text("location"), "(different)");
    EXPECT_EQ(shownTags(), QStringList{"wood"});
    selectBoth(oak, logo);

    EXPECT_EQ(text("type"), "(different)");
    EXPECT_EQ(text("location"), path());
    EXPECT_TRUE(shownTags().isEmpty());
}

TEST_F(MainWindowDetailsTest, TakesTagsForMaterials)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);

    EXPECT_EQ(part<QLineEdit>("newTag").placeholderText(), "Add a tag");
    typeTag("wood");
    EXPECT_EQ(tagsOf(oak), QStringList{"wood"});
    clickButton("removeTag:wood");

    EXPECT_TRUE(tagsOf(oak).isEmpty());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDetailsTest, SaysWhyOtherKindsTakeNoTags)
{
    const std::string oak = storeMaterial("Oak");
    const std::vector<std::string> others{storeEnvironment("Sky"), storeEnvironmentMaterial("Dusk"),
                                          storeGeometry("Chair"), storePlate("Logo")};
    open();
    const auto &line = part<QLineEdit>("newTag");
    for (const std::string &uuid : others) {
        clickAsset(uuid);
        EXPECT_FALSE(line.isEnabled());
        EXPECT_EQ(line.placeholderText(), "Only materials have tags.");

        typeTag("new");
        EXPECT_TRUE(tagsOf(uuid).isEmpty());
        EXPECT_EQ(line.text(), "");
    }
    selectBoth(oak, others.back());
    EXPECT_FALSE(line.isEnabled());
    clickAsset(oak);

    EXPECT_TRUE(line.isEnabled());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDetailsTest, RefusesTagsOfItemsThatShowNone)
{
    const std::string dusk = storeEnvironmentMaterial("Dusk");
    open();

    window->libraries().assetActions().editTags({id(dusk)}, {"red"}, {});

    EXPECT_EQ(takeReport(), "\"Dusk\" has no tags: only materials have them.");
}

} // namespace

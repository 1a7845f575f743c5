// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"
#include "Kernel/kxModalQuestion.h"
#include "ReadOnly.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QTimer>

#include <gmock/gmock.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr int Parts = 1;
constexpr int Materials = 2;

/// What people are told where some things of a file were saved and others not.
class MainWindowImportPartsTest : public WindowFixture
{
protected:
    void import(const std::string &file, int choice, const QString &target)
    {
        kxModalQuestion::setDialogAnswerer([choice](QDialog &dialog) {
            dialog.findChild<QComboBox *>("models")->setCurrentIndex(choice);
            return QDialog::Accepted;
        });
        window->importFiles({QString::fromStdString(file)}, target);
        settle();
    }
    std::string describe(const std::string &materials) const
    {
        return folder.write("paint.materials.json", R"({"materials": [)" + materials + "]}");
    }
    void permit(const QString &directory, int rights) const
    {
        fs::permissions(directory.toStdString(), fs::perms(rights));
    }
};

} // namespace

TEST_F(MainWindowImportPartsTest, NamesThePartsThatCouldNotBeSaved)
{
    constexpr const char *Chair = "v 0 0 0\nv 1 0 0\nv 0 1 0\no Seat\nf 1 2 3\no Leg\nf 1 2 3\no Back\nf 1 2 3\n";
    ASSERT_TRUE(QDir().mkpath(path()));
    permit(QString::fromStdString(folder.path().string()), 0755);
    permit(path(), 0777);
    const std::string file = folder.write("chair.obj", Chair);
    const kxtest::WithoutPrivileges user;
    const QString own = path("Own");
    ASSERT_TRUE(QDir().mkpath(own));
    open();
    QTimer lock;
    QObject::connect(&lock, &QTimer::timeout, [this, own] {
        if (QFileInfo::exists(own + "/GEO_Seat"))
            permit(own, 0555);
    });
    lock.start(0);

    import(file, Parts, own);

    lock.stop();
    permit(own, 0755);
    EXPECT_EQ(takeReport().toStdString(), "Of \"chair.obj\", \"Leg\" could not be saved. You may not write there.\n\n"
                                          "Of \"chair.obj\", \"Back\" could not be saved. You may not write there.");
    EXPECT_THAT(names(), ElementsAre("Seat"));
}

TEST_F(MainWindowImportPartsTest, NamesAKnownMaterialWhoseFolderMayNotBeWrittenTo)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    open();
    import(describe(R"({"name": "Oak"})"), Materials, path("Wood"));
    ASSERT_EQ(takeReport().toStdString(), "");
    const std::string both = describe(R"({"name": "Oak"}, {"name": "Elm"})");
    permit(QString::fromStdString(folder.path().string()), 0755);
    permit(path(), 0777);
    for (const char *locked : {"Wood", "Wood/MAT_Oak"})
        permit(path(locked), 0555);
    {
        const kxtest::WithoutPrivileges user;
        import(both, Materials, path());
    }
    for (const char *locked : {"Wood", "Wood/MAT_Oak"})
        permit(path(locked), 0755);

    EXPECT_EQ(takeReport().toStdString(),
              "Of \"paint.materials.json\", \"Oak\" could not be saved. You may not write there.");
    EXPECT_THAT(names(), UnorderedElementsAre("Oak", "Elm"));
}

TEST_F(MainWindowImportPartsTest, SaysOfAFileOnceThatNothingOfItWasSaved)
{
    ASSERT_TRUE(QDir().mkpath(path()));
    open();
    const std::string both = describe(R"({"name": "Oak"}, {"name": "Elm"})");
    {
        const ReadOnly disk(path());
        import(both, Materials, path());
    }

    EXPECT_EQ(takeReport().toStdString(), "\"paint.materials.json\" could not be imported. You may not write there.");
}

TEST_F(MainWindowImportPartsTest, NamesAMaterialThatWouldLieOutsideOfTheLibrary)
{
    open();

    import(describe(R"({"name": "Oak", "folder": "../elsewhere"}, {"name": "Elm"})"), Materials, path());

    EXPECT_EQ(takeReport(),
              "Of \"paint.materials.json\", \"Oak\" could not be saved. It would lie outside of the library.");
    EXPECT_THAT(names(), ElementsAre("Elm"));
}

TEST_F(MainWindowImportPartsTest, SaysThatAFileHoldsNoMaterials)
{
    open();

    import(describe(""), Materials, path());

    EXPECT_EQ(takeReport().toStdString(), "\"paint.materials.json\" could not be imported. It holds no materials.");
}

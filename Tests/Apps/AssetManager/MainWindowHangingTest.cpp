// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/TrashDialog.h"
#include "HangingDrive.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Material.h"
#include "WindowFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include <optional>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two libraries, of which one lies on a drive that may cease to answer.
class MainWindowHangingTest : public WindowFixture
{
protected:
    MainWindowHangingTest() : share(QFileInfo(path()).path() + "/share")
    {
        ash = storeMaterial("Ash");
        const QString own = path();
        EXPECT_TRUE(QDir().rename(own, share));
        EXPECT_TRUE(QDir().mkpath(own));
        storeMaterial("Oak");
        home = own;
        beImpatient();
    }
    ~MainWindowHangingTest() override
    {
        window.reset();
        drive.reset();
    }

    void beImpatient()
    {
        window->libraries().scan().setPatience(300);
        window->libraries().previews().setPatience(300);
    }
    bool waitForNames(const std::vector<QString> &expected)
    {
        return QTest::qWaitFor([&] { return names() == expected && window->isIdle(); }, Patience);
    }
    bool waitForReport()
    {
        return QTest::qWaitFor([this] { return !reported().isEmpty() && window->isIdle(); }, Patience);
    }
    bool waitForSilence()
    {
        return QTest::qWaitFor([this] { return window->libraries().isSilent(share); }, Patience);
    }
    bool waitForState(unsigned expected)
    {
        return QTest::qWaitFor([&] { return window->libraries().states().stateOf(ash) == expected; }, Patience);
    }
    static void markEdited()
    {
        const osg::AssetAttachmentPtr asset =
            osg::AssetAttachment::getAssetAttachment(kxMaterials::getAllAssetMaterials().front());
        const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
        asset->setUserEdited(true);
    }
    /// What a library keeps of what was deleted or replaced.
    static std::size_t keptCount(const QString &library)
    {
        return static_cast<std::size_t>(
            QDir(library + "/.kx-trash").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    }
    QVariant shown(int role) { return window->libraries().folders().indexOf(share).data(role); }
    QString problem() const { return window->libraries().folders().problemOf(share); }

    QString share;
    QString home;
    std::string ash; ///< lies on that drive
    const QString silence = QString("The folder \"%1\" does not answer. Is its drive or network connected?").arg(share);
    std::optional<HangingDrive> drive;
};

TEST_F(MainWindowHangingTest, OpensALibraryThatDoesNotAnswerAndReadsItWhenItDoes)
{
    drive.emplace(share);

    window->openLibraries({share, home});
    EXPECT_EQ(window->libraries().folders().libraries(), (QStringList{share, home}));
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), QString("Waiting for \"%1\" to answer").arg(share));
    ASSERT_TRUE(waitForReport());

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(takeReport(), silence);
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), silence);
    clickFolder(share);
    EXPECT_EQ(window->browser().hint(), silence + "\nIt is read as soon as that is possible.");
    press(Qt::Key_F5);
    settle();
    EXPECT_EQ(reported(), "") << "it was said, and is still to be seen";
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());

    clickFolder({});
    drive->letGo();
    EXPECT_TRUE(waitForNames({"Ash", "Oak"}));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), share);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, GoesOnWhileTheDriveOfAnOpenLibraryCeasesToAnswer)
{
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    drive.emplace(share);

    // The library is looked at every second.
    ASSERT_TRUE(QTest::qWaitFor([this] { return drive->waiting().contains("stat " + share); }, Patience));
    storeMaterial("Elm");
    press(Qt::Key_F5);
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), silence);
    EXPECT_THAT(names(), ElementsAre("Ash", "Elm", "Oak")) << "what was read is still shown";
    clickAsset(ash);
    EXPECT_THAT(window->browser().selected(), ElementsAre(ash));
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    ASSERT_TRUE(QTest::qWaitFor([this] { return problem().isEmpty(); }, Patience));
    settle();
    EXPECT_THAT(names(), ElementsAre("Ash", "Elm", "Oak"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, LeavesALibraryAsideThatCeasesToAnswerWhileItIsRead)
{
    ASSERT_TRUE(QDir().mkpath(share + "/Wood"));
    drive.emplace(share + "/Wood");

    window->openLibraries({share, home});
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), silence);
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return window->libraries().folders().indexOf(share + "/Wood").isValid() && window->isIdle(); },
        Patience));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, KeepsALibraryThatIsLookedAtAgainWhileASubfolderCeasesToAnswer)
{
    const QString wood = share + "/Wood";
    ASSERT_TRUE(QDir().mkpath(wood));
    window->libraries().scan().setPatience(Patience);
    const QSignalSpy answered(&window->libraries().scan(), &LibraryScan::folderAnswered);
    drive.emplace(wood);
    window->openLibraries({share});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !drive->waiting().isEmpty(); }, Patience));

    press(Qt::Key_F5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return answered.count() == 2; }, Patience));
    beImpatient();
    ASSERT_TRUE(waitForReport());
    EXPECT_EQ(takeReport(), silence);
    drive->letGo();

    const FolderModel &folders = window->libraries().folders();
    EXPECT_TRUE(QTest::qWaitFor([&] { return folders.indexOf(wood).isValid() && window->isIdle(); }, Patience));
    drive.reset(); // when all have their answer
    settle();
    EXPECT_EQ(folders.libraries(), QStringList{share});
    EXPECT_THAT(names(), ElementsAre("Ash"));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, SaysThatAFolderDoesNotAnswerForAsLongAsThatIsSo)
{
    ASSERT_TRUE(QDir().mkpath(share + "/Wood"));
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    drive.emplace(share + "/Wood");
    window->libraries().scan().refresh(share + "/Wood");
    ASSERT_TRUE(waitForReport());
    EXPECT_EQ(takeReport(), silence);

    press(Qt::Key_F5);
    settle();

    EXPECT_EQ(reported(), "") << "it was said, and is still to be seen";
    EXPECT_EQ(problem(), silence);
    drive->letGo();
    EXPECT_TRUE(QTest::qWaitFor([this] { return problem().isEmpty() && window->isIdle(); }, Patience));
}

TEST_F(MainWindowHangingTest, MarksObjectsWhoseAssetsLieOnADriveThatDoesNotAnswer)
{
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    clickAsset(ash);
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(waitForState(AssetStates::InScene));
    const QString payloads = directoryOf(ash) + "/*.osb";
    drive.emplace(share);
    ASSERT_TRUE(waitForSilence());

    markEdited();
    EXPECT_TRUE(waitForState(AssetStates::InScene | AssetStates::EditedInScene));
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());

    ASSERT_EQ(QProcess::execute("sh", {"-c", "echo changed >> " + payloads}), 0);
    drive->letGo();
    EXPECT_TRUE(waitForState(AssetStates::InScene | AssetStates::EditedInScene | AssetStates::StoredNewer));
}

TEST_F(MainWindowHangingTest, LeavesWhatWasDeletedOrReplacedOnADriveThatDoesNotAnswer)
{
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    LibraryActions &trashing = window->libraries().actions();
    window->libraries().assetActions().editTags({id(ash)}, {"grey"}, {});
    trashing.trashFolders({trashing.createFolder(share), trashing.createFolder(home)});
    const std::size_t kept = keptCount(share);
    ASSERT_GT(kept, 1U) << "the folder, and the description without the tag";
    settle();
    drive.emplace(share);
    ASSERT_TRUE(waitForSilence());
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Ok; });

    const TrashDialog dialog(trashing, {share, home}, window.get());
    EXPECT_EQ(dialog.findChild<QTreeWidget *>("deleted")->topLevelItemCount(), 1);
    EXPECT_TRUE(TrashDialog::empty({share, home}, window.get()));
    kxModalQuestion::setAnswerer({});
    EXPECT_EQ(keptCount(home), 0U);
    window->undoStack().clear();

    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    EXPECT_EQ(keptCount(share), kept);
}

TEST_F(MainWindowHangingTest, EndsWhileTheDriveOfWhatUndoKeepsDoesNotAnswer)
{
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    window->libraries().assetActions().editTags({id(ash)}, {"grey"}, {});
    const std::size_t kept = keptCount(share);
    ASSERT_GT(kept, 0U);
    settle();
    drive.emplace(share);
    ASSERT_TRUE(waitForSilence());

    ASSERT_TRUE(window->close());
    window.reset();

    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    EXPECT_EQ(keptCount(share), kept);
}

TEST_F(MainWindowHangingTest, EndsWhileADriveDoesNotAnswer)
{
    window->openLibraries({home});
    settle();
    drive.emplace(share);
    window->openLibraries({share});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !drive->waiting().isEmpty(); }, Patience));

    ASSERT_TRUE(window->close());
    window.reset();

    EXPECT_FALSE(drive->waiting().isEmpty());
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
}

TEST_F(MainWindowHangingTest, NamesALibraryByItsPlaceWhateverLeadsThere)
{
    const QString link = QFileInfo(home).path() + "/link";
    ASSERT_TRUE(QFile::link(home, link));

    window->openLibraries({link});
    settle();

    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{home});
    EXPECT_THAT(names(), ElementsAre("Oak"));
    window->openLibraries({link});
    settle();
    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{home});
    EXPECT_EQ(reported(), "");
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QScrollArea>
#include <QTreeView>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// Mouse and keys on models as they come from elsewhere: trees of many objects with materials, pictures and names of their own.
class MainWindowModelTest : public WindowFixture
{
protected:
    enum class As { Geometry = 0, Materials = 2, Environment = 0, Plate = 1 };

    /// Into \a folder of the library, which is opened.
    void import(const char *file, As kind, const QString &to = {})
    {
        kxModalQuestion::setDialogAnswerer([kind](QDialog &dialog) {
            for (const char *name : {"models", "pictures"})
                if (auto *choice = dialog.findChild<QComboBox *>(name); choice->isEnabled())
                    choice->setCurrentIndex(static_cast<int>(kind));
            return QDialog::Accepted;
        });
        QDir().mkpath(path(to));
        if (window->libraries().folders().libraries().isEmpty())
            open();
        window->importFiles({QStringLiteral(KX_TEST_MODELS "/") + file}, to.isEmpty() ? path() : path(to));
        settle();
        activate();
        EXPECT_EQ(reported(), "");
    }
    /// The one with that name, null where there is none.
    static osg::NodePtr child(const osg::NodePtr &parent, const char *name)
    {
        for (std::size_t i = 0; i < parent->getNChildren(); ++i)
            if (kxNodeUtils::getName(parent->getChild(i)) == name)
                return parent->getChild(i);
        return nullptr;
    }
    std::string uuidOf(const QString &name) const
    {
        const AssetModel &assets = window->libraries().assets();
        for (int row = 0; row < assets.rowCount(); ++row)
            if (assets.entry(row).name == name)
                return assets.entry(row).uuid;
        ADD_FAILURE() << "no asset: " << name.toStdString();
        return {};
    }
    /// The model is put into the scene by the mouse.
    osg::NodePtr dragSpider()
    {
        import("OBJ/spider.obj", As::Geometry);
        dragAssets({uuidOf("spider")}, view(), view().rect().center());
        view().frameAll();
        settle();
        return child(root(), "spider");
    }
    /// Some object of the scene that is seen, and where.
    std::pair<osg::NodePtr, QPoint> anyObject()
    {
        std::map<std::uint32_t, std::vector<QPoint>> places;
        for (int y = 4; y < view().height(); y += 4)
            for (int x = 4; x < view().width(); x += 4)
                if (const osg::NodePtr node = view().nodeAt({x, y}))
                    places[node.getFieldContainerId()].emplace_back(x, y);
        const auto largest = std::max_element(places.begin(), places.end(), [](const auto &a, const auto &b) {
            return a.second.size() < b.second.size();
        });
        EXPECT_NE(largest, places.end());
        const QPoint place = largest->second[largest->second.size() / 2];
        return {view().nodeAt(place), place};
    }
    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
    QPoint placeOfRow(const QString &name)
    {
        const QModelIndex row = rowOf(sceneTree(), name);
        EXPECT_TRUE(row.isValid()) << name.toStdString();
        sceneTree().scrollTo(row);
        return sceneTree().visualRect(row).center();
    }
    QWidget &folderView() { return *window->folders().viewport(); }
    QWidget &raised(const char *dock, const char *list)
    {
        raise(dock);
        return *widget<QAbstractItemView>(list).viewport();
    }
    void enter(const char *field, const QString &text)
    {
        auto *editor = widget<QWidget>("propertyPanel").findChild<QWidget *>(field);
        ASSERT_NE(editor, nullptr) << field;
        auto *number = editor->findChild<QWidget *>("number0");
        for (QWidget *parent = number; parent; parent = parent->parentWidget())
            if (auto *scroll = qobject_cast<QScrollArea *>(parent))
                scroll->ensureWidgetVisible(number);
        process();
        click(*number, {10, number->height() / 2});
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
        press(Qt::Key_Return);
        clickFolder(path()); // a number that is being typed has steps of its own
    }
    static std::size_t environments() { return kxDefaultEnvironment::getSwitch()->getMaterials().size(); }
};

TEST_F(MainWindowModelTest, DragsAModelIntoThePictureAndBelowANode)
{
    const osg::NodePtr spider = dragSpider();
    ASSERT_TRUE(spider);
    EXPECT_EQ(kxNodeUtils::getName(spider->getChild(0)), "spider.obj");
    EXPECT_EQ(spider->getChild(0)->getNChildren(), 19U);
    undo();
    EXPECT_FALSE(child(root(), "spider"));
    const osg::NodePtr room = addChair("Room");
    process();

    dragAssets({uuidOf("spider")}, *sceneTree().viewport(), placeOfRow("Room"));

    EXPECT_THAT(childNames(room), ElementsAre("Seat", "spider"));
}

TEST_F(MainWindowModelTest, GivesAMaterialOfAModelToAPartOfAnother)
{
    dragSpider();
    import("glTF2/BoxTextured-glTF-Binary/BoxTextured.glb", As::Materials);
    const std::string texture = uuidOf("Texture");
    clickAsset(texture); // what is shown of it may take room from the picture
    view().frameAll();
    settle();
    const auto [part, place] = anyObject();
    const osg::MaterialPtr before = materialOf(part);
    ASSERT_TRUE(before);

    dragItem(window->browser().view(), window->libraries().assets().indexOf(texture), view(), place);
    EXPECT_EQ(materialNameOf(part), "Texture");
    undo();
    EXPECT_EQ(materialOf(part), before);
    sceneTree().expandAll();
    dragAssets({texture}, *sceneTree().viewport(), placeOfRow("OK"));

    const osg::NodePtr all = part->getParent()->getParent();
    EXPECT_EQ(materialNameOf(child(child(all, "OK"), "OK")), "Texture");
}

TEST_F(MainWindowModelTest, PicksAPartAndMovesWhatItBelongsTo)
{
    const osg::NodePtr spider = dragSpider();
    raise("propertyDock");
    const auto [part, place] = anyObject();

    click(view(), place);
    EXPECT_TRUE(kxSelectionManager::isSelected(part));
    clickItem(sceneTree(), rowOf(sceneTree(), "spider"));
    enter("Translation", "12.5");
    const auto placeOf = [&] { return osg::Transform3DPtr::dcast(spider->getCore())->getTranslation()[0]; };
    EXPECT_EQ(placeOf(), 12.5);
    undo();

    EXPECT_NE(placeOf(), 12.5);
    EXPECT_TRUE(child(root(), "spider"));
}

TEST_F(MainWindowModelTest, EditsAMaterialThatCameWithAModel)
{
    dragSpider();
    raise("propertyDock");
    raise("materialDock");
    auto &list = widget<QListView>("materialList");
    ASSERT_GE(list.model()->rowCount(), 4);
    const auto part = anyObject().first;
    const auto skin = osg::UBRDFMaterialPtr::dcast(materialOf(part));
    ASSERT_TRUE(skin);
    const float before = skin->getRoughness();
    clickItem(list, rowOf(list, QString::fromStdString(materialNameOf(part))));

    enter("Roughness", "0.125");
    EXPECT_EQ(skin->getRoughness(), 0.125F);
    undo();

    EXPECT_EQ(skin->getRoughness(), before);
}

TEST_F(MainWindowModelTest, KeepsAPartAndAMaterialOfAModelInAFolder)
{
    QDir().mkpath(path("Kept"));
    dragSpider();
    QAbstractItemView &materials = widget<QListView>("materialList");
    raised("materialDock", "materialList");
    const QString material = materials.model()->index(0, 0).data().toString();
    sceneTree().expandAll();
    clickFolder(path("Kept"));

    dragItem(sceneTree(), rowOf(sceneTree(), "Kopf"), folderView(), placeOfFolder(path("Kept")));
    EXPECT_THAT(names(), Contains("Kopf"));
    dragItem(materials, materials.model()->index(0, 0), folderView(), placeOfFolder(path("Kept")));

    EXPECT_THAT(names(), Contains(material));
    EXPECT_FALSE(QDir(path("Kept")).entryList({"GEO_*"}, QDir::Dirs).isEmpty());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowModelTest, LightsTheSceneByAPictureAndLaysItOverTheScene)
{
    import("OBJ/SpiderTex.jpg", As::Environment);
    const std::size_t before = environments();
    dragAssets({uuidOf("SpiderTex")}, view(), {4, 4});
    EXPECT_EQ(environments(), before + 1);
    undo();
    EXPECT_EQ(environments(), before);
    import("OBJ/SpiderTex.jpg", As::Plate, "Plates");
    clickFolder(path("Plates"));
    ASSERT_EQ(names().size(), 1U);
    QWidget &list = raised("plateDock", "plateTree");

    dragAssets({uuidOf(names().front())}, list, list.rect().center());
    EXPECT_EQ(childNames(kxSceneplateUtils::getSceneplateRoot()).size(), 1U);
    undo();

    EXPECT_EQ(childNames(kxSceneplateUtils::getSceneplateRoot()).size(), 0U);
}

TEST_F(MainWindowModelTest, MovesImportedAssetsAndTheirFolder)
{
    QDir().mkpath(path("All"));
    import("OBJ/spider.obj", As::Materials, "Spider");
    const std::vector<QString> all = names();
    ASSERT_GE(all.size(), 5U);
    const std::string skin = uuidOf("Skin");
    const std::string eye = uuidOf("Augentex");

    dragAssets({skin, eye}, folderView(), placeOfFolder(path("All")));
    EXPECT_EQ(QFileInfo(directoryOf(skin)).path(), path("All"));
    EXPECT_EQ(QFileInfo(directoryOf(eye)).path(), path("All"));
    dragItem(window->folders(), window->libraries().folders().indexOf(path("Spider")), folderView(),
             placeOfFolder(path("All")));
    EXPECT_TRUE(QFileInfo(path("All/Spider")).isDir());
    undo();
    undo();
    clickFolder(path());

    EXPECT_EQ(QFileInfo(directoryOf(skin)).path(), path("Spider"));
    EXPECT_EQ(names(), all);
}

} // namespace

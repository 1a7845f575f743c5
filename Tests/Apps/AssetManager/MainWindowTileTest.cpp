// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/PreviewCache.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QDir>
#include <QImage>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::Gt;

/// What is painted on tiles and in the rows of the list, besides the preview. All previews are of one colour.
class MainWindowTileTest : public WindowFixture
{
protected:
    static constexpr QRgb Ground = 0xFF00FFFF; // none of the marks has it

    void openWithPlainPreviews(const std::vector<std::string> &uuids)
    {
        open();
        for (const std::string &uuid : uuids) {
            QImage picture(128, 96, QImage::Format_RGB32);
            picture.fill(Ground);
            const QDir directory(directoryOf(uuid));
            ASSERT_TRUE(picture.save(directory.filePath(directory.entryList({"*.png"}, QDir::Files).value(0))));
        }
        press(Qt::Key_F5);
        settle();
        for (const std::string &uuid : uuids)
            ASSERT_TRUE(QTest::qWaitFor([&] { return isPlain(uuid); }, Patience));
    }
    std::string save(const osg::MaterialPtr &material, const std::string &name) const
    {
        kxMaterials::setName(material, name, false);
        kxMaterialAssetItem item;
        item.initFrom(material, {}, true);
        std::string uuid = item.uuid();
        EXPECT_TRUE(item.save(library()));
        return uuid;
    }
    /// A material to choose from others, which have assets of their own.
    std::string storeChoice(const std::string &name) const
    {
        const osg::FCRef<osg::SwitchMaterial> choice(osg::SwitchMaterial::create());
        for (const char *part : {"Part 1", "Part 2"}) {
            const osg::FCRef<osg::Material> material(osg::UBRDFMaterial::create());
            save(material.get(), part);
            const osg::CPEditor edit(choice.get(), osg::SwitchMaterial::MaterialsFieldMask);
            choice->addMaterial(material.get());
        }
        return save(choice.get(), name);
    }
    void removePayload(const std::string &uuid) const
    {
        const QDir directory(directoryOf(uuid));
        for (const QString &name : directory.entryList({"*.osb"}, QDir::Files))
            ASSERT_TRUE(QFile::remove(directory.filePath(name)));
    }
    void showList() { press(Qt::Key_2, Qt::ControlModifier); }
    /// What there is of the preview of the asset, grabbed from the window.
    QImage preview(const std::string &uuid) const
    {
        const QAbstractItemView &view = window->browser().view();
        const QModelIndex index = window->libraries().assets().indexOf(uuid);
        const QRect place(view.viewport()->mapTo(window.get(), view.visualRect(index).topLeft()),
                          view.visualRect(index).size());
        const QImage item = window->grab(place).toImage();
        QRect found;
        for (int y = 0; y < item.height(); ++y)
            for (int x = 0; x < item.width(); ++x)
                if (item.pixel(x, y) == Ground)
                    found |= QRect(x, y, 1, 1);
        return item.copy(found);
    }
    /// Pixels of about that colour in a part of the preview, in which 1 is the whole width or height.
    int count(const std::string &uuid, QRgb color, const QRectF &part = {0, 0, 1, 1}) const
    {
        const QImage image = preview(uuid);
        EXPECT_GT(image.width(), 10);
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (part.contains((x + 0.5) / image.width(), (y + 0.5) / image.height()) &&
                    isAbout(image.pixel(x, y), color))
                    ++found;
        return found;
    }
    int foreign(const std::string &uuid, const QRectF &part = {0, 0, 1, 1}) const
    {
        const QImage image = preview(uuid);
        int all = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                all += part.contains((x + 0.5) / image.width(), (y + 0.5) / image.height()) ? 1 : 0;
        return all - count(uuid, Ground, part);
    }
    void loadAndWait(const std::string &uuid)
    {
        load(uuid);
        waitForState(uuid, AssetStates::InScene);
        const QAbstractItemView &view = window->browser().view();
        input.click(view.viewport()->mapToGlobal({view.viewport()->width() - 3, view.viewport()->height() - 3}),
                    Qt::LeftButton, Qt::NoModifier); // no tile is selected
        process();
    }
    void waitForState(const std::string &uuid, unsigned state) const
    {
        const AssetStates &states = window->libraries().states();
        ASSERT_TRUE(QTest::qWaitFor([&] { return (states.stateOf(uuid) & state) != 0; }, Patience));
        process();
    }
    static osg::AssetAttachmentPtr attachment()
    {
        return osg::AssetAttachment::getAssetAttachment(kxMaterials::getAllAssetMaterials().front());
    }
    void editCopy(const std::string &uuid) const
    {
        const osg::AssetAttachmentPtr asset = attachment();
        {
            const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
            asset->setUserEdited(true);
        }
        waitForState(uuid, AssetStates::EditedInScene);
    }
    void makeStoredNewer(const std::string &uuid) const
    {
        const osg::AssetAttachmentPtr asset = attachment();
        {
            const osg::CPEditor edit(asset, osg::AssetAttachment::ChecksumFieldMask);
            asset->setChecksum(1);
        }
        waitForState(uuid, AssetStates::StoredNewer);
    }
    /// Of the signs, as they are defined.
    static constexpr QRgb Green = 0xFF2A7D38;
    static constexpr QRgb Blue = 0xFF1B66C9;
    static constexpr QRgb Orange = 0xFFB85600;
    static constexpr QRgb Red = 0xFFC62828;
    static constexpr QRgb Yellow = 0xFFF2B10E;
    static constexpr QRectF UpperRight{0.5, 0, 0.5, 0.5};
    static constexpr QRectF UpperLeft{0, 0, 0.5, 0.5};
    static constexpr int Some = 8; ///< pixels

private:
    bool isPlain(const std::string &uuid) const
    {
        const QPixmap found = window->libraries().previews().find(id(uuid));
        return !found.isNull() && found.toImage().pixel(5, 5) == Ground;
    }
    static bool isAbout(QRgb one, QRgb other)
    {
        constexpr int Near = 6;
        return std::abs(qRed(one) - qRed(other)) < Near && std::abs(qGreen(one) - qGreen(other)) < Near &&
               std::abs(qBlue(one) - qBlue(other)) < Near;
    }
};

TEST_F(MainWindowTileTest, DrawsTheIconsThatItemsPutOverTheirPreviews)
{
    const std::string sky = storeEnvironment("Sky");
    const std::string oak = storeMaterial("Oak");
    const std::string choice = storeChoice("Choice");
    openWithPlainPreviews({sky, oak, choice});

    EXPECT_EQ(foreign(oak, {0.1, 0.1, 0.8, 0.8}), 0);
    EXPECT_THAT(foreign(choice, {0.05, 0.5, 0.4, 0.45}), Gt(10));
    EXPECT_EQ(foreign(choice, {0.1, 0.1, 0.8, 0.1}), 0);
    EXPECT_THAT(foreign(sky, {0.1, 0.5, 0.4, 0.4}), Gt(10));
    EXPECT_EQ(foreign(sky, {0.1, 0.1, 0.8, 0.1}), 0);
}

TEST_F(MainWindowTileTest, MarksWhatIsInTheSceneAndWhatBecameOfIt)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    openWithPlainPreviews({oak, ash});
    EXPECT_EQ(count(oak, Green), 0);

    loadAndWait(oak);
    EXPECT_THAT(count(oak, Green, UpperRight), Gt(Some));
    editCopy(oak);
    EXPECT_THAT(count(oak, Blue, UpperRight), Gt(Some));
    EXPECT_EQ(count(oak, Green), 0);
    makeStoredNewer(oak);
    EXPECT_THAT(count(oak, Orange, UpperRight), Gt(Some));
    EXPECT_THAT(count(oak, Blue), Gt(Some)); // beside it

    for (const QRgb color : {Green, Blue, Orange, Red, Yellow})
        EXPECT_EQ(count(ash, color), 0);
}

TEST_F(MainWindowTileTest, MarksTheSameInTheList)
{
    const std::string oak = storeMaterial("Oak");
    openWithPlainPreviews({oak});
    showList();
    EXPECT_EQ(foreign(oak), 0);

    loadAndWait(oak);
    EXPECT_THAT(count(oak, Green), Gt(Some));
    editCopy(oak);
    EXPECT_THAT(count(oak, Blue), Gt(Some));
    makeStoredNewer(oak);
    EXPECT_THAT(count(oak, Orange), Gt(Some));
    EXPECT_THAT(count(oak, Blue), Gt(Some));
}

TEST_F(MainWindowTileTest, MarksWhatIsBroken)
{
    const std::string oak = storeMaterial("Oak");
    const std::string choice = storeChoice("Choice");
    openWithPlainPreviews({oak, choice});
    removePayload(oak);
    removePayload(choice); // made of others, it needs none
    press(Qt::Key_F5);
    settle();
    waitForState(oak, AssetStates::Broken);

    EXPECT_THAT(count(oak, Red, UpperRight), Gt(Some));
    EXPECT_EQ(count(choice, Red, UpperRight), 0);
    showList();
    EXPECT_THAT(count(oak, Red), Gt(Some));
}

TEST_F(MainWindowTileTest, MarksFavourites)
{
    const std::string oak = storeMaterial("Oak");
    openWithPlainPreviews({oak});
    EXPECT_EQ(count(oak, Yellow), 0);

    clickAsset(oak);
    press(Qt::Key_D, Qt::ControlModifier);

    EXPECT_THAT(count(oak, Yellow, UpperLeft), Gt(Some));
    showList();
    EXPECT_THAT(count(oak, Yellow), Gt(Some));
}

TEST_F(MainWindowTileTest, SaysWhatTheMarksShow)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const auto spoken = [&] {
        return window->libraries().assets().indexOf(oak).data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(spoken(), "Oak, BRDF Material");

    clickAsset(oak);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(spoken(), "Oak, BRDF Material, favourite");
    loadAndWait(oak);
    EXPECT_EQ(spoken(), "Oak, BRDF Material, favourite. It is used in the scene.");
    editCopy(oak);
    EXPECT_EQ(spoken(), "Oak, BRDF Material, favourite. It is used in the scene. "
                        "The copy in the scene was changed and differs from the stored asset.");
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxScenegraph.h"
#include "MaterialFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

#include <QPainter>
#include <QPixmap>

namespace {

class kxMaterialAssetItemPreviewTest : public MaterialFixture
{
protected:
    static kxMaterialAssetItem itemOf(const osg::MaterialPtr &material)
    {
        kxMaterialAssetItem item;
        item.initFrom(material, {}, true);
        return item;
    }

    static void setPreview(const osg::MaterialPtr &material)
    {
        const osg::ImagePtr image = osg::Image::create();
        {
            osg::CPEditor edit(image);
            image->set(2, 1, 4, osg::PixelType::UInt8);
            image->editPixels().values() = {255, 0, 0, 255, 0, 0, 255, 128};
        }
        const osg::ImageAttachmentPtr attachment = osg::ImageAttachment::create();
        {
            osg::CPEditor edit(attachment, osg::ImageAttachment::ImageFieldMask);
            attachment->setImage(image);
        }
        osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }
};

QPixmap greenPixmap(int width, int height)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::green);
    return pixmap;
}

/// A green pixmap with \a icon at this height.
QImage greenWith(const QPixmap &icon, int width, int height, int y)
{
    QPixmap pixmap = greenPixmap(width, height);
    QPainter(&pixmap).drawPixmap(0, y, icon);
    return pixmap.toImage();
}

kxMaterialAssetItem itemOfType(osg::FieldContainerType &type)
{
    kxAssetItemDocument document;
    document.setMaterialType(type);
    kxMaterialAssetItem item;
    item.readMetaData(document);
    return item;
}

} // namespace

TEST_F(kxMaterialAssetItemPreviewTest, HasThePreviewOfItsMaterialRendered)
{
    const Owned material = makeSurface("x");

    itemOf(material);

    EXPECT_EQ(_host.previewRequests, (std::vector<std::vector<osg::MaterialPtr>>{{material.get()}}));
    EXPECT_EQ(_host.progressRequests, std::vector<bool>{false});
}

TEST_F(kxMaterialAssetItemPreviewTest, FindsThePreviewKeptOnTheMaterial)
{
    const Owned material = makeSurface("x");
    const kxMaterialAssetItem item = itemOf(material);
    EXPECT_FALSE(item.getOsgImage());

    setPreview(material);

    ASSERT_TRUE(item.getOsgImage());
    EXPECT_EQ(item.getOsgImage()->getWidth(), 2U);
}

TEST_F(kxMaterialAssetItemPreviewTest, TakesItsPreviewFromTheMaterial)
{
    const Owned material = makeSurface("x");
    setPreview(material);
    kxMaterialAssetItem item = itemOf(material);

    EXPECT_TRUE(item.loadPreviewImage(false));

    ASSERT_EQ(item.previewImage().size(), QSize(2, 1));
    EXPECT_EQ(item.previewImage().pixelColor(0, 0), QColor(255, 0, 0, 255));
    EXPECT_EQ(item.previewImage().pixelColor(1, 0), QColor(0, 0, 255, 128));
}

TEST_F(kxMaterialAssetItemPreviewTest, KeepsThePreviewItHas)
{
    const Owned material = makeSurface("x");
    setPreview(material);
    kxMaterialAssetItem item = itemOf(material);
    QImage image(5, 5, QImage::Format_ARGB32);
    image.fill(Qt::red);
    item.setPreviewImage(image);

    EXPECT_TRUE(item.loadPreviewImage(true));

    EXPECT_EQ(item.previewImage(), image);
}

TEST_F(kxMaterialAssetItemPreviewTest, LooksForItsPreviewInItsDirectoryOtherwise)
{
    QImage image(5, 5, QImage::Format_ARGB32);
    image.fill(Qt::red);
    kxMaterialAssetItem item = itemOf(makeSurface("x"));
    EXPECT_FALSE(item.loadPreviewImage(false));
    item.setDirectoryUrl(writeAsset("MAT_x", ""));
    ASSERT_TRUE(image.save(QString::fromStdString(_folder.file("MAT_x/asset.png"))));

    EXPECT_TRUE(item.loadPreviewImage(false));

    EXPECT_EQ(item.previewImage().size(), QSize(5, 5));
}

TEST_F(kxMaterialAssetItemPreviewTest, PaintsNoOverlayForPlainMaterials)
{
    QPixmap pixmap = greenPixmap(64, 64);

    itemOfType(osg::UBRDFMaterial::getClassType()).addOverlayIcon(pixmap);
    kxMaterialAssetItem().addOverlayIcon(pixmap);

    EXPECT_EQ(pixmap.toImage(), greenPixmap(64, 64).toImage());
}

TEST_F(kxMaterialAssetItemPreviewTest, PaintsTheTypeOfCompositesIntoTheCorner)
{
    for (osg::FieldContainerType *type :
         {&osg::SwitchMaterial::getClassType(), &osg::MultiPassMaterial::getClassType(),
          static_cast<osg::FieldContainerType *>(&osg::UEnvironmentSwitchMaterial::getClassType())}) {
        const QPixmap icon = kxScenegraph::getMaterialTypeIcon(type, 0);
        ASSERT_EQ(icon.height(), 32) << type->getCName();
        QPixmap pixmap = greenPixmap(128, 96);

        itemOfType(*type).addOverlayIcon(pixmap);

        EXPECT_EQ(pixmap.toImage(), greenWith(icon, 128, 96, 63)) << type->getCName();
        EXPECT_NE(pixmap.toImage(), greenPixmap(128, 96).toImage()) << type->getCName();
    }
}

TEST_F(kxMaterialAssetItemPreviewTest, PaintsAnIconThatJustFitsUnscaled)
{
    const QPixmap icon = kxScenegraph::getMaterialTypeIcon(&osg::SwitchMaterial::getClassType(), 0);
    // Three quarters of the height are 32.25, cut off to the icon's height; to scale it would make it narrower.
    QPixmap pixmap = greenPixmap(32, 43);

    itemOfType(osg::SwitchMaterial::getClassType()).addOverlayIcon(pixmap);

    EXPECT_EQ(pixmap.toImage(), greenWith(icon, 32, 43, 10));
}

TEST_F(kxMaterialAssetItemPreviewTest, ShrinksAnIconThatIsTooTall)
{
    const QPixmap icon = kxScenegraph::getMaterialTypeIcon(&osg::SwitchMaterial::getClassType(), 0);
    QPixmap pixmap = greenPixmap(27, 42); // room for 20 x 31

    itemOfType(osg::SwitchMaterial::getClassType()).addOverlayIcon(pixmap);

    const QPixmap shrunk = icon.scaled(20, 20, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    EXPECT_EQ(pixmap.toImage(), greenWith(shrunk, 27, 42, 21));
}

// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxPreviewRenderModule.h"

#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

namespace {

class kxPreviewRenderModuleTest : public testing::Test
{
protected:
    kxPreviewRenderModuleTest()
    {
        kxPreviewSettings::setSize(16);
        kxPreviewSettings::setSamples(1);
    }
    ~kxPreviewRenderModuleTest() override
    {
        kxPreviewSettings::setSize(512);
        kxPreviewSettings::setSamples(16);
    }
    template <class Attribute> static void request(const Attribute &materials)
    {
        kxMessage message;
        message.set("materials", materials);
        message.set("showProgress", false);
        kxController::call("renderPreviewImages", message);
    }

    const kxPreviewRenderModule module;
    const osg::FCRef<osg::UBRDFMaterial> first{osg::UBRDFMaterial::create()};
    const osg::FCRef<osg::UBRDFMaterial> second{osg::UBRDFMaterial::create()};
};

} // namespace

TEST_F(kxPreviewRenderModuleTest, KeepsAPictureOnEachMaterial)
{
    request(std::vector<osg::MaterialPtr>{first.get(), nullptr, second.get()});

    for (const auto &material : {first, second}) {
        const osg::ImagePtr image = kxMaterials::getPreviewImage(material.get());
        ASSERT_TRUE(image);
        EXPECT_EQ(image->getWidth(), 16U);
        EXPECT_EQ(image->getRefCount(), 1) << "the attachment's";
    }
}

TEST_F(kxPreviewRenderModuleTest, ReplacesAnEarlierPicture)
{
    request(std::vector<osg::MaterialPtr>{first.get()});
    const std::uint32_t id = kxMaterials::getPreviewImage(first.get()).getFieldContainerId();
    request(std::vector<osg::MaterialPtr>{first.get()});

    EXPECT_NE(kxMaterials::getPreviewImage(first.get()).getFieldContainerId(), id);
    EXPECT_EQ(first->getAttachments().size(), 1U);
}

TEST_F(kxPreviewRenderModuleTest, DoesNothingForAnotherTypeOfAttribute)
{
    request(std::vector<int>{1, 2});

    EXPECT_FALSE(kxMaterials::getPreviewImage(first.get()));
}

TEST(kxPreviewSettingsTest, KeepsValuesInRange)
{
    EXPECT_EQ(kxPreviewSettings::size(), 512);
    EXPECT_EQ(kxPreviewSettings::samples(), 16);
    kxPreviewSettings::setSize(1);
    kxPreviewSettings::setSamples(0);
    EXPECT_EQ(kxPreviewSettings::size(), 16);
    EXPECT_EQ(kxPreviewSettings::samples(), 1);
    kxPreviewSettings::setSize(512);
    kxPreviewSettings::setSamples(16);
}

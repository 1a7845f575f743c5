// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxBRDFEnvironmentSetter.h"

#include "Kernel/kxDefaultEnvironment.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/SceneTest.h"

namespace {

class kxBRDFEnvironmentSetterTest : public kxtest::SceneTest
{
protected:
    kxBRDFEnvironmentSetterTest() { assign(surface.get(), first.get()); }

    static void assign(const osg::UBRDFMaterialPtr &material, const osg::MaterialPtr &environment)
    {
        const osg::CPEditor edit(material, osg::UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(environment);
    }

    osg::FCRef<osg::USkyEnvironmentMaterial> first{osg::USkyEnvironmentMaterial::create()};
    osg::FCRef<osg::USkyEnvironmentMaterial> second{osg::USkyEnvironmentMaterial::create()};
    osg::FCRef<osg::UBRDFMaterial> surface{osg::UBRDFMaterial::create()};
};

TEST_F(kxBRDFEnvironmentSetterTest, BringsBackWhatWasThereFirst)
{
    kxBRDFEnvironmentSetter setter;

    setter.setEnvironment(surface.get(), second.get());
    EXPECT_EQ(surface->getEnvironment(), second.get());
    setter.setEnvironment(surface.get(), kxDefaultEnvironment::getDefault());
    setter.reset();

    EXPECT_EQ(surface->getEnvironment(), first.get());
    assign(surface.get(), second.get());
    setter.reset();
    EXPECT_EQ(surface->getEnvironment(), second.get()) << "a second time does nothing";
}

TEST_F(kxBRDFEnvironmentSetterTest, KeepsTheOldEnvironmentAlive)
{
    kxBRDFEnvironmentSetter setter;
    const std::uint32_t id = first.get().getFieldContainerId();

    setter.setEnvironment(surface.get(), second.get());
    first.reset();
    setter.reset();

    ASSERT_TRUE(surface->getEnvironment());
    EXPECT_EQ(surface->getEnvironment().getFieldContainerId(), id);
}

TEST_F(kxBRDFEnvironmentSetterTest, BringsBackNothingAsNothing)
{
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(true);
    assign(surface.get(), nullptr);
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(false);
    kxBRDFEnvironmentSetter setter;

    setter.setEnvironment(surface.get(), second.get());
    setter.reset();

    EXPECT_FALSE(surface->getEnvironment());
    EXPECT_FALSE(osg::UBRDFMaterial::getIgnoreDefaultEnvironment());
}

TEST_F(kxBRDFEnvironmentSetterTest, MeansAllLayersOfAnUberMaterial)
{
    const osg::FCRef<osg::UberMaterial> uber(osg::UberMaterial::create());
    {
        const osg::CPEditor edit(uber.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        uber->editBRDFMaterials().push_back(surface.get());
    }
    kxBRDFEnvironmentSetter setter;

    setter.setEnvironment(uber.get(), second.get());
    EXPECT_EQ(surface->getEnvironment(), second.get());
    setter.setEnvironment(osg::UberMaterialPtr(), second.get());
    setter.setEnvironment(osg::UBRDFMaterialPtr(), second.get());
    setter.reset();

    EXPECT_EQ(surface->getEnvironment(), first.get());
}

TEST_F(kxBRDFEnvironmentSetterTest, PassesOverDestroyedMaterialsAndCopiesThatWereReset)
{
    kxBRDFEnvironmentSetter setter;
    osg::FCRef<osg::UBRDFMaterial> gone(osg::UBRDFMaterial::create());
    setter.setEnvironment(gone.get(), second.get());
    setter.setEnvironment(surface.get(), second.get());
    kxBRDFEnvironmentSetter copy = setter;
    gone.reset();

    setter.reset();
    EXPECT_EQ(surface->getEnvironment(), first.get());
    assign(surface.get(), second.get());
    copy.reset();
    EXPECT_EQ(surface->getEnvironment(), second.get()) << "the first one restored it already";
}

} // namespace

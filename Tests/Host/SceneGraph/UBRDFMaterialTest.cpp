// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UBRDFMaterial.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

class UBRDFMaterialTest : public testing::Test
{
protected:
    ~UBRDFMaterialTest() override
    {
        UBRDFMaterial::setDefaultEnvironmentSource({});
        UBRDFMaterial::setIgnoreDefaultEnvironment(false);
    }

    void offerDefault()
    {
        UBRDFMaterial::setDefaultEnvironmentSource([this] { return MaterialPtr(defaultSky.get()); });
    }
    void set(const MaterialPtr &environment)
    {
        const CPEditor edit(material.get(), UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(environment);
    }

    FCRef<USkyEnvironmentMaterial> defaultSky{USkyEnvironmentMaterial::create()};
    FCRef<USkyEnvironmentMaterial> ownSky{USkyEnvironmentMaterial::create()};
    FCRef<UBRDFMaterial> material{UBRDFMaterial::create()};
};

TEST_F(UBRDFMaterialTest, HasNoEnvironmentAtFirst)
{
    offerDefault();

    EXPECT_EQ(material->getEnvironment(), NullFC);
}

TEST_F(UBRDFMaterialTest, AdoptsTheDefaultEnvironmentForNull)
{
    offerDefault();
    set(nullptr);

    EXPECT_EQ(material->getEnvironment(), defaultSky.get());
    EXPECT_EQ(defaultSky->getRefCount(), 2);
}

TEST_F(UBRDFMaterialTest, TakesTheEnvironmentItIsGiven)
{
    offerDefault();
    set(ownSky.get());

    EXPECT_EQ(material->getEnvironment(), ownSky.get());
}

TEST_F(UBRDFMaterialTest, StaysWithoutEnvironmentWhileTheDefaultIsIgnored)
{
    offerDefault();
    UBRDFMaterial::setIgnoreDefaultEnvironment(true);
    set(nullptr);

    EXPECT_TRUE(UBRDFMaterial::getIgnoreDefaultEnvironment());
    EXPECT_EQ(material->getEnvironment(), NullFC);
}

TEST_F(UBRDFMaterialTest, StaysWithoutEnvironmentWhereThereIsNoDefault)
{
    set(nullptr);

    EXPECT_EQ(material->getEnvironment(), NullFC);
}

} // namespace

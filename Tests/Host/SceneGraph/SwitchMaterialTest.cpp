// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SwitchMaterial.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace osg;

class SwitchMaterialTest : public testing::Test
{
protected:
    MaterialPtr currentFor(std::int32_t choice)
    {
        const CPEditor edit(chooser.get(), SwitchMaterial::ChoiceFieldMask);
        chooser->setChoice(choice);
        return chooser->getCurrentMaterial();
    }

    FCRef<SwitchMaterial> chooser{SwitchMaterial::create()};
};

TEST_F(SwitchMaterialTest, HasNoCurrentMaterialWithoutEntries)
{
    EXPECT_EQ(chooser->getCurrentMaterial(), NullFC);
}

TEST_F(SwitchMaterialTest, ShowsItsChoiceAndNothingOutOfRange)
{
    const MaterialPtr first = UBRDFMaterial::create();
    const MaterialPtr second = UBRDFMaterial::create();
    {
        const CPEditor edit(chooser.get(), MultiMaterial::MaterialsFieldMask);
        chooser->addMaterial(first);
        chooser->addMaterial(second);
    }

    EXPECT_EQ(currentFor(0), first);
    EXPECT_EQ(currentFor(1), second);
    for (const std::int32_t choice :
         {-1, 2, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()})
        EXPECT_EQ(currentFor(choice), NullFC) << choice;
}

} // namespace

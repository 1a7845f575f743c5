// SPDX-License-Identifier: Apache-2.0
#include "FieldFiller.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneFile.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace osg;

std::vector<std::string> concreteTypes()
{
    std::vector<std::string> names;
    for (const FieldContainerType *type : FieldContainerFactory::the().types())
        if (!type->isAbstract())
            names.emplace_back(type->getCName());
    return names;
}

FCRef<FieldContainer> make(const std::string &name)
{
    return FCRef<FieldContainer>(FieldContainerFactory::the().createFieldContainer(name));
}

/// Every registered type, so that a new one is tested without anybody thinking of it.
class ContainerTypesTest : public testing::TestWithParam<std::string>
{};

} // namespace

TEST_P(ContainerTypesTest, SurvivesAFile)
{
    const kxtest::TemporaryFolder folder;
    const FCRef<FieldContainer> original = make(GetParam());
    kxtest::FieldFiller(7).fill(original);

    const Result<void> written = writeSceneFile(folder.file("a.osb"), {original.get()});
    ASSERT_TRUE(written) << written.reason();
    const Result<SceneRoots> read = readSceneFile(folder.file("a.osb"));
    ASSERT_TRUE(read) << read.reason();
    ASSERT_EQ(read.value().size(), 1U);
    const auto difference = findDifference(original.get(), read.value().front().get());
    EXPECT_FALSE(difference) << *difference;

    ASSERT_TRUE(writeSceneFile(folder.file("b.osb"), {read.value().front().get()}));
    EXPECT_EQ(folder.read("a.osb"), folder.read("b.osb")) << "the same structure gives the same bytes";
}

TEST_P(ContainerTypesTest, HasClonesThatAreEqual)
{
    const FCRef<FieldContainer> original = make(GetParam());
    kxtest::FieldFiller(11).fill(original);

    const FCRef<FieldContainer> clone(deepClone(original.get(), {}));

    const auto difference = findDifference(original.get(), clone.get());
    EXPECT_FALSE(difference) << *difference;
    EXPECT_NE(clone->getFieldContainerId(), original->getFieldContainerId());
}

TEST_P(ContainerTypesTest, ShowsAChangeOfEveryField)
{
    const FCRef<FieldContainer> original = make(GetParam());
    for (const FieldInfo &field : original->getType().fields()) {
        const FCRef<FieldContainer> other = make(GetParam());
        kxtest::FieldFiller(13).change(other, field);
        EXPECT_TRUE(findDifference(original.get(), other.get())) << field.name;
    }
}

TEST_P(ContainerTypesTest, HasFieldsWithMasksOfTheirOwn)
{
    std::set<FieldMask> masks;
    std::set<std::string> names;
    const FieldContainerType *type = FieldContainerFactory::the().findType(GetParam());
    for (const FieldInfo &field : type->fields()) {
        EXPECT_TRUE(masks.insert(field.mask).second) << field.name;
        EXPECT_TRUE(names.insert(field.name).second) << field.name;
        EXPECT_EQ(type->findField(field.name), &field);
    }
    EXPECT_EQ(type->findField("NoSuchField"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, ContainerTypesTest, testing::ValuesIn(concreteTypes()),
                         [](const auto &parameter) { return parameter.param; });

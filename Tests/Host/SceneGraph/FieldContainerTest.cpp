// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainer.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditAudit.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace {

using namespace osg;

FieldContainerFactory &factory()
{
    return FieldContainerFactory::the();
}

class Recorder final : public SceneListener
{
public:
    Recorder() { factory().addListener(*this); }
    ~Recorder() override { factory().removeListener(*this); }
    void containerChanged(FieldContainer &container, FieldMask fields) override
    {
        changes.emplace_back(container.getFieldContainerId(), fields);
    }
    void containerDestroyed(FieldContainer &container) override
    {
        destroyed.push_back(container.getFieldContainerId());
    }

    std::vector<std::pair<std::uint32_t, FieldMask>> changes;
    std::vector<std::uint32_t> destroyed;
};

using Surface = FCRef<UBRDFMaterial>;

} // namespace

TEST(FieldContainerTest, HasAnIdThatIsNeverGivenOutAgain)
{
    std::set<std::uint32_t> ids;
    for (int i = 0; i < 10000; ++i)
        ids.insert(Surface(UBRDFMaterial::create())->getFieldContainerId());

    EXPECT_EQ(ids.size(), 10000U);
    EXPECT_FALSE(ids.contains(0));
    EXPECT_FALSE(factory().getContainer(*ids.begin())) << "a destroyed container reads as null";
    EXPECT_FALSE(factory().getContainer(0));
    EXPECT_FALSE(factory().getContainer(0xFFFFFFFFU));
}

TEST(FieldContainerTest, IsMadeByTypeName)
{
    const FCRef<FieldContainer> made(factory().createFieldContainer("UBRDFMaterial"));

    EXPECT_STREQ(made->getType().getCName(), "UBRDFMaterial");
    EXPECT_EQ(made->getRefCount(), 1);
    EXPECT_EQ(factory().findType("UBRDFMaterial"), &UBRDFMaterial::getClassType());
    EXPECT_FALSE(factory().createFieldContainer("Unknown"));
    EXPECT_FALSE(factory().createFieldContainer("Material")) << "abstract";
    EXPECT_EQ(factory().findType("Unknown"), nullptr);
}

TEST(FieldContainerTest, HasParentTypesAsTheFamilySays)
{
    EXPECT_TRUE(UEnvironmentSwitchMaterial::getClassType().isDerivedFrom(SwitchMaterial::getClassType()));
    EXPECT_FALSE(UEnvironmentSwitchMaterial::getClassType().isDerivedFrom(UEnvironmentMaterial::getClassType()));
    EXPECT_TRUE(USkyEnvironmentMaterial::getClassType().isDerivedFrom(UEnvironmentMaterial::getClassType()));
    EXPECT_FALSE(UBRDFMaterial::getClassType().isDerivedFrom(SwitchMaterial::getClassType()));
}

TEST(FieldContainerTest, DiesWithTheLastReference)
{
    const UBRDFMaterialPtr material = UBRDFMaterial::create();
    EXPECT_EQ(material->getRefCount(), 0);
    FCRef<UBRDFMaterial> a(material);
    FCRef<UBRDFMaterial> b = a;
    EXPECT_EQ(material->getRefCount(), 2);
    const std::uint32_t id = material.getFieldContainerId();

    a.reset();
    EXPECT_TRUE(factory().isAlive(id));
    b.reset();
    EXPECT_FALSE(factory().isAlive(id));
}

TEST(FieldContainerTest, IsCastDownOnlyToWhatItIs)
{
    const Surface material(UBRDFMaterial::create());
    const MaterialPtr base = material.get();

    EXPECT_EQ(dcast<UBRDFMaterialPtr>(base), material.get());
    EXPECT_FALSE(dcast<SwitchMaterialPtr>(base));
    EXPECT_FALSE(dcast<SwitchMaterialPtr>(nullptr));
}

TEST(FieldContainerTest, HasHandlesThatOrderById)
{
    const Surface first(UBRDFMaterial::create());
    const Surface second(UBRDFMaterial::create());

    EXPECT_LT(first.get(), second.get());
    EXPECT_LT(UBRDFMaterialPtr(), first.get());
    EXPECT_EQ((std::set<MaterialPtr>{second.get(), first.get()}.begin()->getFieldContainerId()),
              first->getFieldContainerId());
}

TEST(FieldContainerTest, TellsListenersOnceAtTheOutermostEnd)
{
    const Surface material(UBRDFMaterial::create());
    Recorder recorder;
    {
        const CPEditor outer(material.get(), UBRDFMaterial::RoughnessFieldMask);
        material->setRoughness(0.1F);
        {
            const CPEditor inner(material.get(), UBRDFMaterial::MetalnessFieldMask);
            material->setMetalness(1.0F);
        }
        EXPECT_TRUE(recorder.changes.empty());
    }

    ASSERT_EQ(recorder.changes.size(), 1U);
    EXPECT_EQ(recorder.changes[0].second, UBRDFMaterial::RoughnessFieldMask | UBRDFMaterial::MetalnessFieldMask);
}

TEST(FieldContainerTest, TellsListenersOfItsEnd)
{
    Recorder recorder;
    Surface material(UBRDFMaterial::create());
    const std::uint32_t id = material->getFieldContainerId();

    material.reset();

    EXPECT_EQ(recorder.destroyed, (std::vector<std::uint32_t>{id}));
}

TEST(FieldContainerTest, MayDieWithinAnEdit)
{
    Surface material(UBRDFMaterial::create());
    const CPEditor edit(material.get(), UBRDFMaterial::RoughnessFieldMask);
    material.reset();
}

TEST(EditAuditTest, RecordsChangesOutsideAnEdit)
{
    const Surface material(UBRDFMaterial::create());
    material->setRoughness(0.5F);
    {
        const CPEditor edit(material.get(), UBRDFMaterial::MetalnessFieldMask);
        material->setRoughness(0.5F);
    }

    const std::vector<std::string> violations = EditAudit::takeViolations();

    const std::string expected = "UBRDFMaterial " + std::to_string(material->getFieldContainerId()) +
                                 " (Roughness): a field changes outside an edit that names it";
    EXPECT_EQ(violations, (std::vector<std::string>{expected, expected}));
    EXPECT_TRUE(EditAudit::takeViolations().empty());
}

TEST(EditAuditTest, RecordsAnEndWithoutItsBeginning)
{
    const Surface material(UBRDFMaterial::create());
    beginEditCP(material.get(), UBRDFMaterial::MetalnessFieldMask);
    endEditCP(material.get(), UBRDFMaterial::RoughnessFieldMask);
    endEditCP(material.get(), UBRDFMaterial::MetalnessFieldMask);

    EXPECT_EQ(EditAudit::takeViolations().size(), 1U);
}

TEST(AttachmentContainerTest, HoldsOneAttachmentOfEachType)
{
    const Surface material(UBRDFMaterial::create());
    EXPECT_FALSE(AssetAttachment::getAssetAttachment(material.get())) << "looking does not create";
    EXPECT_FALSE(AssetAttachment::getAssetAttachment(nullptr));

    const AssetAttachmentPtr first = AssetAttachment::createAssetAttachment(material.get());
    EXPECT_EQ(AssetAttachment::createAssetAttachment(material.get()), first);
    setName(material.get(), "Grün");
    setName(material.get(), "Rot");
    {
        const CPEditor edit(material.get(), AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(AssetAttachment::create());
        material->addAttachment(nullptr);
    }

    EXPECT_EQ(material->getAttachments().size(), 2U);
    EXPECT_EQ(getName(material.get()), "Rot");
    EXPECT_EQ(getName(nullptr), "");
}

TEST(TagAttachmentTest, JoinsItsTagsAndKeepsEachOnce)
{
    const FCRef<TagAttachment> tags(TagAttachment::create());
    const CPEditor edit(tags.get(), TagAttachment::MaterialsFieldMask);
    tags->addMaterialTag("metal");
    tags->addMaterialTag("Grün");
    tags->addMaterialTag("metal");

    EXPECT_EQ(tags->getTagString(), "metal, Grün");
}

TEST(SwitchMaterialTest, HasNoCurrentMaterialForAChoiceOutOfRange)
{
    const FCRef<SwitchMaterial> chooser(SwitchMaterial::create());
    const Surface part(UBRDFMaterial::create());
    EXPECT_FALSE(chooser->getCurrentMaterial());
    const CPEditor edit(chooser.get(), AllFieldMask);
    chooser->addMaterial(part.get());

    EXPECT_EQ(chooser->getCurrentMaterial(), part.get());
    for (const std::int32_t choice : {-1, 1, 1000}) {
        chooser->setChoice(choice);
        EXPECT_FALSE(chooser->getCurrentMaterial()) << choice;
    }
}

TEST(UBRDFMaterialTest, AdoptsTheDefaultEnvironmentUnlessToldNotTo)
{
    const FCRef<USkyEnvironmentMaterial> sky(USkyEnvironmentMaterial::create());
    UBRDFMaterial::setDefaultEnvironmentSource([&sky] { return MaterialPtr(sky.get()); });
    const Surface material(UBRDFMaterial::create());
    const CPEditor edit(material.get(), UBRDFMaterial::EnvironmentFieldMask);
    EXPECT_FALSE(material->getEnvironment()) << "nothing was given yet";

    material->setEnvironment(nullptr);
    EXPECT_EQ(material->getEnvironment(), sky.get());
    UBRDFMaterial::setIgnoreDefaultEnvironment(true);
    material->setEnvironment(nullptr);
    EXPECT_FALSE(material->getEnvironment());

    UBRDFMaterial::setIgnoreDefaultEnvironment(false);
    UBRDFMaterial::setDefaultEnvironmentSource({});
}

TEST(DeepCloneTest, CopiesWhatIsReachedAndKeepsSharing)
{
    const FCRef<SwitchMaterial> chooser(SwitchMaterial::create());
    const Surface part(UBRDFMaterial::create());
    setName(part.get(), "Teil");
    {
        const CPEditor edit(chooser.get(), MultiMaterial::MaterialsFieldMask);
        chooser->addMaterial(part.get());
        chooser->addMaterial(part.get());
    }

    const SwitchMaterialPtr clone = deepClone(chooser.get(), {});
    EXPECT_EQ(clone->getRefCount(), 0);
    const FCRef<SwitchMaterial> kept(clone);

    EXPECT_NE(clone->getMaterial(0), part.get());
    EXPECT_EQ(clone->getMaterial(0), clone->getMaterial(1));
    EXPECT_FALSE(findDifference(chooser.get(), clone));
    EXPECT_EQ(getName(clone->getMaterial(0)), "Teil");

    const FCRef<SwitchMaterial> sharing(deepClone(chooser.get(), {part.get()}));
    EXPECT_EQ(sharing->getMaterial(0), part.get());
}

TEST(CompareTest, NamesTheFirstDifference)
{
    const Surface a(UBRDFMaterial::create());
    const Surface b(UBRDFMaterial::create());
    EXPECT_FALSE(findDifference(a.get(), b.get()));
    {
        const CPEditor edit(b.get(), UBRDFMaterial::RoughnessFieldMask);
        b->setRoughness(0.25F);
    }

    const auto difference = findDifference(a.get(), b.get());

    ASSERT_TRUE(difference);
    EXPECT_NE(difference->find("Roughness"), std::string::npos) << *difference;
    EXPECT_TRUE(findDifference(a.get(), nullptr));
    EXPECT_FALSE(findDifference(nullptr, nullptr));
}

TEST(FieldContainerFactoryThreadTest, ServesSeveralThreadsAtOnce)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 5000; ++i) {
                const FCRef<FieldContainer> image(factory().createFieldContainer("Image"));
                EXPECT_EQ(factory().getContainer(image->getFieldContainerId()), image.get());
                EXPECT_NE(factory().findType("Image"), nullptr);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
}

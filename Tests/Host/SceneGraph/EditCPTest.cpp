// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/EditCP.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditAudit.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"

#include <gmock/gmock.h>

#include <optional>

namespace {

using namespace osg;
using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down the masks of all changes.
class EditCPTest : public testing::Test, public SceneListener
{
protected:
    static constexpr FieldMask Url = AssetAttachment::UrlFieldMask;
    static constexpr FieldMask Uuid = AssetAttachment::UuidFieldMask;

    EditCPTest() { FieldContainerFactory::the().addListener(*this); }
    ~EditCPTest() override { FieldContainerFactory::the().removeListener(*this); }

    void containerChanged(FieldContainer &, FieldMask fields) override { told.push_back(fields); }

    std::string violation(const std::string &field, const std::string &what) const
    {
        return "AssetAttachment " + std::to_string(asset.get().getFieldContainerId()) + " (" + field + "): " + what;
    }

    FCRef<AssetAttachment> asset{AssetAttachment::create()};
    std::vector<FieldMask> told;
};

TEST_F(EditCPTest, TellsWhatWasSetAndNotWhatWasOpen)
{
    beginEditCP(asset.get(), Url | Uuid);
    asset->setUrl("here");
    EXPECT_THAT(told, IsEmpty());
    endEditCP(asset.get(), Url | Uuid);

    EXPECT_THAT(told, ElementsAre(Url));
}

TEST_F(EditCPTest, ShowsAnObserverWhichFieldsEachEditNames)
{
    std::vector<FieldMask> named;
    EditAudit::setObserver([&named](const FieldContainer &, FieldMask fields) { named.push_back(fields); });
    {
        const CPEditor outer(asset.get(), Url | Uuid);
        const CPEditor inner(asset.get(), Url);
    }
    EditAudit::setObserver({});
    {
        const CPEditor unobserved(asset.get());
    }

    EXPECT_THAT(named, ElementsAre(Url | Uuid, Url));
}

TEST_F(EditCPTest, TellsNothingWhereNothingWasSet)
{
    {
        const CPEditor edit(asset.get());
    }

    EXPECT_THAT(told, IsEmpty());
}

TEST_F(EditCPTest, TellsOfNestedEditsOnceAtTheOutermostEnd)
{
    {
        const CPEditor outer(asset.get(), Url);
        asset->setUrl("here");
        {
            const CPEditor inner(asset.get(), Uuid);
            asset->setUuid("1");
            asset->setUrl("there");
        }
        EXPECT_THAT(told, IsEmpty());
    }

    EXPECT_THAT(told, ElementsAre(Url | Uuid));
}

TEST_F(EditCPTest, TellsOfEachContainerByItself)
{
    const FCRef<AssetAttachment> other(AssetAttachment::create());
    {
        const CPEditor first(asset.get(), Url);
        {
            const CPEditor second(other.get(), Uuid);
            other->setUuid("1");
        }
        EXPECT_THAT(told, ElementsAre(Uuid));
        asset->setUrl("here");
    }

    EXPECT_THAT(told, ElementsAre(Uuid, Url));
}

TEST_F(EditCPTest, RecordsAChangeOutsideEveryEdit)
{
    asset->setUrl("here");

    EXPECT_THAT(EditAudit::takeViolations(),
                ElementsAre(violation("Url", "a field changes outside an edit that names it")));
    EXPECT_EQ(asset->getUrl(), "here");
}

TEST_F(EditCPTest, RecordsAChangeUnderAnotherFieldsMask)
{
    const CPEditor edit(asset.get(), Url);
    asset->setUuid("1");

    EXPECT_THAT(EditAudit::takeViolations(),
                ElementsAre(violation("Uuid", "a field changes outside an edit that names it")));
}

TEST_F(EditCPTest, RecordsAChangeAfterTheInnerEditEnded)
{
    const CPEditor outer(asset.get(), Url);
    {
        const CPEditor inner(asset.get(), Uuid);
    }
    asset->setUuid("1");

    EXPECT_EQ(EditAudit::takeViolations().size(), 1U);
}

TEST_F(EditCPTest, RecordsAChangeInAnotherContainersEdit)
{
    const FCRef<AssetAttachment> other(AssetAttachment::create());
    const CPEditor edit(other.get(), Url);
    asset->setUrl("here");

    EXPECT_EQ(EditAudit::takeViolations().size(), 1U);
}

TEST_F(EditCPTest, RecordsAnEndWithoutItsBeginning)
{
    endEditCP(asset.get(), Url);
    beginEditCP(asset.get(), Uuid);
    endEditCP(asset.get(), Url);
    endEditCP(asset.get(), Uuid);

    const std::string expected = violation("Url", "an edit is ended that was not begun with this mask");
    EXPECT_THAT(EditAudit::takeViolations(), ElementsAre(expected, expected));
}

TEST_F(EditCPTest, AcceptsOverlappingEdits)
{
    beginEditCP(asset.get(), Url);
    beginEditCP(asset.get(), Uuid);
    endEditCP(asset.get(), Url);
    asset->setUuid("1");
    endEditCP(asset.get(), Uuid);

    EXPECT_THAT(EditAudit::takeViolations(), IsEmpty());
    EXPECT_THAT(told, ElementsAre(Uuid));
}

TEST_F(EditCPTest, EndsSilentlyWhereTheContainerIsGone)
{
    std::optional<CPEditor> edit(std::in_place, asset.get(), Url);
    asset->setUrl("here");
    asset.reset();

    edit.reset();

    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(EditAudit::takeViolations(), IsEmpty());
}

TEST_F(EditCPTest, IgnoresNull)
{
    beginEditCP(nullptr, Url);
    endEditCP(nullptr, Url);
    const CPEditor edit(nullptr);

    EXPECT_THAT(EditAudit::takeViolations(), IsEmpty());
}

TEST_F(EditCPTest, MarksFieldsSetThroughTheirAddressLikeASetter)
{
    asset->markChanged(Url);
    EXPECT_EQ(EditAudit::takeViolations().size(), 1U);

    const CPEditor edit(asset.get(), Url);
    asset->markChanged(Url);
    EXPECT_THAT(EditAudit::takeViolations(), IsEmpty());
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
#include "Support/EditAuditListener.h"

#if defined(KX_HAS_SCENE_GRAPH)
#include "SceneGraph/EditAudit.h"
#endif

#include <gtest/gtest.h>

namespace kxtest {

#if defined(KX_HAS_SCENE_GRAPH)

namespace {

class EditAuditListener final : public testing::EmptyTestEventListener
{
    // A violation before the first test would otherwise be charged to that test.
    void OnTestStart(const testing::TestInfo &) override { report("before this test"); }
    void OnTestEnd(const testing::TestInfo &) override { report("during this test"); }

    static void report(const char *when)
    {
        for (const std::string &violation : osg::EditAudit::takeViolations())
            ADD_FAILURE() << "edit audit, " << when << ": " << violation;
    }
};

} // namespace

void installEditAuditListener()
{
    osg::EditAudit::enable();
    testing::UnitTest::GetInstance()->listeners().Append(new EditAuditListener);
}

#else

void installEditAuditListener() {}

#endif

} // namespace kxtest

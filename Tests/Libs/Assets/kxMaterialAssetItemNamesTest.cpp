// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxMaterialAssetItem.h"
#include "HostModule.h"
#include "Kernel/kxLogRecorder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// The names of material types are asked for once in a process: what depends on that moment runs in a fresh one.
class kxMaterialAssetItemNamesTest : public testing::Test
{
protected:
    kxMaterialAssetItemNamesTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

[[noreturn]] void endProcess(bool isAsExpected)
{
    std::exit(isAsExpected ? 0 : 1);
}

} // namespace

TEST_F(kxMaterialAssetItemNamesTest, AsksTheHostForTypeNamesOnce)
{
    EXPECT_EXIT(
        {
            HostModule host;
            const QString first = kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial");
            const QString second = kxMaterialAssetItem::UIMaterialTypeName("Unknown");
            endProcess(first == QString::fromUtf8("Schälter") && second == "Unknown" && host.nameRequests == 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxMaterialAssetItemNamesTest, AsksTheHostAgainAfterAnEmptyAnswer)
{
    EXPECT_EXIT(
        {
            HostModule host;
            host.names.clear();
            kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial");
            const QString unknown = kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial");
            host.names["SwitchMaterial"] = "Switch";
            const QString known = kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial");
            endProcess(unknown == "SwitchMaterial" && known == "Switch" && host.nameRequests == 3);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxMaterialAssetItemNamesTest, DoesWithoutAnAnswerOfTheRightType)
{
    EXPECT_EXIT(
        {
            HostModule host;
            host.answersWithWrongType = true;
            const QString name = kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial");
            endProcess(name == "SwitchMaterial");
        },
        testing::ExitedWithCode(0), "kxMessage::get : Attribute 'names' has wrong type");
}

TEST_F(kxMaterialAssetItemNamesTest, DoesWithoutAHostThatAnswers)
{
    EXPECT_EXIT(endProcess(kxMaterialAssetItem::UIMaterialTypeName("SwitchMaterial") == "SwitchMaterial"),
                testing::ExitedWithCode(0), "");
}

TEST_F(kxMaterialAssetItemNamesTest, SaysByItsDisplayNameWhatCannotBeSaved)
{
    EXPECT_EXIT(
        {
            HostModule host;
            host.names[""] = QString::fromUtf8("Käse");
            const kxLogRecorder log;
            kxMaterialAssetItem::isSaveAllowed(nullptr);
            endProcess(log.lines(kxLogLevel::Error) ==
                       std::vector<std::string>{"[Asset Manager] Save is not supported for material type Käse."});
        },
        testing::ExitedWithCode(0), "");
}

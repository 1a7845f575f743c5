// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxPlatform.h"

#include "Kernel/kxVersion.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(kxPlatformTest, KnowsTheFolderOfTheRunningProgram)
{
    EXPECT_EQ(kxPlatform::getBinDir(), std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
}

TEST(kxVersionTest, IsTheVersionOfTheProject)
{
    EXPECT_STREQ(kxGetVersionString(), KX_EXPECTED_VERSION);
}

} // namespace

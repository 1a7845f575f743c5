// SPDX-License-Identifier: Apache-2.0
#include "Import/kxImportLimits.h"

#include <gtest/gtest.h>

#include <limits>

using namespace std::chrono_literals;

namespace {

TEST(kxImportLimitsTest, GivesLargerFilesMoreTime)
{
    EXPECT_EQ(kxImportLimits().resolved(0).time, 60s);
    EXPECT_EQ(kxImportLimits().resolved((std::uint64_t{100} << 20) + 5).time, 160s);
    EXPECT_EQ(kxImportLimits().resolved(std::numeric_limits<std::uint64_t>::max()).time, 60s + 24h);
}

TEST(kxImportLimitsTest, GivesAtLeastTwoGigabytes)
{
    EXPECT_GE(kxImportLimits().resolved(0).memory, std::uint64_t{2} << 30);
}

TEST(kxImportLimitsTest, KeepsWhatWasChosen)
{
    kxImportLimits limits;
    limits.memory = 12345;
    limits.time = 678ms;

    EXPECT_EQ(limits.resolved(1 << 30).memory, 12345U);
    EXPECT_EQ(limits.resolved(1 << 30).time, 678ms);
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
#include "Support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace kxtest {

namespace {

constexpr uid_t Nobody = 65534;

} // namespace

WithoutPrivileges::WithoutPrivileges() : _isRoot(::geteuid() == 0)
{
    if (_isRoot) {
        EXPECT_EQ(::seteuid(Nobody), 0);
    }
}

WithoutPrivileges::~WithoutPrivileges()
{
    if (_isRoot) {
        EXPECT_EQ(::seteuid(0), 0);
    }
}

} // namespace kxtest

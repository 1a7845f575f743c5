// SPDX-License-Identifier: Apache-2.0
#include "Support/EditAuditListener.h"
#include "Support/LeakCheck.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    kxtest::installEditAuditListener();
    const int result = RUN_ALL_TESTS();
    kxtest::checkForLeaks();
    return result;
}

// SPDX-License-Identifier: Apache-2.0
#include "Support/EditAuditListener.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    kxtest::installEditAuditListener();
    return RUN_ALL_TESTS();
}

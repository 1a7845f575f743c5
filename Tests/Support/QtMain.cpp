// SPDX-License-Identifier: Apache-2.0
#include "Support/EditAuditListener.h"

#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) // CTest asks every program for this, and only for this
        return RUN_ALL_TESTS();
    QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // settings of the person who runs the tests stay untouched
    kxtest::installEditAuditListener();
    return RUN_ALL_TESTS();
}

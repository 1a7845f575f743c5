// SPDX-License-Identifier: Apache-2.0
#include "Support/EditAuditListener.h"
#include "Support/XServer.h"

#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdio>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) // CTest asks every program for this, and only for this
        return RUN_ALL_TESTS();
    const kxtest::XServer server;
    if (server.display().empty()) {
        std::fprintf(stderr, "No test ran, because there is no X server: %s.\n", server.reason().c_str());
        return 1;
    }
    qputenv("DISPLAY", server.display().c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_XCB_GL_INTEGRATION", "none"); // the program needs none, and its drivers take time and leak
    QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // settings of the person who runs the tests stay untouched
    kxtest::installEditAuditListener();
    return RUN_ALL_TESTS();
}

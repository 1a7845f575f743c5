// SPDX-License-Identifier: Apache-2.0
// The example host of the documentation, run on a small library.
#include "Kernel/kxController.h"
#include "Support/TemporaryFolder.h"

#define main exampleHost
#include "host.inc"
#undef main

#include <QTimer>

#include <gtest/gtest.h>

#include <array>

namespace {

constexpr const char *Uuid = "3f2a1b4c-0000-4000-8000-000000000001";

/// What was seen while the program ran.
struct Seen
{
    int rows = -1;
    QString name;
    bool isFound = false;
    bool isStrangerFound = true;
    QString current;
};

Seen &seen()
{
    static Seen instance;
    return instance;
}

bool select(const std::string &uuid)
{
    kxMessage message;
    message.set("uuid", uuid);
    message.set("clearSelection", true);
    EXPECT_TRUE(kxController::call("selectAssetByUUID", message));
    return message.get<bool>("found").value_or(false);
}

/// Once the program has its application: looks into its window as soon as that is there, and ends it.
void lookLater()
{
    QTimer::singleShot(0, qApp, [] {
        const auto widgets = QApplication::topLevelWidgets();
        for (QWidget *widget : widgets) {
            auto *view = qobject_cast<QTreeWidget *>(widget);
            if (!view)
                continue;
            seen().rows = view->topLevelItemCount();
            seen().name = view->topLevelItem(0) ? view->topLevelItem(0)->text(0) : QString();
            seen().isFound = select(Uuid);
            seen().isStrangerFound = select("nobody");
            seen().current = view->currentItem() ? view->currentItem()->text(1) : QString();
        }
        QApplication::quit();
    });
}

} // namespace

TEST(HostDocumentTest, ShowsALibraryAndSelectsInIt)
{
    const kxtest::TemporaryFolder folder;
    folder.write("lib/GEO_Chair/Chair.xml",
                 std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n"
                             "<item><category>Geometries</category><uuid>") +
                     Uuid + "</uuid><name>Stühlchen</name></item>\n");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qAddPreRoutine(&lookLater);
    std::string program = "host";
    std::string library = folder.file("lib");
    std::array<char *, 3> arguments{program.data(), library.data(), nullptr};

    EXPECT_EQ(exampleHost(2, arguments.data()), 0);

    EXPECT_EQ(seen().rows, 1);
    EXPECT_EQ(seen().name, QString::fromUtf8("Stühlchen"));
    EXPECT_TRUE(seen().isFound);
    EXPECT_FALSE(seen().isStrangerFound);
    EXPECT_EQ(seen().current, Uuid);
}

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptInput.h"

#include "AssetManager/ScriptRunner.h"
#include "SceneFixture.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>

namespace {

class ScriptInputTest : public SceneFixture
{
protected:
    ScriptInputTest()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&other);
        layout->addWidget(&allowed);
        auto *inner = new QVBoxLayout(&allowed);
        inner->addWidget(&mine);
        window.show();
    }
    ~ScriptInputTest() override
    {
        other.setParent(nullptr);
        mine.setParent(nullptr);
        allowed.setParent(nullptr);
    }

    /// Does something while a script runs, and stops it.
    int during(const std::function<void()> &act)
    {
        QTimer::singleShot(0, &runner, [this, act] {
            act();
            runner.stop();
        });
        return runner.runText("while True: pass");
    }

    QWidget window;
    QWidget allowed;
    QLineEdit other;
    QLineEdit mine;
    ScriptRunner runner{stack};
    ScriptInput input{runner, allowed};
};

TEST_F(ScriptInputTest, LetsOnlyOneWidgetBeUsedMeanwhile)
{
    EXPECT_EQ(during([this] {
                  QTest::keyClicks(&other, "kept away");
                  QTest::keyClicks(&mine, "let through");
              }),
              1);

    EXPECT_EQ(other.text(), "");
    EXPECT_EQ(mine.text(), "let through");
}

TEST_F(ScriptInputTest, LetsEverythingBeUsedAfterwards)
{
    during([] {});

    QTest::keyClicks(&other, "free");

    EXPECT_EQ(other.text(), "free");
}

TEST_F(ScriptInputTest, StopsTheScriptInsteadOfClosingAWindow)
{
    bool isClosed = true;
    QTimer::singleShot(0, &window, [&] { isClosed = window.close(); });

    EXPECT_EQ(runner.runText("while True: pass"), 1);

    EXPECT_FALSE(isClosed);
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.close());
}

} // namespace

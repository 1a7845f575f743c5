// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QImage>
#include <QPalette>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr int Patience = 120000; // milliseconds

/// The program as it is started on a desktop whose colours a person has chosen.
class AppearanceDesktopTest : public testing::Test
{
protected:
    /// Colours as "red,green,blue".
    void setDesktop(const std::string &window, const std::string &view, const std::string &text) const
    {
        std::ostringstream settings;
        for (const auto &[part, ground] : {std::pair("Window", window), {"Button", window}, {"View", view}})
            settings << "[Colors:" << part << "]\nBackgroundNormal=" << ground << "\nForegroundNormal=" << text << '\n';
        folder.write("kdeglobals", settings.str());
    }
    /// What the window looks like.
    QImage picture(const QStringList &options = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CURRENT_DESKTOP", "KDE");
        environment.insert("KDE_SESSION_VERSION", "5");
        environment.remove("QT_QPA_PLATFORMTHEME");
        environment.insert("HOME", QString::fromStdString(folder.string()));
        environment.insert("XDG_CONFIG_HOME", QString::fromStdString(folder.string()));
        const QString file = QString::fromStdString(folder.file("window.png"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(QString::fromStdString(folder.string()));
        process.start(QCoreApplication::applicationDirPath() + "/asset-manager",
                      options +
                          QStringList{"--screenshot", file, QString::fromStdString(folder.makeFolder("library"))});
        EXPECT_TRUE(process.waitForFinished(Patience));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QImage(file);
    }
    /// How many of a hundred pixels have that colour.
    static int share(const QImage &image, const QColor &color)
    {
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
        return image.isNull() ? 0 : 100 * found / (image.width() * image.height());
    }

    const kxtest::TemporaryFolder folder;
};

TEST_F(AppearanceDesktopTest, IsDarkOnADarkDesktop)
{
    setDesktop("49,54,59", "35,38,41", "239,240,241");

    const QImage window = picture();

    EXPECT_GE(share(window, QColor(49, 54, 59)), 5);
    EXPECT_GE(share(window, QColor(35, 38, 41)), 20);
    EXPECT_EQ(share(window, Qt::white), 0);
}

TEST_F(AppearanceDesktopTest, IsLightOnALightDesktop)
{
    setDesktop("238,239,240", "252,251,250", "20,21,22");

    const QImage window = picture();

    EXPECT_GE(share(window, QColor(238, 239, 240)), 5);
    EXPECT_GE(share(window, QColor(252, 251, 250)), 20);
}

TEST_F(AppearanceDesktopTest, IsAsAskedForWhateverTheDesktopIs)
{
    setDesktop("49,54,59", "35,38,41", "239,240,241");

    const QImage window = picture({"--appearance", "light"});

    EXPECT_GE(share(window, Appearance::light().color(QPalette::Base)), 20);
    EXPECT_EQ(share(window, QColor(35, 38, 41)), 0);
}

} // namespace

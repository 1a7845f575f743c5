// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Screenshot.h"

#include "AssetManager/ScriptSide.h"
#include "HeadlessProgram.h"
#include "SceneFixture.h"

#include <QImage>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// Pictures of the program, taken by it as a script has them taken.
class ScreenshotTest : public SceneFixture
{
protected:
    QImage picture(const QString &name) const
    {
        QImage image(QString::fromStdString(folder.file(name.toStdString())));
        EXPECT_FALSE(image.isNull()) << name.toStdString();
        return image.convertToFormat(QImage::Format_RGB32);
    }
    /// One for each of the names, by whose options it is taken.
    std::map<QString, QImage> take(const std::map<QString, QStringList> &wanted) const
    {
        std::vector<QStringList> arguments;
        for (const auto &[name, options] : wanted)
            arguments.push_back(QStringList{"lib", "--screenshot", name + ".png"} + options);
        for (const auto &result : program.runAll(arguments))
            EXPECT_EQ(result.code, 0) << result.errors;
        std::map<QString, QImage> taken;
        for (const auto &[name, options] : wanted)
            taken[name] = picture(name + ".png");
        return taken;
    }
    static std::size_t colours(const QImage &image)
    {
        std::set<QRgb> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found.insert(image.pixel(x, y));
        return found.size();
    }
    static double lightness(const QImage &image)
    {
        double sum = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                sum += qGray(image.pixel(x, y));
        return sum / 255 / image.width() / image.height();
    }
    /// Whether \a part is seen somewhere in \a whole, as it is.
    static bool holds(const QImage &whole, const QImage &part)
    {
        const auto isLine = [&](int x, int y, int line) {
            const auto *pixels = reinterpret_cast<const QRgb *>(whole.constScanLine(y + line)) + x;
            return std::equal(pixels, pixels + part.width(), reinterpret_cast<const QRgb *>(part.constScanLine(line)));
        };
        for (int y = 0; y + part.height() <= whole.height(); ++y)
            for (int x = 0; x + part.width() <= whole.width(); ++x) {
                int line = 0;
                while (line < part.height() && isLine(x, y, line))
                    ++line;
                if (line == part.height())
                    return true;
            }
        return false;
    }

    const HeadlessProgram program{folder};
};

TEST_F(ScreenshotTest, ShowsTheWholeWindowAndThePartsThatAreAskedFor)
{
    storeMaterial("Oak");
    storeGeometry("Stool");

    const auto taken = take({{"window", {}}, {"folders", {"--show", "folders"}}, {"assets", {"--show", "assets"}}});

    const QImage &window = taken.at("window");
    EXPECT_GE(window.width(), 800);
    EXPECT_GE(window.height(), 600);
    EXPECT_GT(colours(window), 100U);
    for (const char *part : {"folders", "assets"}) {
        EXPECT_LT(taken.at(part).width(), window.width()) << part;
        EXPECT_TRUE(holds(window, taken.at(part))) << part;
    }
}

TEST_F(ScreenshotTest, ShowsSomethingElseForEachView)
{
    storeMaterial("Oak");
    std::map<QString, QStringList> wanted;
    for (const QString &view : Screenshot::views())
        wanted[view] = QStringList{"--show", view};

    const auto taken = take(wanted);

    EXPECT_EQ(taken.size(), ScriptSide::isAvailable() ? 17U : 16U);
    for (const auto &[view, image] : taken) {
        EXPECT_GT(colours(image), 10U) << view.toStdString();
        for (const auto &[other, otherImage] : taken)
            EXPECT_TRUE(view == other || image != otherImage) << view.toStdString() << ", " << other.toStdString();
    }
}

TEST_F(ScreenshotTest, IsLightOrDarkAndSpeaksAsItIsTold)
{
    storeMaterial("Oak");

    const auto taken = take({{"light", {"--appearance", "light", "--language", "en"}},
                             {"again", {"--appearance", "light", "--language", "en"}},
                             {"dark", {"--appearance", "dark", "--language", "en"}},
                             {"german", {"--appearance", "light", "--language", "de"}}});

    EXPECT_GT(lightness(taken.at("light")), 0.7);
    EXPECT_LT(lightness(taken.at("dark")), 0.4);
    EXPECT_EQ(taken.at("light"), taken.at("again")) << "nothing else tells them apart";
    EXPECT_NE(taken.at("light"), taken.at("german"));
}

TEST_F(ScreenshotTest, ShowsWhatIsSelected)
{
    storeMaterial("Oak");
    storeMaterial("Ash");

    const auto taken = take({{"none", {"--show", "details"}},
                             {"oak", {"--show", "details", "--select", "Oak"}},
                             {"ash", {"--show", "details", "--select", "Ash"}}});

    EXPECT_NE(taken.at("none"), taken.at("oak"));
    EXPECT_NE(taken.at("ash"), taken.at("oak"));
}

TEST_F(ScreenshotTest, SaysWhatItCannotDo)
{
    folder.makeFolder("lib");
    const auto results = program.runAll({{"lib", "--screenshot", "none/shot.png"},
                                         {"lib", "--screenshot", "shot.png", "--select", "Nobody"},
                                         {"lib", "--screenshot", "shot.png", "--show", "nothing"},
                                         {"lib", "--screenshot", "shot.png", "--appearance", "pink"},
                                         {"lib", "--screenshot", "shot.png", "--language", "xx"}});

    EXPECT_EQ(results[0].code, 1);
    EXPECT_THAT(results[0].errors, EndsWith("none/shot.png cannot be written\n"));
    EXPECT_EQ(results[1].code, 1);
    EXPECT_THAT(results[1].errors, EndsWith("No asset is named \"Nobody\"\n"));
    EXPECT_EQ(results[2].code, 2);
    EXPECT_THAT(results[2].errors, HasSubstr("--show: tiles, list, assets, folders, details, view"));
    EXPECT_EQ(results[3].code, 2);
    EXPECT_THAT(results[3].errors, EndsWith("--appearance: light, dark\n"));
    EXPECT_EQ(results[4].code, 2);
    EXPECT_THAT(results[4].errors, HasSubstr("--language: "));
}

} // namespace

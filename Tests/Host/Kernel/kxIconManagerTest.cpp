// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxIconManager.h"

#include "Kernel/kxLogRecorder.h"

#include <QImage>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int opaquePixels(const QPixmap &icon)
{
    const QImage image = icon.toImage().convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) == 255;
    }
    return count;
}

TEST(kxIconManagerTest, DrawsEachIconOnATransparentGround)
{
    const kxLogRecorder log;
    for (const char *name : {"scenegraph/MultiMaterial.svg", "scenegraph/MultiPassMaterial.svg",
                             "scenegraph/Skydome.svg", "scenegraph/SwitchMaterial.svg", "scenegraph/UBRDFMaterial.svg",
                             "scenegraph/UEnvironmentSwitchMaterial.svg", "scenegraph/USkyEnvironmentMaterial.svg",
                             "scenegraph/USphereEnvironmentMaterial.svg", "scenegraph/UberMaterial.svg"}) {
        const QPixmap icon = kxIconManager::get(name);
        EXPECT_EQ(icon.size(), QSize(32, 32)) << name;
        EXPECT_GT(opaquePixels(icon), 200) << name;
        EXPECT_LT(opaquePixels(icon), 900) << name;
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(kxIconManagerTest, DrawsAnIconInTheSizeAskedFor)
{
    EXPECT_EQ(kxIconManager::get("scenegraph/Skydome.svg", 96).size(), QSize(96, 96));
    EXPECT_GT(opaquePixels(kxIconManager::get("scenegraph/Skydome.svg", 96)), 2000);
}

TEST(kxIconManagerTest, KeepsAnIconOnceItIsDrawn)
{
    EXPECT_EQ(kxIconManager::get("scenegraph/Skydome.svg").cacheKey(),
              kxIconManager::get("scenegraph/Skydome.svg").cacheKey());
}

TEST(kxIconManagerTest, YieldsANullPixmapForAnUnknownIconAndLogsItOnce)
{
    const kxLogRecorder log;

    EXPECT_TRUE(kxIconManager::get("scenegraph/Nowhere.svg").isNull());
    EXPECT_TRUE(kxIconManager::get("scenegraph/Nowhere.svg").isNull());

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to load the icon 'scenegraph/Nowhere.svg': File not found."));
}

} // namespace

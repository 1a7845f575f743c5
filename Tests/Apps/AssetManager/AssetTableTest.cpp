// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetTable.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/PreviewCache.h"
#include "WindowFixture.h"

#include <QDir>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class AssetTableTest : public WindowFixture
{
protected:
    void paintPreview(const std::string &uuid) const
    {
        QImage picture(128, 96, QImage::Format_RGB32);
        picture.fill(Qt::red);
        const QDir directory(directoryOf(uuid));
        const QString name = directory.entryList({"*.png"}, QDir::Files).value(0);
        ASSERT_TRUE(picture.save(directory.filePath(name)));
    }
    /// Pixels of the preview in the row of the asset that are not of its only colour.
    int foreignPixels(const std::string &uuid) const
    {
        auto &table = widget<AssetTable>("assetTable");
        const QModelIndex index = window->libraries().assets().indexOf(uuid);
        const QImage row = table.viewport()->grab(table.visualRect(index)).toImage();
        const auto isRed = [&row](int x, int y) { return row.pixel(x, y) == QColor(Qt::red).rgb(); };
        QRect preview;
        for (int y = 0; y < row.height(); ++y)
            for (int x = 0; x < row.width(); ++x)
                if (isRed(x, y))
                    preview |= QRect(x, y, 1, 1);
        EXPECT_GT(preview.width(), 10);
        int foreign = 0;
        for (int y = preview.top(); y <= preview.bottom(); ++y)
            for (int x = preview.left(); x <= preview.right(); ++x)
                foreign += isRed(x, y) ? 0 : 1;
        return foreign;
    }
};

} // namespace

TEST_F(AssetTableTest, DrawsTheIconsThatItemsPutOverTheirPreviews)
{
    const std::string sky = storeEnvironment("Sky");
    const std::string chair = storeGeometry("Chair");
    open();
    paintPreview(sky);
    paintPreview(chair);
    press(Qt::Key_F5);
    press(Qt::Key_2, Qt::ControlModifier); // the list
    settle();
    const PreviewCache &previews = window->libraries().previews();
    const auto isRed = [&](const std::string &uuid) {
        const QPixmap preview = previews.find(id(uuid));
        return !preview.isNull() && preview.toImage().pixelColor(5, 5) == QColor(Qt::red);
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return isRed(sky) && isRed(chair); }, Patience));

    EXPECT_EQ(foreignPixels(chair), 0);
    EXPECT_GT(foreignPixels(sky), 10);
}

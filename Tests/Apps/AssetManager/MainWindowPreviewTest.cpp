// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/PreviewCache.h"
#include "SlowDisk.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMenu>
#include <QTest>
#include <QUuid>

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

constexpr int BesideEachOther = 4; // previews that are read at once

/// Previews as a person sees them come.
class MainWindowPreviewTest : public WindowFixture
{
protected:
    MainWindowPreviewTest() { disk.begin(path()); }
    ~MainWindowPreviewTest() override
    {
        disk.end();
        window.reset();
    }

    void write(const QString &file, const QByteArray &bytes) const
    {
        QFile opened(file);
        EXPECT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(bytes);
    }
    static void paint(const QString &file)
    {
        QImage picture(16, 16, QImage::Format_RGB32);
        picture.fill(Qt::red);
        EXPECT_TRUE(picture.save(file));
    }
    /// More than fit into the window, without the time that saving them takes.
    void makeMany(int count) const
    {
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("Oak %1").arg(i, 3, 10, QLatin1Char('0'));
            const QString directory = path("MAT_" + name);
            QDir().mkpath(directory);
            write(directory + '/' + name + ".osb", "payload");
            write(directory + '/' + name + ".xml",
                  QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
                                 "  <category>Materials</category>\n  <uuid>%1</uuid>\n  <name>%2</name>\n"
                                 "  <sarnVersion>0.1.0</sarnVersion>\n  <material>\n    <type>UBRDFMaterial</type>\n"
                                 "    <photometric>0</photometric>\n  </material>\n</item>\n")
                      .arg(QUuid::createUuid().toString(QUuid::WithoutBraces), name)
                      .toUtf8());
            paint(directory + '/' + name + ".png");
        }
    }
    /// Opens the library, of whose previews none is read yet then.
    void openWithoutPreviews()
    {
        disk.holdPreviews();
        window->openLibraries({library().toLocalFile()});
        EXPECT_TRUE(QTest::qWaitFor(
            [this] { return !window->libraries().scan().isRunning() && disk.waitingCount() > 0; }, Patience));
        process();
    }
    QAbstractItemView &tiles() const { return window->browser().view(); }
    QRect placeOf(int row) const { return tiles().visualRect(tiles().model()->index(row, 0)); }
    QMap<QString, QString> filesWithTimes() const
    {
        QMap<QString, QString> found;
        QDirIterator files(path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            files.next();
            const QFileInfo info = files.fileInfo();
            found[info.filePath()] = info.lastModified().toString(Qt::ISODateWithMs) + ' ' +
                                     info.metadataChangeTime().toString(Qt::ISODateWithMs);
        }
        return found;
    }

    SlowDisk &disk = SlowDisk::the();
};

} // namespace

TEST_F(MainWindowPreviewTest, ReadsWhatIsSeenInItsOrderAndALittleAhead)
{
    const int count = 250;
    makeMany(count);
    openWithoutPreviews();
    ASSERT_EQ(names().size(), count);
    int seen = 0;
    while (tiles().viewport()->rect().intersects(placeOf(seen)))
        ++seen;
    ASSERT_GT(seen, 2 * BesideEachOther);
    ASSERT_LT(seen, count / 4);

    disk.letGo();
    settle();

    const QStringList asked = disk.previewsAsked();
    const auto placeAsked = [&](int row) { return asked.indexOf(window->libraries().assets().entry(row).directory); };
    for (int row = 0; row < seen; ++row)
        EXPECT_NEAR(placeAsked(row), row, BesideEachOther);
    EXPECT_GE(placeAsked(seen), seen - BesideEachOther) << "just below, after what is seen";
    EXPECT_EQ(placeAsked(count - 1), -1) << "far below";
    EXPECT_LE(asked.size(), 3 * seen);
    EXPECT_THAT(disk.readByMainThread(), IsEmpty());
}

TEST_F(MainWindowPreviewTest, OpensAMenuWhileEveryPreviewIsHeldUp)
{
    makeMany(3);
    openWithoutPreviews();
    int offered = 0;

    openMenu(*tiles().viewport(), placeOf(0).center(), [&](QMenu &menu) { offered = menu.actions().size(); });

    EXPECT_GT(offered, 0);
    EXPECT_GT(disk.waitingCount(), 0);
    EXPECT_FALSE(window->libraries().previews().isIdle());
    disk.letGo();
    settle();
    EXPECT_THAT(disk.readByMainThread(), IsEmpty());
}

TEST_F(MainWindowPreviewTest, ShowsStoredPreviewsAgainAtTheNextStart)
{
    const std::string oak = storeMaterial("Oak");
    const std::string chair = storeGeometry("Chair");
    open();
    for (const std::string &uuid : {oak, chair}) {
        const QFileInfoList pictures = QDir(directoryOf(uuid)).entryInfoList({"*.png"});
        ASSERT_EQ(pictures.size(), 1) << uuid;
        paint(pictures.first().filePath()); // as nothing that is rendered looks
    }
    const QMap<QString, QString> before = filesWithTimes();

    makeWindow();
    open();

    EXPECT_EQ(names().size(), 2U);
    for (const std::string &uuid : {oak, chair})
        EXPECT_EQ(window->libraries().previews().find(id(uuid)).toImage().pixelColor(8, 8), QColor(Qt::red)) << uuid;
    EXPECT_EQ(filesWithTimes(), before);
}

TEST_F(MainWindowPreviewTest, ForgetsThatAnAssetWasDamagedWhenItIsGone)
{
    const std::string chair = storeGeometry("Chair");
    const QFileInfo stored = QDir(path()).entryInfoList({"*_Chair"}).value(0);
    for (const QFileInfo &file : QDir(stored.filePath()).entryInfoList({"*.osb"}))
        QFile::remove(file.filePath());
    open();
    const AssetStates &states = window->libraries().states();
    ASSERT_EQ(states.stateOf(chair), AssetStates::Broken);

    window->libraries().close(path());

    EXPECT_EQ(states.stateOf(chair), 0U);
    EXPECT_THAT(states.reasonsOf(chair), IsEmpty());
}

// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxPlatform.h"
#include "MaterialFixture.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QEvent>
#include <QProcess>
#include <QTimer>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <functional>
#include <set>
#include <utility>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";
constexpr const char *OtherUuid = "1a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";
constexpr const char *PartUuid = "2a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

/// The place where the library looks for the converter, which all tests of the program share: one test at a time has it.
class ConverterPlace
{
public:
    ConverterPlace() : _lock(::open("/proc/self/exe", O_RDONLY | O_CLOEXEC)) { EXPECT_EQ(::flock(_lock, LOCK_EX), 0); }
    ~ConverterPlace()
    {
        fs::remove(_path);
        ::close(_lock);
    }
    ConverterPlace(const ConverterPlace &) = delete;
    ConverterPlace &operator=(const ConverterPlace &) = delete;

    /// Puts a converter there; for it, "$2" is the payload.
    void put(const std::string &script) const
    {
        std::ofstream(_path) << "#!/bin/sh\n" << script;
        fs::permissions(_path, fs::perms::owner_all);
    }

private:
    int _lock;
    std::string _path = kxPlatform::getBinDir() + "\\ZEQ\\Morvane.exe";
};

/// Starts no converter, and notes what it was to be started for.
class NotingManager final : public kxLocalUrlManager
{
public:
    using kxLocalUrlManager::writeMaterialFiles;
    bool writeMaterialFiles(const QUrl &payload, bool removeAfter) const override
    {
        payloads.emplace_back(payload, removeAfter);
        if (whileStarted)
            whileStarted();
        return result;
    }

    mutable std::vector<std::pair<QUrl, bool>> payloads;
    std::function<void()> whileStarted;
    bool result = false;
};

/// Sees which processes are started, by the objects that each of them gets.
class ProcessWatch final : public QObject
{
public:
    ProcessWatch() { QCoreApplication::instance()->installEventFilter(this); }

    const std::set<QProcess *> &processes() const { return _processes; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *process = qobject_cast<QProcess *>(watched);
        if (process && event->type() == QEvent::ChildAdded)
            _processes.insert(process);
        return false;
    }

private:
    std::set<QProcess *> _processes;
};

class kxLocalUrlManagerConvertingTest : public MaterialFixture
{
protected:
    kxLocalUrlManagerConvertingTest() { kxUrlManager::setWriteAutomotiveMaterialFiles(true); }
    ~kxLocalUrlManagerConvertingTest() override { kxUrlManager::setWriteAutomotiveMaterialFiles(false); }

    static kxMaterialAssetItem itemOf(const osg::MaterialPtr &material, const std::string &uuid = Uuid)
    {
        kxMaterialAssetItem item;
        item.initFrom(material, uuid, true);
        return item;
    }

    bool save(kxMaterialAssetItem &item) const { return manager.saveMaterialAsset(url(), &item); }

    /// A composite of one part that is an asset itself.
    static Owned makeComposite(const std::string &name)
    {
        const Owned part = makeSurface("part");
        makeAsset(part, PartUuid);
        return makeSwitch(name, {part});
    }

    /// Runs the event loop until it is so, looking after every event: that a converter has ended is one.
    template <class Condition> static bool waitUntil(Condition isSo)
    {
        QTimer deadline; // only reached when it never becomes so
        deadline.setSingleShot(true);
        deadline.start(20000);
        while (!isSo() && deadline.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isSo();
    }

    /// Until every converter that was to be started has ended, or could not be started.
    static bool waitForConverters()
    {
        return waitUntil([] {
            siginfo_t information{};
            return ::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT | __WALL) != 0 && errno == ECHILD;
        });
    }

    /// The lines on standard output.
    std::string starting(const std::string &name) const { return "Starting Morvane: " + _folder.file(name) + "\n"; }
    std::string removing(const std::string &name) const { return "Remove file: " + _folder.file(name) + "\n"; }

    const kxLocalUrlManager &manager = *kxLocalUrlManager::the();
};

} // namespace

TEST_F(kxLocalUrlManagerConvertingTest, StartsTheConverterOnlyWhereItIsWanted)
{
    const ConverterPlace empty;
    kxUrlManager::setWriteAutomotiveMaterialFiles(false);
    kxtest::CapturedOutput output;

    EXPECT_FALSE(manager.writeMaterialFiles(url("a.osb")));
    EXPECT_FALSE(manager.writeMaterialFiles(url("a.OSB"), true));
    EXPECT_FALSE(manager.writeMaterialFiles(url("a.other")));
    kxUrlManager::setWriteAutomotiveMaterialFiles(true);
    EXPECT_FALSE(manager.writeMaterialFiles(url("b.osb")));

    EXPECT_EQ(output.text(), starting("a.other") + starting("b.osb"));
}

TEST_F(kxLocalUrlManagerConvertingTest, KeepsThePayloadUnlessToldOtherwise)
{
    const NotingManager noting;

    EXPECT_FALSE(static_cast<const kxUrlManager &>(noting).writeMaterialFiles(url("a.osb")));

    EXPECT_THAT(noting.payloads, ElementsAre(std::pair(url("a.osb"), false)));
}

TEST_F(kxLocalUrlManagerConvertingTest, LetsOnlyThePayloadOfAConvertedCompositeGo)
{
    const NotingManager noting;
    const auto isToGo = [this, &noting](const Owned &material, bool isConverting) {
        kxUrlManager::setWriteAutomotiveMaterialFiles(isConverting);
        kxMaterialAssetItem item = itemOf(material);
        EXPECT_TRUE(noting.saveMaterialAsset(url(), &item));
        EXPECT_EQ(noting.payloads.back().first, url("MAT_Lack/Lack.osb"));
        return noting.payloads.back().second;
    };

    EXPECT_FALSE(isToGo(makeSurface("Lack"), false));
    EXPECT_FALSE(isToGo(makeSurface("Lack"), true));
    EXPECT_FALSE(isToGo(makeComposite("Lack"), false)) << "there is none";
    EXPECT_TRUE(isToGo(makeComposite("Lack"), true));
    EXPECT_FALSE(isToGo(makeSwitch("Lack", {}), true)) << "made of nothing but itself";
    EXPECT_EQ(noting.payloads.size(), 5U);
}

TEST_F(kxLocalUrlManagerConvertingTest, IsStartedWhenAllFilesAreWrittenAndDecidesNothing)
{
    const Owned material = makeSurface("Lack");
    addPreview(material);
    kxMaterialAssetItem item = itemOf(material);
    NotingManager noting;
    std::vector<std::string> files;
    QUrl directory(QStringLiteral("unknown"));
    noting.whileStarted = [&] {
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder.file("MAT_Lack")))
            files.push_back(entry.path().filename().string());
        directory = item.directoryUrl();
    };

    for (const bool result : {false, true}) {
        noting.result = result;
        files.clear();
        EXPECT_TRUE(noting.saveMaterialAsset(url(), &item)) << result;
        EXPECT_THAT(files, UnorderedElementsAre("Lack.xml", "Lack.osb", "Lack.png"));
        EXPECT_EQ(directory, result ? url("MAT_Lack") : QUrl()) << "the item is told last";
    }
}

TEST_F(kxLocalUrlManagerConvertingTest, RunsTheConverterAndRemovesThePayloadOfACompositeAfterwards)
{
    const ConverterPlace converter;
    converter.put("cp \"$2\" \"$2.copy\"\nprintf '%s\\n' \"$@\" > \"$2.arguments\"\n");
    kxMaterialAssetItem composite = itemOf(makeComposite("Wahl"), OtherUuid);
    kxMaterialAssetItem plain = itemOf(makeSurface("Lack"));
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(composite));
    EXPECT_TRUE(_folder.contains("MAT_Wahl/Wahl.osb")) << "a save does not wait for the converter";
    const std::string payload = readFile("MAT_Wahl/Wahl.osb");
    EXPECT_TRUE(waitForConverters());
    EXPECT_TRUE(save(plain));
    EXPECT_TRUE(waitForConverters());

    EXPECT_EQ(readFile("MAT_Wahl/Wahl.osb.copy"), payload);
    EXPECT_EQ(readFile("MAT_Wahl/Wahl.osb.arguments"), "-i\n" + _folder.file("MAT_Wahl/Wahl.osb") + "\n");
    EXPECT_FALSE(_folder.contains("MAT_Wahl/Wahl.osb"));
    EXPECT_EQ(readFile("MAT_Lack/Lack.osb.copy"), readFile("MAT_Lack/Lack.osb"));
    EXPECT_EQ(output.text(),
              starting("MAT_Wahl/Wahl.osb") + removing("MAT_Wahl/Wahl.osb") + starting("MAT_Lack/Lack.osb"));
}

TEST_F(kxLocalUrlManagerConvertingTest, StartsTheConverterWithAChannelInEachDirection)
{
    const ConverterPlace converter;
    converter.put("exit 0\n");
    const ProcessWatch watch;

    EXPECT_FALSE(manager.writeMaterialFiles(url("a.osb")));

    ASSERT_EQ(watch.processes().size(), 1U);
    EXPECT_EQ((*watch.processes().begin())->openMode() & QIODevice::ReadWrite, QIODevice::ReadWrite);
    EXPECT_TRUE(waitForConverters());
}

TEST_F(kxLocalUrlManagerConvertingTest, RemovesThePayloadHoweverTheConverterEnded)
{
    const ConverterPlace converter;
    for (const char *ending : {"exit 3\n", "kill -KILL $$\n"}) {
        converter.put(ending);
        kxMaterialAssetItem composite = itemOf(makeComposite("Wahl"));

        EXPECT_TRUE(save(composite));
        ASSERT_TRUE(_folder.contains("MAT_Wahl/Wahl.osb"));
        EXPECT_TRUE(waitForConverters());

        EXPECT_FALSE(_folder.contains("MAT_Wahl/Wahl.osb")) << ending;
    }
}

TEST_F(kxLocalUrlManagerConvertingTest, KeepsThePayloadOfACompositeWithoutAConverter)
{
    const ConverterPlace empty;
    kxMaterialAssetItem composite = itemOf(makeComposite("Wahl"));
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(composite));
    EXPECT_TRUE(waitForConverters());

    EXPECT_TRUE(_folder.contains("MAT_Wahl/Wahl.osb"));
    EXPECT_EQ(output.text(), starting("MAT_Wahl/Wahl.osb"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxLocalUrlManagerConvertingTest, DoesNotMissAPayloadThatTheConverterRemoved)
{
    const ConverterPlace converter;
    converter.put("rm \"$2\"\n");
    kxMaterialAssetItem composite = itemOf(makeComposite("Wahl"));
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(composite));
    EXPECT_TRUE(waitForConverters());

    EXPECT_EQ(output.text(), starting("MAT_Wahl/Wahl.osb") + removing("MAT_Wahl/Wahl.osb"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxLocalUrlManagerConvertingTest, ReportsAPayloadThatCannotBeRemoved)
{
    const ConverterPlace converter;
    converter.put("rm \"$2\"\nmkdir \"$2\"\n");
    kxMaterialAssetItem composite = itemOf(makeComposite("Wahl"));
    const kxLogRecorder log;

    EXPECT_TRUE(save(composite));
    EXPECT_TRUE(waitForConverters());

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to remove file '" + _folder.file("MAT_Wahl/Wahl.osb") + "'."));
    EXPECT_TRUE(_folder.contains("MAT_Wahl/Wahl.osb"));
}

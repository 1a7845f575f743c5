// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/CapturedOutput.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTextStream>

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <thread>

namespace {

/// What has to be stored of an asset after a kill.
struct Expected
{
    float done = -1.0F;  ///< the last save that returned; negative: none did
    float begun = -1.0F; ///< a save that may or may not have come through
};

/// Kills a process that saves, at random moments.
class KillTest : public testing::Test
{
protected:
    KillTest() : _library(QString::fromStdString(_folder.makeFolder("lib"))) {}

    /// Lets the process write so many lines, and kills it a little later.
    void killAfter(int lines, int microseconds, unsigned seed)
    {
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/SaveLoop"),
                      {_library.path(), QString::number(seed)});
        QByteArray written;
        while (written.count('\n') < lines) {
            ASSERT_TRUE(process.waitForReadyRead(60000)) << "it does not save";
            written += process.readAllStandardOutput();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
        process.kill();
        process.waitForFinished();
        ASSERT_EQ(process.exitStatus(), QProcess::CrashExit) << "it ended by itself with " << process.exitCode();
        written += process.readAllStandardOutput();
        for (const QByteArray &line : written.split('\n'))
            remember(line.split(' '));
    }

    void remember(const QList<QByteArray> &words)
    {
        if (words.size() != 3)
            return; // the kill came while it was written
        Expected &expected = _expected[words[1].toStdString()];
        expected.begun = words[2].toFloat();
        if (words[0] != "done")
            return;
        expected.done = expected.begun;
        ++_saves;
    }

    void check()
    {
        const kxtest::CapturedOutput output;
        findings();
        kxAssetItemFactory::the().deleteAllItems();
        _library.open(nullptr);
        for (auto &[uuid, expected] : _expected)
            checkAsset(uuid, expected);
        kxAssetItemFactory::the().deleteAllItems();
    }

    /// A new asset whose save was cut off may lack its payload: nobody was told that it is stored.
    void findings()
    {
        std::set<std::string> unfinished;
        kxLibraryVerifier verifier(_library.path());
        for (const kxLibraryVerifier::Finding &finding : verifier.verify()) {
            if (finding.kind == "leftover")
                continue; // goes with the next save there
            else if (finding.kind == "payload-missing" || finding.kind == "preview-missing")
                unfinished.insert(finding.path);
            else
                _lost += finding.kind + ' ' + finding.path + ": " + finding.text + '\n';
        }
        for (const std::string &place : unfinished)
            removeUnfinished(place);
    }

    void removeUnfinished(const std::string &place)
    {
        kxAssetItemFactory::the().deleteAllItems();
        _library.open(nullptr);
        for (kxAssetItem *item : _library.items())
            if (_library.relativePath(*item).toStdString() == place) {
                if (_expected[item->uuid()].done >= 0.0F)
                    _lost += "unfinished " + place + '\n';
                _expected.erase(item->uuid());
                ++_unfinished;
            }
        std::filesystem::remove_all(_folder.file("lib/" + place));
    }

    void checkAsset(const std::string &uuid, Expected &expected)
    {
        auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
        if (!item && expected.done < 0.0F)
            return; // never stored
        if (!item || !item->loadMaterial()) {
            _lost += "lost " + uuid + '\n';
            return;
        }
        const float stored = osg::UBRDFMaterialPtr::dcast(item->getMaterial())->getRoughness();
        const auto is = [stored](float value) { return std::abs(stored - value) < 1e-6F; };
        if (!is(expected.done) && !is(expected.begun))
            _lost += "neither old nor new: " + uuid + '\n';
        expected = {stored, stored}; // nothing changes it any more before the next save
        item->invalidateMaterial();
    }

    kxAssetSession _session;
    kxtest::TemporaryFolder _folder;
    kxAssetLibrary _library;
    std::map<std::string, Expected> _expected; ///< by UUID
    std::string _lost;
    int _saves = 0;
    int _unfinished = 0;
};

} // namespace

/// KX_KILLS says how often (20), KX_SEED with what random numbers (1).
TEST_F(KillTest, LosesNothingThatWasSaved)
{
    const int kills = qEnvironmentVariableIntValue("KX_KILLS") > 0 ? qEnvironmentVariableIntValue("KX_KILLS") : 20;
    const auto seed = static_cast<unsigned>(qEnvironmentVariableIntValue("KX_SEED") + 1);
    std::mt19937 random(seed);
    for (int i = 0; i < kills; ++i) {
        const int lines = 1 + static_cast<int>(random() % 8);
        const int microseconds = static_cast<int>(random() % 20000); // a save takes some 15 ms
        killAfter(lines, microseconds, static_cast<unsigned>(random()));
        ASSERT_FALSE(HasFatalFailure());
        check();
        ASSERT_EQ(_lost, "") << "after kill " << i + 1 << ", seed " << seed;
    }
    std::printf("%d kills among %d saves of %zu assets: nothing lost; %d new ones were cut off; seed %u\n", kills,
                _saves, _expected.size(), _unfinished, seed);
    EXPECT_GT(_saves, kills / 2) << "the process was killed before it had done anything";
}

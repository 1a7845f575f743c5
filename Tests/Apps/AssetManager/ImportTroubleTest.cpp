// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ImportTrouble.h"

#include "Import/kxSceneImporter.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

using namespace std::chrono_literals;

class ImportTroubleTest : public testing::Test
{
protected:
    ~ImportTroubleTest() override { kxSceneImporter::setWorkerProgram(""); }

    /// What people read when the program that parses does what \a commands say.
    QString told(const std::string &commands, const kxImportLimits &limits = {}) const
    {
        const std::string program = _folder.write("worker.sh", "#!/bin/sh\n" + commands + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        kxSceneImporter::setWorkerProgram(program);
        return toldOf(limits);
    }
    QString toldOf(const kxImportLimits &limits = {}) const
    {
        const auto scene = kxSceneImporter(limits).importScene(_file);
        return scene ? QString("nothing")
                     : ImportTrouble::sentences(QString::fromStdString(_file), QString::fromStdString(scene.reason()));
    }

    kxtest::TemporaryFolder _folder;
    const std::string _file = _folder.write("car.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
};

} // namespace

TEST_F(ImportTroubleTest, TellsFilesThatNeedTooMuchFromDamagedOnes)
{
    EXPECT_EQ(told("echo 'out of memory' >&3; exit 1"),
              "\"car.obj\" could not be imported. It is too large for this computer.");
    EXPECT_EQ(told("exec sleep 100", {0, 100ms}), "\"car.obj\" could not be imported. It takes too long to read.");
    EXPECT_EQ(told("echo 'failed it is upside down' >&3; exit 1"),
              "\"car.obj\" could not be imported. It is damaged, or not what its name says. (it is upside down)");
}

TEST_F(ImportTroubleTest, SaysThatThePartOfTheProgramIsMissingThatReadsFiles)
{
    const QString missing =
        "\"car.obj\" could not be imported. A part of this program is missing: it has to be installed anew.";
    kxSceneImporter::setWorkerProgram(_folder.file("gone"));

    EXPECT_EQ(toldOf(), missing);
    EXPECT_EQ(ImportTrouble::sentences("/a/car.obj",
                                       "Cannot import '/a/car.obj': the program kx-import-worker is not installed"),
              missing);
}

TEST_F(ImportTroubleTest, TakesWordsOfAFilesNameForNoReason)
{
    EXPECT_EQ(ImportTrouble::sentences("/a/holds no materials.obj",
                                       "Cannot import '/a/holds no materials.obj': it is upside down"),
              "\"holds no materials.obj\" could not be imported. "
              "It is damaged, or not what its name says. (it is upside down)");
}

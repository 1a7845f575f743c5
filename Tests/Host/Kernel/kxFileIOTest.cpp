// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFileIO.h"

#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/SceneTest.h"
#include "Support/TemporaryFolder.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxFileIOTest : public kxtest::SceneTest
{
protected:
    static osg::FCRef<osg::Material> materialWithEnvironment()
    {
        const osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
        const osg::USkyEnvironmentMaterialPtr sky = osg::USkyEnvironmentMaterial::create();
        osg::setName(sky, "Himmel");
        const osg::CPEditor edit(material.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(sky);
        return osg::FCRef<osg::Material>(material.get());
    }

    kxtest::TemporaryFolder folder;
    kxLogRecorder log;
};

TEST_F(kxFileIOTest, LoadsTheMaterialThatWasSaved)
{
    const auto material = newMaterial("Stühle 漆");
    setUuid(material, "7b5c");
    kxMaterials::addValuePair(material, "key", "value");
    const std::string path = folder.file("Stühle.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(material, path.c_str(), true));

    const auto loaded = kxFileIO::loadMaterial(path.c_str(), -1, false);

    ASSERT_EQ(loaded.size(), 1U);
    EXPECT_EQ(osg::findDifference(loaded[0].get(), material.get()).value_or("equal"), "equal");
    EXPECT_EQ(loaded[0]->getRefCount(), 1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxFileIOTest, LoadsACompositeAsOneMaterial)
{
    const auto a = newMaterial("a");
    const auto b = newMaterial("b");
    const auto choice = compositeOf<osg::SwitchMaterial>({a, b});
    const std::string path = folder.file("switch.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(choice.get(), path.c_str(), true));

    const auto loaded = kxFileIO::loadMaterial(path.c_str(), -1, false);

    ASSERT_EQ(loaded.size(), 1U);
    EXPECT_EQ(osg::findDifference(loaded[0].get(), choice.get()).value_or("equal"), "equal");
}

TEST_F(kxFileIOTest, LeavesEnvironmentsOutOnRequest)
{
    const auto material = materialWithEnvironment();
    const std::string without = folder.file("without.osb");
    const std::string with = folder.file("with.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(material, without.c_str(), true));
    ASSERT_TRUE(kxFileIO::saveMaterial(material, with.c_str(), false));

    const auto loadedWithout = kxFileIO::loadMaterial(without.c_str(), -1, false);
    const auto loadedWith = kxFileIO::loadMaterial(with.c_str(), -1, false);

    ASSERT_EQ(loadedWithout.size(), 1U);
    ASSERT_EQ(loadedWith.size(), 1U);
    EXPECT_FALSE(osg::UBRDFMaterialPtr::dcast(loadedWithout[0].get())->getEnvironment());
    EXPECT_EQ(kxMaterials::getName(osg::UBRDFMaterialPtr::dcast(loadedWith[0].get())->getEnvironment()), "Himmel");
    EXPECT_EQ(folder.read("without.osb").find("Himmel"), std::string::npos);
    EXPECT_TRUE(osg::UBRDFMaterialPtr::dcast(material.get())->getEnvironment()); // saving changes nothing
}

TEST_F(kxFileIOTest, LetsGoOfWhatNobodyKeeps)
{
    const std::string path = folder.file("a.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(newMaterial(), path.c_str(), true));
    std::uint32_t id = 0;

    {
        const auto loaded = kxFileIO::loadMaterial(path.c_str(), -1, false);
        ASSERT_EQ(loaded.size(), 1U);
        id = loaded[0]->getFieldContainerId();
    }

    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(id));
}

TEST_F(kxFileIOTest, PutsMaterialsIntoThePoolOnRequest)
{
    const auto original = newMaterial();
    setUuid(original, "7b5c");
    const std::string path = folder.file("a.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(original, path.c_str(), true));

    const auto outside = kxFileIO::loadMaterial(path.c_str(), -1, false);
    EXPECT_FALSE(kxMaterials::findAssetMaterial("7b5c"));
    const auto inside = kxFileIO::loadMaterial(path.c_str(), -1, true);

    ASSERT_EQ(inside.size(), 1U);
    EXPECT_EQ(kxMaterials::findAssetMaterial("7b5c"), inside[0].get());
}

TEST_F(kxFileIOTest, NamesTheFileAndTheReasonWhenNothingCanBeRead)
{
    const std::string missing = folder.file("missing.osb");
    const std::string foreign = folder.write("foreign.osb", "no scene file");

    EXPECT_THAT(kxFileIO::loadMaterial(missing.c_str(), -1, false), IsEmpty());
    EXPECT_THAT(kxFileIO::loadMaterial(foreign.c_str(), -1, false), IsEmpty());
    EXPECT_THAT(kxFileIO::loadMaterial(nullptr, -1, false), IsEmpty());

    const std::vector<std::string> lines = log.lines(kxLogLevel::Error);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], testing::HasSubstr(missing));
    EXPECT_THAT(lines[1], testing::HasSubstr(foreign));
    EXPECT_EQ(log.lines().size(), 3U);
}

TEST_F(kxFileIOTest, NamesAFileThatHoldsNoMaterial)
{
    const std::string path = folder.file("node.osb");
    ASSERT_TRUE(kxNodeUtils::writeNode(addNode(osg::Group::create()), path.c_str(), true));

    EXPECT_THAT(kxFileIO::loadMaterial(path.c_str(), -1, false), IsEmpty());

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to load a material from '" + path + "': the file holds none."));
}

TEST_F(kxFileIOTest, TellsOfTheLoadWhereProgressIsToBeSeen)
{
    const std::string path = folder.file("Stühle.osb");
    ASSERT_TRUE(kxFileIO::saveMaterial(newMaterial(), path.c_str(), true));
    QSignalSpy started(&kxController::notifier(), &kxControllerNotifier::fileLoadingStarted);
    QSignalSpy finished(&kxController::notifier(), &kxControllerNotifier::fileLoadingFinished);

    kxFileIO::loadMaterial(path.c_str(), -1, false);
    EXPECT_EQ(started.count(), 0);
    EXPECT_EQ(finished.count(), 0);
    kxFileIO::loadMaterial(path.c_str(), 0, false);
    kxFileIO::loadMaterial(folder.file("missing.osb").c_str(), 0, false);

    ASSERT_EQ(started.count(), 2);
    EXPECT_EQ(started[0][0].toString(), QString::fromStdString(path));
    EXPECT_EQ(finished.count(), 2);
}

TEST_F(kxFileIOTest, LeavesTheReportOfAFailedSaveToTheCaller)
{
    const std::string path = folder.file("missing/a.osb");

    EXPECT_FALSE(kxFileIO::saveMaterial(newMaterial(), path.c_str(), true));
    EXPECT_FALSE(kxFileIO::saveMaterial(nullptr, folder.file("a.osb").c_str(), true));
    EXPECT_FALSE(kxFileIO::saveMaterial(newMaterial(), nullptr, true));
    EXPECT_THAT(log.lines(), IsEmpty());

    kxLog::setLevel(kxLogLevel::Debug);
    EXPECT_FALSE(kxFileIO::saveMaterial(newMaterial(), path.c_str(), true));
    kxLog::setLevel(kxLogLevel::Info);
    ASSERT_EQ(log.lines(kxLogLevel::Debug).size(), 1U);
    EXPECT_THAT(log.lines(kxLogLevel::Debug)[0], testing::HasSubstr(path));
}

} // namespace

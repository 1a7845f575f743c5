// SPDX-License-Identifier: Apache-2.0
#include "IncludeRules.h"
#include "SourceTree.h"

#include <gmock/gmock.h>

using architecture::findViolation;
using architecture::Include;
using architecture::parseInclude;
using testing::HasSubstr;
using testing::Optional;

namespace {

std::optional<std::string> quoted(const char *path, const char *target)
{
    return findViolation(path, Include{target, true});
}

std::optional<std::string> bracketed(const char *path, const char *target)
{
    return findViolation(path, Include{target, false});
}

/// A forbidden include that is in the tree on purpose.
struct Exception
{
    const char *path;
    const char *target;
    const char *reason;
};

const std::vector<Exception> Exceptions = {};

// May only fall.
constexpr std::size_t MostExceptions = 0;

bool isExcepted(const std::string &path, const std::string &target)
{
    for (const Exception &exception : Exceptions) {
        if (path == exception.path && target == exception.target)
            return true;
    }
    return false;
}

TEST(IncludeRulesTest, AllowsEveryIncludeOfTheTree)
{
    std::size_t includes = 0;

    for (const std::string &path : architecture::projectFiles()) {
        if (!architecture::isHeader(path) && !architecture::isSource(path))
            continue;
        const std::vector<std::string> lines = architecture::readLines(path);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const std::optional<Include> include = parseInclude(lines[i]);
            if (!include || isExcepted(path, include->target))
                continue;
            ++includes;
            const std::optional<std::string> violation = findViolation(path, *include);
            EXPECT_FALSE(violation) << path << ":" << i + 1 << ": " << lines[i] << ": " << *violation;
        }
    }

    EXPECT_GT(includes, 100U);
}

TEST(IncludeRulesTest, KeepsTheNumberOfExceptionsFromGrowing)
{
    EXPECT_LE(Exceptions.size(), MostExceptions);
}

TEST(IncludeRulesTest, ReadsQuotedAndBracketedIncludes)
{
    const std::optional<Include> own = parseInclude("#include \"Kernel/kxLog.h\"");
    const std::optional<Include> other = parseInclude("#  include <vector> // for the list");

    ASSERT_TRUE(own && other);
    EXPECT_EQ(own->target, "Kernel/kxLog.h");
    EXPECT_TRUE(own->isQuoted);
    EXPECT_EQ(other->target, "vector");
    EXPECT_FALSE(other->isQuoted);
    EXPECT_FALSE(parseInclude("// #include is explained here"));
    EXPECT_FALSE(parseInclude("int include = 0;"));
}

TEST(IncludeRulesTest, RefusesToUseALayerAbove)
{
    EXPECT_THAT(quoted("Host/SceneGraph/Node.cpp", "Kernel/kxLog.h"),
                Optional(HasSubstr("may use nothing of the project")));
    EXPECT_THAT(quoted("Host/Kernel/kxFile.cpp", "Assets/kxAssetItem.h"), Optional(HasSubstr("may use SceneGraph;")));
    EXPECT_THAT(quoted("Host/Import/Importer.cpp", "Rendering/Film.h"),
                Optional(HasSubstr("may use Kernel, SceneGraph;")));
    EXPECT_THAT(quoted("Libs/Assets/kxAssetItem.cpp", "Import/Importer.h"),
                Optional(HasSubstr("may use Rendering, Kernel, SceneGraph;")));
}

TEST(IncludeRulesTest, LetsALayerUseItselfAndThoseBelow)
{
    EXPECT_FALSE(quoted("Libs/Assets/kxAssetItem.cpp", "Assets/kxAssetItem.h"));
    EXPECT_FALSE(quoted("Libs/Assets/kxAssetItem.cpp", "Kernel/kxLog.h"));
    EXPECT_FALSE(quoted("Apps/kxassets/main.cpp", "AssetSession/Session.h"));
}

TEST(IncludeRulesTest, KeepsInternalHeadersWithinTheirLibraryAndItsTests)
{
    EXPECT_THAT(quoted("Libs/Assets/kxAssetItem.cpp", "Kernel/Internal/Crc.h"),
                Optional(HasSubstr("public header of Kernel")));
    EXPECT_FALSE(quoted("Host/Kernel/kxFile.cpp", "Kernel/Internal/Crc.h"));
    EXPECT_FALSE(quoted("Tests/Host/Kernel/CrcTest.cpp", "Kernel/Internal/Crc.h"));
    EXPECT_TRUE(quoted("Tests/Libs/Assets/kxAssetItemTest.cpp", "Kernel/Internal/Crc.h"));
}

TEST(IncludeRulesTest, HoldsTestsToTheLayersOfWhatTheyTest)
{
    EXPECT_TRUE(quoted("Tests/Host/SceneGraph/NodeTest.cpp", "Kernel/kxLog.h"));
    EXPECT_FALSE(quoted("Tests/Host/SceneGraph/NodeTest.cpp", "Support/TemporaryFolder.h"));
}

TEST(IncludeRulesTest, LetsTestsShareHelpersWithinTheirFolder)
{
    EXPECT_FALSE(quoted("Tests/Host/Kernel/kxFileTest.cpp", "Host/Kernel/Shared.h"));
    EXPECT_TRUE(quoted("Tests/Libs/Assets/kxAssetItemTest.cpp", "Host/Kernel/Shared.h"));
    EXPECT_TRUE(quoted("Libs/Assets/kxAssetItem.cpp", "Host/Kernel/Shared.h"));
}

TEST(IncludeRulesTest, KeepsQtOutOfTheSceneGraph)
{
    EXPECT_THAT(bracketed("Host/SceneGraph/Image.cpp", "QImage"), Optional(HasSubstr("the scene graph knows no Qt")));
    EXPECT_TRUE(bracketed("Host/SceneGraph/Image.cpp", "QtCore/QString"));
    EXPECT_FALSE(bracketed("Host/Kernel/kxLog.cpp", "QString"));
}

struct Library
{
    const char *name;
    const char *header;
    const char *allowed;
    const char *refused;
};

class IncludeRulesLibraryTest : public testing::TestWithParam<Library>
{};

TEST_P(IncludeRulesLibraryTest, IsForItsOwnLayerOnly)
{
    EXPECT_FALSE(bracketed(GetParam().allowed, GetParam().header));
    EXPECT_THAT(bracketed(GetParam().refused, GetParam().header), Optional(HasSubstr("is not for")));
}

INSTANTIATE_TEST_SUITE_P(
    All, IncludeRulesLibraryTest,
    testing::Values(
        Library{"Assimp", "assimp/scene.h", "Host/Import/Reader.cpp", "Libs/Assets/kxAssetItem.cpp"},
        Library{"Checksums", "isa-l/crc.h", "Host/Kernel/kxFile.cpp", "Libs/Assets/kxAssetItem.cpp"},
        Library{"CommandLine", "CLI/CLI.hpp", "Apps/kxassets/main.cpp", "Apps/AssetSession/Session.cpp"},
        Library{"Embree", "embree3/rtcore.h", "Host/Rendering/Scene.cpp", "Host/Kernel/kxLog.cpp"},
        Library{"FlatBuffers", "flatbuffers/flatbuffers.h", "Host/SceneGraph/SceneFile.cpp", "Host/Kernel/kxLog.cpp"},
        Library{"OpenImageIO", "OpenImageIO/imageio.h", "Host/SceneGraph/Image.cpp", "Libs/Assets/kxAssetItem.cpp"},
        Library{"Tbb", "tbb/parallel_for.h", "Host/Rendering/Film.cpp", "Libs/Assets/kxAssetItem.cpp"},
        Library{"Zstd", "zstd.h", "Host/SceneGraph/SceneFile.cpp", "Host/Import/Reader.cpp"}),
    [](const testing::TestParamInfo<Library> &library) { return std::string(library.param.name); });

TEST(IncludeRulesTest, KeepsImplementationLibrariesOutOfPublicHeaders)
{
    EXPECT_THAT(bracketed("Host/Rendering/Film.h", "embree3/rtcore.h"),
                Optional(HasSubstr("sources and Internal/ only")));
    EXPECT_FALSE(bracketed("Host/Rendering/Internal/Film.h", "embree3/rtcore.h"));
}

TEST(IncludeRulesTest, RefusesHeadersThatNoRuleNames)
{
    EXPECT_THAT(bracketed("Host/Kernel/kxFile.cpp", "fmt/format.h"), Optional(HasSubstr("no rule allows this header")));
}

TEST(IncludeRulesTest, SaysHowAnIncludeOfTheProjectIsWritten)
{
    EXPECT_THAT(bracketed("Host/Kernel/kxFile.cpp", "Kernel/kxLog.h"), Optional(HasSubstr("write \"Kernel/kxLog.h\"")));
    EXPECT_THAT(quoted("Host/Kernel/kxFile.cpp", "kxLog.h"), Optional(HasSubstr("names the library's folder")));
    EXPECT_THAT(quoted("Host/Kernel/kxFile.cpp", "../Kernel/kxLog.h"),
                Optional(HasSubstr("starts at the library's folder")));
}

} // namespace

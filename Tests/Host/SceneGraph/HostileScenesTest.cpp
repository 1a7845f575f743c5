// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"

#include "SceneGraph/FieldContainerFactory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> folders()
{
    std::vector<std::string> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(KX_HOSTILE_SCENES))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

/// The rest of the line that begins so.
std::string lineOf(const fs::path &file, const std::string &start)
{
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(start))
            return line.substr(start.size());
    return {};
}

/// One folder each: a file, a line on what it claims, and one on what has to happen.
class HostileScenesTest : public testing::TestWithParam<std::string>
{};

} // namespace

TEST_P(HostileScenesTest, IsRefusedWithItsReason)
{
    const fs::path folder = fs::path(KX_HOSTILE_SCENES) / GetParam();
    const std::string expected = lineOf(folder / "expected.txt", "Refused: ");
    ASSERT_FALSE(expected.empty());
    ASSERT_FALSE(lineOf(folder / "expected.txt", "Claims: ").empty());
    const std::size_t before = osg::FieldContainerFactory::the().livingContainerCount();

    const std::string path = folder / "scene.osb";
    const auto roots = osg::readSceneFile(path);

    ASSERT_FALSE(roots);
    EXPECT_EQ(roots.reason(), "Cannot read scene file \"" + path + "\": " + expected);
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), before) << "nothing of it stays";
}

INSTANTIATE_TEST_SUITE_P(Folders, HostileScenesTest, testing::ValuesIn(folders()), [](const auto &folder) {
    std::string name = folder.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

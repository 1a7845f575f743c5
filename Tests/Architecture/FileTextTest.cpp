// SPDX-License-Identifier: Apache-2.0
#include "SourceTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <regex>
#include <set>

namespace {

constexpr const char *Licence = "SPDX-License-Identifier: Apache-2.0";

/// The line that must hold the licence; -1 for files that cannot hold a comment or need none.
int licenceLine(const std::string &path, const std::vector<std::string> &lines)
{
    static const std::regex commented(R"(.*\.(bash|cmake|cpp|fbs|h|py|sh|yml)|(.*/)?CMakeLists\.txt)");
    if (!lines.empty() && lines.front().starts_with("#!"))
        return 1;
    return std::regex_match(path, commented) ? 0 : -1;
}

// Put together from pieces, so that this file itself passes.
std::regex machinePath()
{
    return std::regex(std::string("/") + "root/|/" + "farm/|/" + "work/(main|shared|steering|\\.library)|/" +
                      "tmp/(build|kx|bash_jobs)\\b");
}

std::regex skippedTest()
{
    return std::regex(std::string("GTEST_") + "SKIP|Q" + "SKIP|DIS" + "ABLED_");
}

void expectNowhere(const std::regex &expression, const char *advice)
{
    for (const std::string &path : architecture::projectFiles()) {
        const std::vector<std::string> lines = architecture::readLines(path);
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_FALSE(std::regex_search(lines[i], expression))
                << path << ":" << i + 1 << ": " << lines[i] << ": " << advice;
    }
}

/// The line without what stands behind "//".
std::string withoutComment(const std::string &line)
{
    return line.substr(0, line.find("//"));
}

/// "path: line" of each line of the sources and headers in \a folder, comments left out, in which the expression is
/// found.
std::vector<std::string> linesWith(const std::regex &expression, const std::string &folder)
{
    std::vector<std::string> found;
    for (const std::string &path : architecture::projectFiles()) {
        if (!path.starts_with(folder + "/") || !(architecture::isHeader(path) || architecture::isSource(path)))
            continue;
        for (const std::string &line : architecture::readLines(path))
            if (const std::string code = withoutComment(line); std::regex_search(code, expression))
                found.push_back(path + ": " + code.substr(code.find_first_not_of(' ')));
    }
    return found;
}

/// In which files of \a folder the expression is found.
std::set<std::string> filesWith(const std::regex &expression, const std::string &folder)
{
    std::set<std::string> files;
    for (const std::string &line : linesWith(expression, folder))
        files.insert(line.substr(0, line.find(':')));
    return files;
}

const std::set<std::string> CategoryTable = {"Libs/Assets/kxAssetCategory.cpp"};

TEST(FileTextTest, BeginsWithTheLicence)
{
    for (const std::string &path : architecture::projectFiles()) {
        const std::vector<std::string> lines = architecture::readLines(path);
        const int line = licenceLine(path, lines);
        if (line < 0)
            continue;
        ASSERT_GT(lines.size(), static_cast<std::size_t>(line)) << path;
        const std::string comment =
            architecture::isHeader(path) || architecture::isSource(path) || path.ends_with(".fbs") ? "// " : "# ";
        EXPECT_EQ(lines[static_cast<std::size_t>(line)], comment + Licence) << path;
    }
}

TEST(FileTextTest, ProtectsHeadersAgainstBeingReadTwice)
{
    for (const std::string &path : architecture::projectFiles()) {
        if (!architecture::isHeader(path))
            continue;
        const std::vector<std::string> lines = architecture::readLines(path);
        ASSERT_GT(lines.size(), 1U) << path;
        EXPECT_EQ(lines[1], "#pragma once") << path;
    }
}

TEST(FileTextTest, NamesNoPathOfTheMachineItWasWrittenOn)
{
    expectNowhere(machinePath(), "a path that exists on one machine only; make it relative, or a parameter");
}

TEST(FileTextTest, LeavesNoTestOut)
{
    expectNowhere(skippedTest(), "every test runs everywhere; provide what it needs");
}

TEST(FileTextTest, SpellsTheWordsOfCategoriesInTheirTableOnly)
{
    const std::regex names(R"rx("(Materials?|Environments?|Geometr(y|ies)|Sceneplates?)")rx");
    const std::regex folderPrefixes(R"rx("(MAT|ENV|GEO|SCP|UNKNOWN)_?")rx");
    const std::regex tagPrefixes(R"rx("(Environment|Geometry|Sceneplate) Asset)rx");
    const std::regex headers(R"rx("(Type|Modified on|Storage Location|Tags)")rx");

    for (const std::regex &words : {names, folderPrefixes, tagPrefixes, headers})
        EXPECT_EQ(filesWith(words, "Libs/Assets"), CategoryTable) << "ask kxAssetCategory";
}

TEST(FileTextTest, NumbersColumnsInTheirTableOnly)
{
    const std::regex numbered(R"(\b(column|section)\b[^&|?]*[=!<>]=? *\d|\d *[=!<>]=? *\b(column|section)\b)"
                              R"(|\b(switch *\( *(column|section)|case +\d)|[dD]ata\(\d)");

    std::set<std::string> files = filesWith(numbered, "Libs/Assets");
    // There it is the place of a fault in a text.
    for (const char *reader : {"Libs/Assets/Internal/MetadataReader.cpp", "Libs/Assets/kxLocalUrlManager.cpp"})
        files.erase(reader);

    EXPECT_EQ(files, CategoryTable) << "ask kxAssetCategory";
}

TEST(FileTextTest, LocksNothingInTheLibrary)
{
    // All of it belongs to the main thread, or to one task at a time. What is made once for all threads is a static
    // object of its function.
    const std::regex locks(R"(\b(std::)?(recursive_|shared_|timed_)*(mutex|lock_guard|unique_lock|scoped_lock)\b)"
                           R"(|\bshared_lock\b|\bcall_once\b|\bonce_flag\b|\batomic|\bQAtomic|\bQ\w*Mutex)"
                           R"(|\bQ(ReadWriteLock|ReadLocker|WriteLocker|Semaphore|WaitCondition)\b)"
                           R"(|\bstd::j?thread\b|\bthread_local\b|\bstd::async\b|\bQtConcurrent\b)");

    EXPECT_EQ(linesWith(locks, "Libs/Assets"), std::vector<std::string>{});
}

TEST(FileTextTest, GuardsNotTheBuildingOfTheCategoryMaps)
{
    for (const std::string &line : linesWith(std::regex("^ +static "), "Libs/Assets"))
        EXPECT_FALSE(line.starts_with("Libs/Assets/kxAssetCategory.cpp:")) << line;
}

TEST(FileTextTest, LetsNoTaskKnowItemsOrTheRegistry)
{
    const std::set<std::string> tasks = filesWith(std::regex(R"(\bQRunnable\b)"), "Libs/Assets");
    EXPECT_EQ(tasks, (std::set<std::string>{"Libs/Assets/Internal/kxLoadImage.h"}));

    const std::set<std::string> users = filesWith(std::regex("kxAssetItem"), "Libs/Assets");
    for (const char *file : {"Libs/Assets/Internal/kxLoadImage.h", "Libs/Assets/Internal/kxLoadImage.cpp"})
        EXPECT_FALSE(users.contains(file)) << file << ": both belong to the main thread";
}

TEST(FileTextTest, TakesRandomnessFromOneObject)
{
    const std::regex sources(
        R"(\b(random_generator\w*|random_device|mt19937\w*|default_random_engine|minstd_rand\w*)\b)"
        R"(|\bQRandomGenerator\b|\bcreateUuid\b|\bqrand\b|\b[sd]?rand(om|48)?\()");

    const std::vector<std::string> lines = linesWith(sources, "Libs/Assets");

    std::vector<std::string> uses;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(uses),
                 [](const std::string &line) { return line.find("#include") == std::string::npos; });
    EXPECT_EQ(uses, (std::vector<std::string>{
                        "Libs/Assets/kxAssetItem.cpp: static boost::uuids::random_generator generator;"}))
        << "one for the library, made on first use in a static object, which is safe on any thread";
}

} // namespace

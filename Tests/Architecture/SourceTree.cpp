// SPDX-License-Identifier: Apache-2.0
#include "SourceTree.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace architecture {

namespace {

namespace fs = std::filesystem;

// Only these are walked, so that a build folder of any name does not matter.
constexpr std::array Folders = {".ci", "Apps", "Benchmarks", "Docs", "Host", "Libs", "Tests", "Translations", "cmake"};

fs::path top()
{
    return fs::path(KX_SOURCE_FOLDER);
}

bool isText(const fs::path &path)
{
    static const std::set<std::string> extensions = {"",    ".bash", ".cmake", ".cpp", ".fbs", ".h",
                                                     ".in", ".json", ".md",    ".py",  ".qrc", ".sh",
                                                     ".ts", ".txt",  ".ui",    ".xml", ".yml"};
    return extensions.contains(path.extension().string());
}

} // namespace

std::vector<std::string> projectFiles()
{
    std::vector<std::string> files;
    for (const auto &entry : fs::directory_iterator(top())) {
        if (entry.is_regular_file() && isText(entry.path()))
            files.push_back(entry.path().filename().string());
    }
    for (const char *folder : Folders) {
        if (!fs::is_directory(top() / folder))
            continue;
        for (const auto &entry : fs::recursive_directory_iterator(top() / folder)) {
            if (entry.is_regular_file() && isText(entry.path()))
                files.push_back(fs::relative(entry.path(), top()).string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> readLines(const std::string &path)
{
    std::ifstream stream(top() / path);
    if (!stream)
        throw std::runtime_error("cannot read " + path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool isHeader(std::string_view path)
{
    return path.ends_with(".h");
}

bool isSource(std::string_view path)
{
    return path.ends_with(".cpp");
}

std::string folderOf(std::string_view path)
{
    return fs::path(path).parent_path().string();
}

std::string stemOf(std::string_view path)
{
    return fs::path(path).stem().string();
}

} // namespace architecture

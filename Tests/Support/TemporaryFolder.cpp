// SPDX-License-Identifier: Apache-2.0
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace kxtest {

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kxtest-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::filesystem::filesystem_error("temporary folder", name,
                                                std::error_code(errno, std::generic_category()));
    _path = std::filesystem::canonical(name);
}

TemporaryFolder::~TemporaryFolder()
{
    using std::filesystem::perms;
    std::error_code ignored;
    // Tests take rights away from folders; without them nothing below could be removed.
    std::filesystem::permissions(_path, perms::owner_all, std::filesystem::perm_options::add, ignored);
    for (auto entry = std::filesystem::recursive_directory_iterator(_path, ignored);
         entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored)) {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            std::filesystem::permissions(entry->path(), perms::owner_all, std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(_path, ignored);
}

std::string TemporaryFolder::file(std::string_view name) const
{
    return (_path / name).string();
}

bool TemporaryFolder::contains(std::string_view name) const
{
    return std::filesystem::exists(std::filesystem::symlink_status(_path / name));
}

std::string TemporaryFolder::makeFolder(std::string_view name) const
{
    std::filesystem::create_directories(_path / name);
    return file(name);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const
{
    const std::filesystem::path target = _path / name;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream stream;
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.open(target, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return target.string();
}

std::string TemporaryFolder::read(std::string_view name) const
{
    std::ifstream stream(_path / name, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << "cannot read " << file(name);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

} // namespace kxtest

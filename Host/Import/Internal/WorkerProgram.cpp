// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerProgram.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <vector>

namespace kximport {

namespace {

namespace fs = std::filesystem;

struct Setting
{
    std::mutex mutex;
    std::string path;
};

Setting &setting()
{
    static Setting instance;
    return instance;
}

/// The folder of the library that this code lies in.
fs::path libraryFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void *>(&libraryFolder), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    const fs::path library = fs::canonical(info.dli_fname, error);
    return error ? fs::path() : library.parent_path();
}

fs::path programFolder()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : program.parent_path();
}

std::vector<fs::path> folders()
{
    std::vector<fs::path> result;
    if (const fs::path library = libraryFolder(); !library.empty())
        for (const char *relative : {".", "../bin", "../libexec/kxAssets", "../../bin", "../../libexec/kxAssets"})
            result.push_back(library / relative);
    if (const fs::path program = programFolder(); !program.empty())
        result.push_back(program);
    return result;
}

} // namespace

void WorkerProgram::set(const std::string &path)
{
    const std::lock_guard lock(setting().mutex);
    setting().path = path;
}

std::string WorkerProgram::find()
{
    {
        const std::lock_guard lock(setting().mutex);
        if (!setting().path.empty())
            return setting().path;
    }
    if (const char *named = std::getenv(EnvironmentVariable); named && *named)
        return named;
    for (const fs::path &folder : folders()) {
        const fs::path program = (folder / Name).lexically_normal();
        if (access(program.c_str(), X_OK) == 0)
            return program.string();
    }
    return {};
}

} // namespace kximport

// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kximport {

WorkFolder::WorkFolder()
{
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    std::string name = (error ? std::filesystem::path("/tmp") : temporary) / "kx-import-XXXXXX";
    if (mkdtemp(name.data()))
        _path = name;
    else
        _error = "no temporary folder '" + name + "' can be made: " + std::generic_category().message(errno);
}

WorkFolder::~WorkFolder()
{
    std::error_code ignored;
    if (!_path.empty())
        std::filesystem::remove_all(_path, ignored);
}

} // namespace kximport

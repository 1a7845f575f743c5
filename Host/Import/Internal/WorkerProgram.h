// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kximport {

/// Where the program is that parses foreign files.
class WorkerProgram
{
public:
    static constexpr const char *Name = "kx-import-worker";
    static constexpr const char *EnvironmentVariable = "KX_IMPORT_WORKER";

    /// Empty: it is looked for.
    static void set(const std::string &path);

    /// The path that was set, else the environment's, else the first there is in the folders where installations and
    /// build trees have it; "" where there is none.
    static std::string find();
};

} // namespace kximport

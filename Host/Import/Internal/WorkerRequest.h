// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kximport {

/// What is wanted of a file.
enum class ImportKind { Scene, Materials, Environment };

/// What the program that parses is asked to do; travels as its command line.
struct WorkerRequest
{
    ImportKind kind = ImportKind::Scene;
    std::string path;       ///< the foreign file
    std::string resultFile; ///< the scene file to write
    std::string workFolder; ///< exists, for files in passing
    std::uint64_t memory = 0;
    std::string selfTest; ///< a misbehaviour to show instead of working; "": none

    /// Without the program's name.
    std::vector<std::string> toArguments() const;
    /// Nothing for arguments that toArguments() does not make.
    static std::optional<WorkerRequest> fromArguments(const std::vector<std::string> &arguments);
};

} // namespace kximport

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace architecture {

/// A file whose name breaks the rule of one class, one header, one source, one test file; and why.
struct NameException
{
    std::string path;
    std::string reason;
};

/// What the names of \a files break, one line each: a header without its source, a source without its header, a test
/// file that tests nothing of that name, and exceptions that are none (any more).
std::vector<std::string> findNameProblems(const std::vector<std::string> &files,
                                          const std::vector<NameException> &headersWithoutSource,
                                          const std::vector<NameException> &sourcesWithoutHeader,
                                          const std::vector<NameException> &testsOfCapabilities);

} // namespace architecture

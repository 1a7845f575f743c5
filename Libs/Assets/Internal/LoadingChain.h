// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kxAssetsInternal {

/// The material assets whose loading is under way, from the one that was asked for down to the innermost; this object adds
/// one for its lifetime. Main thread only.
class LoadingChain
{
public:
    /// Whether \a uuid is under way, so that loading it would never end. Then one line in the log says so.
    static bool isCyclic(const std::string &uuid);
    /// Whether the chain is too long for the stack to take one more. Then one line in the log says so.
    static bool isTooDeep(const std::string &uuid);

    explicit LoadingChain(const std::string &uuid);
    ~LoadingChain();
    LoadingChain(const LoadingChain &) = delete;
    LoadingChain &operator=(const LoadingChain &) = delete;

private:
    static std::vector<std::string> s_underWay;
};

} // namespace kxAssetsInternal

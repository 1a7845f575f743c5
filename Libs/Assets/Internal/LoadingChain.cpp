// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/LoadingChain.h"

#include "Kernel/kxLog.h"

#include <algorithm>

namespace kxAssetsInternal {

namespace {

/// Far deeper than anybody nests materials, and far from the end of the stack.
constexpr std::size_t MaxDepth = 100;

} // namespace

std::vector<std::string> LoadingChain::s_underWay;

bool LoadingChain::isCyclic(const std::string &uuid)
{
    if (std::find(s_underWay.begin(), s_underWay.end(), uuid) == s_underWay.end())
        return false;
    kxLog::error("Material asset '%s' is part of itself; that part of it is left out.", uuid.c_str());
    return true;
}

bool LoadingChain::isTooDeep(const std::string &uuid)
{
    if (s_underWay.size() < MaxDepth)
        return false;
    kxLog::error("Material asset '%s' lies too deep within '%s' and is left out.", uuid.c_str(),
                 s_underWay.front().c_str());
    return true;
}

LoadingChain::LoadingChain(const std::string &uuid)
{
    s_underWay.push_back(uuid);
}

LoadingChain::~LoadingChain()
{
    s_underWay.pop_back();
}

} // namespace kxAssetsInternal

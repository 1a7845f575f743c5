// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/Internal/PatternParameters.h"
#include "AssetSession/kxTexturePattern.h"

#include <functional>
#include <map>
#include <string>

namespace kxAssetSessionInternal {

using PatternFunction = std::function<kxTexturePattern::Place(float u, float v)>;
using PatternMaker = PatternFunction (*)(PatternParameters &parameters);

/// Every pattern by its name. A maker reads what the pattern needs and gives what draws it.
const std::map<std::string, PatternMaker> &patternMakers();

} // namespace kxAssetSessionInternal

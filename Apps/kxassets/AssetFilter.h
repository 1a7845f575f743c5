// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

class kxAssetItem;
class kxAssetLibrary;

namespace CLI {
class App;
}

/// Which assets of a library a command is about.
class AssetFilter
{
public:
    /// Adds --category, --folder, --tag and --name. The filter has to stay while the options are parsed.
    void declare(CLI::App &app);

    /// The assets that all given options let through, in the library's order.
    std::vector<kxAssetItem *> items(const kxAssetLibrary &library) const;

private:
    std::string _category;
    std::string _folder;
    std::string _tag;
    std::string _name;
};

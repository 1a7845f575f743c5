// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/kxNodeSaving.h"
#include "kxassets/ExitCode.h"

#include <string>

namespace CLI {
class App;
}
struct Context;
struct Options;

/// What the commands have in common that save parts of a scene.
struct SaveOptions
{
    std::string scene;
    std::string name;
    std::string folder;
    bool makesReferencesOrdinary = false;
    bool refusesAssetRoot = false;

    void declare(CLI::App &app, Options &options);
    kxNodeSaving answers() const;

    /// Prints what was saved and what was done for that, or the reason why not.
    static ExitCode report(const osg::Result<kxNodeSaving::Saved> &saved, Context &context);
};

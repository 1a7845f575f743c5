// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/kxNodeSaving.h"
#include "kxassets/ExitCode.h"

#include <QUrl>

#include <optional>
#include <string>
#include <vector>

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

    /// What there is to save from, and where to.
    struct Opened
    {
        QUrl folder;
        std::vector<osg::NodePtr> nodes; ///< the topmost ones

        /// Null, and says why, where the path leads nowhere.
        osg::NodePtr find(const std::string &path) const;
    };

    void declare(CLI::App &app, Options &options);
    /// Nothing, and says why, where the library or the scene cannot be opened.
    std::optional<Opened> open(bool libraryMustExist, Context &context) const;
    kxNodeSaving answers() const;

    /// Prints what was saved and what was done for that, or the reason why not.
    static ExitCode report(const osg::Result<kxNodeSaving::Saved> &saved, Context &context);
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace CLI {
class App;
}

/// How large and how good previews are rendered.
struct PreviewOptions
{
    int size = 512;
    int samples = 0; ///< 0: the renderer's own choice

    void declare(CLI::App &app);
    void apply() const;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace CLI {
class App;
}

/// How large and how good previews are rendered.
struct PreviewOptions
{
    int size;
    int samples;

    /// The renderer's own choice.
    PreviewOptions();

    void declare(CLI::App &app);
    void apply() const;
};

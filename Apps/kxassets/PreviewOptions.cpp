// SPDX-License-Identifier: Apache-2.0
#include "kxassets/PreviewOptions.h"

#include "Rendering/kxPreviewSettings.h"

#include <CLI/CLI.hpp>

void PreviewOptions::declare(CLI::App &app)
{
    app.add_option("--preview-size", size, "Width of a preview in pixels")->check(CLI::Range(16, 4096))->capture_default_str();
    app.add_option("--preview-samples", samples, "Samples a pixel; more are slower and smoother")
        ->check(CLI::Range(1, 65536));
}

void PreviewOptions::apply() const
{
    kxPreviewSettings::setSize(size);
    if (samples > 0)
        kxPreviewSettings::setSamples(samples);
}

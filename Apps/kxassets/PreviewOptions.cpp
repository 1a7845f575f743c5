// SPDX-License-Identifier: Apache-2.0
#include "kxassets/PreviewOptions.h"

#include "Rendering/kxPreviewSettings.h"

#include <CLI/CLI.hpp>

PreviewOptions::PreviewOptions() : size(kxPreviewSettings::size()), samples(kxPreviewSettings::samples()) {}

void PreviewOptions::declare(CLI::App &app)
{
    app.add_option("--preview-size", size, "Width of a preview in pixels")
        ->type_name("N")
        ->check(CLI::Range(16, 4096).description(""))
        ->capture_default_str();
    app.add_option("--preview-samples", samples, "Samples for each pixel; more are slower and smoother")
        ->type_name("N")
        ->check(CLI::Range(1, 65536).description(""))
        ->capture_default_str();
}

void PreviewOptions::apply() const
{
    kxPreviewSettings::setSize(size);
    kxPreviewSettings::setSamples(samples);
}

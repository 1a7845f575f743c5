// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What imported files become.
struct ImportOptions
{
    enum class Models { Materials, Geometry, Parts };
    enum class Pictures { Environment, Frontplate, Backplate };

    Models models = Models::Geometry;
    Pictures pictures = Pictures::Environment;
};

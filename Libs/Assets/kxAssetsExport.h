// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what the library offers to others; everything else in it is hidden.
#if defined(_WIN32)
#if defined(kxAssets_EXPORTS)
#define KX_ASSETS_EXPORT __declspec(dllexport)
#else
#define KX_ASSETS_EXPORT __declspec(dllimport)
#endif
#else
#define KX_ASSETS_EXPORT __attribute__((visibility("default")))
#endif

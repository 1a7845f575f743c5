// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(_WIN32)
#if defined(kxKernel_EXPORTS)
#define KX_KERNEL_EXPORT __declspec(dllexport)
#else
#define KX_KERNEL_EXPORT __declspec(dllimport)
#endif
#else
#define KX_KERNEL_EXPORT __attribute__((visibility("default")))
#endif

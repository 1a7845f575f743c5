// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(kxAssetSession_EXPORTS) || defined(__GNUC__)
#define KX_ASSETSESSION_EXPORT __attribute__((visibility("default"))) // as code generators can read it
#else
#define KX_ASSETSESSION_EXPORT
#endif

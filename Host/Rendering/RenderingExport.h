// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(kxRendering_EXPORTS) || defined(__GNUC__)
#define KX_RENDERING_EXPORT [[gnu::visibility("default")]]
#else
#define KX_RENDERING_EXPORT
#endif

// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(kxSceneGraph_EXPORTS) || defined(__GNUC__)
#define KX_SCENEGRAPH_EXPORT [[gnu::visibility("default")]]
#else
#define KX_SCENEGRAPH_EXPORT
#endif

// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(kxImport_EXPORTS) || defined(__GNUC__)
#define KX_IMPORT_EXPORT [[gnu::visibility("default")]]
#else
#define KX_IMPORT_EXPORT
#endif

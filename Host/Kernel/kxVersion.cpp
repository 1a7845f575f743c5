// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxVersion.h"

const char *kxGetVersionString()
{
    return KX_VERSION_STRING; // given by the build from the project's version
}

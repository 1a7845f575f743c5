// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"

#include <QString>

/// Where the Python module kx lies, for programs that run scripts.
class KX_ASSETSESSION_EXPORT kxPythonFolder
{
public:
    kxPythonFolder() = delete;

    /// Beside the programs of a build, or where it was installed. Empty where there is none.
    static QString find();
};

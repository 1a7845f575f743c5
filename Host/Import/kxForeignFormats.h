// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/ImportExport.h"

#include <string>
#include <vector>

/// Which files may be imported, judged by their names alone.
class KX_IMPORT_EXPORT kxForeignFormats
{
public:
    /// Lower case, without the dot, sorted.
    static const std::vector<std::string> &sceneExtensions();
    /// Pictures that can serve as environments; the same form.
    static const std::vector<std::string> &imageExtensions();

    /// True where the extension is one of sceneExtensions(), in whatever case.
    static bool isSceneFile(const std::string &path);
    /// True where the extension is one of imageExtensions(), in whatever case.
    static bool isImageFile(const std::string &path);
};

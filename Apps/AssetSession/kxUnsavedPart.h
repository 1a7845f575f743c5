// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <string>

/// One of the things in a foreign file that could not be saved as an asset.
struct kxUnsavedPart
{
    std::string name; ///< as the file has it
    QString folder;   ///< where its asset was to lie; "" where that would not be in the library
};

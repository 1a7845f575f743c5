// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "AssetSession/kxGeometryImport.h"

/// Keeps pictures as assets that are placed into scenes. Main thread only.
class KX_ASSETSESSION_EXPORT kxPictureImport
{
public:
    enum class Kind {
        Environment, ///< lights the scene and surrounds it; a panorama, once around from left to right
        Frontplate,  ///< fills the rendered image from above
        Backplate    ///< from below
    };
    using Outcome = kxGeometryImport::Outcome;

    explicit kxPictureImport(Kind kind) : _kind(kind) {}

    /// What is asked many times a second while a file is read, and may handle events; false stops that, and the import
    /// fails.
    void setWhileReading(const std::function<bool()> &goOn) { _whileReading = goOn; }

    /// Saves the picture as a new asset in \a folder, named like the file. The scene document is as before afterwards.
    Outcome importFile(const QString &path, const QUrl &folder) const;

private:
    Kind _kind;
    std::function<bool()> _whileReading;
};

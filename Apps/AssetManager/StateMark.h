// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>

#include <vector>

class QPainter;
class QRectF;

/// The signs that tell how an asset stands to the scene, the same wherever assets are shown.
///
/// Each has a shape of its own as well as a colour, which not everybody can tell from others.
class StateMark
{
public:
    enum class Kind {
        InScene,
        Edited,   ///< the copy in the scene was changed
        Newer,    ///< the stored asset was saved again since it was loaded
        Broken,   ///< the asset cannot be loaded
        NotFound, ///< the asset is not in an open library
        Favourite
    };

    /// What to show for the flags of AssetStates, the worst first. That an asset is in the scene goes without saying where
    /// something else is said about its copy there.
    static std::vector<Kind> of(unsigned states);

    /// Fills the square \a place, and looks the same on light and on dark ground.
    static void paint(QPainter &painter, const QRectF &place, Kind kind);
    /// In the size of the style's small icons.
    static QIcon icon(Kind kind);
};

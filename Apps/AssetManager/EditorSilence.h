// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

/// Keeps the editors in a widget that is being destroyed from telling it that they were left: the one with the focus says so
/// when it goes, and by then its owner is no more than a plain widget.
class EditorSilence
{
public:
    EditorSilence() = delete;

    /// For destructors.
    static void keepIn(QWidget &widget);
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/ItemDrag.h"

/// One of Qt's views, out of which rows are dragged with the picture that ItemDrag has for them.
template <class View> class DragView final : public View
{
public:
    using View::View;

protected:
    void startDrag(Qt::DropActions actions) override { ItemDrag::exec(*this, actions); }
};

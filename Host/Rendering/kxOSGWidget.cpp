// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxOSGWidget.h"

#include <vector>

namespace {

std::vector<kxOSGWidget *> &views()
{
    static std::vector<kxOSGWidget *> views;
    return views;
}

} // namespace

kxOSGWidget *kxOSGWidget::getMGLW(int index)
{
    const std::size_t position = index == -1 ? 0 : static_cast<std::size_t>(index);
    return index >= -1 && position < views().size() ? views()[position] : nullptr;
}

void kxOSGWidget::cancelAntialiasing()
{
    const std::vector<kxOSGWidget *> all = views();
    for (kxOSGWidget *view : all)
        view->cancelRefinement();
}

kxOSGWidget::kxOSGWidget()
{
    views().push_back(this);
}

kxOSGWidget::~kxOSGWidget()
{
    std::erase(views(), this);
}

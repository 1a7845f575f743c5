// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/EditCP.h"

#include "SceneGraph/FieldContainerFactory.h"

namespace osg {

void beginEditCP(const FieldContainerPtr &container, FieldMask mask)
{
    if (container)
        container->beginEdit(mask);
}

void endEditCP(const FieldContainerPtr &container, FieldMask mask)
{
    if (container)
        container->endEdit(mask);
}

CPEditor::CPEditor(const FieldContainerPtr &container, FieldMask mask)
    : _id(container.getFieldContainerId()), _mask(mask)
{
    beginEditCP(container, mask);
}

CPEditor::~CPEditor()
{
    endEditCP(FieldContainerFactory::the().getContainer(_id), _mask);
}

} // namespace osg

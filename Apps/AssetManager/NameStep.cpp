// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NameStep.h"

#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

namespace {

osg::AttachmentContainerPtr containerOf(std::uint32_t id)
{
    return osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

} // namespace

NameStep::NameStep(std::uint32_t containerId, std::string name) : _containerId(containerId), _after(std::move(name)) {}

QString NameStep::apply()
{
    _before = osg::getName(containerOf(_containerId));
    return rename(_after);
}

QString NameStep::revert()
{
    return rename(_before);
}

QString NameStep::rename(const std::string &name) const
{
    const osg::AttachmentContainerPtr container = containerOf(_containerId);
    if (!container)
        return tr("\"%1\" is no longer part of the scene.").arg(QString::fromStdString(name));
    osg::setName(container, name);
    Q_EMIT kxScenegraph::notifier().nameChanged(_containerId);
    return {};
}

// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/SceneWatch.h"

#include "SceneGraph/Attachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/OverrideMaterialAttachment.h"

#include <utility>
#include <variant>

namespace kxRender {

namespace {

constexpr osg::FieldMask SeenOfPools = ~(osg::MaterialPool::MaterialsFieldMask | osg::MaterialPool::CamerasFieldMask |
                                         osg::MaterialPool::ConstraintsFieldMask);

bool carriesOverride(const osg::FieldContainerPtr &container)
{
    return static_cast<bool>(
        osg::findAttachment<osg::OverrideMaterialAttachment>(osg::AttachmentContainerPtr::dcast(container)));
}

/// Pools hold materials whether or not something wears them, and of attachments only one is seen.
bool isShown(const osg::FieldContainerPtr &user, const osg::FieldInfo &field, const osg::FieldContainerPtr &used)
{
    if (!used || osg::UberCameraPtr::dcast(used))
        return false;
    if (osg::AttachmentPtr::dcast(used))
        return static_cast<bool>(osg::OverrideMaterialAttachmentPtr::dcast(used));
    return !osg::MaterialPoolPtr::dcast(user) || (field.mask & SeenOfPools) != 0;
}

void forEachUsed(const osg::FieldContainerPtr &user, const std::function<void(const osg::FieldContainerPtr &)> &use)
{
    for (const osg::FieldInfo &field : user->getType().fields()) {
        const osg::FieldPointer address = field.address(*user);
        const auto visit = [&](const osg::FieldContainerPtr &used) {
            if (isShown(user, field, used))
                use(used);
        };
        if (const auto *single = std::get_if<osg::RefFieldBase *>(&address))
            visit((*single)->getContainer());
        else if (const auto *several = std::get_if<osg::MRefFieldBase *>(&address))
            for (std::size_t i = 0; i < (*several)->containerCount(); ++i)
                visit((*several)->containerAt(i));
    }
}

} // namespace

SceneWatch::SceneWatch(std::function<void()> sceneChanged, std::function<void()> cameraChanged)
    : _sceneChanged(std::move(sceneChanged)), _cameraChanged(std::move(cameraChanged))
{
    osg::FieldContainerFactory::the().addListener(*this);
}

SceneWatch::~SceneWatch()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

void SceneWatch::watchScene(const std::vector<osg::NodePtr> &roots)
{
    _shown.clear();
    _overridden.clear();
    std::vector<osg::FieldContainerPtr> waiting;
    const auto add = [&](const osg::FieldContainerPtr &container) {
        if (container && _shown.insert(container.getFieldContainerId()).second)
            waiting.push_back(container);
    };
    for (const osg::NodePtr &root : roots)
        add(root);
    while (!waiting.empty()) {
        const osg::FieldContainerPtr container = waiting.back();
        waiting.pop_back();
        if (carriesOverride(container))
            _overridden.insert(container.getFieldContainerId());
        forEachUsed(container, add);
    }
}

void SceneWatch::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const std::uint32_t id = container.getFieldContainerId();
    if (id == _camera &&
        (fields & (osg::UberCamera::getCombinedViewingAttributesMask() | osg::UberCamera::FieldOfViewFieldMask)) != 0)
        _cameraChanged();
    else if (_shown.contains(id) && isSeen(container, fields))
        _sceneChanged();
}

/// Names, notes of assets and the like come and go as attachments.
bool SceneWatch::isSeen(osg::FieldContainer &container, osg::FieldMask fields) const
{
    const osg::FieldContainerPtr handle(&container);
    if (osg::MaterialPoolPtr::dcast(handle))
        fields &= SeenOfPools;
    if (fields != osg::AttachmentContainer::AttachmentsFieldMask || !osg::AttachmentContainerPtr::dcast(handle))
        return fields != 0;
    return carriesOverride(handle) || _overridden.contains(container.getFieldContainerId());
}

} // namespace kxRender

// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/TypeList.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Attachment.h"
#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Constraint.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/LightLinkSet.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/NodeCore.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/SynchronizationAttachment.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"
#include "SceneGraph/UberCamera.h"
#include "SceneGraph/UberMaterial.h"

namespace osg {

void registerSceneGraphTypes(FieldContainerFactory &factory)
{
    factory.registerType(FieldContainer::getClassType());
    factory.registerType(AssetAttachment::getClassType());
    factory.registerType(Attachment::getClassType());
    factory.registerType(AttachmentContainer::getClassType());
    factory.registerType(CameraCore::getClassType());
    factory.registerType(Constraint::getClassType());
    factory.registerType(Environment::getClassType());
    factory.registerType(Geometry::getClassType());
    factory.registerType(Group::getClassType());
    factory.registerType(Image::getClassType());
    factory.registerType(ImageAttachment::getClassType());
    factory.registerType(JsonAttachment::getClassType());
    factory.registerType(KeyAttachment::getClassType());
    factory.registerType(Light::getClassType());
    factory.registerType(LightLinkSet::getClassType());
    factory.registerType(Material::getClassType());
    factory.registerType(MaterialGroup::getClassType());
    factory.registerType(MaterialPool::getClassType());
    factory.registerType(MultiMaterial::getClassType());
    factory.registerType(MultiPassMaterial::getClassType());
    factory.registerType(NameAttachment::getClassType());
    factory.registerType(Node::getClassType());
    factory.registerType(NodeCore::getClassType());
    factory.registerType(OverrideMaterialAttachment::getClassType());
    factory.registerType(ReferenceAttachment::getClassType());
    factory.registerType(Sceneplate::getClassType());
    factory.registerType(Switch::getClassType());
    factory.registerType(SwitchMaterial::getClassType());
    factory.registerType(SynchronizationAttachment::getClassType());
    factory.registerType(TagAttachment::getClassType());
    factory.registerType(Texture::getClassType());
    factory.registerType(Transform3D::getClassType());
    factory.registerType(Transform::getClassType());
    factory.registerType(UBRDFMaterial::getClassType());
    factory.registerType(UEnvironmentMaterial::getClassType());
    factory.registerType(UEnvironmentSwitchMaterial::getClassType());
    factory.registerType(USkyEnvironmentMaterial::getClassType());
    factory.registerType(USphereEnvironmentMaterial::getClassType());
    factory.registerType(UberCamera::getClassType());
    factory.registerType(UberMaterial::getClassType());
}

} // namespace osg

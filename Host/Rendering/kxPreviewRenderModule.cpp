// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxPreviewRenderModule.h"

#include "Kernel/kxMessage.h"
#include "Rendering/kxMaterialPreviewRenderer.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"

#include <vector>

namespace {

void keepOn(const osg::MaterialPtr &material, const osg::ImagePtr &image)
{
    osg::ImageAttachmentPtr attachment = osg::findAttachment<osg::ImageAttachment>(material);
    if (!attachment) {
        attachment = osg::ImageAttachment::create();
        const osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }
    const osg::CPEditor edit(attachment, osg::ImageAttachment::ImageFieldMask);
    attachment->setImage(image);
}

void renderPreviews(const std::vector<osg::MaterialPtr> &materials)
{
    for (const osg::MaterialPtr &material : materials) {
        const auto image = osg::FCRef<osg::Image>::adopt(kxMaterialPreviewRenderer::renderPreview(
            material, kxPreviewSettings::size(), kxPreviewSettings::size(), kxPreviewSettings::samples()));
        if (image)
            keepOn(material, image);
    }
}

} // namespace

kxPreviewRenderModule::kxPreviewRenderModule()
{
    registerHandler("renderPreviewImages", [](kxMessage &message) {
        std::vector<osg::MaterialPtr> materials;
        if (message.get("materials", materials))
            renderPreviews(materials);
    });
}

// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/EnvironmentPreview.h"

#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"

#include <vector>

namespace kxAssetsInternal {

osg::ImagePtr environmentPreview(const osg::UEnvironmentMaterialPtr &material)
{
    if (!material)
        return nullptr;
    if (!kxMaterials::getPreviewImage(material)) {
        kxMessage message;
        message.set("materials", std::vector<osg::MaterialPtr>{material});
        message.set("showProgress", false);
        kxController::call("renderPreviewImages", message);
    }
    return kxMaterials::getPreviewImage(material);
}

} // namespace kxAssetsInternal

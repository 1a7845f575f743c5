// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <cstdint>
#include <memory>
#include <vector>

/// Changes the environments of BRDF materials and brings the previous ones back.
///
/// Copies share what they remember: the first reset() brings it back, and the others find nothing to do. Not called on
/// destruction. Main thread only.
class KX_KERNEL_EXPORT kxBRDFEnvironmentSetter
{
public:
    kxBRDFEnvironmentSetter();

    /// Sets the environment, or null. What the material had is remembered, with a reference, the first time. Null
    /// materials are ignored; of an uber material all its layers are meant.
    void setEnvironment(const osg::UBRDFMaterialPtr &material, const osg::MaterialPtr &environment);
    void setEnvironment(const osg::UberMaterialPtr &material, const osg::MaterialPtr &environment);
    /// Brings the remembered environments back, the last first, also null ones. Destroyed materials are passed over. A
    /// second call does nothing.
    void reset();

private:
    struct Previous
    {
        std::uint32_t materialId = 0;
        osg::FCRef<osg::Material> environment;
    };
    std::shared_ptr<std::vector<Previous>> _previous;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxModuleBase.h"
#include "Rendering/RenderingExport.h"

/// Answers the host's call "renderPreviewImages": renders each material of the attribute "materials" (a
/// std::vector<osg::MaterialPtr>) and keeps the picture on it, for as long as this object lives. Nulls, and materials
/// that have no picture, are passed over. The attribute "showProgress" (bool) is understood; no dialog is shown yet.
class KX_RENDERING_EXPORT kxPreviewRenderModule final : public kxModuleBase
{
public:
    kxPreviewRenderModule();
};

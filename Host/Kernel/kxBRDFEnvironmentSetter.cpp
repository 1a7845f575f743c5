// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxBRDFEnvironmentSetter.h"

#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <algorithm>

namespace {

void assign(const osg::UBRDFMaterialPtr &material, const osg::MaterialPtr &environment)
{
    // A null environment has to stay null, and not become the scene's default one.
    const bool ignored = osg::UBRDFMaterial::getIgnoreDefaultEnvironment();
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(true);
    {
        const osg::CPEditor edit(material, osg::UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(environment);
    }
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(ignored);
}

} // namespace

kxBRDFEnvironmentSetter::kxBRDFEnvironmentSetter() : _previous(std::make_shared<std::vector<Previous>>()) {}

void kxBRDFEnvironmentSetter::setEnvironment(const osg::UBRDFMaterialPtr &material, const osg::MaterialPtr &environment)
{
    if (!material)
        return;
    const std::uint32_t id = material.getFieldContainerId();
    const bool isKnown = std::any_of(_previous->begin(), _previous->end(),
                                     [id](const Previous &previous) { return previous.materialId == id; });
    if (!isKnown)
        _previous->push_back({id, osg::FCRef<osg::Material>(material->getEnvironment())});
    // Whether null becomes the default environment is for the caller to say.
    const osg::CPEditor edit(material, osg::UBRDFMaterial::EnvironmentFieldMask);
    material->setEnvironment(environment);
}

void kxBRDFEnvironmentSetter::setEnvironment(const osg::UberMaterialPtr &material, const osg::MaterialPtr &environment)
{
    for (const osg::UBRDFMaterialPtr &layer : kxUberMaterialUtils::getBRDFMaterials(material))
        setEnvironment(layer, environment);
}

void kxBRDFEnvironmentSetter::reset()
{
    const std::vector<Previous> previous = std::move(*_previous);
    _previous->clear();
    for (auto entry = previous.rbegin(); entry != previous.rend(); ++entry)
        if (const auto material =
                osg::UBRDFMaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(entry->materialId)))
            assign(material, entry->environment.get());
}

// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UBRDFMaterial.h"

#include <utility>

namespace osg {

OSG_CONTAINER_SOURCE(UBRDFMaterial)

namespace {

bool ignoresDefaultEnvironment = false;

UBRDFMaterial::DefaultEnvironment &defaultEnvironmentSource()
{
    static UBRDFMaterial::DefaultEnvironment source;
    return source;
}

} // namespace

void UBRDFMaterial::setEnvironment(const MaterialPtr &environment)
{
    const bool adoptsDefault = !environment && !ignoresDefaultEnvironment && defaultEnvironmentSource();
    recordChange(EnvironmentFieldMask);
    Environment_ = adoptsDefault ? defaultEnvironmentSource()() : environment;
}

bool UBRDFMaterial::getIgnoreDefaultEnvironment()
{
    return ignoresDefaultEnvironment;
}

void UBRDFMaterial::setIgnoreDefaultEnvironment(bool ignore)
{
    ignoresDefaultEnvironment = ignore;
}

void UBRDFMaterial::setDefaultEnvironmentSource(DefaultEnvironment source)
{
    defaultEnvironmentSource() = std::move(source);
}

} // namespace osg

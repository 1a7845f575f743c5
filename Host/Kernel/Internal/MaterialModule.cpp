// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/MaterialModule.h"

#include "Kernel/kxKernelRegister.h"
#include "Kernel/kxMessage.h"

#include <map>
#include <memory>
#include <string>

namespace kxKernelInternal {

MaterialModule::MaterialModule()
{
    registerHandler("getUIMaterialNames", &MaterialModule::answerNames);
}

void MaterialModule::answerNames(kxMessage &message)
{
    message.set("names", std::map<std::string, QString>{
                             {"MultiMaterial", tr("Multi Material")},
                             {"MultiPassMaterial", tr("Multi-Pass Material")},
                             {"SwitchMaterial", tr("Switch Material")},
                             {"UBRDFMaterial", tr("BRDF Material")},
                             {"UEnvironmentSwitchMaterial", tr("Environment Switch")},
                             {"USkyEnvironmentMaterial", tr("Sky Environment")},
                             {"USphereEnvironmentMaterial", tr("Sphere Environment")},
                             {"UberMaterial", tr("Uber Material")},
                         });
}

namespace {

const kxKernelRegister registration([] { static const MaterialModule module; });

} // namespace

} // namespace kxKernelInternal

// SPDX-License-Identifier: Apache-2.0
#include "HostModule.h"

#include "Kernel/kxMessage.h"

HostModule::HostModule() : names{{"UBRDFMaterial", "Surface"}, {"SwitchMaterial", QString::fromUtf8("Schälter")}}
{
    registerHandler("renderPreviewImages", [this](kxMessage &message) { notePreviewRequest(message); });
    registerHandler("getUIMaterialNames", [this](kxMessage &message) { answerNames(message); });
}

void HostModule::notePreviewRequest(const kxMessage &message)
{
    previewRequests.push_back(message.get<std::vector<osg::MaterialPtr>>("materials").value());
    progressRequests.push_back(message.get<bool>("showProgress").value());
}

void HostModule::answerNames(kxMessage &message)
{
    ++nameRequests;
    if (answersWithWrongType)
        message.set("names", 1);
    else
        message.set("names", names);
}

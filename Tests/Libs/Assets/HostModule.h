// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxModuleBase.h"
#include "SceneGraph/Material.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

/// Answers, in place of the host's own modules, what material items ask the host, and notes what they asked.
class HostModule : public kxModuleBase
{
public:
    HostModule();

    /// The materials of each request for previews, and whether progress was to be shown.
    std::vector<std::vector<osg::MaterialPtr>> previewRequests;
    std::vector<bool> progressRequests;
    int nameRequests = 0;
    std::map<std::string, QString> names;
    bool answersWithWrongType = false;

private:
    void notePreviewRequest(const kxMessage &message);
    void answerNames(kxMessage &message);
};

// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLightLinkSubSets.h"

#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/NodeWalk.h"

#include <vector>

namespace {

std::set<std::string> keysOfLights(const osg::NodePtr &root)
{
    std::set<std::string> keys;
    osg::forEachNode(root, [&keys](const osg::NodePtr &node) {
        if (isOfType(node->getCore(), osg::Light::getClassType()))
            keys.insert(kxNodeKeys::get(node));
    });
    keys.erase(std::string());
    return keys;
}

std::vector<std::string> among(const osg::MField<std::string> &keys, const std::set<std::string> &wanted)
{
    std::vector<std::string> result;
    for (const std::string &key : keys)
        if (wanted.count(key) > 0)
            result.push_back(key);
    return result;
}

} // namespace

bool kxLightLinkSubSets::createSetsFrom(const osg::NodePtr &node)
{
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    if (!scene || !_pool || !node || scene->getLightLinkSets().empty())
        return false;
    const std::set<std::string> lights = keysOfLights(node);
    const std::set<std::string> nodes = kxNodeKeys::below(node);
    bool hasAny = false;
    for (const osg::LightLinkSetPtr &whole : scene->getLightLinkSets()) {
        const std::vector<std::string> ofLights =
            whole ? among(whole->getLights(), lights) : std::vector<std::string>();
        if (ofLights.empty())
            continue;
        const osg::LightLinkSetPtr part = osg::LightLinkSet::create();
        osg::setName(part, osg::getName(whole));
        {
            const osg::CPEditor edit(part, osg::AllFieldMask);
            part->editLights() = ofLights;
            part->editMembers() = among(whole->getMembers(), nodes);
            part->setIsExclusive(whole->getIsExclusive());
        }
        const osg::CPEditor edit(_pool.get(), osg::MaterialPool::LightLinkSetsFieldMask);
        _pool->editLightLinkSets().push_back(part);
        hasAny = true;
    }
    return hasAny;
}

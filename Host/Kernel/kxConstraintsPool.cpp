// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxConstraintsPool.h"

#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"

#include <algorithm>

bool kxConstraintsPool::createFrom(const osg::NodePtr &node)
{
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    if (!scene || !_pool || scene->getConstraints().empty())
        return false;
    const std::set<std::string> keys = kxNodeKeys::below(node);
    const osg::CPEditor edit(_pool.get(), osg::MaterialPool::ConstraintsFieldMask);
    _pool->editConstraints().clear();
    for (const osg::ConstraintPtr &constraint : scene->getConstraints())
        if (constraint && !constraint->getEnds().empty() &&
            std::all_of(constraint->getEnds().begin(), constraint->getEnds().end(),
                        [&keys](const std::string &key) { return keys.count(key) > 0; }))
            _pool->editConstraints().push_back(constraint);
    return !_pool->getConstraints().empty();
}

void kxConstraintsPool::reset()
{
    if (!_pool || _pool->getConstraints().empty())
        return;
    const osg::CPEditor edit(_pool.get(), osg::MaterialPool::ConstraintsFieldMask);
    _pool->editConstraints().clear();
}

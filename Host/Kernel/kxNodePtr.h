// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

/// A node as lists of nodes hold it: a handle that keeps nothing alive.
using kxNodePtr = osg::NodePtr;

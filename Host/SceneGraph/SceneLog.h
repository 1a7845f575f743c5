// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"

#include <functional>
#include <string>

namespace osg {

enum class LogLevel { Info, Warning, Error };

/// Reports one line, UTF-8, without line end. Safe from any thread.
KX_SCENEGRAPH_EXPORT void logLine(LogLevel level, const std::string &text);

/// Who receives the lines; an empty function: standard error.
using LogReceiver = std::function<void(LogLevel level, const std::string &text)>;
KX_SCENEGRAPH_EXPORT void setLogReceiver(LogReceiver receiver);

} // namespace osg

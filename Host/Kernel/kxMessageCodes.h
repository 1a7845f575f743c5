// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The codes of messages that all modules receive.
namespace kxMessageCodes {

/// The views of the scene have to refresh. No attributes.
inline constexpr std::uint64_t SceneViews = 0x8000;
/// A node is about to be written. "node" (osg::NodePtr), and "addActionAttachment" (bool): whether what belongs to its
/// actions is to be put on it.
inline constexpr std::uint64_t NodeIsWritten = 0x100000000;

} // namespace kxMessageCodes

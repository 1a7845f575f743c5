// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What is shared about sceneplates: pictures drawn over or under the rendered image.
namespace kxSceneplateTypes {

/// The kind of a sceneplate node; the numbers are written to files.
enum NodeType : int {
    Frontplate = 1, ///< over the image
    Backplate = 2,  ///< under it
    Group = 4,      ///< holds plates
    Switch = 8      ///< shows one of its plates
};

} // namespace kxSceneplateTypes

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <string>

class QWidget;
class kxControllerNotifier;
class kxMessage;

/// The host's switchboard: named calls between modules, the main window, render updates and the scene's modified mark.
///
/// Main thread only.
class KX_KERNEL_EXPORT kxController
{
public:
    kxController() = delete;

    /// Hands \a message to the module that handles \a name; its answer is in the message afterwards. False when there is
    /// none: the message is left as it is, and the first such call of a name is logged.
    static bool call(const std::string &name, kxMessage &message);

    /// Makes an environment one of those that the user can switch between: the material becomes the last choice of the
    /// default environment switch, and the node the child at the same place below the environment geometry switch; with
    /// \a makeCurrent both show it. False, and nothing changes, without those switches, for a null material, and for a
    /// material that is a choice already. A null node leaves an empty place.
    static bool addToDefaultEnvironment(const osg::MaterialPtr &material, const osg::NodePtr &node, bool makeCurrent);

    /// Null when the program has no window, and after the window was deleted.
    static QWidget *getMainWindow();
    /// Does not take ownership.
    static void setMainWindow(QWidget *window);

    static bool isRenderUpdateEnabled();
    /// A flag, not a counter. What was asked for while updates were off happens on the next pass after they are on again.
    static void enableRenderUpdate(bool enabled);
    /// Has the views render the scene: at once, or on the next pass of the event loop, several requests as one.
    static void updateRender(bool immediately);

    /// Whether the scene was changed since it was last saved or made.
    static bool isModified();
    static void setModified(bool modified);

    static kxControllerNotifier &notifier();
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <QCoreApplication>

#include <memory>

/// Adds an environment to those that can be switched between, or takes it out: its material among the choices, its node
/// at the same place below the environment switch, and what is current.
class EnvironmentStep final : public SceneStep
{
    Q_DECLARE_TR_FUNCTIONS(EnvironmentStep)

public:
    /// The id of the material that is current now; 0 for none.
    static std::uint32_t currentChoice();
    /// The place of a node among the environments; -1 where it is none of them.
    static std::int32_t indexOf(const osg::NodePtr &node);
    /// Shows the environment at \a index.
    static void choose(std::int32_t index);

    /// Takes out the environment at this index. Expects it to be one.
    static std::unique_ptr<EnvironmentStep> removing(std::int32_t index);
    /// Of an environment that was just added and made current; \a choiceBefore was current until then.
    static std::unique_ptr<EnvironmentStep> added(std::int32_t index, std::uint32_t choiceBefore);

    QString apply() override;
    QString revert() override;

private:
    enum class Kind { Adds, Removes };

    EnvironmentStep(Kind kind, std::int32_t index);

    QString insert() const;
    QString remove() const;

    Kind _kind;
    std::int32_t _index;
    osg::FCRef<osg::Material> _material;
    osg::FCRef<osg::Node> _node; ///< null where the choice has none
    std::uint32_t _choiceWith = 0;
    std::uint32_t _choiceWithout = 0;
};

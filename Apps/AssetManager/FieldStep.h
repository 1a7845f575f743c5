// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"
#include "SceneGraph/FieldValue.h"

#include <QCoreApplication>

/// Sets one field of a container. The container is known by id: one that is gone has nothing to set.
class FieldStep final : public SceneStep
{
    Q_DECLARE_TR_FUNCTIONS(FieldStep)

public:
    FieldStep(std::uint32_t containerId, std::string field, osg::FieldValue value);

    QString apply() override;
    QString revert() override;
    bool absorb(const SceneStep &later) override;

private:
    QString assign(const osg::FieldValue &value) const;

    std::uint32_t _containerId;
    std::string _field;
    osg::FieldValue _before;
    osg::FieldValue _after;
};

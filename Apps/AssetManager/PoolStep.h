// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"
#include "SceneGraph/FieldValue.h"

/// Puts entries into the scene's material pool. Others may put theirs there meanwhile: those stay.
class PoolStep final : public SceneStep
{
public:
    /// What the pool held at some time: the ids, by field.
    class Snapshot
    {
    public:
        Snapshot();
        bool holds(const std::string &field, std::uint32_t id) const;

    private:
        std::vector<std::pair<std::string, std::uint32_t>> _entries;
    };

    /// What came since \a before.
    explicit PoolStep(const Snapshot &before);
    /// To put this material there.
    explicit PoolStep(const osg::FieldContainerPtr &material);

    bool isEmpty() const { return _entries.empty(); }

    QString apply() override;
    QString revert() override;

private:
    std::vector<std::pair<std::string, osg::FieldValue::Reference>> _entries; ///< by field
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"

#include <QCoreApplication>

#include <cstdint>
#include <string>

/// Renames a node or material, and tells those who show names.
class NameStep final : public SceneStep
{
    Q_DECLARE_TR_FUNCTIONS(NameStep)

public:
    NameStep(std::uint32_t containerId, std::string name);

    QString apply() override;
    QString revert() override;

private:
    QString rename(const std::string &name) const;

    std::uint32_t _containerId;
    std::string _before;
    std::string _after;
};

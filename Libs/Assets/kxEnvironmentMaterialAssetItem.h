// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxMaterialAssetItem.h"

/// An asset that is an environment material, without the environment node around it.
class KX_ASSETS_EXPORT kxEnvironmentMaterialAssetItem : public kxMaterialAssetItem
{
    Q_DECLARE_TR_FUNCTIONS(kxEnvironmentMaterialAssetItem)

public:
    kxEnvironmentMaterialAssetItem();

    QVariant data(int column, int role) override;
    /// That of environments: a receiver tells environment materials and nodes apart by the item's class.
    QString mimeType() override;

protected:
    void reset() override;
};

// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentMaterialAssetItem.h"

kxEnvironmentMaterialAssetItem::kxEnvironmentMaterialAssetItem()
{
    setCategory(Environment);
}

QVariant kxEnvironmentMaterialAssetItem::data(int column, int role)
{
    if (column == kxAssetCategory::getTypeColumn() && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return tr("Environment Material");
    // Environments have no tags column, so what materials add to the columns is left out.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return kxAssetItem::data(column, role);
}

QString kxEnvironmentMaterialAssetItem::mimeType()
{
    return QStringLiteral("application/sarn-environment-asset");
}

void kxEnvironmentMaterialAssetItem::reset()
{
    kxMaterialAssetItem::reset();
    setCategory(Environment);
}

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxAssetsService.h"

/// The library's service for scripts. The kernel makes it when it is up, and it goes with the library.
///
/// It knows no assets itself: it reads the attachments of nodes, and asks the asset manager.
class kxAssetsServiceImpl final : public kxAssetsService
{
    Q_OBJECT

public:
    explicit kxAssetsServiceImpl(QObject *parent = nullptr);
    ~kxAssetsServiceImpl() override;

    void removeAssetReference(const std::vector<kxdNodePtr> &nodes) override;
    QStringList selectAssets(const std::vector<kxdNodePtr> &nodes) override;
    void overwriteAssets(const std::vector<kxdNodePtr> &nodes) override;
    std::vector<kxdNodePtr> findAssetNodes(const std::vector<kxdNodePtr> &nodes, const kxdNodePtr &root) override;
    void markAssetsEdited(const std::vector<kxdNodePtr> &nodes) override;
    void queryAssetChanges(const std::vector<kxdNodePtr> &nodes) override;
    void loadSceneplateAssets(const QStringList &uuids, const kxdNodePtr &parent) override;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "Kernel/kxModuleBase.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The asset manager as other modules and scripts see it: it answers what the library asks of one. Main thread only.
///
/// - "selectAssetByUUID" ("uuid", "clearSelection") selects an asset; the answer is "found".
/// - "overwriteAssets" ("containerIds") saves nodes and materials over the assets that they came from; the answer is
///   "failures", one text for each that could not be saved, which is in the log as well.
/// - "queryAssetChanges" ("assets") shows which of the attachments' assets differ from what is stored; the answer is
///   "changed", their UUIDs.
/// - "loadSceneplateAsset" ("uuid", "parentid") loads a plate below a node, or at the top for 0; the answer is "nodeid".
/// - The broadcast 32768 has the views of the scene refresh.
class KX_ASSETSESSION_EXPORT kxAssetManagerModule final : public QObject, public kxModuleBase
{
    Q_OBJECT

public:
    kxAssetManagerModule();
    ~kxAssetManagerModule() override;

    /// The UUIDs of the selected assets, in the order in which they were selected.
    const std::vector<std::string> &selection() const { return _selection; }
    void setSelection(const std::vector<std::string> &uuids);

    /// Saves what has these ids over the assets that they came from. The answer is one text for each that could not be saved,
    /// which is in the log as well.
    static QStringList saveOver(const std::vector<std::uint32_t> &containerIds);
    /// Has the program do what "overwriteAssets" asks for, with what else it wants to be done then; the answer is that of
    /// saveOver(). An empty function means saveOver() itself.
    using Overwriting = std::function<QStringList(const std::vector<std::uint32_t> &containerIds)>;
    void setOverwriting(Overwriting overwriting) { _overwriting = std::move(overwriting); }

Q_SIGNALS:
    void selectionChanged();
    /// Assets of the scene were saved; whoever shows the library has to look again.
    void assetsSaved();

private:
    void select(kxMessage &message);
    void overwrite(kxMessage &message);
    void queryChanges(kxMessage &message);
    static void loadSceneplate(kxMessage &message);
    void doReceive(const kxMessage &message) override;

    std::vector<std::string> _selection;
    Overwriting _overwriting;
};

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetStates.h"

#include "AssetManager/AssetState.h"
#include "AssetManager/StoredChecksums.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"

namespace {

constexpr int QuietTime = 250;  // milliseconds
constexpr int RetryTime = 1000; // milliseconds: as often as drives are looked at

void add(std::map<std::string, unsigned> &states, const osg::AttachmentContainerPtr &container)
{
    const AssetState found(container);
    if (found.kind() == AssetState::Kind::NoAsset)
        return;
    unsigned &state = states[found.uuid()];
    state |= AssetStates::InScene;
    if (found.isEdited())
        state |= AssetStates::EditedInScene;
    if (found.isStoredNewer())
        state |= AssetStates::StoredNewer;
}

} // namespace

class AssetStates::Watch final : public osg::SceneListener
{
public:
    explicit Watch(AssetStates &states) : _states(states) { osg::FieldContainerFactory::the().addListener(*this); }
    ~Watch() override { osg::FieldContainerFactory::the().removeListener(*this); }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void containerChanged(osg::FieldContainer & /*container*/, osg::FieldMask /*fields*/) override
    {
        _states.updateSoon();
    }
    void containerDestroyed(osg::FieldContainer & /*container*/) override { _states.updateSoon(); }

private:
    AssetStates &_states;
};

AssetStates::AssetStates(QObject *parent) : QObject(parent)
{
    _timer.setSingleShot(true);
    _timer.setInterval(QuietTime);
    connect(&_timer, &QTimer::timeout, this, &AssetStates::update);
    _retry.setSingleShot(true);
    _retry.setInterval(RetryTime);
    connect(&_retry, &QTimer::timeout, this, &AssetStates::update);
    connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged, this, &AssetStates::updateSoon);
    _watch = std::make_unique<Watch>(*this);
}

AssetStates::~AssetStates() = default;

void AssetStates::updateSoon()
{
    _timer.start();
}

void AssetStates::update()
{
    std::map<std::string, unsigned> states;
    for (const osg::NodePtr &root : {kxScenegraph::getRoot(), kxScenegraph::getSceneplateRoot()})
        if (root)
            for (const kxNodePtr &node : kxScenegraph::getAssetNodes(root))
                add(states, node);
    for (const osg::MaterialPtr &material : kxMaterials::getAllAssetMaterials())
        add(states, material);
    if (StoredChecksums::the().takeUnanswered())
        _retry.start();
    if (states == _states)
        return;
    _states = std::move(states);
    emit changed();
}

void AssetStates::setBroken(const std::string &uuid, const QString &reason)
{
    const auto former = _broken.find(uuid);
    if ((former == _broken.end() ? QString() : former->second) == reason)
        return;
    if (reason.isEmpty())
        _broken.erase(uuid);
    else
        _broken[uuid] = reason;
    emit changed();
}

void AssetStates::forgetBroken(const std::vector<std::string> &uuids)
{
    std::size_t count = 0;
    for (const std::string &uuid : uuids)
        count += _broken.erase(uuid);
    if (count > 0)
        emit changed();
}

unsigned AssetStates::stateOf(const std::string &uuid) const
{
    const auto found = _states.find(uuid);
    const unsigned state = found == _states.end() ? 0U : found->second;
    return _broken.count(uuid) != 0 ? state | Broken : state;
}

std::vector<std::string> AssetStates::used() const
{
    std::vector<std::string> uuids;
    for (const auto &[uuid, state] : _states)
        uuids.push_back(uuid);
    return uuids;
}

QStringList AssetStates::reasonsOf(const std::string &uuid) const
{
    const unsigned state = stateOf(uuid);
    QStringList reasons;
    if ((state & InScene) != 0)
        reasons.append(tr("It is used in the scene."));
    if ((state & EditedInScene) != 0)
        reasons.append(tr("The copy in the scene was changed and differs from the stored asset."));
    if ((state & StoredNewer) != 0)
        reasons.append(tr("The stored asset was saved again after it was loaded into the scene."));
    if (const auto broken = _broken.find(uuid); broken != _broken.end())
        reasons.append(broken->second);
    return reasons;
}

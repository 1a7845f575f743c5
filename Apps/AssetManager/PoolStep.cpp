// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PoolStep.h"

#include "Kernel/kxScenegraph.h"
#include "SceneGraph/MaterialPool.h"

#include <algorithm>
#include <functional>

using osg::FieldValue;

namespace {

using References = std::vector<FieldValue::Reference>;

/// The pool's own fields, each with what it holds.
void forEachList(const std::function<void(const std::string &field, const References &entries)> &use)
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    if (!pool)
        return;
    for (const osg::FieldInfo &field : pool->getType().fields()) {
        const FieldValue value = FieldValue::of(*pool, field);
        if (const auto *entries = value.get<References>(); entries && std::string(field.name) != "Attachments")
            use(field.name, *entries);
    }
}

void changeList(const std::string &name, const std::function<void(References &)> &change)
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    const osg::FieldInfo *field = pool ? pool->getType().findField(name) : nullptr;
    if (!field)
        return;
    const FieldValue before = FieldValue::of(*pool, *field);
    References entries = *before.get<References>();
    change(entries);
    if (const FieldValue after(entries); after != before)
        after.assignTo(*pool, *field);
}

} // namespace

PoolStep::Snapshot::Snapshot()
{
    forEachList([this](const std::string &field, const References &entries) {
        for (const FieldValue::Reference &entry : entries)
            _entries.emplace_back(field, entry.container.get().getFieldContainerId());
    });
}

bool PoolStep::Snapshot::holds(const std::string &field, std::uint32_t id) const
{
    return std::find(_entries.begin(), _entries.end(), std::pair(field, id)) != _entries.end();
}

PoolStep::PoolStep(const Snapshot &before)
{
    forEachList([&](const std::string &field, const References &entries) {
        for (const FieldValue::Reference &entry : entries)
            if (!before.holds(field, entry.container.get().getFieldContainerId()))
                _entries.emplace_back(field, entry);
    });
}

PoolStep::PoolStep(const osg::FieldContainerPtr &material)
{
    _entries.emplace_back("Materials", FieldValue::Reference{osg::FCRef<osg::FieldContainer>(material)});
}

QString PoolStep::apply()
{
    for (const auto &[field, entry] : _entries)
        changeList(field, [&entry = entry](References &entries) {
            if (std::find(entries.begin(), entries.end(), entry) == entries.end())
                entries.push_back(entry);
        });
    return {};
}

QString PoolStep::revert()
{
    for (const auto &[field, entry] : _entries)
        changeList(field, [&entry = entry](References &entries) { std::erase(entries, entry); });
    return {};
}

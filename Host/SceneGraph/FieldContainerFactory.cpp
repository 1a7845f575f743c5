// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainerFactory.h"

#include "SceneGraph/Internal/TypeList.h"
#include "SceneGraph/SceneListener.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace osg {

namespace {

constexpr std::size_t PageSize = 4096;

/// Ids are never reused, so pages whose containers are all gone are given back.
struct Page
{
    std::array<FieldContainer *, PageSize> containers{};
    std::size_t alive = 0;
    std::size_t published = 0;
};

} // namespace

struct FieldContainerFactory::State
{
    mutable std::shared_mutex mutex;
    std::uint32_t nextId = 1;
    std::size_t alive = 0;
    std::vector<std::unique_ptr<Page>> pages;
    std::map<std::string, FieldContainerType *> types;
    std::vector<SceneListener *> listeners;
    std::thread::id mainThread = std::this_thread::get_id();
};

FieldContainerFactory &FieldContainerFactory::the()
{
    // Never destroyed: containers may be released by other objects' static destructors.
    static auto *factory = new FieldContainerFactory;
    return *factory;
}

FieldContainerFactory::FieldContainerFactory() : _state(std::make_unique<State>())
{
    registerSceneGraphTypes(*this);
}

FieldContainerFactory::~FieldContainerFactory() = default;

FieldContainerPtr FieldContainerFactory::getContainer(std::uint32_t id) const
{
    const std::shared_lock lock(_state->mutex);
    const std::size_t page = id / PageSize;
    if (page >= _state->pages.size() || !_state->pages[page])
        return {};
    return FieldContainerPtr(_state->pages[page]->containers[id % PageSize]);
}

std::size_t FieldContainerFactory::livingContainerCount() const
{
    const std::shared_lock lock(_state->mutex);
    return _state->alive;
}

FieldContainerType *FieldContainerFactory::findType(const std::string &name) const
{
    const std::shared_lock lock(_state->mutex);
    const auto found = _state->types.find(name);
    return found != _state->types.end() ? found->second : nullptr;
}

std::vector<FieldContainerType *> FieldContainerFactory::types() const
{
    const std::shared_lock lock(_state->mutex);
    std::vector<FieldContainerType *> result;
    for (const auto &[name, type] : _state->types)
        result.push_back(type);
    return result;
}

void FieldContainerFactory::registerType(FieldContainerType &type)
{
    const std::unique_lock lock(_state->mutex);
    const auto [position, isNew] = _state->types.emplace(type.getCName(), &type);
    assert(position->second == &type);
    static_cast<void>(position);
    static_cast<void>(isNew);
}

FieldContainerPtr FieldContainerFactory::createFieldContainer(const std::string &typeName) const
{
    const FieldContainerType *type = findType(typeName);
    return type != nullptr ? type->createContainer() : FieldContainerPtr();
}

void FieldContainerFactory::addListener(SceneListener &listener)
{
    assert(isMainThread());
    const auto gap = std::find(_state->listeners.begin(), _state->listeners.end(), nullptr);
    if (gap != _state->listeners.end())
        *gap = &listener;
    else
        _state->listeners.push_back(&listener);
}

void FieldContainerFactory::removeListener(SceneListener &listener)
{
    assert(isMainThread());
    // Emptied rather than erased: a listener may go while the list is being walked.
    std::replace(_state->listeners.begin(), _state->listeners.end(), &listener, static_cast<SceneListener *>(nullptr));
}

bool FieldContainerFactory::isMainThread() const
{
    return _state->mainThread == std::this_thread::get_id();
}

std::uint32_t FieldContainerFactory::takeId()
{
    const std::unique_lock lock(_state->mutex);
    assert(_state->nextId != 0);
    return _state->nextId++;
}

void FieldContainerFactory::publish(FieldContainer &container)
{
    const std::unique_lock lock(_state->mutex);
    const std::size_t index = container.getFieldContainerId() / PageSize;
    if (index >= _state->pages.size())
        _state->pages.resize(index + 1);
    auto &page = _state->pages[index];
    if (!page)
        page = std::make_unique<Page>();
    page->containers[container.getFieldContainerId() % PageSize] = &container;
    ++page->alive;
    ++page->published;
    ++_state->alive;
}

void FieldContainerFactory::forget(const FieldContainer &container)
{
    const std::unique_lock lock(_state->mutex);
    const std::uint32_t id = container.getFieldContainerId();
    auto &page = _state->pages[id / PageSize];
    page->containers[id % PageSize] = nullptr;
    --page->alive;
    --_state->alive;
    const std::size_t idsOfPage = id < PageSize ? PageSize - 1 : PageSize;
    if (page->alive == 0 && page->published == idsOfPage)
        page.reset();
}

void FieldContainerFactory::announceChange(FieldContainer &container, FieldMask fields)
{
    if (!isMainThread())
        return;
    for (std::size_t i = 0; i < _state->listeners.size(); ++i)
        if (_state->listeners[i] != nullptr)
            _state->listeners[i]->containerChanged(container, fields);
}

void FieldContainerFactory::announceDestruction(FieldContainer &container)
{
    if (!isMainThread())
        return;
    for (std::size_t i = 0; i < _state->listeners.size(); ++i)
        if (_state->listeners[i] != nullptr)
            _state->listeners[i]->containerDestroyed(container);
}

} // namespace osg

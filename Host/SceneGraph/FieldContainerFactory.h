// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace osg {

class SceneListener;

/// Knows every container type by name and every living container by id.
///
/// Looking up, creating and destroying is safe from any thread. Listeners are called on the main thread only, which is
/// the one that first asked for the factory.
class KX_SCENEGRAPH_EXPORT FieldContainerFactory
{
public:
    static FieldContainerFactory &the();

    /// Null for id 0, an id never given out, and a destroyed container.
    FieldContainerPtr getContainer(std::uint32_t id) const;
    bool isAlive(std::uint32_t id) const { return static_cast<bool>(getContainer(id)); }
    std::size_t livingContainerCount() const;

    /// Null for an unknown name.
    FieldContainerType *findType(const std::string &name) const;
    /// Abstract ones included, in order of their names.
    std::vector<FieldContainerType *> types() const;
    /// A second registration of the same type changes nothing. Expects names to be unique.
    void registerType(FieldContainerType &type);

    /// A new container with reference count 0; null for an unknown or abstract type.
    FieldContainerPtr createFieldContainer(const std::string &typeName) const;

    /// The listener is not owned and is removed before it goes. Main thread only.
    void addListener(SceneListener &listener);
    void removeListener(SceneListener &listener);

    bool isMainThread() const;

private:
    friend class FieldContainer;
    friend void publishContainer(FieldContainer &container);

    FieldContainerFactory();
    ~FieldContainerFactory();

    std::uint32_t takeId();
    void publish(FieldContainer &container);
    void forget(const FieldContainer &container);
    void announceChange(FieldContainer &container, FieldMask fields);
    void announceDestruction(FieldContainer &container);

    struct State;
    std::unique_ptr<State> _state;
};

} // namespace osg

// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/DeepClone.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Internal/FieldVisit.h"
#include "SceneGraph/Node.h"

#include <unordered_map>
#include <unordered_set>

namespace osg {

namespace {

/// Copies container by container, without recursion: the depth is not bounded.
class Cloning
{
public:
    explicit Cloning(const ShareList &share)
    {
        for (const FieldContainerPtr &shared : share)
            _shared.insert(shared.getFieldContainerId());
    }

    FieldContainerPtr run(const FieldContainerPtr &original)
    {
        const FieldContainerPtr result = standIn(original);
        for (std::size_t i = 0; i < _copies.size(); ++i)
            copyFields(*_copies[i].original, *_copies[i].copy);
        for (const Copy &entry : _copies)
            announce(*entry.original, entry.copy);
        if (!_copies.empty()) {
            FieldContainer *root = _copies.front().copy.take().get();
            root->subRefWithoutDestroying();
        }
        return result;
    }

private:
    struct Copy
    {
        FieldContainer *original;
        FCRef<FieldContainer> copy;
    };

    /// What the clone refers to where the original refers to \a original.
    FieldContainerPtr standIn(const FieldContainerPtr &original)
    {
        if (!original || _shared.contains(original.getFieldContainerId()))
            return original;
        FieldContainerPtr &copy = _copyOf[original.getFieldContainerId()];
        if (!copy) {
            copy = original->getType().createContainer();
            _copies.push_back({original.get(), copy});
        }
        return copy;
    }

    void copyFields(FieldContainer &original, FieldContainer &copy)
    {
        for (const FieldInfo &field : original.getType().fields()) {
            // A node has one parent, so one that is shared cannot be a child of the copy as well.
            const bool dropsShared =
                field.mask == Node::ChildrenFieldMask && &original.getType() == &Node::getClassType();
            std::visit(
                [&](auto *from) { copyValue(*from, *std::get<decltype(from)>(field.address(copy)), dropsShared); },
                field.address(original));
        }
    }

    void copyValue(const RefFieldBase &from, RefFieldBase &to, bool) { to.setContainer(standIn(from.getContainer())); }

    void copyValue(const MRefFieldBase &from, MRefFieldBase &to, bool dropsShared)
    {
        for (std::size_t i = 0; i < from.containerCount(); ++i)
            if (const FieldContainerPtr entry = from.containerAt(i);
                !dropsShared || !_shared.contains(entry.getFieldContainerId()))
                to.appendContainer(standIn(entry));
    }

    template <class T> void copyValue(const T &from, T &to, bool) { to = from; }

    static void announce(const FieldContainer &original, const FCRef<FieldContainer> &copy)
    {
        copy->copyUndeclared(original);
        FieldMask fields = 0;
        for (const FieldInfo &field : copy->getType().fields())
            fields |= field.mask;
        const CPEditor edit(copy, fields);
        copy->markChanged(fields);
    }

    std::unordered_set<std::uint32_t> _shared;
    std::unordered_map<std::uint32_t, FieldContainerPtr> _copyOf;
    std::vector<Copy> _copies;
};

} // namespace

FieldContainerPtr deepClone(const FieldContainerPtr &container, const ShareList &share)
{
    return Cloning(share).run(container);
}

} // namespace osg

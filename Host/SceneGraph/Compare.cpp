// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Compare.h"

#include "SceneGraph/Internal/FieldVisit.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <unordered_map>

namespace osg {

namespace {

constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

/// Walks two structures side by side, without recursion: their depth is not bounded.
class Comparison
{
public:
    explicit Comparison(const std::vector<const FieldContainerType *> &ignored) : _ignored(ignored) {}

    std::optional<std::string> run(const FieldContainerPtr &a, const FieldContainerPtr &b)
    {
        if (!meet(a, b, None, nullptr, None))
            return std::string((a ? a : b)->getType().getCName());
        for (std::size_t i = 0; i < _pairs.size(); ++i)
            for (const FieldInfo &field : _pairs[i].a->getType().fields())
                if (const Mismatch mismatch = compareField(i, field); mismatch.isFound)
                    return pathTo(i) + "." + elementName(field.name, mismatch.element);
        return std::nullopt;
    }

private:
    /// Two containers that stand at the same place, and how that place was reached.
    struct Pair
    {
        FieldContainer *a;
        FieldContainer *b;
        std::size_t referrer;
        const char *field;
        std::size_t element;
    };

    struct Mismatch
    {
        bool isFound = false;
        std::size_t element = None;
    };

    Mismatch compareField(std::size_t pair, const FieldInfo &field)
    {
        const FieldPointer a = field.address(*_pairs[pair].a);
        const FieldPointer b = field.address(*_pairs[pair].b);
        return std::visit(
            [&](auto *value) { return compareValues(*value, *std::get<decltype(value)>(b), pair, field.name); }, a);
    }

    Mismatch compareValues(const RefFieldBase &a, const RefFieldBase &b, std::size_t pair, const char *field)
    {
        return {!meet(visible(a.getContainer()), visible(b.getContainer()), pair, field, None)};
    }

    Mismatch compareValues(const MRefFieldBase &a, const MRefFieldBase &b, std::size_t pair, const char *field)
    {
        const std::vector<FieldContainerPtr> as = visibleEntries(a);
        const std::vector<FieldContainerPtr> bs = visibleEntries(b);
        for (std::size_t i = 0; i < std::min(as.size(), bs.size()); ++i)
            if (!meet(as[i], bs[i], pair, field, i))
                return {true, i};
        return {as.size() != bs.size()};
    }

    template <class T> Mismatch compareValues(const T &a, const T &b, std::size_t, const char *)
    {
        if constexpr (PlainValues<T>)
            return {a.size() != b.size() ||
                    (!a.empty() && std::memcmp(a.data(), b.data(), a.size() * sizeof(typename T::value_type)) != 0)};
        else if constexpr (PlainValue<T>)
            return {std::memcmp(&a, &b, sizeof a) != 0};
        else
            return {!(a == b)};
    }

    /// False where the two cannot stand for each other. New pairs wait for the comparison of their fields.
    bool meet(const FieldContainerPtr &a, const FieldContainerPtr &b, std::size_t referrer, const char *field,
              std::size_t element)
    {
        if (!a || !b)
            return !a && !b;
        if (&a->getType() != &b->getType())
            return false;
        const auto [partnerOfA, isNewA] = _toB.emplace(a.getFieldContainerId(), b.getFieldContainerId());
        const auto [partnerOfB, isNewB] = _toA.emplace(b.getFieldContainerId(), a.getFieldContainerId());
        if (isNewA && isNewB)
            _pairs.push_back({a.get(), b.get(), referrer, field, element});
        return partnerOfA->second == b.getFieldContainerId() && partnerOfB->second == a.getFieldContainerId();
    }

    bool isIgnored(const FieldContainerPtr &container) const
    {
        return std::any_of(_ignored.begin(), _ignored.end(),
                           [&](const FieldContainerType *type) { return isOfType(container, *type); });
    }

    FieldContainerPtr visible(const FieldContainerPtr &container) const
    {
        return isIgnored(container) ? FieldContainerPtr() : container;
    }

    std::vector<FieldContainerPtr> visibleEntries(const MRefFieldBase &field) const
    {
        std::vector<FieldContainerPtr> entries;
        for (std::size_t i = 0; i < field.containerCount(); ++i)
            if (const FieldContainerPtr entry = field.containerAt(i); !isIgnored(entry))
                entries.push_back(entry);
        return entries;
    }

    static std::string elementName(const char *field, std::size_t element)
    {
        return element == None ? std::string(field) : std::string(field) + "[" + std::to_string(element) + "]";
    }

    std::string pathTo(std::size_t pair) const
    {
        std::vector<std::string> names;
        for (; _pairs[pair].referrer != None; pair = _pairs[pair].referrer)
            names.push_back(elementName(_pairs[pair].field, _pairs[pair].element));
        std::string path = _pairs[pair].a->getType().getCName();
        for (auto name = names.rbegin(); name != names.rend(); ++name)
            path += "." + *name;
        return path;
    }

    const std::vector<const FieldContainerType *> &_ignored;
    std::vector<Pair> _pairs;
    std::unordered_map<std::uint32_t, std::uint32_t> _toB;
    std::unordered_map<std::uint32_t, std::uint32_t> _toA;
};

} // namespace

std::optional<std::string> findDifference(const FieldContainerPtr &a, const FieldContainerPtr &b,
                                          const std::vector<const FieldContainerType *> &ignored)
{
    return Comparison(ignored).run(a, b);
}

} // namespace osg

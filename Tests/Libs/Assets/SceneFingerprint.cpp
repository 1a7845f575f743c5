// SPDX-License-Identifier: Apache-2.0
#include "SceneFingerprint.h"

#include "Kernel/kxController.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <algorithm>
#include <cctype>
#include <type_traits>
#include <variant>

namespace {

std::string nameOf(const osg::FieldContainerPtr &container)
{
    return osg::getName(osg::AttachmentContainerPtr::dcast(container));
}

std::vector<osg::FieldContainerPtr> referred(const osg::FieldPointer &field)
{
    if (const auto *single = std::get_if<osg::RefFieldBase *>(&field))
        return {(*single)->getContainer()};
    const auto *several = std::get_if<osg::MRefFieldBase *>(&field);
    std::vector<osg::FieldContainerPtr> entries;
    for (std::size_t i = 0; several && i < (*several)->containerCount(); ++i)
        entries.push_back((*several)->containerAt(i));
    return entries;
}

void sortChildren(const osg::FieldContainerPtr &container, const osg::FieldInfo &field,
                  const std::set<std::string> &unordered, std::vector<osg::FieldContainerPtr> &entries)
{
    if (std::string(field.name) == "Children" && unordered.count(nameOf(container)) > 0)
        std::stable_sort(entries.begin(), entries.end(),
                         [](const auto &a, const auto &b) { return nameOf(a) < nameOf(b); });
}

/// What is not a reference.
struct ValueText
{
    template <class T> std::string operator()(const T *value) const { return text(*value); }

    /// Numbers and tuples of numbers are their bytes.
    template <class T> static std::string text(const T &value)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return {reinterpret_cast<const char *>(&value), sizeof value};
    }
    template <class T> static std::string text(const osg::MField<T> &values)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return {reinterpret_cast<const char *>(values.data()), values.size() * sizeof(T)};
    }
    static std::string text(const std::string &value) { return value; }
    static std::string text(const osg::MField<std::string> &values)
    {
        std::string all;
        for (const std::string &value : values)
            all.append("'").append(value).append("' ");
        return all;
    }
    static std::string text(const osg::StringMap &pairs)
    {
        std::string all;
        for (const auto &[key, value] : pairs)
            all.append("'").append(key).append("'='").append(value).append("' ");
        return all;
    }
    static std::string text(const osg::RefFieldBase &) { return {}; }
    static std::string text(const osg::MRefFieldBase &) { return {}; }
};

std::string shown(const std::string &value)
{
    const bool isText = std::all_of(value.begin(), value.end(), [](unsigned char c) { return std::isprint(c) != 0; });
    return isText ? "[" + value + "]" : std::to_string(value.size()) + " bytes";
}

} // namespace

SceneFingerprint::SceneFingerprint(const std::vector<osg::FieldContainerPtr> &roots,
                                   const std::set<std::string> &unordered)
    : _state{{"scene updates", kxScenegraph::isUpdateEnabled()},
             {"render updates", kxController::isRenderUpdateEnabled()},
             {"ignoring the default environment", osg::UBRDFMaterial::getIgnoreDefaultEnvironment()}},
      _living(osg::FieldContainerFactory::the().livingContainerCount())
{
    for (const osg::FieldContainerPtr &root : roots)
        visit(root, "root");
    for (std::size_t i = 0; i < _found.size(); ++i) {
        const osg::FieldContainerPtr container = _found[i]; // the list grows meanwhile
        discover(container, unordered);
    }
    for (const osg::FieldContainerPtr &container : _found)
        _records[label(container)] = describe(container, unordered);
    _found.clear();
    _labels.clear();
}

void SceneFingerprint::visit(const osg::FieldContainerPtr &container, const std::string &fallback)
{
    if (!container || _labels.count(container.getFieldContainerId()) > 0)
        return;
    const std::string name = nameOf(container);
    std::string text = name.empty() ? fallback : name;
    text += std::string("/") + container->getType().getCName();
    while (!_records.emplace(text, Record()).second)
        text += "+";
    _labels.emplace(container.getFieldContainerId(), text);
    _found.push_back(container);
}

void SceneFingerprint::discover(const osg::FieldContainerPtr &container, const std::set<std::string> &unordered)
{
    for (const osg::FieldInfo &field : container->getType().fields()) {
        std::vector<osg::FieldContainerPtr> entries = referred(field.address(*container));
        sortChildren(container, field, unordered, entries);
        for (const osg::FieldContainerPtr &entry : entries)
            visit(entry, label(container));
    }
}

SceneFingerprint::Record SceneFingerprint::describe(const osg::FieldContainerPtr &container,
                                                    const std::set<std::string> &unordered) const
{
    Record record{container.getFieldContainerId(), container->getRefCount(), {}};
    for (const osg::FieldInfo &field : container->getType().fields()) {
        const osg::FieldPointer address = field.address(*container);
        std::string text = std::visit(ValueText(), address);
        std::vector<osg::FieldContainerPtr> entries = referred(address);
        sortChildren(container, field, unordered, entries);
        for (const osg::FieldContainerPtr &entry : entries)
            text += label(entry) + " ";
        record.fields.emplace_back(field.name, std::move(text));
    }
    return record;
}

std::string SceneFingerprint::label(const osg::FieldContainerPtr &container) const
{
    const auto found = _labels.find(container.getFieldContainerId());
    return found == _labels.end() ? "null" : found->second;
}

void SceneFingerprint::compare(const std::string &what, const Record &before, const Record &later, Identity identity,
                               std::vector<std::string> &differences)
{
    if (identity == Identity::Same && before.id != later.id)
        differences.push_back(what + " is another one");
    if (before.references != later.references)
        differences.push_back(what + " is referred to " + std::to_string(later.references) + " times instead of " +
                              std::to_string(before.references));
    for (std::size_t i = 0; i < before.fields.size(); ++i)
        if (before.fields[i].second != later.fields[i].second)
            differences.push_back(what + "." + before.fields[i].first + " is " + shown(later.fields[i].second) +
                                  " instead of " + shown(before.fields[i].second));
}

std::vector<std::string> SceneFingerprint::differencesTo(const SceneFingerprint &later, Identity identity) const
{
    std::vector<std::string> differences;
    for (const auto &[what, record] : _records) {
        const auto found = later._records.find(what);
        if (found == later._records.end())
            differences.push_back(what + " is gone");
        else
            compare(what, record, found->second, identity, differences);
    }
    for (const auto &[what, record] : later._records)
        if (_records.count(what) == 0)
            differences.push_back(what + " is new");
    for (const auto &[what, isOn] : _state)
        if (later._state.at(what) != isOn)
            differences.push_back(what + (isOn ? " are off" : " are on"));
    if (identity == Identity::Same && _living != later._living)
        differences.push_back(std::to_string(later._living) + " containers are alive instead of " +
                              std::to_string(_living));
    return differences;
}

// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldValue.h"

#include "SceneGraph/EditCP.h"

#include <algorithm>

namespace osg {

namespace {

FieldValue::Content read(const RefFieldBase &field)
{
    return FieldValue::Reference{FCRef<FieldContainer>(field.getContainer())};
}

FieldValue::Content read(const MRefFieldBase &field)
{
    std::vector<FieldValue::Reference> references;
    for (std::size_t i = 0; i < field.containerCount(); ++i)
        references.push_back({FCRef<FieldContainer>(field.containerAt(i))});
    return references;
}

template <class T> FieldValue::Content read(const T &value)
{
    return value;
}

bool fits(const FieldValue::Reference &reference, const FieldContainerType &type)
{
    return !reference.container || isOfType(reference.container.get(), type);
}

bool fits(const FieldValue::Content &content, const RefFieldBase &field)
{
    const auto *reference = std::get_if<FieldValue::Reference>(&content);
    return reference && fits(*reference, field.requiredType());
}

bool fits(const FieldValue::Content &content, const MRefFieldBase &field)
{
    const auto *references = std::get_if<std::vector<FieldValue::Reference>>(&content);
    return references && std::all_of(references->begin(), references->end(),
                                     [&](const auto &reference) { return fits(reference, field.requiredType()); });
}

template <class T> bool fits(const FieldValue::Content &content, const T & /*field*/)
{
    return std::holds_alternative<T>(content);
}

void write(RefFieldBase &field, const FieldValue::Content &content)
{
    field.setContainer(std::get<FieldValue::Reference>(content).container.get());
}

void write(MRefFieldBase &field, const FieldValue::Content &content)
{
    field.clearContainers();
    for (const FieldValue::Reference &reference : std::get<std::vector<FieldValue::Reference>>(content))
        field.appendContainer(reference.container.get());
}

template <class T> void write(T &field, const FieldValue::Content &content)
{
    field = std::get<T>(content);
}

} // namespace

FieldValue FieldValue::of(FieldContainer &container, const FieldInfo &field)
{
    FieldValue value;
    value._content = std::visit([](auto *address) { return read(*address); }, field.address(container));
    return value;
}

FieldValue FieldValue::reference(const FieldContainerPtr &container)
{
    return {Reference{FCRef<FieldContainer>(container)}};
}

bool FieldValue::assignTo(FieldContainer &container, const FieldInfo &field) const
{
    const auto assign = [&](auto *address) {
        if (!fits(_content, *address))
            return false;
        const CPEditor edit(FieldContainerPtr(&container), field.mask);
        container.markChanged(field.mask);
        write(*address, _content);
        return true;
    };
    return std::visit(assign, field.address(container));
}

} // namespace osg

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldValue.h"

namespace {

/// Opens the field for as long as it lives, and says that it was set.
class FieldEdit
{
public:
    FieldEdit(osg::FieldContainer &container, osg::FieldMask mask) : _container(container), _mask(mask)
    {
        _container.beginEdit(_mask);
        _container.markChanged(_mask);
    }
    ~FieldEdit() { _container.endEdit(_mask); }
    FieldEdit(const FieldEdit &) = delete;
    FieldEdit &operator=(const FieldEdit &) = delete;

private:
    osg::FieldContainer &_container;
    osg::FieldMask _mask;
};

FieldValue::Content read(const osg::RefFieldBase &field)
{
    return FieldValue::Reference{osg::FCRef<osg::FieldContainer>(field.getContainer())};
}

FieldValue::Content read(const osg::MRefFieldBase &field)
{
    std::vector<FieldValue::Reference> references;
    for (std::size_t i = 0; i < field.containerCount(); ++i)
        references.push_back({osg::FCRef<osg::FieldContainer>(field.containerAt(i))});
    return references;
}

template <class T> FieldValue::Content read(const T &value)
{
    return value;
}

bool fits(const FieldValue::Reference &reference, const osg::FieldContainerType &type)
{
    return !reference.container || osg::isOfType(reference.container.get(), type);
}

bool write(osg::RefFieldBase &field, const FieldValue::Content &content, osg::FieldContainer &owner,
           osg::FieldMask mask)
{
    const auto *reference = std::get_if<FieldValue::Reference>(&content);
    if (!reference || !fits(*reference, field.requiredType()))
        return false;
    const FieldEdit edit(owner, mask);
    return field.setContainer(reference->container.get());
}

bool write(osg::MRefFieldBase &field, const FieldValue::Content &content, osg::FieldContainer &owner,
           osg::FieldMask mask)
{
    const auto *references = std::get_if<std::vector<FieldValue::Reference>>(&content);
    if (!references)
        return false;
    for (const FieldValue::Reference &reference : *references)
        if (!fits(reference, field.requiredType()))
            return false;
    const FieldEdit edit(owner, mask);
    field.clearContainers();
    for (const FieldValue::Reference &reference : *references)
        field.appendContainer(reference.container.get());
    return true;
}

template <class T>
bool write(T &field, const FieldValue::Content &content, osg::FieldContainer &owner, osg::FieldMask mask)
{
    const T *value = std::get_if<T>(&content);
    if (!value)
        return false;
    const FieldEdit edit(owner, mask);
    field = *value;
    return true;
}

} // namespace

FieldValue FieldValue::of(osg::FieldContainer &container, const osg::FieldInfo &field)
{
    FieldValue value;
    value._content = std::visit([](auto *address) { return read(*address); }, field.address(container));
    return value;
}

FieldValue FieldValue::reference(const osg::FieldContainerPtr &container)
{
    return {Reference{osg::FCRef<osg::FieldContainer>(container)}};
}

bool FieldValue::assignTo(osg::FieldContainer &container, const osg::FieldInfo &field) const
{
    return std::visit([&](auto *address) { return write(*address, _content, container, field.mask); },
                      field.address(container));
}

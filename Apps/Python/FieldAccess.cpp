// SPDX-License-Identifier: Apache-2.0
#include "Python/FieldAccess.h"

#include "Python/Containers.h"
#include "SceneGraph/FieldValue.h"
#include "SceneGraph/Node.h"

#include <pybind11/stl.h>

#include <string>
#include <type_traits>
#include <variant>

namespace py = pybind11;

namespace kxPython {

namespace {

template <class T> struct Conversion
{
    static py::object toPython(const T &value) { return py::cast(value); }
    static T fromPython(const py::handle &value) { return value.cast<T>(); }
};

template <class T, std::size_t N> struct Conversion<osg::Vec<T, N>>
{
    static py::object toPython(const osg::Vec<T, N> &value)
    {
        py::tuple tuple(N);
        for (std::size_t i = 0; i < N; ++i)
            tuple[i] = value[i];
        return tuple;
    }
    static osg::Vec<T, N> fromPython(const py::handle &value) { return {value.cast<std::array<T, N>>()}; }
};

template <> struct Conversion<osg::Quaternion>
{
    static py::object toPython(const osg::Quaternion &q) { return py::make_tuple(q.x, q.y, q.z, q.w); }
    static osg::Quaternion fromPython(const py::handle &value)
    {
        const auto numbers = value.cast<std::array<double, 4>>();
        return {numbers[0], numbers[1], numbers[2], numbers[3]};
    }
};

template <> struct Conversion<osg::Matrix>
{
    static py::object toPython(const osg::Matrix &matrix) { return matrixToPython(matrix); }
    static osg::Matrix fromPython(const py::handle &value) { return matrixFromPython(value); }
};

template <class T> struct Conversion<osg::MField<T>>
{
    static py::object toPython(const osg::MField<T> &values)
    {
        if constexpr (std::is_same_v<T, std::uint8_t>) {
            return py::bytes(reinterpret_cast<const char *>(values.data()), values.size());
        } else {
            py::list list(values.size());
            for (std::size_t i = 0; i < values.size(); ++i)
                list[i] = Conversion<T>::toPython(values[i]);
            return list;
        }
    }
    static osg::MField<T> fromPython(const py::handle &value)
    {
        osg::MField<T> values;
        if constexpr (std::is_same_v<T, std::uint8_t>) {
            const std::string bytes = value.cast<py::bytes>();
            values.values().assign(bytes.begin(), bytes.end());
        } else {
            for (const py::handle entry : value.cast<py::sequence>())
                values.push_back(Conversion<T>::fromPython(entry));
        }
        return values;
    }
};

py::object referencesToPython(const osg::MRefFieldBase &field)
{
    py::list list;
    for (std::size_t i = 0; i < field.containerCount(); ++i)
        list.append(wrap(field.containerAt(i)));
    return list;
}

[[noreturn]] void complainOfType(const osg::FieldInfo &field, const osg::FieldContainerType &required)
{
    throw py::type_error(std::string("the field '") + field.name + "' takes a " + required.getCName());
}

osg::FieldContainerPtr containerOf(const py::handle &value, const osg::FieldInfo &field,
                                   const osg::FieldContainerType &required)
{
    const osg::FieldContainerPtr container = unwrap(value);
    if (container && !osg::isOfType(container, required))
        complainOfType(field, required);
    return container;
}

/// All of the value, before anything changes.
osg::FieldValue valueFor(osg::FieldContainer &container, const osg::FieldInfo &field, const py::object &value)
{
    return std::visit(
        [&](auto *address) -> osg::FieldValue {
            using T = std::remove_pointer_t<decltype(address)>;
            if constexpr (std::is_same_v<T, osg::RefFieldBase>) {
                return osg::FieldValue::reference(containerOf(value, field, address->requiredType()));
            } else if constexpr (std::is_same_v<T, osg::MRefFieldBase>) {
                std::vector<osg::FieldValue::Reference> references;
                for (const py::handle entry : value.cast<py::sequence>())
                    references.push_back(
                        {osg::FCRef<osg::FieldContainer>(containerOf(entry, field, address->requiredType()))});
                return references;
            } else {
                return Conversion<T>::fromPython(value);
            }
        },
        field.address(container));
}

} // namespace

const osg::FieldInfo &FieldAccess::find(const osg::FieldContainer &container, const std::string &name)
{
    const osg::FieldInfo *field = container.getType().findField(name);
    if (!field)
        throw py::key_error("a " + std::string(container.getType().getCName()) + " has no field '" + name + "'");
    return *field;
}

py::object FieldAccess::get(const osg::FieldContainerPtr &container, const osg::FieldInfo &field)
{
    return std::visit(
        [](auto *address) -> py::object {
            using T = std::remove_pointer_t<decltype(address)>;
            if constexpr (std::is_same_v<T, osg::RefFieldBase>)
                return wrap(address->getContainer());
            else if constexpr (std::is_same_v<T, osg::MRefFieldBase>)
                return referencesToPython(*address);
            else
                return Conversion<T>::toPython(*address);
        },
        field.address(*container));
}

void FieldAccess::set(const osg::FieldContainerPtr &container, const osg::FieldInfo &field, const py::object &value)
{
    const std::string name = field.name;
    if (osg::NodePtr::dcast(container) && name == "Children")
        throw py::value_error("children are added with add() and taken away with remove()");
    try {
        valueFor(*container, field, value).assignTo(*container, field);
    } catch (const py::cast_error &) {
        throw py::type_error("the field '" + name + "' does not take " + std::string(py::repr(value)));
    }
}

} // namespace kxPython

// SPDX-License-Identifier: Apache-2.0
#include "FieldFiller.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Image.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <variant>
#include <vector>

namespace kxtest {

using namespace osg;

namespace {

void makeFit(Image &image)
{
    const Image::Ptr handle(&image);
    const CPEditor edit(handle);
    image.setWidth(image.getWidth() % 9 + 1);
    image.setHeight(image.getHeight() % 9 + 1);
    image.setChannels(image.getChannels() % 4 + 1);
    image.setDataType(image.getDataType() % 3);
    image.editPixels().resize(image.byteCount());
}

void makeFit(Geometry &geometry)
{
    const Geometry::Ptr handle(&geometry);
    const CPEditor edit(handle);
    const std::size_t count = geometry.getPositions().size();
    geometry.editNormals().resize(count);
    geometry.editTexCoords().resize(count);
    geometry.editColors().resize(count);
    for (std::uint32_t &index : geometry.editIndices().values())
        index %= static_cast<std::uint32_t>(count);
    geometry.editFaceSizes() = {static_cast<std::uint32_t>(geometry.getIndices().size())};
}

} // namespace

void FieldFiller::fill(const FieldContainerPtr &container, int depth)
{
    for (const FieldInfo &field : container->getType().fields()) {
        const CPEditor edit(container, field.mask);
        container->markChanged(field.mask);
        fillField(*container, field, depth);
    }
    if (const auto image = dcast<ImagePtr>(container))
        makeFit(*image);
    if (const auto geometry = dcast<GeometryPtr>(container))
        makeFit(*geometry);
}

void FieldFiller::change(const FieldContainerPtr &container, const FieldInfo &field)
{
    const CPEditor edit(container, field.mask);
    container->markChanged(field.mask);
    const FieldPointer pointer = field.address(*container);
    if (const auto *truth = std::get_if<bool *>(&pointer))
        **truth = !**truth;
    else
        fillField(*container, field, 0);
}

void FieldFiller::fillField(FieldContainer &container, const FieldInfo &field, int depth)
{
    std::visit([&](auto *value) { put(*value, depth); }, field.address(container));
}

FieldContainerPtr FieldFiller::makeContainer(const FieldContainerType &required, int depth)
{
    std::vector<FieldContainerType *> fitting;
    for (FieldContainerType *type : FieldContainerFactory::the().types())
        if (type->isDerivedFrom(required) && !type->isAbstract())
            fitting.push_back(type);
    const FieldContainerPtr made = fitting[number(static_cast<std::uint32_t>(fitting.size()))]->createContainer();
    if (depth > 0)
        fill(made, depth - 1);
    return made;
}

std::uint32_t FieldFiller::number(std::uint32_t limit)
{
    return static_cast<std::uint32_t>(_random() % limit);
}

float FieldFiller::real()
{
    return std::uniform_real_distribution<float>(-1000.0F, 1000.0F)(_random);
}

std::string FieldFiller::text()
{
    static constexpr std::array Letters{"a", "Z", " ", "\"", "\n", "ä", "木", "\xF0\x9F\x8E\xA8"};
    std::string result;
    for (std::uint32_t i = number(20) + 1; i > 0; --i)
        result += Letters[number(Letters.size())];
    return result;
}

void FieldFiller::put(bool &value, int)
{
    value = number(2) == 1;
}

void FieldFiller::put(std::string &value, int)
{
    value = text() + std::string(1, '\0') + text();
}

void FieldFiller::put(StringMap &value, int)
{
    value.clear();
    for (int i = 0; i < 3; ++i)
        value[text()] = text();
}

void FieldFiller::put(RefFieldBase &value, int depth)
{
    value.setContainer(makeContainer(value.requiredType(), depth));
}

void FieldFiller::put(MRefFieldBase &value, int depth)
{
    value.clearContainers();
    // One of each type at most, as attachments have to be.
    std::vector<const FieldContainerType *> types;
    for (int i = 0; i < 3; ++i) {
        const FCRef<FieldContainer> made(makeContainer(value.requiredType(), depth));
        const FieldContainerType *type = &made->getType();
        if (std::find(types.begin(), types.end(), type) != types.end())
            continue;
        types.push_back(type);
        value.appendContainer(made);
    }
}

void FieldFiller::put(float &value, int)
{
    value = real();
}

void FieldFiller::put(double &value, int)
{
    value = real() + 1e-9 * real();
}

void FieldFiller::put(Quaternion &value, int)
{
    value = {real(), real(), real(), real()};
}

void FieldFiller::put(Matrix &value, int depth)
{
    for (double &entry : value.values)
        put(entry, depth);
}

template <std::integral T> void FieldFiller::put(T &value, int)
{
    value = static_cast<T>(_random());
}

template <class T, std::size_t N> void FieldFiller::put(Vec<T, N> &value, int depth)
{
    for (T &entry : value.values)
        put(entry, depth);
}

template <class T> void FieldFiller::put(MField<T> &values, int depth)
{
    values.clear();
    values.resize(number(60) + 1);
    for (T &value : values.values())
        put(value, depth);
}

} // namespace kxtest

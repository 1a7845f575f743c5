// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <cstdint>
#include <random>

namespace kxtest {

/// Gives fields random values, the same ones for the same seed.
class FieldFiller
{
public:
    explicit FieldFiller(std::uint64_t seed) : _random(seed) {}

    /// Every field of \a container, whatever its type. References get new containers of a fitting type, filled as well
    /// as far as \a depth goes; what has to fit together (an image's size and pixels, a mesh's indices) fits.
    void fill(const osg::FieldContainerPtr &container, int depth = 2);

    /// Another value than before for one field, without regard to what fits together.
    void change(const osg::FieldContainerPtr &container, const osg::FieldInfo &field);

private:
    void fillField(osg::FieldContainer &container, const osg::FieldInfo &field, int depth);
    osg::FieldContainerPtr makeContainer(const osg::FieldContainerType &required, int depth);

    std::uint32_t number(std::uint32_t limit);
    float real();
    std::string text();

    void put(bool &value, int depth);
    void put(std::string &value, int depth);
    void put(osg::StringMap &value, int depth);
    void put(osg::RefFieldBase &value, int depth);
    void put(osg::MRefFieldBase &value, int depth);
    void put(float &value, int depth);
    void put(double &value, int depth);
    void put(osg::Quaternion &value, int depth);
    void put(osg::Matrix &value, int depth);
    template <std::integral T> void put(T &value, int depth);
    template <class T, std::size_t N> void put(osg::Vec<T, N> &value, int depth);
    template <class T> void put(osg::MField<T> &values, int depth);

    std::mt19937_64 _random;
};

} // namespace kxtest

// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetTags.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace {

struct Known
{
    QHash<QString, int> numbers;
    std::vector<QString> names;
};

Known &known()
{
    static Known all;
    return all;
}

int numberOf(const QString &name)
{
    const auto found = known().numbers.constFind(name);
    if (found != known().numbers.constEnd())
        return *found;
    const auto number = static_cast<int>(known().names.size());
    known().numbers.insert(name, number);
    known().names.push_back(name);
    return number;
}

} // namespace

AssetTags::AssetTags(const QStringList &names)
{
    _numbers.reserve(static_cast<std::size_t>(names.size()));
    for (const QString &name : names)
        _numbers.push_back(numberOf(name));
}

QStringList AssetTags::names() const
{
    QStringList all;
    for (const int number : _numbers)
        all.append(nameOf(number));
    return all;
}

bool AssetTags::contains(const QString &name) const
{
    const auto number = known().numbers.constFind(name);
    return number != known().numbers.constEnd() &&
           std::find(_numbers.begin(), _numbers.end(), *number) != _numbers.end();
}

bool AssetTags::containsAll(const AssetTags &others) const
{
    return std::all_of(others._numbers.begin(), others._numbers.end(), [this](int number) {
        return std::find(_numbers.begin(), _numbers.end(), number) != _numbers.end();
    });
}

QString AssetTags::nameOf(int number)
{
    return known().names[static_cast<std::size_t>(number)];
}

int AssetTags::numberCount()
{
    return static_cast<int>(known().names.size());
}

std::vector<int> AssetTags::ranks()
{
    const std::vector<QString> &names = known().names;
    std::vector<int> sorted(names.size());
    std::iota(sorted.begin(), sorted.end(), 0);
    std::sort(sorted.begin(), sorted.end(), [&names](int a, int b) {
        return names[static_cast<std::size_t>(a)] < names[static_cast<std::size_t>(b)];
    });
    std::vector<int> places(names.size());
    for (std::size_t place = 0; place < sorted.size(); ++place)
        places[static_cast<std::size_t>(sorted[place])] = static_cast<int>(place);
    return places;
}

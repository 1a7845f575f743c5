// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/Internal/PatternParameters.h"

#include <QJsonArray>

#include <cmath>

namespace kxAssetSessionInternal {

namespace {

constexpr int MaxCount = 1024;

bool isWhole(const QJsonValue &value, int low, int high)
{
    const double number = value.toDouble(low - 1.0);
    return number >= low && number <= high && number == std::floor(number);
}

std::string range(double low, double high)
{
    return QStringLiteral("%1 to %2").arg(low).arg(high).toStdString();
}

} // namespace

void PatternParameters::complain(const char *key, const std::string &what)
{
    if (_complaint.empty())
        _complaint = std::string("'") + key + "' is not " + what;
}

float PatternParameters::number(const char *key, float fallback, float low, float high)
{
    const QString name = QString::fromLatin1(key);
    _asked.insert(name);
    if (!_object.contains(name))
        return fallback;
    const QJsonValue value = _object.value(name);
    const auto number = static_cast<float>(value.toDouble());
    if (!value.isDouble() || number < low || number > high) {
        complain(key, "a number from " + range(low, high));
        return fallback;
    }
    return number;
}

int PatternParameters::integer(const char *key, int fallback, int low, int high)
{
    const QString name = QString::fromLatin1(key);
    _asked.insert(name);
    if (!_object.contains(name))
        return fallback;
    if (!isWhole(_object.value(name), low, high)) {
        complain(key, "a whole number from " + range(low, high));
        return fallback;
    }
    return _object.value(name).toInt();
}

std::pair<int, int> PatternParameters::count(const char *key, std::pair<int, int> fallback)
{
    const QString name = QString::fromLatin1(key);
    if (!_object.value(name).isArray()) {
        const int both = integer(key, 0, 1, MaxCount);
        return both > 0 ? std::pair(both, both) : fallback;
    }
    _asked.insert(name);
    const QJsonArray pair = _object.value(name).toArray();
    if (pair.size() != 2 || !isWhole(pair[0], 1, MaxCount) || !isWhole(pair[1], 1, MaxCount)) {
        complain(key, "a whole number or two from " + range(1, MaxCount));
        return fallback;
    }
    return {pair[0].toInt(), pair[1].toInt()};
}

std::string PatternParameters::text(const char *key)
{
    const QString name = QString::fromLatin1(key);
    _asked.insert(name);
    return _object.value(name).toString().toStdString();
}

void PatternParameters::addColor(const char *key, const QJsonValue &entry, float evenTone,
                                 std::vector<std::pair<float, QColor>> &all)
{
    const QJsonArray pair = entry.toArray();
    const bool hasTone = pair.size() == 2 && pair[0].isDouble();
    const QColor color((hasTone ? pair[1] : entry).toString());
    const float tone = hasTone ? static_cast<float>(pair[0].toDouble()) : evenTone;
    if (!color.isValid() || (!all.empty() && !(tone > all.back().first)))
        complain(key, "a list of colours like \"#c0a080\", or of [tone, colour] with rising tones");
    else
        all.emplace_back(tone, color);
}

std::vector<std::pair<float, QColor>> PatternParameters::colors(const char *key)
{
    const QString name = QString::fromLatin1(key);
    _asked.insert(name);
    std::vector<std::pair<float, QColor>> result;
    if (!_object.contains(name))
        return result;
    const QJsonArray list = _object.value(name).toArray();
    if (list.isEmpty())
        complain(key, "a list of colours");
    for (int i = 0; i < list.size(); ++i) {
        const float evenTone = list.size() > 1 ? static_cast<float>(i) / static_cast<float>(list.size() - 1) : 0.0F;
        addColor(key, list[i], evenTone, result);
    }
    return result;
}

std::string PatternParameters::complaint() const
{
    if (!_complaint.empty())
        return _complaint;
    for (const QString &key : _object.keys())
        if (_asked.count(key) == 0)
            return "'" + key.toStdString() + "' is not known here";
    return {};
}

} // namespace kxAssetSessionInternal

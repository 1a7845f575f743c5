// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QJsonObject>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kxAssetSessionInternal {

/// Reads a JSON object key by key; remembers the first thing that is wrong, and which keys nobody asked for.
class PatternParameters
{
public:
    explicit PatternParameters(const QJsonObject &object) : _object(object) {}

    /// The value, or \a fallback where it is missing or wrong: not a number, or outside of the range.
    float number(const char *key, float fallback, float low, float high);
    int integer(const char *key, int fallback, int low, int high);
    /// One number for both directions, or [x, y].
    std::pair<int, int> count(const char *key, std::pair<int, int> fallback);
    std::string text(const char *key);
    /// ["#rrggbb", ...] evenly spread, or [[tone, "#rrggbb"], ...]; "#aarrggbb" has an opacity. Rising tones.
    std::vector<std::pair<float, QColor>> colors(const char *key);

    /// For what only the pattern itself can judge: it asks that \a key be \a what.
    void refuse(const char *key, const std::string &what) { complain(key, what); }

    /// "" or what is wrong, including keys that were never asked for.
    std::string complaint() const;

private:
    void complain(const char *key, const std::string &what);
    void addColor(const char *key, const QJsonValue &entry, float evenTone, std::vector<std::pair<float, QColor>> &all);

    const QJsonObject _object;
    std::set<QString> _asked;
    std::string _complaint;
};

} // namespace kxAssetSessionInternal

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

#include <vector>

/// The tags of an asset in their order, each kept once for all assets that have it: a hundred thousand lists of them are
/// compared and counted as numbers. Main thread only.
class AssetTags
{
public:
    AssetTags() = default;
    AssetTags(const QStringList &names); // NOLINT(google-explicit-constructor): a list of tags is what it looks like

    QStringList names() const;
    operator QStringList() const { return names(); } // NOLINT(google-explicit-constructor)
    bool isEmpty() const { return _numbers.empty(); }
    bool contains(const QString &name) const;
    bool containsAll(const AssetTags &others) const;

    /// Numbers go from 0 up; a number is never given to another tag.
    const std::vector<int> &numbers() const { return _numbers; }
    static QString nameOf(int number);
    /// One more than the largest number so far.
    static int numberCount();
    /// The place of each number when all are ordered by their names.
    static std::vector<int> ranks();

    friend bool operator==(const AssetTags &tags, const QStringList &names) { return tags.names() == names; }

private:
    std::vector<int> _numbers;
};

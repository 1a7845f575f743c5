// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

/// What all containers hold that some roots reach, field by field, how often each is referred to, and the state that the
/// host keeps beside them.
///
/// Containers are called by their names, and by who refers to them where they have none, so that two scenes that were made
/// in the same way can be compared as well.
class SceneFingerprint
{
public:
    enum class Identity {
        Same, ///< the very same containers, and no others are alive
        Alike ///< containers at the same places
    };

    SceneFingerprint() = default;
    /// Of the nodes named in \a unordered the order of the children does not count.
    explicit SceneFingerprint(const std::vector<osg::FieldContainerPtr> &roots,
                              const std::set<std::string> &unordered = {});

    /// One line for each difference, by container and field; none when all is as it was.
    std::vector<std::string> differencesTo(const SceneFingerprint &later, Identity identity = Identity::Same) const;

private:
    struct Record
    {
        std::uint32_t id = 0;
        std::int32_t references = 0;
        std::vector<std::pair<const char *, std::string>> fields;
    };
    using Labels = std::unordered_map<std::uint32_t, std::string>;

    void visit(const osg::FieldContainerPtr &container, const std::string &fallback);
    void discover(const osg::FieldContainerPtr &container, const std::set<std::string> &unordered);
    Record describe(const osg::FieldContainerPtr &container, const std::set<std::string> &unordered) const;
    std::string label(const osg::FieldContainerPtr &container) const;
    static void compare(const std::string &what, const Record &before, const Record &later, Identity identity,
                        std::vector<std::string> &differences);

    std::map<std::string, Record> _records;
    std::map<std::string, bool> _state;
    std::size_t _living = 0;
    Labels _labels;
    std::vector<osg::FieldContainerPtr> _found;
};

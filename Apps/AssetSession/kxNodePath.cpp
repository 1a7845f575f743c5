// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodePath.h"

#include "Kernel/kxNodeUtils.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace {

constexpr std::size_t MaxListed = 8;

/// One step of a path.
struct Step
{
    std::string name;
    std::size_t number = 0; ///< from 1; 0: the only one
};

std::vector<osg::NodePtr> childrenOf(const osg::NodePtr &node)
{
    std::vector<osg::NodePtr> children;
    for (std::size_t i = 0; i < node->getNChildren(); ++i)
        children.push_back(node->getChild(i));
    return children;
}

std::string escaped(const std::string &name)
{
    std::string text;
    for (const char c : name) {
        if (c == '/' || c == '#' || c == '\\')
            text += '\\';
        text += c;
    }
    return text;
}

/// How the node is told from its siblings.
std::string stepTo(const osg::NodePtr &node, const std::vector<osg::NodePtr> &siblings)
{
    const std::string name = kxNodeUtils::getName(node);
    std::size_t number = 0;
    std::size_t count = 0;
    for (const osg::NodePtr &sibling : siblings) {
        if (!name.empty() && kxNodeUtils::getName(sibling) != name)
            continue;
        ++count;
        if (sibling == node)
            number = count;
    }
    return count == 1 && !name.empty() ? escaped(name) : escaped(name) + '#' + std::to_string(number);
}

/// The part up to the next slash, which it takes from \a rest; nothing where the number is none.
std::optional<Step> nextStep(std::string &rest)
{
    Step step;
    std::string number;
    bool isNumbered = false;
    std::size_t i = 0;
    for (; i < rest.size() && rest[i] != '/'; ++i) {
        if (rest[i] == '#' && !isNumbered)
            isNumbered = true;
        else if (isNumbered)
            number += rest[i];
        else
            step.name += rest[i] == '\\' && i + 1 < rest.size() ? rest[++i] : rest[i];
    }
    rest.erase(0, std::min(rest.size(), i + 1));
    if (!isNumbered)
        return step;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), step.number);
    const bool isWhole = error == std::errc() && end == number.data() + number.size() && step.number > 0;
    return isWhole ? std::optional(step) : std::nullopt;
}

std::string textOf(const Step &step)
{
    return step.number == 0 ? step.name : step.name + '#' + std::to_string(step.number);
}

std::string listed(const std::vector<osg::NodePtr> &nodes)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(nodes.size(), MaxListed); ++i)
        text += (i == 0 ? "" : ", ") + stepTo(nodes[i], nodes);
    return nodes.size() > MaxListed ? text + ", ..." : text;
}

} // namespace

std::string kxNodePath::of(const osg::NodePtr &node, const std::vector<osg::NodePtr> &roots)
{
    std::string path;
    for (osg::NodePtr current = node; current; current = current->getParent()) {
        const bool isRoot = std::find(roots.begin(), roots.end(), current) != roots.end();
        const std::string step =
            stepTo(current, isRoot || !current->getParent() ? roots : childrenOf(current->getParent()));
        path.insert(0, path.empty() ? step : step + '/');
        if (isRoot)
            return path;
    }
    return {};
}

osg::Result<osg::NodePtr> kxNodePath::find(const std::string &path, const std::vector<osg::NodePtr> &roots)
{
    std::string rest = path;
    std::vector<osg::NodePtr> candidates = roots;
    osg::NodePtr node;
    if (path.empty())
        return osg::Failure{"an empty path names no node"};
    while (!rest.empty()) {
        const std::optional<Step> step = nextStep(rest);
        if (!step)
            return osg::Failure{"'" + path + "': a number sign is followed by a number from 1 on"};
        const std::string where = node ? "'" + of(node, roots) + "'" : "the scene";
        std::vector<osg::NodePtr> matching;
        for (const osg::NodePtr &candidate : candidates)
            if ((step->name.empty() && step->number > 0) || kxNodeUtils::getName(candidate) == step->name)
                matching.push_back(candidate);
        if (matching.empty() || step->number > matching.size())
            return osg::Failure{candidates.empty()
                                    ? where + " has no parts"
                                    : where + " has no '" + textOf(*step) + "', but " + listed(candidates)};
        if (step->number == 0 && matching.size() > 1)
            return osg::Failure{where + " has several parts named '" + step->name + "': " + listed(matching)};
        node = matching[step->number == 0 ? 0 : step->number - 1];
        candidates = childrenOf(node);
    }
    return node;
}

// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTypeConverter.h"

kxdNodePtr kxTypeConverter::convertNode(const osg::NodePtr &node)
{
    return node ? kxdNodePtr::create(node.getFieldContainerId()) : kxdNodePtr();
}

osg::NodePtr kxTypeConverter::convertNode(const kxdNodePtr &node)
{
    return node ? node->node() : osg::NodePtr();
}

std::vector<osg::NodePtr> kxTypeConverter::convertToKxNodes(const std::vector<kxdNodePtr> &nodes)
{
    std::vector<osg::NodePtr> converted;
    for (const kxdNodePtr &node : nodes)
        if (const osg::NodePtr living = convertNode(node))
            converted.push_back(living);
    return converted;
}

std::vector<std::string> kxTypeConverter::convertStringList(const QStringList &texts)
{
    std::vector<std::string> converted;
    converted.reserve(static_cast<std::size_t>(texts.size()));
    for (const QString &text : texts)
        converted.push_back(text.toStdString());
    return converted;
}

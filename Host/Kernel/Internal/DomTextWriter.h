// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDomNode>
#include <QString>

class QDomDocument;
class QDomDocumentType;
class QDomElement;

namespace kxKernelInternal {

/// Walks one document from node to node and collects its text; the position in the tree is the only stack.
class DomTextWriter
{
public:
    QString write(const QDomDocument &document);

private:
    /// True when the node stays open, so that its children come next.
    bool begin(const QDomNode &node);
    void end(const QDomElement &element);
    bool beginElement(const QDomElement &element);
    void writeLeaf(const QDomNode &node);
    void writeDocumentType(const QDomDocumentType &type);
    void beginLine();
    void endLine();
    QDomNode next(const QDomNode &node, const QDomNode &root);

    QString _text;
    int _depth = 0;
    int _inlineDepth = -1; ///< of the outermost open element that holds text; -1: none
};

} // namespace kxKernelInternal

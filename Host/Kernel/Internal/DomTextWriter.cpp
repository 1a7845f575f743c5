// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/DomTextWriter.h"

#include "Kernel/Internal/XmlText.h"

#include <QDomDocument>

#include <algorithm>
#include <map>

namespace kxKernelInternal {

namespace {

constexpr int Indentation = 2;

/// Deeper elements are indented no further: the blanks would grow with the square of the depth.
constexpr int MaximumIndentedDepth = 50;

bool isText(const QDomNode &node)
{
    return node.isText() || node.isEntityReference(); // CDATA sections are texts as well
}

bool holdsText(const QDomElement &element)
{
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (isText(child))
            return true;
    }
    return false;
}

QString attributesOf(const QDomElement &element)
{
    // The DOM keeps attributes in a hash table, whose order differs from process to process.
    std::map<QString, QString> sorted;
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomAttr attribute = attributes.item(i).toAttr();
        if (isXmlName(attribute.name()))
            sorted.emplace(attribute.name(), attribute.value());
    }
    QString text;
    for (const auto &[name, value] : sorted)
        text += QLatin1Char(' ') + name + QLatin1String("=\"") + escapedAttribute(value) + QLatin1Char('"');
    return text;
}

QString commentText(const QString &data)
{
    QString text = carriable(data);
    while (text.contains(QLatin1String("--")))
        text.replace(QLatin1String("--"), QLatin1String("- -"));
    if (text.endsWith(QLatin1Char('-')))
        text += QLatin1Char(' ');
    return QLatin1String("<!--") + text + QLatin1String("-->");
}

QString cdataText(const QString &data)
{
    QString text = carriable(data);
    text.replace(QLatin1String("]]>"), QLatin1String("]]]]><![CDATA[>"));
    return QLatin1String("<![CDATA[") + text + QLatin1String("]]>");
}

QString instructionText(const QDomProcessingInstruction &instruction)
{
    QString data = carriable(instruction.data());
    data.replace(QLatin1String("?>"), QLatin1String("? >"));
    return QLatin1String("<?") + instruction.target() + (data.isEmpty() ? QString() : QLatin1Char(' ') + data) +
           QLatin1String("?>");
}

QString quotedIdentifier(const QString &identifier)
{
    const QChar quote = identifier.contains(QLatin1Char('"')) ? QLatin1Char('\'') : QLatin1Char('"');
    return QLatin1Char(' ') + quote + carriable(identifier) + quote;
}

bool isXmlDeclaration(const QDomNode &node)
{
    return node.isProcessingInstruction() &&
           node.toProcessingInstruction().target().compare(QLatin1String("xml"), Qt::CaseInsensitive) == 0;
}

bool isWritableInstruction(const QDomNode &node)
{
    return !isXmlDeclaration(node) && isXmlName(node.toProcessingInstruction().target());
}

} // namespace

QString DomTextWriter::write(const QDomDocument &document)
{
    _text = QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n");
    _depth = 0;
    _inlineDepth = -1;
    writeDocumentType(document.doctype());

    for (QDomNode node = document.firstChild(); !node.isNull();) {
        const QDomNode child = begin(node) ? node.firstChild() : QDomNode();
        node = child.isNull() ? next(node, document) : child;
    }
    return _text;
}

bool DomTextWriter::begin(const QDomNode &node)
{
    if (node.isElement())
        return beginElement(node.toElement());
    writeLeaf(node);
    return false;
}

bool DomTextWriter::beginElement(const QDomElement &element)
{
    if (!isXmlName(element.tagName()))
        return false;
    beginLine();
    _text += QLatin1Char('<') + element.tagName() + attributesOf(element);
    if (!element.hasChildNodes()) {
        _text += QLatin1String("/>");
        endLine();
        return false;
    }
    _text += QLatin1Char('>');
    if (_inlineDepth < 0 && holdsText(element))
        _inlineDepth = _depth;
    endLine();
    ++_depth;
    return true;
}

void DomTextWriter::end(const QDomElement &element)
{
    --_depth;
    const bool endsInline = _inlineDepth == _depth;
    if (!endsInline)
        beginLine();
    _text += QLatin1String("</") + element.tagName() + QLatin1Char('>');
    if (endsInline)
        _inlineDepth = -1;
    endLine();
}

void DomTextWriter::writeLeaf(const QDomNode &node)
{
    QString text;
    if (node.isCDATASection())
        text = cdataText(node.nodeValue());
    else if (node.isText())
        text = escapedText(node.nodeValue());
    else if (node.isComment())
        text = commentText(node.nodeValue());
    else if (node.isProcessingInstruction() && isWritableInstruction(node))
        text = instructionText(node.toProcessingInstruction());
    else
        return; // the document type is written already; an entity without its declaration would make the file unreadable

    beginLine();
    _text += text;
    endLine();
}

void DomTextWriter::writeDocumentType(const QDomDocumentType &type)
{
    if (!isXmlName(type.name()))
        return;
    _text += QLatin1String("<!DOCTYPE ") + type.name();
    if (!type.publicId().isEmpty())
        _text += QLatin1String(" PUBLIC") + quotedIdentifier(type.publicId()) + quotedIdentifier(type.systemId());
    else if (!type.systemId().isEmpty())
        _text += QLatin1String(" SYSTEM") + quotedIdentifier(type.systemId());
    _text += QLatin1Char('>');
    endLine();
}

void DomTextWriter::beginLine()
{
    if (_inlineDepth < 0)
        _text += QString(std::min(_depth, MaximumIndentedDepth) * Indentation, QLatin1Char(' '));
}

void DomTextWriter::endLine()
{
    if (_inlineDepth < 0)
        _text += QLatin1Char('\n');
}

/// The node after \a node and all below it, closing the elements that are left on the way up.
QDomNode DomTextWriter::next(const QDomNode &node, const QDomNode &root)
{
    QDomNode current = node;
    while (current.nextSibling().isNull()) {
        current = current.parentNode();
        if (current.isNull() || current == root)
            return QDomNode();
        end(current.toElement());
    }
    return current.nextSibling();
}

} // namespace kxKernelInternal

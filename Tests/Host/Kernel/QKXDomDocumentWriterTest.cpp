// SPDX-License-Identifier: Apache-2.0
#include "Kernel/QKXDomDocumentWriter.h"

#include <QDomDocument>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const std::string Declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

std::string written(const QDomDocument &document)
{
    return QKXDomDocumentWriter::toString(document).toStdString();
}

QDomDocument parsed(const char *xml)
{
    QDomDocument document;
    EXPECT_TRUE(document.setContent(QByteArray(xml))) << xml;
    return document;
}

TEST(QKXDomDocumentWriterTest, WritesOneElementPerLineIndentedByTwo)
{
    const QDomDocument document =
        parsed("<?xml version=\"1.0\" encoding=\"utf-8\"?><!DOCTYPE SARNAsset><item><category>Materials</category>"
               "<material><type>UberMaterial</type><subMaterials/></material></item>");

    EXPECT_EQ(written(document), Declaration + "<!DOCTYPE SARNAsset>\n"
                                               "<item>\n"
                                               "  <category>Materials</category>\n"
                                               "  <material>\n"
                                               "    <type>UberMaterial</type>\n"
                                               "    <subMaterials/>\n"
                                               "  </material>\n"
                                               "</item>\n");
}

TEST(QKXDomDocumentWriterTest, DeclaresUtf8WhateverTheDocumentDeclares)
{
    EXPECT_EQ(written(parsed("<a/>")), Declaration + "<a/>\n");
    EXPECT_EQ(written(parsed("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a/>")), Declaration + "<a/>\n");
    EXPECT_EQ(written(QDomDocument()), Declaration);
}

TEST(QKXDomDocumentWriterTest, WritesTheIdentifiersOfTheDocumentType)
{
    EXPECT_EQ(written(parsed("<!DOCTYPE a PUBLIC \"p\" \"s\"><a/>")),
              Declaration + "<!DOCTYPE a PUBLIC \"p\" \"s\">\n<a/>\n");
    EXPECT_EQ(written(parsed("<!DOCTYPE a SYSTEM 's\"'><a/>")), Declaration + "<!DOCTYPE a SYSTEM 's\"'>\n<a/>\n");
}

TEST(QKXDomDocumentWriterTest, AddsNoBlanksInsideAnElementThatHoldsText)
{
    EXPECT_EQ(written(parsed("<p><q>text <b><i/>bold</b><c><d/></c></q><r/></p>")),
              Declaration + "<p>\n  <q>text <b><i/>bold</b><c><d/></c></q>\n  <r/>\n</p>\n");
}

TEST(QKXDomDocumentWriterTest, GivesTheSameTextAfterReadingItBack)
{
    const std::string once =
        written(parsed("<p a='1'><q>text <b>bold</b>. </q><!-- note --><?do it?><r>\n x \n</r></p>"));

    EXPECT_EQ(once, Declaration + "<p a=\"1\">\n  <q>text <b>bold</b>. </q>\n  <!-- note -->\n  <?do it?>\n"
                                  "  <r>\n x \n</r>\n</p>\n");
    EXPECT_EQ(written(parsed(once.c_str())), once);
}

TEST(QKXDomDocumentWriterTest, SortsAttributesByName)
{
    EXPECT_EQ(written(parsed("<a z='1' b='2' m='3' c='4' x='5'/>")),
              Declaration + "<a b=\"2\" c=\"4\" m=\"3\" x=\"5\" z=\"1\"/>\n");
}

TEST(QKXDomDocumentWriterTest, EscapesMarkupAndLineEnds)
{
    QDomDocument document;
    QDomElement element = document.createElement("a");
    element.setAttribute("v", "<\"&'>\n\t\r");
    element.appendChild(document.createTextNode("<\"&'>\n\t\r]]>"));
    document.appendChild(element);

    EXPECT_EQ(written(document),
              Declaration + "<a v=\"&lt;&quot;&amp;'&gt;&#xa;&#x9;&#xd;\">&lt;\"&amp;'&gt;\n\t&#xd;]]&gt;</a>\n");
}

TEST(QKXDomDocumentWriterTest, KeepsTextOfAnyScript)
{
    EXPECT_EQ(written(parsed("<a>Stühle 漆塗り 😀</a>")), Declaration + "<a>Stühle 漆塗り 😀</a>\n");
}

TEST(QKXDomDocumentWriterTest, LeavesOutCharactersThatXmlCannotCarry)
{
    QDomDocument document;
    QDomElement element = document.createElement("name");
    const QChar text[] = {'a', QChar(0),      QChar(1),      QChar(0x1f),   'b',           QChar(0xd83d),
                          'c', QChar(0xde00), QChar(0xfffe), QChar(0xffff), QChar(0xd83d), QChar(0xde00)};
    element.appendChild(document.createTextNode(QString(text, 12)));
    document.appendChild(element);

    EXPECT_EQ(written(document), Declaration + "<name>abc😀</name>\n");
}

TEST(QKXDomDocumentWriterTest, LeavesOutWhatHasNoValidName)
{
    QDomDocument document;
    QDomElement root = document.createElement("root");
    root.setAttribute("not a name", "x");
    root.setAttribute("größe", "1");
    root.appendChild(document.createElement("1st"));
    root.appendChild(document.createElement("first-1.a"));
    document.appendChild(root);

    EXPECT_EQ(written(document), Declaration + "<root größe=\"1\">\n  <first-1.a/>\n</root>\n");
}

TEST(QKXDomDocumentWriterTest, KeepsSectionsAndCommentsWellFormed)
{
    QDomDocument document;
    QDomElement root = document.createElement("root");
    document.appendChild(root);
    root.appendChild(document.createComment("a--b---"));
    QDomElement data = document.createElement("data");
    data.appendChild(document.createCDATASection("<x>]]>&"));
    root.appendChild(data);
    root.appendChild(document.createProcessingInstruction("do", "a?>b"));

    EXPECT_EQ(written(document), Declaration +
                                     "<root>\n  <!--a- -b- - - -->\n  <data><![CDATA[<x>]]]]><![CDATA[>&]]></data>\n"
                                     "  <?do a? >b?>\n</root>\n");
}

TEST(QKXDomDocumentWriterTest, WritesAnElementWithAnEmptyText)
{
    QDomDocument document;
    QDomElement root = document.createElement("root");
    document.appendChild(root);
    root.appendChild(document.createTextNode(""));

    EXPECT_EQ(written(document), Declaration + "<root></root>\n");
}

TEST(QKXDomDocumentWriterTest, LeavesTheDocumentAsItIs)
{
    QDomDocument document = parsed("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a><b/></a>");
    const QString before = document.toString();

    written(document);

    EXPECT_EQ(document.toString(), before);
}

TEST(QKXDomDocumentWriterTest, WritesDeepNestingWithoutRecursion)
{
    constexpr int Depth = 10000;
    QDomDocument document;
    std::vector<QDomElement> chain{document.createElement("e")};
    document.appendChild(chain.back());
    for (int i = 1; i < Depth; ++i) {
        const QDomElement child = document.createElement("e");
        chain.back().appendChild(child);
        chain.push_back(child);
    }
    chain.back().appendChild(document.createTextNode("t"));

    const QString text = QKXDomDocumentWriter::toString(document);

    EXPECT_EQ(text.count("<e>"), Depth);
    EXPECT_EQ(text.count("</e>"), Depth);
    EXPECT_TRUE(text.contains("\n" + QString(100, ' ') + "<e>t</e>\n"));
    // Taken apart from the inside, because the DOM destroys nested elements recursively.
    for (std::size_t i = chain.size() - 1; i > 0; --i)
        chain[i - 1].removeChild(chain[i]);
}

} // namespace

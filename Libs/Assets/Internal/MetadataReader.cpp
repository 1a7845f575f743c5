// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MetadataReader.h"

#include <QDomDocument>
#include <QFile>
#include <QXmlDefaultHandler>

#include <algorithm>

namespace kxAssetsInternal {

namespace {

/// A metadata file has about one kilobyte; one with a thousand sub-materials has fifty.
constexpr qint64 MaxBytes = 4 * 1024 * 1024;
/// The format needs four levels. The DOM's parser overflows a stack of 8 MiB at some 25,000.
constexpr int MaxDepth = 256;

// The reader below the DOM is out of favour, but only it sees what the DOM will see.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

/// Ends a parse that nests too deep or, by entities that stand for long texts, grows too big.
class LimitGuard : public QXmlDefaultHandler
{
public:
    bool startElement(const QString &, const QString &, const QString &, const QXmlAttributes &attributes) override
    {
        for (int i = 0; i < attributes.count(); ++i)
            _characters += attributes.value(i).size();
        return ++_depth <= MaxDepth;
    }
    bool endElement(const QString &, const QString &, const QString &) override
    {
        --_depth;
        return true;
    }
    bool characters(const QString &text) override
    {
        _characters += text.size();
        return _characters <= MaxBytes;
    }

    /// Null when nothing was too much.
    QString complaint() const
    {
        if (_depth > MaxDepth)
            return QStringLiteral("the elements are nested too deep");
        return _characters > MaxBytes ? QStringLiteral("the file is too big") : QString();
    }

private:
    int _depth = 0;
    qint64 _characters = 0;
};

QString complaintAbout(const QByteArray &content)
{
    LimitGuard guard;
    QXmlInputSource source;
    source.setData(content);
    QXmlSimpleReader reader;
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setContentHandler(&guard);
    reader.parse(source);
    return guard.complaint();
}

QT_WARNING_POP

/// Whether the bytes are the characters: in another encoding a tag need not begin with the byte of "<".
bool isPlainUtf8(const QByteArray &content)
{
    if (content.contains('\0'))
        return false;
    const int declared = content.indexOf("encoding");
    return declared < 0 || content.mid(declared, 16).toLower() == "encoding=\"utf-8\"";
}

/// True for every file that this library wrote about fewer than a hundred sub-materials, so that hardly any is looked
/// through before the DOM does so. Each level takes one tag, unless entities bring more of them.
bool isObviouslySmall(const QByteArray &content)
{
    return isPlainUtf8(content) && content.count('<') <= MaxDepth && !content.contains("<!ENTITY");
}

} // namespace

bool readMetadata(QFile &file, QDomDocument &document, QString &message, int &line, int &column)
{
    // No more than it says to have is made room for; what says to have nothing, such as a pipe, may have anything.
    const qint64 size = file.size();
    const QByteArray content = file.read((size > 0 ? std::min(size, MaxBytes) : MaxBytes) + 1);
    if (content.size() > MaxBytes)
        message = QStringLiteral("the file is too big");
    else if (!isObviouslySmall(content))
        message = complaintAbout(content);
    if (!message.isEmpty()) {
        line = column = 1;
        return false;
    }
    return document.setContent(content, false, &message, &line, &column);
}

} // namespace kxAssetsInternal

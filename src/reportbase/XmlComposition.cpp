// SPDX-License-Identifier: MIT
#include "XmlComposition.h"

#include <algorithm>

#include <QBuffer>
#include <QXmlStreamWriter>

#include <reportbase/IRGObject.h>

#include "text/Size.h"

namespace REPORTGENERATOR {

namespace {

void format(QXmlStreamWriter &writer)
{
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    writer.writeStartDocument();
}

/// Stores the position at which the writer first lost characters. The writer drops characters that XML cannot carry and
/// only sets a flag, before the rest of the text arrives here.
class LossNotingBuffer : public QBuffer
{
public:
    void watch(const QXmlStreamWriter *writer) { m_writer = writer; }

    qint64 lineOfLoss() const { return m_loss < 0 ? 0 : 1 + qint64(data().left(Size(m_loss)).count('\n')); }

    void noteLoss()
    {
        if (m_loss < 0 && m_writer->hasError())
            m_loss = pos();
    }

protected:
    qint64 writeData(const char *bytes, qint64 size) override
    {
        noteLoss();
        return QBuffer::writeData(bytes, size);
    }

private:
    const QXmlStreamWriter *m_writer = nullptr;
    qint64 m_loss = -1;
};

/// Where a half of a surrogate pair is without the other half, or the end.
QString::const_iterator halfPair(const QString &text)
{
    for (auto at = text.cbegin(); at != text.cend(); ++at) {
        const bool isPair = at->isHighSurrogate() && at + 1 != text.cend() && at[1].isLowSurrogate();
        if (at->isSurrogate() && !isPair)
            return at;
        at += isPair ? 1 : 0;
    }
    return text.cend();
}

/// The line where the first text starts that contains half a surrogate pair. Has the object write itself once more. The
/// writer of Qt 5 keeps half a pair at the end of a text and only detects with a later text that the other half is
/// missing, but writes both into a QString unchanged. The writer of Qt 6 detects it at once, as it does all others.
qint64 lineOfHalfPair(const IRGObject &object)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    format(writer);
    object.GetXml(writer);
    const Size half = Size(halfPair(xml) - xml.cbegin());
    const QString before = xml.left(half); // a text contains neither of these, which are escaped there
    const Size start = std::max(before.lastIndexOf(QLatin1Char('>')), before.lastIndexOf(QLatin1Char('"')));
    return 1 + qint64(before.left(start + 1).count(QLatin1Char('\n')));
}

/// The position after the next `end`.
Size after(const QByteArray &xml, const char *end, Size from)
{
    const Size at = xml.indexOf(end, from);
    return at < 0 ? xml.size() : at + Size(qstrlen(end));
}

bool isAt(const QByteArray &xml, Size position, const char *text)
{
    return qstrncmp(xml.constData() + position, text, qstrlen(text)) == 0;
}

Size endOfMarkup(const QByteArray &xml, Size begin);

/// A document type may contain declarations, whose quoted texts may contain anything.
Size endOfDocumentType(const QByteArray &xml, Size begin)
{
    Size at = begin + 2;
    while (at < xml.size() && xml.at(at) != '>') {
        const char quote = xml.at(at);
        if (quote == '"' || quote == '\'')
            at = after(xml, quote == '"' ? "\"" : "'", at + 1);
        else
            at = quote == '<' ? endOfMarkup(xml, at) : at + 1;
    }
    return std::min(at + 1, xml.size());
}

/// The position after a tag, a comment or any other markup.
Size endOfMarkup(const QByteArray &xml, Size begin)
{
    if (isAt(xml, begin, "<!--"))
        return after(xml, "-->", begin + 4);
    if (isAt(xml, begin, "<![CDATA["))
        return after(xml, "]]>", begin);
    if (isAt(xml, begin, "<?"))
        return after(xml, "?>", begin);
    if (isAt(xml, begin, "<!"))
        return endOfDocumentType(xml, begin);
    return after(xml, ">", begin); // in attribute values the writer escapes it
}

/// The writer escapes a carriage return in an attribute value but leaves it bare in the text of an element, where any
/// reader would treat it as a line end. Everything else stays as an object has written it: nothing can be escaped
/// there.
void escapeCarriageReturns(QByteArray &xml)
{
    if (!xml.contains('\r'))
        return;
    QByteArray escaped;
    for (Size at = 0; at < xml.size();) {
        const Size markup = xml.indexOf('<', at);
        const Size end = markup < 0 ? xml.size() : markup;
        escaped += xml.mid(at, end - at).replace('\r', "&#13;");
        at = markup < 0 ? end : endOfMarkup(xml, markup);
        escaped += xml.mid(end, at - end);
    }
    xml = escaped;
}

} // namespace

XmlComposition composeXmlByWriter(const IRGObject &object)
{
    LossNotingBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&buffer);
    buffer.watch(&writer);
    format(writer);

    const qint64 prologue = buffer.size();
    object.GetXml(writer);
    if (buffer.size() == prologue && !writer.hasError())
        return {};

    writer.writeEndDocument();
    XmlComposition composition;
    composition.utf8 = buffer.data();

    writer.writeCharacters(QString(QLatin1Char(' '))); // completes the last text, which may end with half a pair
    buffer.noteLoss();
    if (writer.hasError())
        composition.lineOfLostText = std::min(buffer.lineOfLoss(), lineOfHalfPair(object));
    else if (const Size null = composition.utf8.indexOf('\0');
             null >= 0) // in a comment, which the writer leaves as it is
        composition.lineOfLostText = 1 + qint64(composition.utf8.left(null).count('\n'));

    escapeCarriageReturns(composition.utf8);
    return composition;
}

} // namespace REPORTGENERATOR

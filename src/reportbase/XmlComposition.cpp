// SPDX-License-Identifier: MIT
#include "XmlComposition.h"

#include <algorithm>

#include <QBuffer>
#include <QXmlStreamWriter>

#include <reportbase/IRGObject.h>

#include "text/Size.h"

namespace REPORTGENERATOR {

namespace {

/// Stores the position at which the writer first lost characters. The writer drops characters that XML cannot carry and
/// only sets a flag, before the rest of the text arrives here.
class LossNotingBuffer : public QBuffer
{
public:
    void watch(const QXmlStreamWriter *writer) { m_writer = writer; }

    qint64 lineOfLoss() const { return m_loss < 0 ? 0 : 1 + data().left(Size(m_loss)).count('\n'); }

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
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    writer.writeStartDocument();

    const qint64 prologue = buffer.size();
    object.GetXml(writer);
    if (buffer.size() == prologue && !writer.hasError())
        return {};

    writer.writeEndDocument();
    XmlComposition composition;
    composition.utf8 = buffer.data();

    // The writer keeps the first half of a surrogate pair at the end of a text, and only detects a missing second half
    // with the next text; so a text has to follow the last one.
    writer.writeCharacters(QString(QLatin1Char(' ')));
    buffer.noteLoss();
    composition.lineOfLostText = buffer.lineOfLoss();

    escapeCarriageReturns(composition.utf8);
    return composition;
}

} // namespace REPORTGENERATOR

// SPDX-License-Identifier: MIT
#include "XmlComposition.h"

#include <QBuffer>
#include <QXmlStreamWriter>

#include <reportbase/IRGObject.h>

namespace REPORTGENERATOR {

namespace {

/// Notes where the writer began to lose characters. The writer drops what XML cannot carry and only raises a flag,
/// which is up before the rest of the text arrives here.
class LossNotingBuffer : public QBuffer
{
public:
    void watch(const QXmlStreamWriter *writer) { m_writer = writer; }

    int lineOfLoss() const { return m_loss < 0 ? 0 : 1 + data().left(int(m_loss)).count('\n'); }

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

    // The first half of a surrogate pair at the end of a text waits for its second half and is missed by the writer
    // only with the next text; so there has to be a next one behind the last.
    writer.writeCharacters(QStringLiteral(" "));
    buffer.noteLoss();
    composition.lineOfLostText = buffer.lineOfLoss();

    // The writer leaves a carriage return in element text bare, and any reader would take it for a line end.
    composition.utf8.replace('\r', QByteArrayLiteral("&#13;"));
    return composition;
}

} // namespace REPORTGENERATOR

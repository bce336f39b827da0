// SPDX-License-Identifier: MIT
#include "framework/Records.h"

#include <algorithm>

#include <jobxml/DataObject.h>

#include "framework/Errors.h"

namespace JobXml {

namespace {

constexpr int wordSize = 4; // the least that an item takes

// An item in memory is many times its least size in a stream; beyond this, lists grow as their items arrive.
constexpr qint64 mostReserved = 4096;

// By size: a text may hold a NUL.
QString textOf(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8.constData(), utf8.size());
}

} // namespace

RecordWriter::RecordWriter(const QDataStream &target) : m_buffer(&m_bytes)
{
    m_buffer.open(QIODevice::WriteOnly);
    m_stream.setDevice(&m_buffer);
    m_stream.setVersion(target.version());
    m_stream.setByteOrder(target.byteOrder());
    m_stream.setFloatingPointPrecision(target.floatingPointPrecision());
}

RecordWriter::Start RecordWriter::begin(quint32 tag)
{
    m_stream << tag;
    return beginUntagged();
}

RecordWriter::Start RecordWriter::beginUntagged()
{
    m_stream << qint32(0);
    return m_buffer.pos();
}

void RecordWriter::end(Start start)
{
    const qint64 end = m_buffer.pos();
    m_buffer.seek(start - wordSize);
    m_stream << qint32(end - start);
    m_buffer.seek(end);
}

void RecordWriter::flushTo(QDataStream &target) const
{
    target.writeRawData(m_bytes.constData(), m_bytes.size());
}

void RecordReader::requireGood() const
{
    if (m_stream.status() != QDataStream::Ok)
        Errors::wrongLength(m_owner);
}

QString RecordReader::readText()
{
    const auto bytes = read<QByteArray>();
    if (bytes.isEmpty())
        return QStringLiteral("");
    // The converter drops one byte order mark at the start, which here is part of the text: give it one to drop.
    static constexpr char mark[] = "\xEF\xBB\xBF";
    if (bytes.startsWith(mark))
        return textOf(mark + bytes);
    return textOf(bytes);
}

void RecordReader::skip(qint32 length, quint32 tag)
{
    if (m_owner.skipCurrentElement(m_stream, length, int(tag)) < length)
        Errors::wrongLength(m_owner);
}

int itemsWithin(const QDataStream &stream, qint32 count)
{
    const qint64 bytesLeft = stream.device() ? stream.device()->bytesAvailable() : 0;
    return int(std::clamp(qint64(count), qint64(0), std::min(bytesLeft / wordSize, mostReserved)));
}

} // namespace JobXml

// SPDX-License-Identifier: MIT
#include "framework/Binary.h"

#include <algorithm>
#include <limits>
#include <new>
#include <typeinfo>

#include <QBuffer>

#include <jobxml/DataObject.h>

#include "framework/Errors.h"
#include "framework/Text.h"

namespace JobXml {

namespace {

constexpr int wordSize = 4; // the smallest size of an item

// An item in memory is many times its smallest size in a stream, so larger lists grow while their items are read.
constexpr qint64 mostReserved = 4096;

// The first versions of QDataStream that support the named features.
constexpr int versionWithUnicode = 2;
constexpr int versionWithNullText = 3;
constexpr int versionWithNullBytesAndWords64 = 6;

/// The buffer of a stream if its bytes may be read directly; otherwise null.
QBuffer *bufferOf(const QDataStream &stream)
{
    QIODevice *const device = stream.device();
    if (!device || typeid(*device) != typeid(QBuffer) || stream.status() != QDataStream::Ok
        || !BinaryReader::isReadDirectly(stream))
        return nullptr;
    if (!device->isReadable() || device->isTextModeEnabled() || device->isTransactionStarted())
        return nullptr;
    auto *const buffer = static_cast<QBuffer *>(device);
    // Characters put back by ungetChar() are not in the buffer's bytes and may precede the first of them. Only reading
    // detects them: QBuffer::peek() ignores them.
    const qint64 position = buffer->pos();
    if (position < 0 || position >= buffer->size())
        return nullptr;
    char next = 0;
    if (!buffer->getChar(&next))
        return nullptr;
    buffer->ungetChar(next);
    const bool isThere = next == buffer->data().at(Size(position));
    return isThere ? buffer : nullptr;
}

template <class To, class From>
To bitsOf(From value)
{
    static_assert(sizeof(To) == sizeof(From), "not the bits of this value");
    To bits;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}

/// Writes the characters as bytes. Returns false if one of them is not ASCII.
bool narrow(const QChar *text, Size size, char *to)
{
    ushort all = 0;
    for (Size i = 0; i < size; ++i) {
        const ushort character = text[i].unicode();
        all = ushort(all | character);
        to[i] = char(character);
    }
    return all < 0x80;
}

/// Copies UTF-16 between the processor's byte order and a stream's.
void copyText(const char *from, Size units, char *to, bool isSwapped)
{
    if (isSwapped)
        qbswap<sizeof(ushort)>(from, units, to);
    else if (units > 0)
        std::memcpy(to, from, 2 * std::size_t(units));
}

} // namespace

ByteForm::ByteForm(const QDataStream &stream)
    : isSwapped((stream.byteOrder() == QDataStream::LittleEndian) != (QSysInfo::ByteOrder == QSysInfo::LittleEndian)),
      halvesFloats(stream.version() >= QDataStream::Qt_4_6
                   && stream.floatingPointPrecision() == QDataStream::SinglePrecision),
      doublesFloats(stream.version() >= QDataStream::Qt_4_6
                    && stream.floatingPointPrecision() == QDataStream::DoublePrecision),
      version(stream.version())
{
}

// --- Writing ---------------------------------------------------------------------------------------------------------

BinaryWriter::BinaryWriter(const QDataStream &target) : m_form(target) { }

void BinaryWriter::grow(qint64 size)
{
    constexpr qint64 least = 256;
    constexpr qint64 most = std::numeric_limits<int>::max() - 64; // no reader takes more; Qt 5 also allocates a header
    if (size > most - m_size)
        throw std::bad_alloc();
    m_bytes.resize(Size(std::min(most, std::max({least, m_size + size, 2 * m_size}))));
    m_at = m_bytes.data();
}

void BinaryWriter::put(quint64 value)
{
    if (m_form.version >= versionWithNullBytesAndWords64) {
        store(room(8), value);
        return;
    }
    put(quint32(value >> 32)); // the higher word first, in either byte order
    put(quint32(value));
}

void BinaryWriter::put(float value)
{
    if (m_form.doublesFloats) {
        store(room(8), bitsOf<quint64>(double(value)));
        return;
    }
    store(room(4), bitsOf<quint32>(value));
}

void BinaryWriter::put(double value)
{
    if (m_form.halvesFloats) {
        store(room(4), bitsOf<quint32>(float(value)));
        return;
    }
    store(room(8), bitsOf<quint64>(value));
}

void BinaryWriter::putNull()
{
    put(m_form.version >= versionWithNullBytesAndWords64 ? nullMark : 0U);
}

void BinaryWriter::putBytes(const char *bytes, Size size)
{
    put(quint32(size));
    if (size > 0)
        std::memcpy(room(size), bytes, std::size_t(size));
}

void BinaryWriter::put(const QString &text)
{
    if (m_form.version < versionWithUnicode) {
        const QByteArray latin1 = text.toLatin1();
        putBytes(latin1.constData(), latin1.size());
        return;
    }
    if (text.isNull() && m_form.version >= versionWithNullText) {
        put(nullMark);
        return;
    }
    put(quint32(2 * text.size()));
    copyText(reinterpret_cast<const char *>(text.constData()), text.size(), room(2 * qint64(text.size())),
             m_form.isSwapped);
}

void BinaryWriter::putUtf8(const QString &text)
{
    if (text.isNull()) {
        putNull();
        return;
    }
    put(quint32(text.size()));
    if (narrow(text.constData(), text.size(), room(text.size())))
        return;
    m_size -= wordSize + text.size();
    const QByteArray utf8 = text.toUtf8();
    putBytes(utf8.constData(), utf8.size());
}

void BinaryWriter::putUtf8(QLatin1String ascii)
{
    putBytes(ascii.data(), ascii.size());
}

void BinaryWriter::putRecords(const QByteArray &records)
{
    if (!records.isEmpty())
        std::memcpy(room(records.size()), records.constData(), std::size_t(records.size()));
}

void BinaryWriter::flushTo(QDataStream &target) const
{
    target.writeRawData(m_bytes.constData(), int(m_size)); // which is within the limit of grow()
}

QByteArray BinaryWriter::take()
{
    m_bytes.truncate(Size(m_size));
    m_bytes.squeeze(); // the caller may keep it
    return std::move(m_bytes);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

bool BinaryReader::isReadDirectly(const QDataStream &form)
{
    return form.version() >= versionWithNullBytesAndWords64;
}

BinaryReader::BinaryReader(const QDataStream &form, const char *bytes, int size, qint64 offset,
                           const ProblemVisitor *visitor)
    : Source(false, visitor), m_offset(offset), m_stream(nullptr), m_form(form), m_buffer(nullptr), m_isDirect(true),
      m_first(bytes), m_begin(bytes), m_at(bytes), m_end(bytes + size), m_texts(size)
{
}

BinaryReader::BinaryReader(QDataStream &stream, qint64 unchanged, const ProblemVisitor *visitor)
    : BinaryReader(stream, bufferOf(stream), unchanged, visitor)
{
}

BinaryReader::BinaryReader(QDataStream &stream, QBuffer *buffer, qint64 unchanged, const ProblemVisitor *visitor)
    : Source(buffer == nullptr, visitor), m_stream(&stream), m_form(stream), m_buffer(buffer), m_isDirect(buffer),
      m_texts(buffer ? std::min(unchanged, buffer->bytesAvailable()) : 0)
{
    if (!m_buffer)
        return;
    const QByteArray &all = m_buffer->data();
    const qint64 position = std::min(m_buffer->pos(), qint64(all.size()));
    m_first = m_begin = m_at = all.constData() + position;
    m_end = all.constData() + all.size();
}

BinaryReader::~BinaryReader()
{
    if (m_buffer && m_at != m_begin)
        m_buffer->seek(m_buffer->pos() + (m_at - m_begin));
}

void BinaryReader::resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const
{
    location.offset = position == noPosition ? -1 : position + m_offset;
}

bool BinaryReader::pastEnd()
{
    m_at = m_end;
    setStatus(QDataStream::ReadPastEnd);
    return false;
}

// Without a stream, nobody needs the status: the exception that follows says it all.
void BinaryReader::setStatus(QDataStream::Status status)
{
    if (m_stream)
        m_stream->setStatus(status);
}

bool BinaryReader::take(bool &value)
{
    quint8 byte = 0;
    if (!takeByte(byte))
        return false;
    value = byte != 0;
    return true;
}

// Reads the type that the stream's precision selects, like the stream itself.
template <class T>
bool BinaryReader::takeFloat(T &value)
{
    if (!m_isDirect)
        return takeByStream(value);
    const bool isDouble = std::is_same_v<T, double> ? !m_form.halvesFloats : m_form.doublesFloats;
    quint64 bits = 0;
    quint32 fewerBits = 0;
    if (isDouble ? !takeWord(bits) : !takeWord(fewerBits))
        return false;
    value = isDouble ? T(bitsOf<double>(bits)) : T(bitsOf<float>(fewerBits));
    return true;
}

bool BinaryReader::take(float &value)
{
    return takeFloat(value);
}

bool BinaryReader::take(double &value)
{
    return takeFloat(value);
}

bool BinaryReader::take(QString &text)
{
    if (!m_isDirect)
        return takeByStream(text);
    quint32 size = 0;
    if (!takeWord(size))
        return false;
    if (size == nullMark) {
        text = QString();
        return true;
    }
    if (size % 2 != 0) {
        setStatus(QDataStream::ReadCorruptData);
        return false;
    }
    if (m_end - m_at < qint64(size))
        return pastEnd();
    if (size == 0) {
        text = emptyText;
        return true;
    }
    const int length = int(REPORTGENERATOR::lengthOfText(REPORTGENERATOR::Size(size / 2)));
    QString read(length, Qt::Uninitialized);
    copyText(m_at, length, reinterpret_cast<char *>(read.data()), m_form.isSwapped);
    text = std::move(read);
    m_at += size;
    return true;
}

void BinaryReader::wrongLength(const DataObject &owner) const
{
    try {
        Errors::wrongLength(owner);
    } catch (ReportException &exception) {
        locate(exception);
        throw;
    }
}

BinaryReader::Bytes BinaryReader::readBytesByStream(const DataObject &owner)
{
    QByteArray bytes;
    if (!takeByStream(bytes))
        wrongLength(owner);
    m_bytes = std::move(bytes);
    return {m_bytes.constData(), int(m_bytes.size())}; // as in a stream
}

QString BinaryReader::readText(const DataObject &owner)
{
    const Bytes bytes = readBytes(owner);
    return m_texts.text(bytes.data, bytes.size);
}

void BinaryReader::skip(const DataObject &owner, qint32 length, quint32 tag)
{
    if (!m_isDirect) {
        if (owner.skipCurrentElement(*m_stream, length, int(tag)) < length)
            wrongLength(owner);
        return;
    }
    if (m_end - m_at < length) {
        pastEnd();
        wrongLength(owner);
    }
    m_at += std::max(length, 0);
}

// Moves the buffer to the position of this reader. Returns false if the buffer ends before the payload.
bool BinaryReader::beginByStream(qint32 length)
{
    if (!m_buffer)
        return true;
    if (m_end - m_at < length)
        return pastEnd();
    m_buffer->seek(m_buffer->pos() + (m_at - m_begin));
    m_begin = m_at;
    return true;
}

// Continues after the payload, whatever the position of the buffer.
void BinaryReader::endByStream(qint32 length)
{
    if (!m_buffer)
        return;
    m_buffer->seek(m_begin - m_buffer->data().constData());
    m_at = m_begin + length;
}

qint64 BinaryReader::bytesLeft() const
{
    if (m_isDirect)
        return m_end - m_at;
    return m_stream->device() ? m_stream->device()->bytesAvailable() : 0;
}

int BinaryReader::itemsWithin(qint32 count) const
{
    return int(std::clamp(qint64(count), qint64(0), std::min(bytesLeft() / wordSize, mostReserved)));
}

} // namespace JobXml

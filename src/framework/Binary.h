// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include <QByteArray>
#include <QDataStream>
#include <QString>
#include <QtEndian>

class QBuffer;

namespace JobXml {

class DataObject;

constexpr quint32 nullMark = 0xFFFFFFFF; // in place of the length of what is null

/// How a stream wants its bytes.
struct ByteForm
{
    explicit ByteForm(const QDataStream &stream);

    bool isSwapped; ///< the byte order is not that of the processor
    bool halvesFloats; ///< numbers with floating point are written as `float`
    bool doublesFloats; ///< as `double`
    int version;
};

/// Composes what is meant for a stream in memory, byte for byte as the stream itself would write it, and hands it over
/// in one piece: a record's length stands in front of what it counts, and going by the device word for word is most of
/// what writing costs.
class BinaryWriter
{
public:
    explicit BinaryWriter(const QDataStream &target);
    BinaryWriter(const BinaryWriter &) = delete;
    BinaryWriter &operator=(const BinaryWriter &) = delete;

    void put(quint8 value) { *room(1) = char(value); }
    void put(qint8 value) { put(quint8(value)); }
    void put(bool value) { put(quint8(value)); }
    void put(quint32 value) { store(room(4), value); }
    void put(qint32 value) { put(quint32(value)); }
    void put(quint64 value);
    void put(qint64 value) { put(quint64(value)); }
    void put(float value);
    void put(double value);
    /// UTF-16, as a stream writes a QString.
    void put(const QString &text);
    /// As a stream writes the QByteArray of the text's UTF-8.
    void putUtf8(const QString &text);
    void putUtf8(QLatin1String ascii);

    /// \name Tagged records
    /// Each length is known, and written, only behind its payload.
    /// @{
    using Start = qint64; ///< where a record's payload begins
    Start begin(quint32 tag)
    {
        put(tag);
        return beginUntagged();
    }
    Start beginUntagged()
    {
        room(4);
        return m_size;
    }
    void end(Start start) { store(m_bytes.data() + start - 4, quint32(m_size - start)); }
    /// Records that were written elsewhere, as they are.
    void putRecords(const QByteArray &records);
    /// @}

    /// Hands everything written to the stream.
    void flushTo(QDataStream &target) const;

private:
    char *room(qint64 size)
    {
        if (size > m_bytes.size() - m_size)
            grow(size);
        char *const begin = m_at + m_size;
        m_size += size;
        return begin;
    }
    void grow(qint64 size);

    template <class Word>
    void store(char *at, Word value) const
    {
        if (m_form.isSwapped)
            value = qbswap(value);
        std::memcpy(at, &value, sizeof(value));
    }
    void putNull();
    void putBytes(const char *bytes, int size);

    const ByteForm m_form;
    QByteArray m_bytes;
    char *m_at = nullptr;
    qint64 m_size = 0;
};

/// Reads what a stream holds: from the bytes of a QBuffer directly, which then is left where the stream would have left
/// it, and from every other device by the stream itself.
class BinaryReader
{
public:
    explicit BinaryReader(QDataStream &stream);
    BinaryReader(const BinaryReader &) = delete;
    BinaryReader &operator=(const BinaryReader &) = delete;
    ~BinaryReader();

    /// Whether no device is asked while reading, and so nobody else's code runs.
    bool isInMemory() const { return m_buffer != nullptr; }

    bool atEnd() const { return m_buffer ? m_at == m_end : m_stream.atEnd(); }

    /// \name For a snapshot, which ends where its stream does
    /// Takes a value; false, and the value stays, where the stream cannot serve it.
    /// @{
    bool take(quint8 &value) { return takeByte(value); }
    bool take(qint8 &value) { return takeByte(value); }
    bool take(bool &value);
    bool take(quint32 &value) { return takeWord(value); }
    bool take(qint32 &value) { return takeWord(value); }
    bool take(quint64 &value) { return takeWord(value); }
    bool take(qint64 &value) { return takeWord(value); }
    bool take(float &value);
    bool take(double &value);
    /// UTF-16, as a stream reads a QString.
    bool take(QString &text);
    /// @}

    /// \name For a tagged record of `owner`
    /// Where the stream ends too early, `owner` fails with its length error, before anything that was cut off gets as
    /// far as a setter.
    /// @{
    /// The tag and the length in front of a member's payload.
    struct Head
    {
        quint32 tag;
        qint32 length;
    };
    Head readHead(const DataObject &owner)
    {
        if (m_buffer && m_end - m_at >= 8) {
            const Head head{word<quint32>(m_at), word<qint32>(m_at + 4)};
            m_at += 8;
            return head;
        }
        const auto tag = read<quint32>(owner);
        return {tag, read<qint32>(owner)};
    }

    template <class T>
    T read(const DataObject &owner)
    {
        T value{};
        if (!take(value))
            wrongLength(owner);
        return value;
    }

    /// Bytes that hold until the next use of the reader.
    struct Bytes
    {
        const char *data;
        int size;
    };
    Bytes readBytes(const DataObject &owner)
    {
        if (!m_buffer)
            return readBytesByStream(owner);
        const auto size = read<quint32>(owner);
        if (size == nullMark)
            return {m_at, 0};
        if (m_end - m_at < qint64(size)) {
            pastEnd();
            wrongLength(owner);
        }
        const char *const data = m_at;
        m_at += size;
        return {data, int(size)};
    }

    /// A text as UTF-8 bytes; never null, whatever was written.
    QString readText(const DataObject &owner);

    /// An unknown record's payload.
    void skip(const DataObject &owner, qint32 length, quint32 tag);

    /// Lets `read` take the payload of a record from the stream itself; if it returns false, the payload is still to be
    /// read.
    template <class Read>
    bool readByStream(const DataObject &owner, qint32 length, Read &&read)
    {
        const bool fits = beginByStream(length);
        const bool isRead = fits && read(m_stream);
        if (!fits || m_stream.status() != QDataStream::Ok)
            wrongLength(owner);
        endByStream(isRead ? length : 0);
        return isRead;
    }
    /// @}

    /// For how many of `count` announced items there can be room in the bytes that are left. A count is never trusted:
    /// one flipped bit in it must not reserve gigabytes.
    int itemsWithin(qint32 count) const;

private:
    Bytes readBytesByStream(const DataObject &owner);
    bool beginByStream(qint32 length);
    void endByStream(qint32 length);
    [[noreturn]] static void wrongLength(const DataObject &owner);
    qint64 bytesLeft() const;
    /// Fails as a stream does, having read what there was.
    bool pastEnd();
    template <class T>
    bool takeByStream(T &value)
    {
        T read{};
        m_stream >> read;
        if (m_stream.status() != QDataStream::Ok)
            return false;
        value = std::move(read);
        return true;
    }
    template <class T>
    bool takeByte(T &value)
    {
        if (!m_buffer)
            return takeByStream(value);
        if (m_at == m_end)
            return pastEnd();
        value = T(*m_at++);
        return true;
    }
    template <class Word>
    bool takeWord(Word &value)
    {
        if (!m_buffer)
            return takeByStream(value);
        if (m_end - m_at < qint64(sizeof(Word)))
            return pastEnd();
        value = word<Word>(m_at);
        m_at += sizeof(Word);
        return true;
    }
    template <class Word>
    Word word(const char *at) const
    {
        Word value;
        std::memcpy(&value, at, sizeof(Word));
        return m_form.isSwapped ? qbswap(value) : value;
    }
    template <class T>
    bool takeFloat(T &value);

    QDataStream &m_stream;
    const ByteForm m_form;
    QBuffer *m_buffer; // null where the stream itself reads
    const char *m_begin = nullptr; // of what the buffer has left
    const char *m_at = nullptr;
    const char *m_end = nullptr;
    QByteArray m_bytes; // read by the stream, for readBytes()
};

} // namespace JobXml

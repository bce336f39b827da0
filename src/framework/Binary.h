// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <type_traits>

#include <QByteArray>
#include <QDataStream>
#include <QString>
#include <QtEndian>

#include "framework/Composition.h"
#include "framework/RecentTexts.h"
#include "framework/Source.h"
#include "text/LongestText.h"

class QBuffer;

namespace JobXml {

constexpr quint32 nullMark = 0xFFFFFFFF; // replaces the length of a null value

/// The settings of a stream that determine its bytes.
struct ByteForm
{
    explicit ByteForm(const QDataStream &stream);

    bool isSwapped; ///< the byte order differs from the processor's
    bool halvesFloats; ///< floating-point numbers are written as `float`
    bool doublesFloats; ///< as `double`
    int version;
};

/// Composes the bytes in memory, exactly as the stream itself would write them, and writes them to the stream at once.
/// A record's length precedes its payload, and a call of the device for each word would be most of the cost of writing.
class BinaryWriter : public WriteTarget
{
public:
    explicit BinaryWriter(const QDataStream &target);

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
    /// Each length is filled in after its payload, when it is known.
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
    /// Appends records that were written elsewhere, unchanged.
    void putRecords(const QByteArray &records);
    /// @}

    /// Discards everything.
    void restart() { m_size = 0; }

    /// Writes everything to the stream.
    void flushTo(QDataStream &target) const;
    /// Everything, once.
    QByteArray take();

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
    void putBytes(const char *bytes, Size size);

    const ByteForm m_form;
    QByteArray m_bytes;
    char *m_at = nullptr;
    qint64 m_size = 0;
};

/// Reads bytes in memory or from a stream. The bytes of a QBuffer are read directly, and the buffer's position ends up
/// where the stream would have left it; every other device is read by the stream itself.
class BinaryReader final : public Source
{
public:
    /// Reads bytes that a stream with the settings of `form` has written. They must not change while the reader exists,
    /// and isReadDirectly() of the form must be true. `offset` is that of the first one in the places of problems.
    BinaryReader(const QDataStream &form, const char *bytes, int size, qint64 offset = 0,
                 const ProblemVisitor *visitor = nullptr);
    /// `unchanged`: how many of the next bytes, at least, nobody changes while the reader exists. That counts if they
    /// are read directly.
    explicit BinaryReader(QDataStream &stream, qint64 unchanged = 0, const ProblemVisitor *visitor = nullptr);
    ~BinaryReader();

    /// Whether bytes of a stream with these settings can be read without it. Streams before version 6 write texts and
    /// large numbers in forms of their own.
    static bool isReadDirectly(const QDataStream &form);

    bool atEnd() const { return m_isDirect ? m_at == m_end : m_stream->atEnd(); }

    /// How many bytes in memory have been read.
    int bytesRead() const { return int(m_at - m_begin); }
    /// Where the record begins whose head was read last, if the bytes are read directly.
    Position position() const override { return m_isDirect ? m_head - m_first : noPosition; }
    /// Where the next bytes begin, in the same case.
    Position nextPosition() const { return m_isDirect ? m_at - m_first : noPosition; }

    /// \name For a snapshot, which ends with its stream
    /// Reads a value. Returns false and leaves the value unchanged if the stream ends before it.
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
    /// If the stream ends prematurely, the length error of `owner` is thrown before an incomplete value reaches a
    /// setter.
    /// @{
    /// The tag and the length that precede a member's payload.
    struct Head
    {
        quint32 tag;
        qint32 length;
    };
    Head readHead(const DataObject &owner)
    {
        m_head = m_at;
        if (m_isDirect && m_end - m_at >= 8) {
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

    /// Bytes that are valid until the next use of the reader.
    struct Bytes
    {
        const char *data;
        int size;
    };
    Bytes readBytes(const DataObject &owner)
    {
        if (!m_isDirect)
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

    /// A text as UTF-8 bytes; never null.
    QString readText(const DataObject &owner);

    /// Throws the length error of `owner`, with its place.
    [[noreturn]] void wrongLength(const DataObject &owner) const;

    /// An unknown record's payload.
    void skip(const DataObject &owner, qint32 length, quint32 tag);

    /// Lets `read` read the payload of a record from the stream itself, which there must be. If it returns false, the
    /// payload is still unread.
    template <class Read>
    bool readByStream(const DataObject &owner, qint32 length, Read &&read)
    {
        const bool fits = beginByStream(length);
        const bool isRead = fits && read(*m_stream);
        if (!fits || m_stream->status() != QDataStream::Ok)
            wrongLength(owner);
        endByStream(isRead ? length : 0);
        return isRead;
    }
    /// @}

    /// How many of `count` announced items the remaining bytes can contain. A count is never trusted: one flipped bit
    /// in it must not reserve gigabytes.
    int itemsWithin(qint32 count) const;

private:
    BinaryReader(QDataStream &stream, QBuffer *buffer, qint64 unchanged, const ProblemVisitor *visitor);
    void resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const override;
    Bytes readBytesByStream(const DataObject &owner);
    bool beginByStream(qint32 length);
    void endByStream(qint32 length);
    qint64 bytesLeft() const;
    /// Goes to the end. Sets the stream to its end and to ReadPastEnd, as the stream does itself.
    bool pastEnd();
    void setStatus(QDataStream::Status status);
    template <class T>
    bool takeByStream(T &value)
    {
        T read{};
        *m_stream >> read;
        if (m_stream->status() != QDataStream::Ok)
            return false;
        if constexpr (std::is_same_v<T, QString>)
            REPORTGENERATOR::lengthOfText(read.size());
        value = std::move(read);
        return true;
    }
    template <class T>
    bool takeByte(T &value)
    {
        if (!m_isDirect)
            return takeByStream(value);
        if (m_at == m_end)
            return pastEnd();
        value = T(*m_at++);
        return true;
    }
    template <class Word>
    bool takeWord(Word &value)
    {
        if (!m_isDirect)
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

    const qint64 m_offset = 0; // of the first byte, in the places of problems
    QDataStream *const m_stream; // null for bytes in memory
    const ByteForm m_form;
    QBuffer *const m_buffer; // whose bytes are read; null if the stream itself reads, and for bytes in memory
    const bool m_isDirect; // otherwise the stream itself reads
    const char *m_first = nullptr; // of the bytes that are read directly
    const char *m_begin = nullptr; // of those that the buffer has not been moved past
    const char *m_at = nullptr;
    const char *m_head = nullptr; // of the last record
    const char *m_end = nullptr;
    QByteArray m_bytes; // read by the stream, for readBytes()
    RecentTexts m_texts; // if the bytes are read directly and do not change
};

} // namespace JobXml

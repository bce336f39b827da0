// SPDX-License-Identifier: MIT
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QString>

namespace JobXml {

class DataObject;

/// Composes a tagged record in memory: each length is known, and written, only behind its payload. Uses the byte order,
/// version and precision of the stream that the record is meant for.
class RecordWriter
{
public:
    explicit RecordWriter(const QDataStream &target);
    RecordWriter(const RecordWriter &) = delete;
    RecordWriter &operator=(const RecordWriter &) = delete;

    /// Where a record's payload begins.
    using Start = qint64;

    Start begin(quint32 tag);
    Start beginUntagged();
    void end(Start start);

    /// For the payload of the record begun last.
    QDataStream &payload() { return m_stream; }

    /// Hands everything written to the stream.
    void flushTo(QDataStream &target) const;

private:
    QByteArray m_bytes;
    QBuffer m_buffer;
    QDataStream m_stream;
};

/// Reads what a tagged record of `owner` holds. Where the stream ends too early, `owner` fails with its length error,
/// before anything that was cut off gets as far as a setter.
class RecordReader
{
public:
    RecordReader(QDataStream &stream, const DataObject &owner) : m_stream(stream), m_owner(owner) { }

    template <class T>
    T read()
    {
        T value{};
        m_stream >> value;
        requireGood();
        return value;
    }

    /// A text as UTF-8 bytes; never null, whatever was written.
    QString readText();

    /// An unknown record's payload.
    void skip(qint32 length, quint32 tag);

    QDataStream &stream() { return m_stream; }

private:
    void requireGood() const;

    QDataStream &m_stream;
    const DataObject &m_owner;
};

/// For a snapshot, which ends where the stream does: stores the value only if it was there.
template <class T>
bool readIfThere(QDataStream &stream, T &value)
{
    T read{};
    stream >> read;
    if (stream.status() != QDataStream::Ok)
        return false;
    value = std::move(read);
    return true;
}

/// For how many of `count` announced items there can be room in the bytes that are left. A count is never trusted: one
/// flipped bit in it must not reserve gigabytes.
int itemsWithin(const QDataStream &stream, qint32 count);

} // namespace JobXml

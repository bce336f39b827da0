// SPDX-License-Identifier: MIT
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QString>

#include <reportbase/ReadLimits.h>

#include "text/Size.h"

/// The frame around the member records of a binary representation.
///
/// plain:       leading word (the class's)   length   member records
/// compressed:  leading word (CompressedMark)   length   the plain representation through qCompress()
///
/// Everything is buffered in memory. So an object can write to a device that cannot seek, a stream stays unchanged if
/// an object throws halfway, and a reader with wrong lengths cannot leave its record.
namespace REPORTGENERATOR::RepresentationFraming {

constexpr int HeadSize = 8; // leading word and length
constexpr int SizeWord = 4; // before compressed bytes: their expanded size, always big-endian

/// The most that zlib can reach (1,032 : 1), rounded up.
constexpr qint64 LargestRatio = 1100;

/// Why a representation is refused.
struct Refusal
{
    QString why;
};

/// What may follow a record.
enum class AfterRecord {
    Nothing,
    Anything,
};

/// How a stream writes numbers and texts.
struct Settings
{
    QDataStream::ByteOrder byteOrder = QDataStream::BigEndian;
    int version = QDataStream::Qt_5_15;
    QDataStream::FloatingPointPrecision precision = QDataStream::DoublePrecision;

    static Settings of(const QDataStream &stream);
    void applyTo(QDataStream &stream) const;
};

/// The settings of all streams that the base creates itself.
constexpr Settings OwnSettings;

/// A stream on bytes in memory. QDataStream's own constructors for that leak if memory runs out.
class MemoryStream
{
public:
    explicit MemoryStream(const Settings &settings); ///< writes
    MemoryStream(const QByteArray &bytes, const Settings &settings); ///< reads them
    MemoryStream(const MemoryStream &) = delete;
    MemoryStream &operator=(const MemoryStream &) = delete;

    QDataStream &stream() { return m_stream; }
    const QByteArray &bytes() const { return m_buffer.data(); }

private:
    QBuffer m_buffer;
    QDataStream m_stream;
};

/// The start of a record.
struct Head
{
    quint32 word;
    qint32 length;

    qint64 size() const { return HeadSize + qint64(length); } ///< of the whole record
};

/// Reads the HeadSize bytes at `bytes`.
Head readHead(const char *bytes, const Settings &settings);

/// Throws a Refusal if the record is neither one of the class `word` nor a compressed one, if its length is negative,
/// or if it exceeds the limits. `objectName` may be null.
void checkHead(const Head &head, quint32 word, const QString &objectName, const ReadLimits &limits);

/// The size that compressed bytes declare to expand to: their first SizeWord bytes.
qint64 declaredSize(const char *compressed);

/// Throws a Refusal if `compressedSize` bytes must not expand to `declared` bytes.
void checkExpansion(qint64 declared, qint64 compressedSize, const ReadLimits &limits);

/// Bytes that contain something up to their end: a payload, or the member records of a representation.
struct Part
{
    QByteArray container;
    Size begin = 0;

    const char *data() const { return container.constData() + begin; }
    Size size() const { return container.size() - begin; }
};

/// Reads one record, plain or compressed, from the stream and returns its member records. Throws a Refusal if it is not
/// the record of the class `word`, not complete, or beyond the limits.
Part takeMembers(QDataStream &stream, quint32 word, const QString &objectName, AfterRecord afterRecord,
                 const ReadLimits &limits);

/// The same for a whole representation in memory, without copying it.
Part membersOf(const QByteArray &representation, const Settings &settings, quint32 word, const QString &objectName,
               const ReadLimits &limits);

/// The compressed form of `plain`, empty if that is; `level` as for qCompress(). Throws a Refusal if no reader would
/// accept it.
QByteArray compressed(const QByteArray &plain, const Settings &settings, int level);

} // namespace REPORTGENERATOR::RepresentationFraming

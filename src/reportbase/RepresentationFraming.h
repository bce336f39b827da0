// SPDX-License-Identifier: MIT
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QString>

/// What stands around the member records of a binary representation.
///
/// plain:       leading word (the class's)   length   member records
/// compressed:  leading word (CompressedWord)   length   the plain representation through qCompress()
///
/// Everything is kept and handed on in memory. That lets an object write to a device that cannot seek, leaves a stream
/// untouched when an object throws halfway, and keeps a reader that was given wrong lengths inside its record.
namespace REPORTGENERATOR::RepresentationFraming {

/// Leads the compressed form; "RGZ1" in big-endian order, and no class's identifier.
constexpr quint32 CompressedWord = 0x52475A31;

/// The most that a compressed form may expand to: an absolute limit, and what zlib can reach at best (1,032 : 1),
/// rounded up.
constexpr qint64 LargestExpansion = qint64(1) << 30;
constexpr qint64 LargestRatio = 1100;

/// Why a representation is not taken.
struct Refusal
{
    QString why;
};

/// What may stand behind a record.
enum class Behind {
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

/// The settings of every stream that the base makes itself.
constexpr Settings OwnSettings;

/// A stream on bytes in memory. QDataStream's own constructors for that lose what they have made when memory runs out.
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

/// Takes one record, plain or compressed, from the stream and returns its member records. Throws a Refusal if it is not
/// the record of the class `word` or not complete.
QByteArray takeMembers(QDataStream &stream, quint32 word, const QString &objectName, Behind behind);

/// The compressed form of `plain`; `level` as for qCompress(). Throws a Refusal if no reader would take it.
QByteArray compressed(const QByteArray &plain, const Settings &settings, int level);

} // namespace REPORTGENERATOR::RepresentationFraming

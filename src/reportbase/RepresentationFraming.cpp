// SPDX-License-Identifier: MIT
#include "RepresentationFraming.h"

#include <algorithm>
#include <new>

#include <QtEndian>

#include <zlib.h>

#include "FailureTexts.h"

namespace REPORTGENERATOR::RepresentationFraming {

namespace {

constexpr int HeadSize = 8; // leading word and length
constexpr int SizeWord = 4; // in front of compressed bytes: what they expand to, whatever the byte order of the stream

struct Record
{
    quint32 word = 0;
    QByteArray payload;
};

/// Takes up to `count` bytes, in pieces: memory grows with what has arrived, not with what a length word promises.
QByteArray takeBytes(QIODevice &device, int count)
{
    constexpr int piece = 1 << 20;
    QByteArray bytes;
    while (bytes.size() < count) {
        const int had = bytes.size();
        bytes.resize(had + std::min(count - had, piece));
        const qint64 got = device.read(bytes.data() + had, bytes.size() - had);
        bytes.resize(had + int(std::max(got, qint64(0))));
        if (got <= 0)
            break;
    }
    return bytes;
}

/// Asked of devices that know what is left, before anything of the payload is read.
void checkLength(qint64 length, qint64 following, Behind behind)
{
    if (length < 0 || length > following || (behind == Behind::Nothing && length != following))
        throw Refusal{FailureTexts::wrongLength(length, following)};
}

template <typename IsKnown>
Record takeRecord(QDataStream &stream, Behind behind, IsKnown &&checkWord)
{
    QIODevice &device = *stream.device();
    const QByteArray head = takeBytes(device, HeadSize);
    if (head.size() < HeadSize) {
        stream.setStatus(QDataStream::ReadPastEnd);
        throw Refusal{FailureTexts::headCutOff(head.size())};
    }
    MemoryStream headStream(head, Settings::of(stream));
    Record record;
    qint32 length = 0;
    headStream.stream() >> record.word >> length;
    checkWord(record.word);

    if (!device.isSequential())
        checkLength(length, device.bytesAvailable(), behind);
    else if (length < 0)
        throw Refusal{FailureTexts::negativeLength(length)};

    record.payload = takeBytes(device, length);
    if (record.payload.size() < length) {
        stream.setStatus(QDataStream::ReadPastEnd);
        throw Refusal{FailureTexts::wrongLength(length, record.payload.size())};
    }
    if (behind == Behind::Nothing && !takeBytes(device, 1).isEmpty())
        throw Refusal{FailureTexts::moreThanTheLength(length)};
    return record;
}

QByteArray expand(const QByteArray &compressed)
{
    if (compressed.size() < SizeWord)
        throw Refusal{FailureTexts::damagedCompression()};
    const qint64 declared = qFromBigEndian<quint32>(compressed.constData());
    const qint64 limit = std::min(LargestExpansion, LargestRatio * compressed.size());
    if (declared > limit)
        throw Refusal{FailureTexts::expandsTooFar(declared, compressed.size(), limit)};

    // Not by qUncompress(), which takes the declared size for a hint and does not look behind the compressed bytes.
    QByteArray plain(int(declared), Qt::Uninitialized);
    uLongf plainSize = uLongf(declared);
    uLong consumed = uLong(compressed.size() - SizeWord);
    const int status = uncompress2(reinterpret_cast<Bytef *>(plain.data()), &plainSize,
                                   reinterpret_cast<const Bytef *>(compressed.constData()) + SizeWord, &consumed);
    if (status == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (status != Z_OK || plainSize != uLongf(declared) || consumed != uLong(compressed.size() - SizeWord))
        throw Refusal{FailureTexts::damagedCompression()};
    return plain;
}

// What qCompress() returns. It would print a message where memory runs out, and return nothing.
QByteArray shrink(const QByteArray &plain, int level)
{
    if (level < Z_NO_COMPRESSION || level > Z_BEST_COMPRESSION)
        level = Z_DEFAULT_COMPRESSION;
    uLongf size = compressBound(uLong(plain.size()));
    QByteArray compressed(SizeWord + int(size), Qt::Uninitialized);
    qToBigEndian(quint32(plain.size()), compressed.data());
    // With that much room there is one reason left to fail.
    if (compress2(reinterpret_cast<Bytef *>(compressed.data()) + SizeWord, &size,
                  reinterpret_cast<const Bytef *>(plain.constData()), uLong(plain.size()), level)
        != Z_OK)
        throw std::bad_alloc();
    compressed.resize(SizeWord + int(size));
    return compressed;
}

} // namespace

Settings Settings::of(const QDataStream &stream)
{
    return {stream.byteOrder(), stream.version(), stream.floatingPointPrecision()};
}

void Settings::applyTo(QDataStream &stream) const
{
    stream.setByteOrder(byteOrder);
    stream.setVersion(version);
    stream.setFloatingPointPrecision(precision);
}

MemoryStream::MemoryStream(const Settings &settings)
{
    m_buffer.open(QIODevice::WriteOnly);
    m_stream.setDevice(&m_buffer);
    settings.applyTo(m_stream);
}

MemoryStream::MemoryStream(const QByteArray &bytes, const Settings &settings)
{
    m_buffer.setData(bytes);
    m_buffer.open(QIODevice::ReadOnly);
    m_stream.setDevice(&m_buffer);
    settings.applyTo(m_stream);
}

QByteArray takeMembers(QDataStream &stream, quint32 word, const QString &objectName, Behind behind)
{
    if (!stream.device() || !stream.device()->isReadable() || stream.status() != QDataStream::Ok)
        throw Refusal{FailureTexts::unusableStream()};

    const auto isTheClass = [&](quint32 found) {
        if (found != word)
            throw Refusal{FailureTexts::wrongLeadingWord(found, word, objectName)};
    };
    const Record outer = takeRecord(stream, behind, [&](quint32 found) {
        if (found != CompressedWord)
            isTheClass(found);
    });
    if (outer.word != CompressedWord)
        return outer.payload;

    MemoryStream inner(expand(outer.payload), Settings::of(stream));
    return takeRecord(inner.stream(), Behind::Nothing, isTheClass).payload; // compressed once only
}

QByteArray compressed(const QByteArray &plain, const Settings &settings, int level)
{
    if (plain.size() > LargestExpansion)
        throw Refusal{FailureTexts::tooLargeToCompress(plain.size(), LargestExpansion)};
    const QByteArray payload = shrink(plain, level);
    MemoryStream head(settings);
    head.stream() << CompressedWord << qint32(payload.size());
    return head.bytes() + payload;
}

} // namespace REPORTGENERATOR::RepresentationFraming

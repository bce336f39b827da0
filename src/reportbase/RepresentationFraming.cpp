// SPDX-License-Identifier: MIT
#include "RepresentationFraming.h"

#include <algorithm>
#include <new>

#include <QtEndian>

#include <zlib.h>

#include "FailureTexts.h"
#include "LargeData.h"

namespace REPORTGENERATOR::RepresentationFraming {

namespace {

/// Reads up to `count` bytes, in pieces: memory grows with the bytes that have arrived, not with a declared length.
QByteArray takeBytes(QIODevice &device, int count)
{
    constexpr int piece = 1 << 20;
    QByteArray bytes;
    while (bytes.size() < count) {
        const Size had = bytes.size();
        bytes.resize(had + std::min<Size>(count - had, piece));
        const qint64 got = device.read(bytes.data() + had, bytes.size() - had);
        bytes.resize(had + Size(std::max(got, qint64(0))));
        if (got <= 0)
            break;
    }
    return bytes;
}

QByteArray takePayload(QIODevice &device, int length)
{
    try {
        return takeBytes(device, length);
    } catch (const std::bad_alloc &) {
        rethrowUnlessLarge(length);
        throw Refusal{FailureTexts::outOfMemory(length, LongestText)};
    }
}

/// For devices that know how many bytes are left, before the payload is read.
void checkFollowing(qint64 length, qint64 following, AfterRecord afterRecord)
{
    if (length < 0 || length > following || (afterRecord == AfterRecord::Nothing && length != following))
        throw Refusal{FailureTexts::wrongLength(length, following)};
}

void writeHead(const Head &head, const Settings &settings, char *bytes)
{
    const bool isLittleEndian = settings.byteOrder == QDataStream::LittleEndian;
    qToUnaligned(isLittleEndian ? qToLittleEndian(head.word) : qToBigEndian(head.word), bytes);
    qToUnaligned(isLittleEndian ? qToLittleEndian(head.length) : qToBigEndian(head.length), bytes + 4);
}

void checkWord(quint32 found, quint32 word, const QString &objectName)
{
    if (found != word)
        throw Refusal{FailureTexts::wrongLeadingWord(found, word, objectName)};
}

void checkForm(quint32 found, quint32 word, const QString &objectName, const ReadLimits &limits)
{
    if (found != CompressedMark)
        checkWord(found, word, objectName);
    else if (!limits.acceptCompressed())
        throw Refusal{FailureTexts::compressedNotAccepted()};
}

void checkLength(const Head &head, const ReadLimits &limits)
{
    if (head.length < 0)
        throw Refusal{FailureTexts::negativeLength(head.length)};
    const qint64 largest = std::min(limits.largestSize(), qint64(ReadLimits::LargestPossible));
    if (head.size() > largest)
        throw Refusal{FailureTexts::tooLarge(head.size(), largest)};
}

/// A record: its leading word and its payload.
struct Record
{
    quint32 word = 0;
    QByteArray payload;
};

template <typename CheckWord>
Record takeRecord(QDataStream &stream, AfterRecord afterRecord, const ReadLimits &limits, CheckWord &&checkWord)
{
    QIODevice &device = *stream.device();
    const QByteArray start = takeBytes(device, HeadSize);
    if (start.size() < HeadSize) {
        stream.setStatus(QDataStream::ReadPastEnd);
        throw Refusal{FailureTexts::headCutOff(start.size())};
    }
    const Head head = readHead(start.constData(), Settings::of(stream));
    checkWord(head.word);
    if (!device.isSequential())
        checkFollowing(head.length, device.bytesAvailable(), afterRecord);
    checkLength(head, limits);

    Record record{head.word, takePayload(device, head.length)};
    if (record.payload.size() < head.length) {
        stream.setStatus(QDataStream::ReadPastEnd);
        throw Refusal{FailureTexts::wrongLength(head.length, record.payload.size())};
    }
    if (afterRecord == AfterRecord::Nothing && !takeBytes(device, 1).isEmpty())
        throw Refusal{FailureTexts::moreThanTheLength(head.length)};
    return record;
}

/// Checks a record that is in memory as a whole, and returns its leading word.
template <typename CheckWord>
quint32 checkRecord(const QByteArray &record, const Settings &settings, const ReadLimits &limits, CheckWord &&checkWord)
{
    if (record.size() < HeadSize)
        throw Refusal{FailureTexts::headCutOff(record.size())};
    const Head head = readHead(record.constData(), settings);
    checkWord(head.word);
    checkFollowing(head.length, record.size() - HeadSize, AfterRecord::Nothing);
    checkLength(head, limits);
    return head.word;
}

QByteArray expand(const Part &compressed, const ReadLimits &limits)
{
    if (compressed.size() < SizeWord)
        throw Refusal{FailureTexts::damagedCompression()};
    const qint64 declared = declaredSize(compressed.data());
    checkExpansion(declared, compressed.size(), limits);

    // Not with qUncompress(), which treats the declared size as a hint and ignores data after the compressed bytes.
    QByteArray plain(Size(declared), Qt::Uninitialized);
    uLongf plainSize = uLongf(declared);
    uLong consumed = uLong(compressed.size() - SizeWord);
    const int status = uncompress2(reinterpret_cast<Bytef *>(plain.data()), &plainSize,
                                   reinterpret_cast<const Bytef *>(compressed.data()) + SizeWord, &consumed);
    if (status == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (status != Z_OK || plainSize != uLongf(declared) || consumed != uLong(compressed.size() - SizeWord))
        throw Refusal{FailureTexts::damagedCompression()};
    return plain;
}

/// The member records of a compressed record with this payload.
Part membersOfCompressed(const Part &payload, const Settings &settings, quint32 word, const QString &objectName,
                         const ReadLimits &limits)
{
    const QByteArray plain = expand(payload, limits);
    checkRecord(plain, settings, ReadLimits(),
                [&](quint32 found) { checkWord(found, word, objectName); }); // compressed only once
    return {plain, HeadSize};
}

// The payload is the result of qCompress(), which would print a message and return nothing if memory runs out.
QByteArray shrink(const QByteArray &plain, const Settings &settings, int level)
{
    constexpr int before = HeadSize + SizeWord;
    if (level < Z_NO_COMPRESSION || level > Z_BEST_COMPRESSION)
        level = Z_DEFAULT_COMPRESSION;
    uLongf size = compressBound(uLong(plain.size()));
    QByteArray compressed(before + Size(size), Qt::Uninitialized);
    // With a buffer of this size, it can only fail for one reason.
    if (compress2(reinterpret_cast<Bytef *>(compressed.data()) + before, &size,
                  reinterpret_cast<const Bytef *>(plain.constData()), uLong(plain.size()), level)
        != Z_OK)
        throw std::bad_alloc();
    compressed.resize(before + Size(size));
    writeHead({CompressedMark, SizeWord + qint32(size)}, settings, compressed.data());
    qToBigEndian(quint32(plain.size()), compressed.data() + HeadSize);
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
    if (stream.floatingPointPrecision() != precision) // setting it allocates memory
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

Head readHead(const char *bytes, const Settings &settings)
{
    if (settings.byteOrder == QDataStream::LittleEndian)
        return {qFromLittleEndian<quint32>(bytes), qFromLittleEndian<qint32>(bytes + 4)};
    return {qFromBigEndian<quint32>(bytes), qFromBigEndian<qint32>(bytes + 4)};
}

void checkHead(const Head &head, quint32 word, const QString &objectName, const ReadLimits &limits)
{
    checkForm(head.word, word, objectName, limits);
    checkLength(head, limits);
}

qint64 declaredSize(const char *compressed)
{
    return qFromBigEndian<quint32>(compressed);
}

void checkExpansion(qint64 declared, qint64 compressedSize, const ReadLimits &limits)
{
    const qint64 limit =
        std::min({limits.largestExpandedSize(), qint64(ReadLimits::LargestPossible), LargestRatio * compressedSize});
    if (declared > limit)
        throw Refusal{FailureTexts::expandsTooFar(declared, compressedSize, limit)};
}

Part takeMembers(QDataStream &stream, quint32 word, const QString &objectName, AfterRecord afterRecord,
                 const ReadLimits &limits)
{
    if (!stream.device() || !stream.device()->isReadable() || stream.status() != QDataStream::Ok)
        throw Refusal{FailureTexts::unusableStream()};

    const Record outer =
        takeRecord(stream, afterRecord, limits, [&](quint32 found) { checkForm(found, word, objectName, limits); });
    const Part payload{outer.payload};
    return outer.word == CompressedMark ? membersOfCompressed(payload, Settings::of(stream), word, objectName, limits)
                                        : payload;
}

Part membersOf(const QByteArray &representation, const Settings &settings, quint32 word, const QString &objectName,
               const ReadLimits &limits)
{
    const quint32 leadingWord = checkRecord(representation, settings, limits,
                                            [&](quint32 found) { checkForm(found, word, objectName, limits); });
    const Part payload{representation, HeadSize};
    return leadingWord == CompressedMark ? membersOfCompressed(payload, settings, word, objectName, limits) : payload;
}

QByteArray compressed(const QByteArray &plain, const Settings &settings, int level)
{
    if (plain.isEmpty())
        return plain;
    constexpr qint64 largest = ReadLimits::UsualExpandedSize; // what readers accept without other limits
    if (plain.size() > largest)
        throw Refusal{FailureTexts::tooLargeToCompress(plain.size(), largest)};
    return shrink(plain, settings, level);
}

} // namespace REPORTGENERATOR::RepresentationFraming

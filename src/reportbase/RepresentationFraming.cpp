// SPDX-License-Identifier: MIT
#include "RepresentationFraming.h"

#include <algorithm>

#include <QtEndian>

#include "FailureTexts.h"

namespace REPORTGENERATOR::RepresentationFraming {

namespace {

constexpr int HeadSize = 8; // leading word and length

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
    QDataStream headStream(head);
    Settings::of(stream).applyTo(headStream);
    Record record;
    qint32 length = 0;
    headStream >> record.word >> length;
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

quint32 adler32(const QByteArray &bytes)
{
    constexpr quint32 base = 65521;
    constexpr int run = 5552; // the longest before the second sum needs more than 32 bits
    quint32 low = 1;
    quint32 high = 0;
    for (int start = 0; start < bytes.size(); start += std::min(run, bytes.size() - start)) {
        for (int i = start, end = start + std::min(run, bytes.size() - start); i < end; ++i) {
            low += quint8(bytes[i]);
            high += low;
        }
        low %= base;
        high %= base;
    }
    return high << 16 | low;
}

QByteArray expand(const QByteArray &compressed)
{
    constexpr int wordSize = 4; // the declared size before, and the checksum at the end
    if (compressed.size() < 2 * wordSize)
        throw Refusal{FailureTexts::damagedCompression()};
    const qint64 declared = qFromBigEndian<quint32>(compressed.constData());
    const qint64 limit = std::min(LargestExpansion, LargestRatio * compressed.size());
    if (declared > limit)
        throw Refusal{FailureTexts::expandsTooFar(declared, compressed.size(), limit)};

    // qUncompress() takes the declared size for a hint and does not look behind the end of the compressed bytes.
    QByteArray plain = qUncompress(compressed);
    if (plain.size() != declared
        || adler32(plain) != qFromBigEndian<quint32>(compressed.constData() + compressed.size() - wordSize))
        throw Refusal{FailureTexts::damagedCompression()};
    return plain;
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

    QDataStream inner(expand(outer.payload));
    Settings::of(stream).applyTo(inner);
    return takeRecord(inner, Behind::Nothing, isTheClass).payload; // compressed once only
}

QByteArray compressed(const QByteArray &plain, const Settings &settings, int level)
{
    if (plain.size() > LargestExpansion)
        throw Refusal{FailureTexts::tooLargeToCompress(plain.size(), LargestExpansion)};
    const QByteArray payload = qCompress(plain, level);
    QByteArray head;
    QDataStream stream(&head, QIODevice::WriteOnly);
    settings.applyTo(stream);
    stream << CompressedWord << qint32(payload.size());
    return head + payload;
}

} // namespace REPORTGENERATOR::RepresentationFraming

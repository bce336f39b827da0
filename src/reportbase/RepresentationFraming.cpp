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

QByteArray expand(const QByteArray &compressed)
{
    constexpr int wordSize = 4; // the declared size, in front
    if (compressed.size() < wordSize)
        throw Refusal{FailureTexts::damagedCompression()};
    const qint64 declared = qFromBigEndian<quint32>(compressed.constData());
    const qint64 limit = std::min(LargestExpansion, LargestRatio * compressed.size());
    if (declared > limit)
        throw Refusal{FailureTexts::expandsTooFar(declared, compressed.size(), limit)};

    // Not by qUncompress(), which takes the declared size for a hint and does not look behind the compressed bytes.
    QByteArray plain(int(declared), Qt::Uninitialized);
    uLongf plainSize = uLongf(declared);
    uLong consumed = uLong(compressed.size() - wordSize);
    const int status = uncompress2(reinterpret_cast<Bytef *>(plain.data()), &plainSize,
                                   reinterpret_cast<const Bytef *>(compressed.constData()) + wordSize, &consumed);
    if (status == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (status != Z_OK || plainSize != uLongf(declared) || consumed != uLong(compressed.size() - wordSize))
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
    if (payload.isEmpty())
        throw std::bad_alloc(); // the only reason, of which Qt does not tell
    QByteArray head;
    QDataStream stream(&head, QIODevice::WriteOnly);
    settings.applyTo(stream);
    stream << CompressedWord << qint32(payload.size());
    return head + payload;
}

} // namespace REPORTGENERATOR::RepresentationFraming

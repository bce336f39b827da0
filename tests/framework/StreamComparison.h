// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <limits>

#include <QBuffer>
#include <QCryptographicHash>

#include <jobxml/StringItem.h>

#include "Encodings.h"
#include "ExceptionText.h"
#include "StreamForms.h"
#include "framework/Binary.h"

/// Compares the library's own writer and reader with QDataStream.
namespace Comparison {

using JobXml::BinaryReader;
using JobXml::BinaryWriter;

inline constexpr char lengthError[] =
    "BinaryParsingException: StringItem::SetBinary(...): Length error occurred during "
    "processing of binary representation";

inline const JobXml::StringItem owner; // of the records that are read

template <class Number>
QVector<Number> oddNumbers()
{
    using Limits = std::numeric_limits<Number>;
    QVector<Number> odd = {0, 1, Number(-1), Limits::lowest(), Limits::max(), Number(0x0102030405060708)};
    if constexpr (!Limits::is_integer)
        odd += {Number(-0.0),        Number(0.1),    Limits::min(),    Limits::denorm_min(), Limits::infinity(),
                -Limits::infinity(), Number(-1e-60), Number(16777217), Limits::quiet_NaN(),  -Limits::quiet_NaN()};
    return odd;
}

inline QString longText(int length)
{
    QString text(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i)
        text[i] = QChar(ushort(i * 7 + (i >> 16)));
    return text;
}

inline QVector<QString> oddTexts()
{
    return {QString(),
            QStringLiteral(""),
            QStringLiteral("a"),
            QStringLiteral("RX 1 <&> \"quoted\""),
            QStringLiteral("two\r\nlines\n"),
            QStringLiteral("\u00E9"),
            QStringLiteral("12 k\u03A9 \u6F22"),
            QStringLiteral("\U0001F600\U0010FFFF"),
            QString(QChar(0xD83D)),
            QString(QChar(0xDE00)) + QChar(0xD83D),
            QString(QChar(0)) + QLatin1Char('x') + QChar(0),
            QString(QChar(0xFEFF)) + QLatin1Char('x'),
            QString(QChar(0xFFFE)) + QChar(0xFFFF),
            QString(300, QLatin1Char('z')),
            longText(700)};
}

// --- Writing ---

template <class Write>
QByteArray writtenByStream(const StreamForm &form, Write &&write)
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    form.applyTo(stream);
    write(stream);
    return written;
}

template <class Write>
QByteArray composed(const StreamForm &form, Write &&write)
{
    return writtenByStream(form, [&](QDataStream &stream) {
        BinaryWriter writer(stream);
        write(writer);
        writer.flushTo(stream);
    });
}

/// The difference between the writer and a stream; null if there is none.
template <class ByWriter, class ByStream>
QString differenceInWriting(const StreamForm &form, ByWriter &&byWriter, ByStream &&byStream)
{
    const QByteArray actual = composed(form, byWriter);
    const QByteArray expected = writtenByStream(form, byStream);
    return actual == expected ? QString()
                              : form.text() + QStringLiteral(": ") + hex(actual.left(200)) + QStringLiteral(" and not ")
            + hex(expected.left(200));
}

template <class T>
QString differenceInWriting(const StreamForm &form, const T &value)
{
    return differenceInWriting(
        form, [&](BinaryWriter &writer) { writer.put(value); }, [&](QDataStream &stream) { stream << value; });
}

inline QString differenceInUtf8(const StreamForm &form, const QString &text)
{
    return differenceInWriting(
        form, [&](BinaryWriter &writer) { writer.putUtf8(text); },
        [&](QDataStream &stream) { stream << text.toUtf8(); });
}

// --- Reading ---

inline QString shown(const QByteArray &bytes)
{
    return bytes.size() <= 64 ? hex(bytes) : hex(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1));
}

template <class T>
QString shown(const T &value)
{
    if constexpr (std::is_same_v<T, QString>)
        return value.isNull() ? QStringLiteral("null")
                              : QStringLiteral("text ")
                + shown(QByteArray(reinterpret_cast<const char *>(value.constData()), 2 * value.size()));
    else
        return shown(QByteArray(reinterpret_cast<const char *>(&value), sizeof(value)));
}

/// Reads something by a stream and by the reader. Both functions return the result as a text.
struct Operation
{
    QString name;
    std::function<QString(QDataStream &stream)> byStream;
    std::function<QString(BinaryReader &reader)> byReader;
    std::function<void(QDataStream &stream)> writeSample; ///< writes something to read
};

template <class T>
Operation take(const char *name, const T &before, const T &sample)
{
    const auto result = [](bool served, const T &value) {
        return (served ? QStringLiteral("got ") : QStringLiteral("kept ")) + shown(value);
    };
    return {QLatin1String("take ") + QLatin1String(name),
            [=](QDataStream &stream) {
                T value{};
                stream >> value;
                const bool served = stream.status() == QDataStream::Ok;
                return result(served, served ? value : before);
            },
            [=](BinaryReader &reader) {
                T value = before;
                const bool served = reader.take(value);
                return result(served, value);
            },
            [=](QDataStream &stream) { stream << sample; }};
}

/// Reads something from a record: if that fails, the owner of the record throws.
template <class ByStream, class ByReader>
Operation ofRecord(const char *name, ByStream byStream, ByReader byReader,
                   std::function<void(QDataStream &)> writeSample)
{
    return {QString::fromLatin1(name),
            [=](QDataStream &stream) {
                bool served = true;
                const QString got = byStream(stream, served);
                return served ? got : QString::fromLatin1(lengthError);
            },
            [=](BinaryReader &reader) {
                QString got;
                const QString thrown = thrownBy([&] { got = byReader(reader); });
                return thrown.isNull() ? got : thrown;
            },
            std::move(writeSample)};
}

template <class T>
T readByStream(QDataStream &stream, bool &served)
{
    T value{};
    stream >> value;
    served = stream.status() == QDataStream::Ok;
    return value;
}

template <class T>
Operation read(const char *name, const T &sample)
{
    return ofRecord(
        name, [](QDataStream &stream, bool &served) { return shown(readByStream<T>(stream, served)); },
        [](BinaryReader &reader) { return shown(reader.read<T>(owner)); },
        [=](QDataStream &stream) { stream << sample; });
}

/// Compares only the bytes: a stream skips them even after an error.
inline Operation skip(qint32 length)
{
    return ofRecord(
        "skip",
        [=](QDataStream &stream, bool &served) {
            served = length <= 0 || stream.skipRawData(length) == length;
            return QString::number(length);
        },
        [=](BinaryReader &reader) {
            reader.skip(owner, length, 0x12345678);
            return QString::number(length);
        },
        [](QDataStream &stream) { stream << qint64(0x0102030405060708); });
}

inline Operation readHead()
{
    return ofRecord(
        "readHead",
        [](QDataStream &stream, bool &served) {
            const auto tag = readByStream<quint32>(stream, served);
            return shown(tag) + shown(served ? readByStream<qint32>(stream, served) : 0);
        },
        [](BinaryReader &reader) {
            const BinaryReader::Head head = reader.readHead(owner);
            return shown(head.tag) + shown(head.length);
        },
        [](QDataStream &stream) { stream << quint32(0x2B262DC9) << qint32(-2); });
}

inline Operation readBytes()
{
    return ofRecord(
        "readBytes", [](QDataStream &stream, bool &served) { return shown(readByStream<QByteArray>(stream, served)); },
        [](BinaryReader &reader) {
            const BinaryReader::Bytes read = reader.readBytes(owner);
            return shown(QByteArray(read.data, read.size));
        },
        [](QDataStream &stream) { stream << QByteArray("1\0.50", 5); });
}

/// With the size, because a text may contain a NUL.
inline Operation readText(const QByteArray &utf8)
{
    return ofRecord(
        "readText",
        [](QDataStream &stream, bool &served) {
            const auto bytesRead = readByStream<QByteArray>(stream, served);
            return shown(bytesRead.isEmpty() ? QStringLiteral("")
                                             : QString::fromUtf8(bytesRead.constData(), bytesRead.size()));
        },
        [](BinaryReader &reader) { return shown(reader.readText(owner)); },
        [=](QDataStream &stream) { stream << utf8; });
}

inline QVector<Operation> everyOperation()
{
    return {take<quint8>("quint8", 77, 0xFE),
            take<qint8>("qint8", 77, -2),
            take("bool", true, false),
            take("bool", false, true),
            take<quint32>("quint32", 77, 0x81020304),
            take<qint32>("qint32", 77, -0x01020304),
            take<quint64>("quint64", 77, 0x8102030405060708),
            take<qint64>("qint64", 77, -0x0102030405060708),
            take("float", 7.75F, -0.1F),
            take("double", 7.75, -0.1),
            take("QString", QStringLiteral("before"), QStringLiteral("12 \u03A9")),
            read("read bool", true),
            read("read qint64", qint64(-0x0102030405060708)),
            read("read QString", QStringLiteral("1.1")),
            readHead(),
            readBytes(),
            readText("x12 k\xCE\xA9"),
            readText("all of this is ASCII"),
            skip(7),
            skip(0),
            skip(-3)};
}

// Also uses the stream once more, which shows the actual position of the device.
inline QString afterwards(QDataStream &stream)
{
    QString text = QStringLiteral(", status %1").arg(stream.status());
    if (const QIODevice *const device = stream.device())
        text += QStringLiteral(", position %1").arg(device->pos());
    text += QStringLiteral(", at end: %1").arg(stream.atEnd());
    stream.resetStatus();
    quint8 next = 0x5A;
    stream >> next;
    return text + QStringLiteral(", then %1, status %2").arg(next).arg(stream.status());
}

using Prepare = std::function<void(QDataStream &stream, QBuffer &buffer)>;

constexpr int leading = 5; // the bytes in a buffer before the content

/// Uses a stream of a buffer in which a few other bytes precede the content; the stream starts at the content.
template <class Use>
QString useBuffer(const StreamForm &form, const QByteArray &content, const Prepare &prepare, Use &&use)
{
    QBuffer buffer;
    buffer.setData(QByteArray(leading, 'L') + content);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(leading);
    QDataStream stream(&buffer);
    form.applyTo(stream);
    if (prepare)
        prepare(stream, buffer);
    const QString used = use(stream);
    return used + afterwards(stream);
}

/// The same for a device that is constructed from its content.
template <class Device, class... More, class Use>
QString useDevice(const StreamForm &form, const QByteArray &content, Use &&use, More... more)
{
    Device device(content, more...);
    QDataStream stream(&device);
    form.applyTo(stream);
    const QString used = use(stream);
    return used + afterwards(stream);
}

inline QString byStream(const QVector<Operation> &operations, QDataStream &stream)
{
    QStringList results;
    for (const Operation &operation : operations) {
        if (stream.status() == QDataStream::Ok || results.isEmpty())
            results += operation.byStream(stream);
    }
    return results.join(QLatin1Char('|'));
}

// Stops at the first error, like all callers of the reader.
inline QString byReader(const QVector<Operation> &operations, QDataStream &stream)
{
    QStringList results;
    BinaryReader reader(stream);
    for (const Operation &operation : operations) {
        if (stream.status() == QDataStream::Ok || results.isEmpty())
            results += operation.byReader(reader);
    }
    return results.join(QLatin1Char('|'));
}

/// The difference between the reader and a stream after the same operations on the same content; null if there is none.
inline QString differenceInReading(const StreamForm &form, const QByteArray &content,
                                   const QVector<Operation> &operations, const Prepare &prepare = {})
{
    const auto actual = useBuffer(form, content, prepare, [&](QDataStream &s) { return byReader(operations, s); });
    const auto expected = useBuffer(form, content, prepare, [&](QDataStream &s) { return byStream(operations, s); });
    return actual == expected ? QString()
                              : QStringLiteral("(%1) and not (%2): %3, %4, %5")
                                    .arg(actual, expected, operations.first().name, form.text(), hex(content.left(50)));
}

/// Content for the operation to read.
inline QByteArray sampleFor(const Operation &operation, const StreamForm &form)
{
    return writtenByStream(form, operation.writeSample);
}

} // namespace Comparison

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QString>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

/// One line to write or read an object in each encoding. Bytes are compared as spaced upper-case hex, so that a failure
/// can be read.

inline QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

/// The bytes of a hex text; spaces and line breaks are for the reader.
inline QByteArray bytes(const char *hexText)
{
    return QByteArray::fromHex(QByteArray(hexText));
}

/// The bytes of several hex texts, one after the other.
template <class... HexTexts>
QByteArray joined(const HexTexts *...hexTexts)
{
    return (QByteArray() + ... + bytes(hexTexts));
}

/// The hex text as hex() would write it.
inline QString hex(const char *hexText)
{
    return hex(bytes(hexText));
}

/// The settings of a stream; the stock ones by default.
using StreamSettings = void (*)(QDataStream &stream);

inline void stockSettings(QDataStream &) { }

inline void littleEndian(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::LittleEndian);
}

inline void singlePrecision(QDataStream &stream)
{
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

/// The object's element alone: no declaration, no indentation.
template <class Object>
QString xmlOf(const Object &object)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    object.GetXml(writer);
    return xml;
}

/// Reads the object from an element, at whose start a reader is, as a parent would.
template <class Object>
void readXml(Object &object, const QString &xml)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    object.ProcessXml(reader);
}

/// The object's record without leading word.
template <class Object>
QByteArray recordOf(const Object &object, StreamSettings settings = stockSettings)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    settings(stream);
    if (object.GetBinary(stream, 0, false) == record.isEmpty())
        qFatal("GetBinary() returns whether it has written a record");
    return record;
}

/// Reads the object from a record without leading word, the whole of it unless the length word is different.
template <class Object>
void readRecord(Object &object, const QByteArray &record, StreamSettings settings = stockSettings)
{
    QDataStream stream(record);
    settings(stream);
    qint32 length = 0;
    stream >> length;
    object.SetBinary(stream, length);
}

template <class Object>
QByteArray snapshotOf(const Object &object, StreamSettings settings = stockSettings)
{
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    settings(stream);
    object.GetVersionSpecificBinaryWithoutValidation(stream);
    return snapshot;
}

/// Reads the object from a snapshot; returns how many bytes were left.
template <class Object>
qint64 readSnapshot(Object &object, const QByteArray &snapshot, StreamSettings settings = stockSettings)
{
    QDataStream stream(snapshot);
    settings(stream);
    object.SetVersionSpecificBinaryWithoutValidation(stream);
    return stream.device()->bytesAvailable();
}

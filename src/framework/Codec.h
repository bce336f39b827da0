// SPDX-License-Identifier: MIT
#pragma once

#include <QVariant>

#include <jobxml/DataObject.h>

#include "framework/Errors.h"
#include "framework/Records.h"

namespace JobXml {

/// How a value of type T travels, once per type:
///  - `text` and `fromText`: in XML. Text that is not a number is 0, on purpose: readers of documents never complained.
///  - `writePayload` and `readPayload`: in a tagged record.
///  - `writeSnapshot` and `readSnapshot`: in a snapshot.
///  - `isValid`: whether a member may hold the value when it is checked, and take it while validating; `refuse` throws
///    for one that it may not take.
template <class T>
struct Codec;

/// What holds for every type unless its codec says otherwise.
template <class T>
struct CodecDefaults
{
    static bool isValid(const T &) { return true; }
    static void refuse(const DataObject &, QLatin1String) { }
    static bool isPresent(const T &, bool set) { return set; }
    static QVariant variant(const T &value) { return QVariant::fromValue(value); }
};

template <>
struct Codec<QString> : CodecDefaults<QString>
{
    static bool isValid(const QString &value) { return !value.isNull(); }
    [[noreturn]] static void refuse(const DataObject &object, QLatin1String member)
    {
        Errors::nullGiven(object, member);
    }
    static bool isPresent(const QString &value, bool) { return !value.isNull(); }

    static QString text(const QString &value) { return value; }
    static QString fromText(const DataObject &, QLatin1String, const QString &text)
    {
        return text.isNull() ? QStringLiteral("") : text; // what a document mentions is there, if empty
    }
    static void writePayload(QDataStream &stream, const QString &value) { stream << value.toUtf8(); }
    static QString readPayload(RecordReader &reader) { return reader.readText(); }
    static void writeSnapshot(QDataStream &stream, const QString &value) { stream << value; }
    static bool readSnapshot(QDataStream &stream, QString &value) { return readIfThere(stream, value); }
};

template <>
struct Codec<bool> : CodecDefaults<bool>
{
    static QString text(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    static bool fromText(const DataObject &object, QLatin1String member, const QString &text)
    {
        const QString lower = text.toLower();
        if (lower.isEmpty() && object.GetValidate())
            Errors::emptyBoolean(object, member);
        return !lower.isEmpty() && lower != QLatin1String("0") && lower != QLatin1String("false");
    }
    static void writePayload(QDataStream &stream, bool value) { stream << value; }
    static bool readPayload(RecordReader &reader) { return reader.read<bool>(); }
    static void writeSnapshot(QDataStream &stream, bool value) { stream << value; }
    static bool readSnapshot(QDataStream &stream, bool &value) { return readIfThere(stream, value); }
};

/// Whole numbers travel as 64 bits whatever their own width: records and snapshots outlive the width of a type.
template <class T, class Wire>
struct IntegerCodec : CodecDefaults<T>
{
    static QString text(T value) { return QString::number(value); }
    static void writePayload(QDataStream &stream, T value) { stream << Wire(value); }
    static T readPayload(RecordReader &reader) { return T(reader.read<Wire>()); }
    static void writeSnapshot(QDataStream &stream, T value) { stream << Wire(value); }
    static bool readSnapshot(QDataStream &stream, T &value)
    {
        Wire wide{};
        if (!readIfThere(stream, wide))
            return false;
        value = T(wide);
        return true;
    }
};

template <>
struct Codec<int> : IntegerCodec<int, qint64>
{
    static int fromText(const DataObject &, QLatin1String, const QString &text) { return text.toInt(); }
};

template <>
struct Codec<qint64> : IntegerCodec<qint64, qint64>
{
    static qint64 fromText(const DataObject &, QLatin1String, const QString &text) { return text.toLongLong(); }
};

template <>
struct Codec<quint64> : IntegerCodec<quint64, quint64>
{
    // Read as a signed number, as documents always were: what only an unsigned one could hold reads as 0.
    static quint64 fromText(const DataObject &, QLatin1String, const QString &text)
    {
        return quint64(text.toLongLong());
    }
};

/// Floating-point numbers have two decimals in XML and in tagged records, which carry the same text; only the snapshot
/// keeps them exactly.
template <class T>
struct FloatingPointCodec : CodecDefaults<T>
{
    static QString text(T value) { return QString::number(double(value), 'f', 2); }
    static void writePayload(QDataStream &stream, T value) { stream << text(value).toUtf8(); }
    static T readPayload(RecordReader &reader) { return parse(reader.readText()); }
    static T fromText(const DataObject &, QLatin1String, const QString &text) { return parse(text); }
    static void writeSnapshot(QDataStream &stream, T value) { stream << value; }
    static bool readSnapshot(QDataStream &stream, T &value) { return readIfThere(stream, value); }

private:
    static T parse(const QString &text)
    {
        if constexpr (std::is_same_v<T, float>)
            return text.toFloat();
        else
            return text.toDouble();
    }
};

template <>
struct Codec<float> : FloatingPointCodec<float>
{
};

template <>
struct Codec<double> : FloatingPointCodec<double>
{
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <QVariant>

#include <jobxml/DataObject.h>

#include "framework/Binary.h"
#include "framework/Errors.h"
#include "framework/Member.h"
#include "framework/Numbers.h"
#include "framework/Text.h"
#include "framework/XmlInput.h"

namespace JobXml {

/// How a value of type T is encoded, once per type:
///  - `withText` and `fromText`: in XML. `withText` calls a function with the text, a QString or, for numbers and
///    booleans, a QLatin1String. Text that is not a number is read as 0, without an error, as the format requires.
///  - `writePayload` and `readPayload`: in a tagged record. An enumeration has `fromName` instead of `readPayload`.
///  - `writeSnapshot` and `readSnapshot`: in a snapshot.
///  - `kind`, `names`, `variant` and `fromVariant`: for visitors. `fromVariant` returns false for another type of
///    value.
///  - `isValid`: whether the value passes the check, and the setter while validating; `refuse` throws for other values.
///    `traits` has MayBeInvalid if there are such values.
template <class T>
struct Codec;

/// The defaults for every type.
template <class T>
struct CodecDefaults
{
    static constexpr Traits traits = NoTraits;

    static bool isValid(const T &) { return true; }
    static void refuse(const DataObject &, QLatin1String) { }
    static bool isPresent(const T &, bool set) { return set; }
    static QStringList names() { return {}; }
    static QVariant variant(const T &value)
    {
        // fromValue() looks the type up; there is no constructor for float, which would become double.
        if constexpr (std::is_same_v<T, float>)
            return QVariant::fromValue(value);
        else
            return QVariant(value);
    }
    static bool fromVariant(const QVariant &variant, T &value)
    {
        if (variant.userType() != qMetaTypeId<T>())
            return false;
        value = variant.value<T>();
        return true;
    }

    static void writeSnapshot(BinaryWriter &writer, const T &value) { writer.put(value); }
    static bool readSnapshot(BinaryReader &reader, T &value) { return reader.take(value); }
};

template <>
struct Codec<QString> : CodecDefaults<QString>
{
    static constexpr MemberKind kind = MemberKind::Text;
    static constexpr Traits traits = PresentByValue | MayBeInvalid;

    static bool isValid(const QString &value) { return !value.isNull(); }
    [[noreturn]] static void refuse(const DataObject &object, QLatin1String member)
    {
        Errors::nullText(object, member);
    }
    static bool isPresent(const QString &value, bool) { return !value.isNull(); }

    template <class Use>
    static void withText(const QString &value, Use &&use)
    {
        use(value);
    }
    static QString fromText(const DataObject &, QLatin1String, const XmlText &text) { return text.toString(); }
    static void writePayload(BinaryWriter &writer, const QString &value) { writer.putUtf8(value); }
    static QString readPayload(BinaryReader &reader, const DataObject &owner) { return reader.readText(owner); }
};

template <>
struct Codec<bool> : CodecDefaults<bool>
{
    static constexpr MemberKind kind = MemberKind::Boolean;

    template <class Use>
    static void withText(bool value, Use &&use)
    {
        use(value ? QLatin1String("true") : QLatin1String("false"));
    }
    static bool fromText(const DataObject &object, QLatin1String member, const XmlText &text)
    {
        if (text.is(QLatin1String("true"))) // as objects write it
            return true;
        if (text.isEmpty() && object.GetValidate())
            Errors::emptyBoolean(object, member);
        if (text.isEmpty() || text.is(QLatin1String("false")) || text.is(QLatin1String("0")))
            return false;
        const QString lower = text.toString().toLower();
        return !lower.isEmpty() && lower != QLatin1String("0") && lower != QLatin1String("false");
    }
    static void writePayload(BinaryWriter &writer, bool value) { writer.put(value); }
    static bool readPayload(BinaryReader &reader, const DataObject &owner) { return reader.read<bool>(owner); }
};

/// Integers of every width are encoded in 64 bits, so that records and snapshots do not depend on the width of a type.
template <class T, class Wire>
struct IntegerCodec : CodecDefaults<T>
{
    template <class Use>
    static void withText(T value, Use &&use)
    {
        use(Numbers::decimal(Wire(value)).latin1());
    }
    static void writePayload(BinaryWriter &writer, T value) { writer.put(Wire(value)); }
    static T readPayload(BinaryReader &reader, const DataObject &owner) { return T(reader.read<Wire>(owner)); }
    static void writeSnapshot(BinaryWriter &writer, T value) { writer.put(Wire(value)); }
    static bool readSnapshot(BinaryReader &reader, T &value)
    {
        Wire wide{};
        if (!reader.take(wide))
            return false;
        value = T(wide);
        return true;
    }
};

template <>
struct Codec<int> : IntegerCodec<int, qint64>
{
    static constexpr MemberKind kind = MemberKind::Int;

    static int fromText(const DataObject &, QLatin1String, const XmlText &text)
    {
        return text.use([](auto... characters) { return Numbers::toInt(characters...); });
    }
};

template <>
struct Codec<qint64> : IntegerCodec<qint64, qint64>
{
    static constexpr MemberKind kind = MemberKind::Int64;

    static qint64 fromText(const DataObject &, QLatin1String, const XmlText &text)
    {
        return text.use([](auto... characters) { return Numbers::toLongLong(characters...); });
    }
};

template <>
struct Codec<quint64> : IntegerCodec<quint64, quint64>
{
    static constexpr MemberKind kind = MemberKind::UInt64;

    // Read as a signed number, as in all earlier versions: a number above the signed range is read as 0.
    static quint64 fromText(const DataObject &object, QLatin1String member, const XmlText &text)
    {
        return quint64(Codec<qint64>::fromText(object, member, text));
    }
};

/// Floating-point numbers have two decimals in XML and in tagged records, which contain the same text; only snapshots
/// store the exact value.
template <class T>
struct FloatingPointCodec : CodecDefaults<T>
{
    template <class Use>
    static void withText(T value, Use &&use)
    {
        use(Numbers::twoDecimals(double(value)).latin1());
    }
    static void writePayload(BinaryWriter &writer, T value)
    {
        writer.putUtf8(Numbers::twoDecimals(double(value)).latin1());
    }
    static T readPayload(BinaryReader &reader, const DataObject &owner)
    {
        const BinaryReader::Bytes utf8 = reader.readBytes(owner);
        if constexpr (std::is_same_v<T, float>)
            return Numbers::toFloat(utf8.data, utf8.size);
        else
            return Numbers::toDouble(utf8.data, utf8.size);
    }
    static T fromText(const DataObject &, QLatin1String, const XmlText &text)
    {
        return text.use([](auto... characters) {
            if constexpr (std::is_same_v<T, float>)
                return Numbers::toFloat(characters...);
            else
                return Numbers::toDouble(characters...);
        });
    }
};

template <>
struct Codec<float> : FloatingPointCodec<float>
{
    static constexpr MemberKind kind = MemberKind::Float;
};

template <>
struct Codec<double> : FloatingPointCodec<double>
{
    static constexpr MemberKind kind = MemberKind::Double;
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#include "members/ValueText.h"

#include <charconv>
#include <cmath>
#include <iterator>

#include <QStringList>

#include "text/Printable.h"

namespace ValueText {

namespace {

template <class T>
QString shortest(T value)
{
    if (std::isnan(value))
        return QStringLiteral("nan"); // its sign has no meaning
    const T size = std::abs(value);
    const bool plain = value == T(0) || (size >= T(1e-6) && size < T(1e16));
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return QString::fromLatin1(text, int(end - text));
}

} // namespace

QString exactly(float value)
{
    return shortest(value);
}

QString exactly(double value)
{
    return shortest(value);
}

QString ofValue(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QString:
        return value.toString().isNull() ? QStringLiteral("(null)") : Printable::quoted(value.toString());
    case QMetaType::Float:
        return exactly(value.value<float>());
    case QMetaType::Double:
        return exactly(value.toDouble());
    case QMetaType::QVariantList: {
        QStringList texts;
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries)
            texts.append(ofValue(entry));
        return QLatin1Char('[') + texts.join(QStringLiteral(", ")) + QLatin1Char(']');
    }
    default:
        return value.toString();
    }
}

QString ofMember(const JobXml::MemberView &member)
{
    const QVariant value = member.GetValue();
    if (member.IsSet())
        return ofValue(value);
    const bool isNothing = value.type() == QVariant::List
        ? value.toList().isEmpty()
        : value.type() == QVariant::String && value.toString().isNull();
    return isNothing ? notSet() : ofValue(value) + QLatin1Char(' ') + notSet();
}

QString notSet()
{
    return QStringLiteral("(not set)");
}

} // namespace ValueText

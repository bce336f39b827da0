// SPDX-License-Identifier: MIT
#include <QStringList>

#include <tunerdocuments/Value.h>

#include "text/ExactNumber.h"
#include "text/Printable.h"

namespace TunerDocuments {

namespace ValueText {

QString exactly(float value)
{
    return ExactNumber::text(value);
}

QString exactly(double value)
{
    return ExactNumber::text(value);
}

QString ofValue(const QVariant &value)
{
    switch (value.userType()) {
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
    const bool isNothing = value.userType() == QMetaType::QVariantList
        ? value.toList().isEmpty()
        : value.userType() == QMetaType::QString && value.toString().isNull();
    return isNothing ? notSet() : ofValue(value) + QLatin1Char(' ') + notSet();
}

QString notSet()
{
    return QStringLiteral("(not set)");
}

} // namespace ValueText

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include <charconv>
#include <cmath>
#include <limits>

#include <QRegularExpression>
#include <QStringList>

#include <tunerdocuments/Value.h>

#include "text/Printable.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {

namespace TypedValue {

Mismatch::Mismatch(const QString &text) : std::runtime_error(Printable::withoutNull(text)) { }

Mismatch::Mismatch(const Mismatch &) = default;

Mismatch::~Mismatch() = default;

QString Mismatch::text() const
{
    return QString::fromUtf8(what());
}

namespace {

QString quotedWord(const QString &text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

template <class T>
QVariant wholeNumber(const QString &text)
{
    static const QRegularExpression decimal(QStringLiteral(R"(^-?[0-9]+\z)"));
    if (!decimal.match(text).hasMatch())
        throw Mismatch(quotedWord(text) + QStringLiteral(" is not a whole number"));
    const QByteArray digits = text.toLatin1();
    T value = 0;
    const auto read = std::from_chars(digits.begin(), digits.end(), value);
    if (read.ec != std::errc() || read.ptr != digits.end())
        throw Mismatch(quotedWord(text)
                       + QStringLiteral(" is out of range; expected %1 to %2")
                             .arg(std::numeric_limits<T>::min())
                             .arg(std::numeric_limits<T>::max()));
    return QVariant::fromValue(value);
}

template <class T>
QVariant real(const QString &text)
{
    using Limits = std::numeric_limits<T>;
    const QString lower = text.toLower();
    if (lower == QLatin1String("nan"))
        return QVariant::fromValue(Limits::quiet_NaN());
    if (lower == QLatin1String("inf") || lower == QLatin1String("infinity"))
        return QVariant::fromValue(Limits::infinity());
    if (lower == QLatin1String("-inf") || lower == QLatin1String("-infinity"))
        return QVariant::fromValue(-Limits::infinity());
    static const QRegularExpression decimal(
        QStringLiteral(R"(^-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?\z)"));
    if (!decimal.match(text).hasMatch())
        throw Mismatch(quotedWord(text) + QStringLiteral(" is not a number"));
    const auto value = T(text.toDouble()); // too small becomes 0; too large becomes infinite
    if (std::isinf(value))
        throw Mismatch(quotedWord(text)
                       + QStringLiteral(" is out of range; expected %1 to %2")
                             .arg(ValueText::exactly(Limits::lowest()), ValueText::exactly(Limits::max())));
    return QVariant::fromValue(value);
}

QVariant boolean(const QString &text)
{
    const bool isTrue = text == QLatin1String("true") || text == QLatin1String("1");
    if (!isTrue && text != QLatin1String("false") && text != QLatin1String("0"))
        throw Mismatch(quotedWord(text) + QStringLiteral(" is neither true nor false"));
    return isTrue;
}

QString name(const QString &text, const MemberView &member)
{
    const QStringList names = member.GetNames();
    if (names.contains(text))
        return text;
    throw Mismatch(Suggestion::unknownWord(text, member.GetName(), names));
}

} // namespace

QVariant parse(const MemberView &member, const QString &text)
{
    switch (member.GetKind()) {
    case MemberKind::Text:
        return text.isNull() ? QStringLiteral("") : text; // an empty argument may have become null
    case MemberKind::Boolean:
        return boolean(text);
    case MemberKind::Int:
        return wholeNumber<int>(text);
    case MemberKind::Int64:
        return wholeNumber<qlonglong>(text);
    case MemberKind::UInt64:
        return wholeNumber<qulonglong>(text);
    case MemberKind::Float:
        return real<float>(text);
    case MemberKind::Double:
        return real<double>(text);
    case MemberKind::Enumeration:
    case MemberKind::Choice:
        return name(text, member);
    case MemberKind::EnumerationList: {
        static const QRegularExpression separator(QStringLiteral("[,\n]"));
        QVariantList names;
        const QStringList texts = text.isEmpty() ? QStringList() : text.split(separator);
        for (const QString &entry : texts)
            names.append(name(entry.trimmed(), member));
        return names;
    }
    case MemberKind::Object:
    case MemberKind::ObjectList:
    case MemberKind::Alternative:
        break;
    }
    throw Mismatch(QStringLiteral("holds objects and no value; add the name of a member to the path"));
}

QString print(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Float:
        return ValueText::exactly(value.value<float>());
    case QMetaType::Double:
        return ValueText::exactly(value.toDouble());
    case QMetaType::QVariantList: {
        QStringList texts;
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries) {
            const QString text = print(entry);
            texts.append(text.isNull() ? QStringLiteral("(null)") : text);
        }
        return texts.isEmpty() ? QStringLiteral("") : texts.join(QLatin1Char('\n'));
    }
    default:
        return value.toString();
    }
}

QString onOneLine(const QString &text)
{
    return Printable::onOneLine(QString(text).replace(QLatin1Char('\\'), QLatin1String("\\\\")));
}

} // namespace TypedValue

} // namespace TunerDocuments

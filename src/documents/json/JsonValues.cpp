// SPDX-License-Identifier: MIT
#include "documents/json/JsonValues.h"

#include <cmath>

#include "documents/json/JsonChoice.h"
#include "documents/json/JsonNumbers.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {
namespace JsonReading {

namespace {

QStringList specialNumbers()
{
    return {QStringLiteral("NaN"), QStringLiteral("Infinity"), QStringLiteral("-Infinity")};
}

QString meant(const QString &text)
{
    return QStringLiteral("; did you mean ") + text + QLatin1Char('?');
}

} // namespace

template <class T>
QVariant Values::wholeNumber(const Where &where, const Json &json, bool mayBeText)
{
    if (json.isWholeNumber()) {
        if (const std::optional<T> number = fitting<T>(json))
            return QVariant::fromValue(*number);
        m_problems.refuseOutOfRange<T>(where, json);
        return {};
    }
    // A number with so many digits that it is not whole any more is also in the text.
    const Digits<T> digits(json.isText()       ? json.text()
                               : json.isReal() ? m_problems.source(json).toLatin1()
                                               : QByteArray());
    if (digits.value && mayBeText)
        return QVariant::fromValue(*digits.value);
    if (digits.isWholeNumber && !digits.value)
        m_problems.refuseOutOfRange<T>(where, json);
    else
        m_problems.refuse(where, json, "is not a whole number", [&] {
            const std::optional<T> number = digits.value ? digits.value : wholePart<T>(json);
            return number ? meant(QString::number(*number)) : QString();
        });
    return {};
}

template <class T>
QVariant Values::real(const Where &where, const Json &json)
{
    if (json.isNumber()) {
        const T number = json.toNumber<T>();
        if (!std::isinf(number))
            return QVariant::fromValue(number);
        m_problems.refuseOutOfRange<T>(where, json);
        return {};
    }
    if (json.isText()) {
        if (const std::optional<T> number = specialNumber<T>(json.text()))
            return QVariant::fromValue(*number);
    }
    m_problems.refuse(where, json, "is not a number", [&] {
        if (!json.isText())
            return QString();
        bool isNumber = false;
        const bool isFinite = std::isfinite(json.text().toDouble(&isNumber));
        return isNumber && isFinite ? meant(JsonText::shortened(beginning(json.text())))
                                    : Suggestion::hint(beginning(json.text()), specialNumbers());
    });
    return {};
}

QVariant Values::boolean(const Where &where, const Json &json)
{
    if (json.isBoolean())
        return json.toBoolean();
    m_problems.refuse(where, json, "is neither true nor false", [&] {
        const bool isWord = json.isText() && (json.text() == "true" || json.text() == "false");
        return isWord ? meant(beginning(json.text())) : QString();
    });
    return {};
}

QVariant Values::text(const Where &where, const Json &json)
{
    if (json.isText() || json.isNull())
        return json.isText() ? JsonText::toString(json.text()) : QString();
    m_problems.refuse(where, json, "is not a string", [&] {
        const bool isPlain = json.isNumber() || json.isBoolean();
        return isPlain ? meant(QLatin1Char('"') + JsonText::shortened(m_problems.source(json)) + QLatin1Char('"'))
                       : QString();
    });
    return {};
}

void Values::refuseName(const Where &where, const Json &json, const QStringList &names)
{
    m_problems.report(where, json.textBegin(), [&] {
        const QString value = m_problems.plain(json);
        if (json.isText())
            return Description{Suggestion::unknownWordAmong(value, QStringLiteral("name"), names), value, names,
                               Suggestion::hint(value, names)};
        const QString what = json.isWholeNumber() ? QStringLiteral(" is out of range; expected ")
                                                  : QStringLiteral(" is not a name; expected ");
        return Description{m_problems.quoted(json) + what + Suggestion::listed(names), value, names};
    });
}

QVariant Values::valueFor(const MemberView &member, const Json &json, const Where &where)
{
    switch (member.GetKind()) {
    case MemberKind::Text:
        return text(where, json);
    case MemberKind::Boolean:
        return boolean(where, json);
    case MemberKind::Int:
        return wholeNumber<int>(where, json);
    case MemberKind::Int64:
        return wholeNumber<qlonglong>(where, json, true);
    case MemberKind::UInt64:
        return wholeNumber<qulonglong>(where, json, true);
    case MemberKind::Float:
        return real<float>(where, json);
    case MemberKind::Double:
        return real<double>(where, json);
    default:
        return {};
    }
}

QVariant Values::read(const MemberView &member, const Json &json, const Where &where)
{
    const QStringList names = member.GetNames();
    const auto nameIn = [&](const Json &entry) {
        QVariant value = nameOrNumber(entry);
        if (!value.isValid() || (entry.isText() && !names.contains(value.toString())))
            refuseName(where, entry, names);
        return value;
    };
    if (member.GetKind() == MemberKind::Enumeration || member.GetKind() == MemberKind::Choice)
        return nameIn(json);
    if (member.GetKind() != MemberKind::EnumerationList)
        return valueFor(member, json, where);
    if (!json.isList()) {
        m_problems.refuse(where, json, "is not an array");
        return {};
    }
    QVariantList values;
    for (const Json &entry : json.items())
        values.append(nameIn(entry));
    return values;
}

void Values::readName(MemberEditor &member, const Json &json, const Where &where)
{
    const QVariant value = nameOrNumber(json);
    if (!value.isValid() || !member.SetValue(value))
        refuseName(where, json, member.GetNames());
}

void Values::readNames(MemberEditor &member, const Json &json, const Where &where)
{
    if (!json.isList())
        return m_problems.refuse(where, json, "is not an array");
    QVariantList values;
    for (const Json &entry : json.items())
        values.append(nameOrNumber(entry));
    if (member.SetValue(values))
        return;
    const QStringList names = member.GetNames();
    for (int i = 0; i < values.size(); ++i) {
        if (!member.SetValue(QVariantList{values.at(i)}))
            refuseName(where, json.items()[std::size_t(i)], names);
    }
}

} // namespace JsonReading
} // namespace TunerDocuments

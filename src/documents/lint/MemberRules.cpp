// SPDX-License-Identifier: MIT
#include "documents/lint/ObjectRules.h"

#include <cmath>
#include <limits>

#include "documents/values/FindMember.h"
#include "text/Ascii.h"
#include "text/Printable.h"

using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments::ObjectRules {

bool isBandwidth(const Shape &shape)
{
    return shape.findNumber("MaxBandwidth") >= 0;
}

void bandwidthNotPositive(const LintedObject &object)
{
    const int index = object.shape.findNumber("MaxBandwidth");
    const double bandwidth = double(object.number(index));
    if (!object.isSet(index) || (bandwidth > 0 && std::isfinite(bandwidth)))
        return;
    object.warn(index, [&]() -> Description {
        return {QStringLiteral("bandwidth %1 is not a positive, finite number").arg(object.written(index))};
    });
}

bool isChoice(const Shape &shape)
{
    return shape.choice >= 0;
}

void unchosenData(const LintedObject &object)
{
    for (const int i : object.shape.alternatives) {
        const MemberView &member = object.member(i);
        if (!hasData(member) || member.IsChosen())
            continue;
        object.warn(i, [&]() -> Description {
            const MemberView choice = object.member(object.shape.choice);
            const QString chosen = choice.GetValue().toString();
            const QString name = member.GetName();
            if (chosen.isNull())
                return {QStringLiteral("%1 has data, but nothing is chosen").arg(name),
                        QStringLiteral("set %1 to '%2', or remove %2").arg(choice.GetName(), name)};
            return {QStringLiteral("%1 has data, but %2 is chosen").arg(name, chosen),
                    QStringLiteral("remove one of them")};
        });
    }
}

bool hasTexts(const Shape &shape)
{
    return shape.findKind(MemberKind::Text) >= 0;
}

namespace {

/// The first character that is not printable, and its index; an index of -1 if all are.
struct UnprintableCharacter
{
    explicit UnprintableCharacter(const QString &text)
    {
        if (REPORTGENERATOR::isPrintableAscii(text))
            return;
        for (int i = 0; i < text.size(); ++i) {
            const QChar unit = text.at(i);
            if (unit >= QLatin1Char(' ') && unit < QLatin1Char('\x7F'))
                continue;
            const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
            code = isPair ? QChar::surrogateToUcs4(unit, text.at(i + 1)) : unit.unicode();
            if (!Printable::isPrintable(code)) {
                index = i;
                return;
            }
            i += isPair ? 1 : 0;
        }
    }

    int index = -1;
    uint code = 0;
};

} // namespace

void unprintableText(const LintedObject &object)
{
    for (const int i : object.shape.texts) {
        const UnprintableCharacter character(object.text(i));
        if (character.index < 0)
            continue;
        object.warn(i, [&]() -> Description {
            constexpr int digits = 4;
            return {QStringLiteral("%1 contains U+%2 as character %3, which is not printable")
                        .arg(object.member(i).GetName(),
                             QStringLiteral("%1").arg(character.code, digits, 16, QLatin1Char('0')).toUpper())
                        .arg(character.index + 1)};
        });
    }
}

bool hasUnsignedNumbers(const Shape &shape)
{
    return shape.findKind(MemberKind::UInt64) >= 0;
}

void numberOutOfRange(const LintedObject &object)
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max(); // that readers of XML accept
    for (const int i : object.shape.numbers) {
        const bool isUnsigned = object.shape.members[std::size_t(i)].kind == MemberKind::UInt64;
        if (!isUnsigned || !object.hasNumber(i) || object.number(i) <= static_cast<long double>(largest))
            continue;
        object.warn(i, [&]() -> Description {
            return {QStringLiteral("%1 %2 is out of range for readers of XML, which take it for 0")
                        .arg(object.member(i).GetName(), object.written(i)),
                    QStringLiteral("use a number from 0 to %1").arg(largest)};
        });
    }
}

bool hasRoundedNumbers(const Shape &shape)
{
    return shape.findKind(MemberKind::Float) >= 0 || shape.findKind(MemberKind::Double) >= 0;
}

namespace {

constexpr int decimals = 2; // of XML and records

QString rounded(double number)
{
    return QString::number(number, 'f', decimals);
}

/// Whether the number differs after it was written and read again.
bool losesDecimals(double number, bool isFloat)
{
    if (!std::isfinite(number))
        return false;
    const auto isSame = [&](double other) { return isFloat ? float(other) == float(number) : other == number; };
    constexpr double hundredths = 100;
    if (isSame(std::nearbyint(number * hundredths) / hundredths))
        return false; // quick, for nearly all
    const QString text = rounded(number);
    return isFloat ? text.toFloat() != float(number) : text.toDouble() != number;
}

} // namespace

void lostDecimals(const LintedObject &object)
{
    for (const int i : object.shape.numbers) {
        const MemberKind kind = object.shape.members[std::size_t(i)].kind;
        if ((kind != MemberKind::Float && kind != MemberKind::Double) || !object.isSet(i))
            continue;
        const auto number = double(object.number(i));
        if (!losesDecimals(number, kind == MemberKind::Float))
            continue;
        object.warn(i, [&]() -> Description {
            return {QStringLiteral("%1 %2 has more than two decimals; XML and records hold %3")
                        .arg(object.member(i).GetName(), object.written(i), rounded(number)),
                    QStringLiteral("keep it in JSON, or round it")};
        });
    }
}

} // namespace TunerDocuments::ObjectRules

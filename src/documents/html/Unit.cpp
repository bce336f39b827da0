// SPDX-License-Identifier: MIT
#include "documents/html/Unit.h"

#include <algorithm>

#include <QHash>
#include <QRegularExpression>

#include "text/Printable.h"

using JobXml::MemberView;

namespace TunerDocuments {

namespace {

struct Prefix
{
    const char *sign;
    int exponent;
};

// The micro sign comes first: pages show it. Documents also have the Greek letter.
constexpr Prefix prefixes[] = {{"p", -12}, {"n", -9}, {"\u00b5", -6}, {"\u03bc", -6}, {"m", -3},
                               {"", 0},    {"k", 3},  {"M", 6},       {"G", 9},       {"T", 12}};

/// A unit, and the exponents of the prefixes that are usual with it: nobody writes kiloseconds.
struct Base
{
    const char *sign;
    int least;
    int most;
};

constexpr Base bases[] = {{"Hz", 0, 12},       {"s", -12, 0},    {"m", -9, 3},        {"V", -9, 6},     {"A", -12, 3},
                          {"W", -12, 9},       {"VA", 0, 9},     {"J", -9, 9},        {"F", -12, 0},    {"H", -9, 0},
                          {"\u03a9", -3, 9},   {"S", -9, 0},     {"T", -12, 0},       {"V/m", -9, 3},   {"A/m", -9, 3},
                          {"\u2126", -3, 9},   {"W/Hz", -12, 0}, {"Hz/s", 0, 12},     {"bit/s", 0, 12}, {"bps", 0, 12},
                          {"samples/s", 0, 9}, {"S/s", 0, 9},    {"symbols/s", 0, 9}, {"Bd", 0, 9}};

struct Prefixed
{
    const Base *base = nullptr; ///< null for a unit that takes no prefixes
    int exponent = 0;
};

Prefixed prefixedUnit(const QString &unit)
{
    static const QHash<QString, Prefixed> known = [] {
        QHash<QString, Prefixed> units;
        for (const Base &base : bases) {
            for (const Prefix &prefix : prefixes) {
                if (prefix.exponent >= base.least && prefix.exponent <= base.most)
                    units.insert(QString::fromUtf8(prefix.sign) + QString::fromUtf8(base.sign),
                                 {&base, prefix.exponent});
            }
        }
        return units;
    }();
    return known.value(unit);
}

QString signOf(int exponent)
{
    const auto *const found = std::find_if(std::begin(prefixes), std::end(prefixes),
                                           [&](const Prefix &prefix) { return prefix.exponent == exponent; });
    return QString::fromUtf8(found->sign);
}

/// The text of an alternative that is a unit; null for any other.
QString unitTextOf(const MemberView &alternative)
{
    if (alternative.GetSize() == 0)
        return QString();
    const Members value(alternative.GetChild());
    const MemberView *const id = value.find(isIdentifyingText);
    const MemberView *const text = value.find("value", isText);
    const bool isUnit = id && text && id->GetValue().toString() == QLatin1String("unit");
    return isUnit ? text->GetValue().toString() : QString();
}

bool isShortAndPrintable(const QString &text)
{
    constexpr int longest = 16;
    return text.size() <= longest && text == text.trimmed() && text == Printable::onOneLine(text);
}

/// The digits of a number with the point moved to the right by `places`, without zeros at the ends that mean nothing.
QString shifted(const QString &whole, const QString &fraction, int places)
{
    QString digits = whole + fraction;
    int point = int(whole.size()) + places;
    if (point < 1) {
        digits.prepend(QString(1 - point, QLatin1Char('0')));
        point = 1;
    }
    digits = digits.leftJustified(point, QLatin1Char('0'));
    QString left = digits.left(point);
    QString right = digits.mid(point);
    while (left.size() > 1 && left.startsWith(QLatin1Char('0')))
        left.remove(0, 1);
    while (right.endsWith(QLatin1Char('0')))
        right.chop(1);
    return right.isEmpty() ? left : left + QLatin1Char('.') + right;
}

int roundedDown(int exponent)
{
    constexpr int group = 3;
    return (exponent >= 0 ? exponent / group : -((group - 1 - exponent) / group)) * group;
}

} // namespace

bool Unit::isUnit(const MemberView &alternative)
{
    return !unitTextOf(alternative).isNull();
}

Unit Unit::of(const MemberView &list)
{
    QString text;
    int count = 0;
    for (int i = 0; i < list.GetSize(); ++i) {
        const Members item(list.GetChild(i));
        const MemberView *const chosen = item.find(isChosenAlternative);
        const QString unit = chosen ? unitTextOf(*chosen) : QString();
        count += unit.isNull() ? 0 : 1;
        text = unit.isNull() ? text : unit;
    }
    return count == 1 && isShortAndPrintable(text) ? Unit(text) : Unit();
}

QString Unit::withPrefix(const QString &number) const
{
    static const QRegularExpression plain(QStringLiteral(R"(^(-?)(\d+)(?:\.(\d+))?\z)"));
    const Prefixed unit = prefixedUnit(m_text);
    if (!unit.base)
        return QString();
    const auto match = plain.match(number);
    if (!match.hasMatch())
        return QString();
    const QString whole = match.captured(2);
    const QString fraction = match.captured(3);
    const QString digits = whole + fraction;
    int first = 0; // the first digit that is not 0
    while (first < digits.size() && digits.at(first) == QLatin1Char('0'))
        ++first;
    if (first == digits.size())
        return QString();
    const int exponent = int(whole.size()) - 1 - first; // of ten, in the unit of the document
    const int usual = qBound(unit.base->least, roundedDown(exponent + unit.exponent), unit.base->most);
    const int rest = exponent + unit.exponent - usual;
    if (usual == unit.exponent || rest < 0 || rest > 2)
        return QString();
    return match.captured(1) + shifted(whole, fraction, unit.exponent - usual) + QChar(0xA0) + signOf(usual)
        + QString::fromUtf8(unit.base->sign);
}

} // namespace TunerDocuments

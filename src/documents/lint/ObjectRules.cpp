// SPDX-License-Identifier: MIT
#include "documents/lint/ObjectRules.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QHash>
#include <QVarLengthArray>

#include <tunerdocuments/Value.h>

#include "text/Ascii.h"
#include "text/Printable.h"
#include "text/Suggestion.h"

using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {
namespace ObjectRules {

namespace {

QString written(double number)
{
    return ValueText::exactly(number);
}

bool isInteger(const LintedObject &object, int index)
{
    const MemberKind kind = object.shape.members[std::size_t(index)].kind;
    return kind == MemberKind::Int || kind == MemberKind::Int64;
}

/// The numbers of a range, as far as they are set.
struct Range
{
    explicit Range(const LintedObject &object)
        : hasValue(object.hasNumber(object.shape.value.number)), hasMin(object.hasNumber(object.shape.min)),
          hasMax(object.hasNumber(object.shape.max)), hasStep(object.hasNumber(object.shape.step)),
          value(object.number(object.shape.value.number)), min(object.number(object.shape.min)),
          max(object.number(object.shape.max)), step(object.number(object.shape.step))
    {
    }

    /// NaN is not in order with anything.
    bool isReversed() const { return hasMin && hasMax && !(min <= max); }
    bool isBelow() const { return hasValue && hasMin && !isReversed() && !(value >= min); }
    bool isAbove() const { return hasValue && hasMax && !isReversed() && !(value <= max); }

    bool hasValue;
    bool hasMin;
    bool hasMax;
    bool hasStep;
    long double value;
    long double min;
    long double max;
    long double step;
};

} // namespace

// --- Ranges ----------------------------------------------------------------------------------------------------------

bool isRange(const Shape &shape)
{
    return shape.hasRange();
}

void valueOutOfRange(const LintedObject &object)
{
    const Range range(object);
    if (!range.isBelow() && !range.isAbove())
        return;
    object.warn(object.shape.value.number, [&]() -> Description {
        const Shape &shape = object.shape;
        const QString message = QStringLiteral("value %1 is %2 %3")
                                    .arg(object.written(shape.value.number),
                                         range.isBelow() ? QStringLiteral("below min") : QStringLiteral("above max"),
                                         object.written(range.isBelow() ? shape.min : shape.max));
        if (!range.hasMin || !range.hasMax)
            return {message};
        return {message,
                QStringLiteral("use a value from %1 to %2").arg(object.written(shape.min), object.written(shape.max))};
    });
}

void minAboveMax(const LintedObject &object)
{
    if (!Range(object).isReversed())
        return;
    object.warn(object.shape.min, [&]() -> Description {
        const Range range(object);
        const QString min = object.written(object.shape.min);
        const QString max = object.written(object.shape.max);
        if (range.min > range.max)
            return {QStringLiteral("min %1 is above max %2").arg(min, max), QStringLiteral("exchange them")};
        return {QStringLiteral("min %1 and max %2 are not a range").arg(min, max), QStringLiteral("use numbers")};
    });
}

void stepNotPositive(const LintedObject &object)
{
    const Range range(object);
    if (!range.hasStep || (range.step > 0 && std::isfinite(range.step)))
        return;
    object.warn(object.shape.step, [&]() -> Description {
        return {QStringLiteral("step %1 is not a positive number").arg(object.written(object.shape.step)),
                range.step < 0 && std::isfinite(range.step)
                    ? QStringLiteral("use %1").arg(object.written(object.shape.step).mid(1))
                    : QString()};
    });
}

namespace {

/// The number of steps from min to the value, and whether that is not a whole number.
struct Grid
{
    Grid(const Range &range, bool isExact)
    {
        const long double way = range.value - range.min;
        const long double steps = way / range.step;
        below = std::floor(steps);
        if (isExact) {
            isMissed = std::fmod(way, range.step) != 0;
            return;
        }
        // Each of the numbers may be half a unit in its last place away from what its author has written: 0.1 has no
        // float. So the steps may be, too.
        const long double unit = std::numeric_limits<float>::epsilon() / 2;
        const long double tolerance =
            unit * (std::abs(range.value) + std::abs(range.min) + std::abs(steps) * range.step);
        isMissed = std::abs(way - std::round(steps) * range.step) > tolerance;
    }

    bool isMissed = false;
    long double below = 0;
};

} // namespace

void valueOffGrid(const LintedObject &object)
{
    const Range range(object);
    const bool isComplete = range.hasValue && range.hasMin && range.hasStep && range.step > 0
        && std::isfinite(range.step) && std::isfinite(range.value) && std::isfinite(range.min);
    if (!isComplete || range.isReversed() || range.isBelow() || range.isAbove())
        return;
    const bool isExact = isInteger(object, object.shape.value.number);
    const Grid grid(range, isExact);
    if (!grid.isMissed)
        return;
    object.warn(object.shape.value.number, [&]() -> Description {
        const Shape &shape = object.shape;
        const auto decimal = [](long double number) { return ValueText::exactly(float(number)).toDouble(); };
        const auto at = [&](long double steps) {
            return isExact ? QString::number(static_cast<qint64>(range.min + steps * range.step))
                           : ValueText::exactly(float(decimal(range.min) + double(steps) * decimal(range.step)));
        };
        const bool hasNext = !range.hasMax || range.min + (grid.below + 1) * range.step <= range.max;
        const QString message =
            QStringLiteral("value %1 is not min %2 plus a multiple of step %3")
                .arg(object.written(shape.value.number), object.written(shape.min), object.written(shape.step));
        return {message,
                hasNext ? QStringLiteral("the nearest are %1 and %2").arg(at(grid.below), at(grid.below + 1))
                        : QStringLiteral("the nearest is %1").arg(at(grid.below))};
    });
}

// --- Selections ------------------------------------------------------------------------------------------------------

bool isSelection(const Shape &shape)
{
    return shape.list >= 0 && shape.index >= 0 && shape.value.number >= 0;
}

namespace {

/// The index of a selection, if it is that of an option.
int validIndex(const LintedObject &object)
{
    const long double index = object.number(object.shape.index);
    const bool isValid = index >= 0 && index < static_cast<long double>(object.items(object.shape.list).size());
    return isValid ? int(index) : Shape::none;
}

QString optionCount(std::size_t count)
{
    return count == 1 ? QStringLiteral("there is 1 option") : QStringLiteral("there are %1 options").arg(count);
}

} // namespace

void indexOutOfRange(const LintedObject &object)
{
    if (!object.isSet(object.shape.index) || validIndex(object) >= 0)
        return;
    object.warn(object.shape.index, [&]() -> Description {
        const std::size_t count = object.items(object.shape.list).size();
        const QString message = QStringLiteral("no option has the index %1; %2")
                                    .arg(object.written(object.shape.index), optionCount(count));
        return {message,
                count == 0       ? QString()
                    : count == 1 ? QStringLiteral("use the index 0")
                                 : QStringLiteral("use an index from 0 to %1").arg(count - 1)};
    });
}

void optionDiffers(const LintedObject &object)
{
    const Shape &shape = object.shape;
    const int index = object.isSet(shape.index) ? validIndex(object) : Shape::none;
    if (index < 0)
        return;
    const std::vector<LintedItem> &options = object.items(shape.list);
    const LintedItem &option = options[std::size_t(index)];
    const auto warn = [&](int member, const QString &own, const QString &ofOption, const auto &isSame) {
        object.warn(member, [&]() -> Description {
            const auto same = std::find_if(options.begin(), options.end(), isSame);
            return {QStringLiteral("%1 %2 differs from option %3, which has %4")
                        .arg(object.member(member).GetName(), own)
                        .arg(index)
                        .arg(ofOption),
                    same == options.end() ? QStringLiteral("use %1").arg(ofOption)
                                          : QStringLiteral("option %1 has it").arg(same - options.begin())};
        });
    };
    const double number = double(object.number(shape.value.number));
    const auto hasNumber = [&](const LintedItem &item) { return item.hasNumber && item.number == number; };
    if (object.isSet(shape.value.number) && option.hasNumber && !hasNumber(option))
        warn(shape.value.number, written(number), written(option.number), hasNumber);
    if (shape.text < 0 || !option.isIdentified)
        return;
    const QString &text = object.text(shape.text);
    const auto hasText = [&](const LintedItem &item) { return item.isIdentified && item.identity[0] == text; };
    if (!text.isNull() && !hasText(option))
        warn(shape.text, quoted(text), quoted(option.identity[0]), hasText);
}

// --- Lists of texts --------------------------------------------------------------------------------------------------

bool isTextWithList(const Shape &shape)
{
    return shape.list >= 0 && shape.value.text >= 0;
}

void valueNotListed(const LintedObject &object)
{
    const QString &value = object.text(object.shape.value.text);
    const std::vector<LintedItem> &items = object.items(object.shape.list);
    const auto isValue = [&](const LintedItem &item) { return item.isIdentified && item.identity[0] == value; };
    if (value.isEmpty() || std::any_of(items.begin(), items.end(), isValue))
        return;
    object.warn(object.shape.value.text, [&]() -> Description {
        constexpr int most = 100; // the search takes time for each
        QStringList known;
        for (const LintedItem &item : items) {
            if (item.isIdentified && known.size() < most)
                known.append(item.identity[0].left(most));
        }
        const QString nearest = Suggestion::nearest(value, known);
        return {QStringLiteral("value %1 is not in the list").arg(quoted(value)),
                nearest.isNull() ? QString() : QStringLiteral("did you mean %1?").arg(quoted(nearest))};
    });
}

// --- Duplicates ------------------------------------------------------------------------------------------------------

namespace {

/// The same as findDuplicates(), for a few items: compares each with each.
template <class Key, class Found>
void findDuplicatesAmongFew(const std::vector<LintedItem> &items, const Key &key, const Found &found)
{
    for (std::size_t i = 1; i < items.size(); ++i) {
        for (std::size_t earlier = 0; key.has(items[i]) && earlier < i; ++earlier) {
            if (key.has(items[earlier]) && key.isSame(items[i], items[earlier])) {
                found(int(i), int(earlier));
                break;
            }
        }
    }
}

/// Calls `found(item, earlier)` for each item that has the same key as an earlier one, with the first of these. Takes
/// time in proportion to the size of the keys, however many are the same or have the same hash.
template <class Key, class Found>
void findDuplicates(const std::vector<LintedItem> &items, const Key &key, const Found &found)
{
    constexpr std::size_t mostAmongFew = 8;
    if (items.size() <= mostAmongFew)
        return findDuplicatesAmongFew(items, key, found);
    struct Entry
    {
        uint hash;
        int index;
    };
    constexpr int few = 64;
    QVarLengthArray<Entry, few> entries;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (key.has(items[i]))
            entries.append({key.hash(items[i]), int(i)});
    }
    const auto compare = [&](const Entry &one, const Entry &other) {
        return key.compare(items[std::size_t(one.index)], items[std::size_t(other.index)]);
    };
    std::sort(entries.begin(), entries.end(), [&](const Entry &one, const Entry &other) {
        if (one.hash != other.hash)
            return one.hash < other.hash;
        const int order = compare(one, other);
        return order != 0 ? order < 0 : one.index < other.index;
    });
    std::vector<std::pair<int, int>> duplicates;
    for (int i = 1, first = 0; i < entries.size(); ++i) {
        if (entries[i].hash != entries[first].hash || compare(entries[i], entries[first]) != 0)
            first = i;
        else
            duplicates.emplace_back(entries[i].index, entries[first].index);
    }
    std::sort(duplicates.begin(), duplicates.end());
    for (const auto &duplicate : duplicates)
        found(duplicate.first, duplicate.second);
}

struct ByIdentity
{
    static bool has(const LintedItem &item) { return item.isIdentified; }
    static uint hash(const LintedItem &item) { return qHash(item.identity[1], qHash(item.identity[0])); }
    static bool isSame(const LintedItem &one, const LintedItem &other)
    {
        return one.identity[0] == other.identity[0] && one.identity[1] == other.identity[1];
    }
    static int compare(const LintedItem &one, const LintedItem &other)
    {
        const int order = one.identity[0].compare(other.identity[0]);
        return order != 0 ? order : one.identity[1].compare(other.identity[1]);
    }
};

struct ByNumber
{
    static bool has(const LintedItem &item) { return item.hasNumber && !std::isnan(item.number); }
    static uint hash(const LintedItem &item) { return qHash(item.number); }
    static bool isSame(const LintedItem &one, const LintedItem &other) { return one.number == other.number; }
    static int compare(const LintedItem &one, const LintedItem &other)
    {
        return one.number == other.number ? 0 : one.number < other.number ? -1 : 1;
    }
};

/// "type 'Filter' and name 'Pre'"
QString identityOf(const LintedItem &item)
{
    QString text = item.names[0] + QLatin1Char(' ') + quoted(item.identity[0]);
    if (item.texts > 1)
        text += QStringLiteral(" and ") + item.names[1] + QLatin1Char(' ') + quoted(item.identity[1]);
    return text;
}

bool hasList(const Shape &shape, const char *name)
{
    const int list = shape.find(QLatin1String(name));
    return list >= 0 && shape.members[std::size_t(list)].kind == MemberKind::ObjectList;
}

/// Reports the items of a list that an earlier item has the identity of.
void reportDuplicates(const LintedObject &object, const char *name, const char *kind)
{
    const int list = object.shape.find(QLatin1String(name));
    const std::vector<LintedItem> &items = object.items(list);
    findDuplicates(items, ByIdentity(), [&](int item, int earlier) {
        object.warnItem(list, item, items[std::size_t(item)].names[0], [&]() -> Description {
            return {QStringLiteral("%1 %2 already has %3")
                        .arg(QLatin1String(kind))
                        .arg(earlier + 1)
                        .arg(identityOf(items[std::size_t(item)]))};
        });
    });
}

} // namespace

bool hasOptions(const Shape &shape)
{
    return isSelection(shape) || isTextWithList(shape);
}

void duplicateOption(const LintedObject &object)
{
    const int list = object.shape.list;
    const std::vector<LintedItem> &options = object.items(list);
    findDuplicates(options, ByIdentity(), [&](int item, int earlier) {
        const LintedItem &option = options[std::size_t(item)];
        object.warnItem(list, item, option.names[0], [&]() -> Description {
            return {QStringLiteral("option %1 already has %2").arg(earlier).arg(identityOf(option))};
        });
    });
    findDuplicates(options, ByNumber(), [&](int item, int earlier) {
        object.warnItem(list, item, QLatin1String("value"), [&]() -> Description {
            return {QStringLiteral("option %1 already has value %2")
                        .arg(earlier)
                        .arg(written(options[std::size_t(item)].number))};
        });
    });
}

bool hasComponents(const Shape &shape)
{
    return hasList(shape, "Component");
}

void duplicateComponent(const LintedObject &object)
{
    reportDuplicates(object, "Component", "component");
}

bool hasNodes(const Shape &shape)
{
    return hasList(shape, "Node");
}

void duplicateNode(const LintedObject &object)
{
    reportDuplicates(object, "Node", "node");
}

bool hasValues(const Shape &shape)
{
    return hasList(shape, "ValueItem");
}

void duplicateValue(const LintedObject &object)
{
    reportDuplicates(object, "ValueItem", "value");
}

bool hasBandwidths(const Shape &shape)
{
    return hasList(shape, "BandwidthSelection");
}

void duplicateBandwidth(const LintedObject &object)
{
    reportDuplicates(object, "BandwidthSelection", "bandwidth");
}

bool hasNames(const Shape &shape)
{
    return shape.findKind(MemberKind::EnumerationList) >= 0;
}

void duplicateStartupMode(const LintedObject &object)
{
    const int list = object.shape.findKind(MemberKind::EnumerationList);
    const QVariantList names = object.member(list).GetValue().toList();
    QHash<QString, int> first;
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names.at(i).type() == QVariant::String ? names.at(i).toString() : QString();
        if (name.isNull())
            continue; // which the model refuses
        const auto known = first.constFind(name);
        if (known == first.constEnd()) {
            first.insert(name, i);
            continue;
        }
        object.warnEntry(list, i, [&]() -> Description {
            return {QStringLiteral("start-up mode %1 is already at position %2").arg(quoted(name)).arg(*known + 1)};
        });
    }
}

// --- Others ----------------------------------------------------------------------------------------------------------

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

namespace {

bool hasData(const MemberView &alternative)
{
    bool isAnySet = alternative.IsSet();
    if (!isAnySet && alternative.GetSize() != 0)
        JobXml::visit(alternative.GetChild(), [&](const MemberView &member) { isAnySet |= member.IsSet(); });
    return isAnySet;
}

} // namespace

void unchosenData(const LintedObject &object)
{
    for (const int i : object.shape.alternatives) {
        const MemberView &member = object.member(i);
        if (!hasData(member) || member.IsChosen())
            continue;
        object.warn(i, [&]() -> Description {
            const QString chosen = object.member(object.shape.choice).GetValue().toString();
            const QString name = member.GetName();
            return {chosen.isNull() ? QStringLiteral("%1 has data, but nothing is chosen").arg(name)
                                    : QStringLiteral("%1 has data, but %2 is chosen").arg(name, chosen),
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

} // namespace ObjectRules
} // namespace TunerDocuments

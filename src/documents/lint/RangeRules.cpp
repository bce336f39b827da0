// SPDX-License-Identifier: MIT
#include "documents/lint/ObjectRules.h"

#include <cmath>
#include <limits>

#include <tunerdocuments/Value.h>

using JobXml::MemberKind;

namespace TunerDocuments::ObjectRules {

namespace {

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
    bool isBelow() const { return hasValue && hasMin && !isReversed() && value < min; }
    bool isAbove() const { return hasValue && hasMax && !isReversed() && value > max; }
    bool isIncomparable() const { return hasValue && (hasMin || hasMax) && !isReversed() && std::isnan(value); }

    bool hasValue;
    bool hasMin;
    bool hasMax;
    bool hasStep;
    long double value;
    long double min;
    long double max;
    long double step;
};

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

bool isInteger(const LintedObject &object, int index)
{
    const MemberKind kind = object.shape.members[std::size_t(index)].kind;
    return kind == MemberKind::Int || kind == MemberKind::Int64;
}

} // namespace

bool isRange(const Shape &shape)
{
    return shape.hasRange();
}

void valueOutOfRange(const LintedObject &object)
{
    const Range range(object);
    if (!range.isBelow() && !range.isAbove() && !range.isIncomparable())
        return;
    object.warn(object.shape.value.number, [&]() -> Description {
        const Shape &shape = object.shape;
        const QString limit = range.isBelow() ? QStringLiteral("below min ") + object.written(shape.min)
            : range.isAbove()                 ? QStringLiteral("above max ") + object.written(shape.max)
                                              : QStringLiteral("not a number");
        const QString message = QStringLiteral("value %1 is %2").arg(object.written(shape.value.number), limit);
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

} // namespace TunerDocuments::ObjectRules

// SPDX-License-Identifier: MIT
#pragma once

#include "framework/Scalar.h"
#include "framework/Table.h"

namespace JobXml {

template <class Number>
struct RangedNumberData
{
    QString id;
    Number value{};
    Number min{};
    Number max{};
    Number step{};
};

/// The rows and the table of a class with an id, a number and its range: ValueNumericFloat, ValueNumericInt and
/// ValueNumericInt64. Tags contains the tags, which depend on the type of the number, as constants named like the
/// members.
template <class Number, class Tags>
struct RangedNumber
{
    using Data = RangedNumberData<Number>;

    // clang-format off
    static constexpr Scalar id{   0, "id",    0x2B262DC9,  &Data::id,    Attribute | Mandatory | IsValidAcceptsNull | Identifies};
    static constexpr Scalar value{1, "value", Tags::value, &Data::value, Attribute | Mandatory};
    static constexpr Scalar min{  2, "min",   Tags::min,   &Data::min,   Attribute | Mandatory};
    static constexpr Scalar max{  3, "max",   Tags::max,   &Data::max,   Attribute | Mandatory};
    static constexpr Scalar step{ 4, "step",  Tags::step,  &Data::step,  Attribute | Mandatory};
    // clang-format on

    static constexpr Table members{id, value, min, max, step};
};

} // namespace JobXml

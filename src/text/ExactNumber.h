// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The shortest text that reads back as the same number, without exponent for numbers of usual size; "nan", "inf" and
/// "-inf".
namespace ExactNumber {

QString text(float value);
QString text(double value);

} // namespace ExactNumber

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include "json/Json.h"

namespace TunerDocuments {

/// What separates the parts of a JSON text.
namespace JsonBlanks {

inline bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The blanks that end there.
inline QByteArray before(const QByteArray &text, int end)
{
    int begin = end;
    while (begin > 0 && isBlank(text.at(begin - 1)))
        --begin;
    return text.mid(begin, end - begin);
}

/// What separates a member's value from its key.
inline QByteArray colonBefore(const QByteArray &text, const Json &value)
{
    const int colon = int(text.lastIndexOf(':', int(value.textBegin())));
    return before(text, colon) + text.mid(colon, int(value.textBegin()) - colon);
}

} // namespace JsonBlanks

} // namespace TunerDocuments

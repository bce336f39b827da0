// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <reportbase/XmlMarkup.h>

namespace TunerDocuments {

/// What separates the parts of an XML text.
namespace XmlBlanks {

inline bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The part without the blanks around it.
inline REPORTGENERATOR::XmlMarkup::Span trimmed(const QByteArray &text, REPORTGENERATOR::XmlMarkup::Span span)
{
    while (span.begin < span.end && isBlank(text.at(span.begin)))
        ++span.begin;
    while (span.begin < span.end && isBlank(text.at(span.end - 1)))
        --span.end;
    return span;
}

/// The blanks that end there.
inline QByteArray before(const QByteArray &text, int end)
{
    int begin = end;
    while (begin > 0 && isBlank(text.at(begin - 1)))
        --begin;
    return text.mid(begin, end - begin);
}

} // namespace XmlBlanks

} // namespace TunerDocuments

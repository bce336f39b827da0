// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include <QByteArray>

/// Which bytes of a text an edit has changed.
namespace ChangedBytes {

struct Part
{
    int begin = 0;
    int end = 0; ///< after its last byte
};

/// Whether everything before and after the part is as it was.
inline bool areWithin(const QByteArray &before, const QByteArray &after, Part part)
{
    const QByteArray rest = before.mid(part.end);
    return after.size() >= part.begin + rest.size() && after.startsWith(before.left(part.begin))
        && after.endsWith(rest);
}

/// Whether the longer text is the shorter one with one more piece in one place: their longest common beginning and end
/// cover the shorter one.
inline bool areOnePiece(const QByteArray &shorter, const QByteArray &longer)
{
    if (shorter.size() > longer.size())
        return false;
    const auto beginning = std::mismatch(shorter.begin(), shorter.end(), longer.begin()).first;
    const auto end = std::mismatch(shorter.rbegin(), shorter.rend(), longer.rbegin()).first;
    return (beginning - shorter.begin()) + (end - shorter.rbegin()) >= shorter.size();
}

inline bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The part with the blanks around it.
inline Part withBlanks(const QByteArray &text, Part part)
{
    while (part.begin > 0 && isBlank(text.at(part.begin - 1)))
        --part.begin;
    while (part.end < text.size() && isBlank(text.at(part.end)))
        ++part.end;
    return part;
}

/// What an edit within the part has put in its place.
inline QByteArray replacementOf(const QByteArray &before, const QByteArray &after, Part part)
{
    return after.mid(part.begin, after.size() - before.size() + part.end - part.begin);
}

/// Whether one piece was removed, which is the part and blanks beside it.
inline bool areRemoved(const QByteArray &before, const QByteArray &after, Part part)
{
    const Part wide = withBlanks(before, part);
    const QByteArray left = areWithin(before, after, wide) ? replacementOf(before, after, wide) : QByteArray("-");
    return areOnePiece(after, before) && before.size() - after.size() >= part.end - part.begin
        && std::all_of(left.begin(), left.end(), isBlank);
}

} // namespace ChangedBytes

// SPDX-License-Identifier: MIT
#include "XmlDeclaration.h"

#include <algorithm>
#include <vector>

#include <QLatin1String>

namespace REPORTGENERATOR {

namespace {

const QLatin1String begin("<?xml");
const QLatin1String end("?>");
const QLatin1String utf8("UTF-8");

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\r')
        || character == QLatin1Char('\n');
}

Size skipBlanks(const QString &text, Size from, Size size)
{
    while (from < size && isBlank(text[from]))
        ++from;
    return from;
}

} // namespace

std::optional<XmlDeclaration> XmlDeclaration::read(const QString &text)
{
    const Size size = text.size() - end.size();
    if (size < begin.size() || !text.startsWith(begin) || !text.endsWith(end) || text.contains(QLatin1Char('&')))
        return std::nullopt;
    XmlDeclaration declaration;
    std::vector<QLatin1String> expected{QLatin1String("version"), QLatin1String("encoding"),
                                        QLatin1String("standalone")};
    for (Size i = skipBlanks(text, begin.size(), size); i < size;) {
        const Size equalSign = text.indexOf(QLatin1Char('='), i);
        const Size open = skipBlanks(text, equalSign + 1, size);
        if (equalSign < 0 || open >= size)
            return std::nullopt;
        const QChar quote = text[open];
        const Size close = text.indexOf(quote, open + 1);
        if ((quote != QLatin1Char('"') && quote != QLatin1Char('\'')) || close < 0)
            return std::nullopt;
        const QString name = text.mid(i, equalSign - i).trimmed();
        const auto found = std::find(expected.begin(), expected.end(), name);
        if (found == expected.end())
            return std::nullopt;
        expected.erase(found);
        if (name == QLatin1String("encoding"))
            declaration = {text.mid(open + 1, close - open - 1), open + 1};
        i = skipBlanks(text, close + 1, size);
    }
    return declaration;
}

bool XmlDeclaration::isEncodingName(const QString &name)
{
    const auto isLetter = [](QChar character) {
        return (character >= QLatin1Char('A') && character <= QLatin1Char('Z'))
            || (character >= QLatin1Char('a') && character <= QLatin1Char('z'));
    };
    return !name.isEmpty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), [&](QChar character) {
        return isLetter(character) || (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
            || character == QLatin1Char('.') || character == QLatin1Char('_') || character == QLatin1Char('-');
    });
}

QString XmlDeclaration::inUtf8(const QString &text)
{
    const auto declaration = read(text);
    if (!declaration || declaration->encoding.size() < utf8.size() || !isEncodingName(declaration->encoding))
        return text;
    // The quote follows UTF-8, and blanks take the place of the rest.
    const Size at = declaration->encodingBegin;
    const Size size = declaration->encoding.size();
    return text.left(at) + utf8 + text[at + size] + QString(size - utf8.size(), QLatin1Char(' '))
        + text.mid(at + size + 1);
}

} // namespace REPORTGENERATOR

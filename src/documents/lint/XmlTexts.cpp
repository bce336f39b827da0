// SPDX-License-Identifier: MIT
#include "documents/lint/XmlTexts.h"

#include <algorithm>
#include <charconv>
#include <string_view>

using namespace std::string_view_literals;

namespace TunerDocuments {
namespace XmlTexts {

namespace {

std::string_view view(QLatin1String text)
{
    return {text.data(), std::size_t(text.size())};
}

QString decoded(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), int(utf8.size()));
}

/// Appends the character of the reference, without its '&' and ';'. Returns false for an unknown entity.
bool appendReferred(QString &text, std::string_view reference)
{
    if (reference.size() > 1 && reference[0] == '#') {
        const bool isHexadecimal = reference[1] == 'x';
        const std::string_view digits = reference.substr(isHexadecimal ? 2 : 1);
        uint code = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), code, isHexadecimal ? 16 : 10);
        const bool isNumber = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
        if (!isNumber || code > QChar::LastValidCodePoint)
            return false;
        if (QChar::requiresSurrogates(code)) {
            text += QChar(QChar::highSurrogate(code));
            text += QChar(QChar::lowSurrogate(code));
        } else {
            text += QChar(ushort(code));
        }
        return true;
    }
    static constexpr std::pair<std::string_view, char> entities[] = {
        {"lt"sv, '<'}, {"gt"sv, '>'}, {"amp"sv, '&'}, {"quot"sv, '"'}, {"apos"sv, '\''}};
    for (const auto &entity : entities) {
        if (reference == entity.first) {
            text += QLatin1Char(entity.second);
            return true;
        }
    }
    return false;
}

/// Appends a text with the characters to which references refer. Line ends become line feeds or, in attributes, blanks,
/// as do tabulators.
bool appendConverted(QString &text, std::string_view raw, bool isAttribute)
{
    const auto special = isAttribute ? "&\r\n\t"sv : "&\r"sv;
    for (std::size_t at = 0; at < raw.size();) {
        const std::size_t end = std::min(raw.find_first_of(special, at), raw.size());
        text += decoded(raw.substr(at, end - at));
        at = end;
        if (at == raw.size())
            break;
        if (raw[at] == '&') {
            const std::size_t semicolon = raw.find(';', at);
            if (semicolon == std::string_view::npos || !appendReferred(text, raw.substr(at + 1, semicolon - at - 1)))
                return false;
            at = semicolon + 1;
            continue;
        }
        at += raw.substr(at, 2) == "\r\n"sv ? 2 : 1;
        text += QLatin1Char(isAttribute ? ' ' : '\n');
    }
    return true;
}

/// The size of the markup at the beginning, and by how many levels it nests what follows.
struct MarkupPiece
{
    explicit MarkupPiece(std::string_view raw)
    {
        const auto startsWith = [&](std::string_view mark) { return raw.substr(0, mark.size()) == mark; };
        const auto upTo = [&](std::string_view mark, std::size_t from) {
            const std::size_t found = raw.find(mark, from);
            return found == std::string_view::npos ? raw.size() : found + mark.size();
        };
        if (startsWith("<!--"sv)) {
            size = upTo("-->"sv, 4);
        } else if (startsWith(sectionStart)) {
            size = upTo("]]>"sv, 0);
            isSection = true;
        } else if (startsWith("<?"sv)) {
            size = upTo("?>"sv, 0);
        } else {
            size = tagSize(raw);
            levels = startsWith("</"sv) ? -1 : raw[size - 2] == '/' ? 0 : 1;
        }
    }

    static std::size_t tagSize(std::string_view raw)
    {
        for (std::size_t at = 1; at < raw.size(); ++at) {
            if (raw[at] == '>')
                return at + 1;
            if (raw[at] == '"' || raw[at] == '\'')
                at = std::min(raw.find(raw[at], at + 1), raw.size() - 1);
        }
        return raw.size();
    }

    static constexpr auto sectionStart = "<![CDATA["sv;

    std::size_t size = 0;
    int levels = 0;
    bool isSection = false;
};

} // namespace

std::optional<QString> attribute(QLatin1String utf8)
{
    QString text = QStringLiteral("");
    if (!appendConverted(text, view(utf8), true))
        return {};
    return text;
}

std::optional<QString> element(QLatin1String utf8)
{
    QString text = QStringLiteral("");
    int depth = 0;
    for (std::string_view rest = view(utf8); !rest.empty();) {
        const std::size_t markup = std::min(rest.find('<'), rest.size());
        if (depth == 0 && !appendConverted(text, rest.substr(0, markup), false))
            return {};
        rest.remove_prefix(markup);
        if (rest.empty())
            break;
        const MarkupPiece piece(rest);
        if (piece.isSection && depth == 0) {
            const std::size_t begin = MarkupPiece::sectionStart.size();
            text += decoded(rest.substr(begin, piece.size - begin - "]]>"sv.size()));
        }
        depth += piece.levels;
        rest.remove_prefix(piece.size);
    }
    return text;
}

} // namespace XmlTexts
} // namespace TunerDocuments

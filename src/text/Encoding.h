// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

#include "text/Size.h"

/// The character encodings in which XML documents are read and written.
///
/// They are converted here, not by Qt: which encodings Qt has, under which names, and what it makes of wrong bytes
/// depends on its version and on the libraries with which it was built.
enum class Encoding : quint8 {
    Utf8,
    Utf16LittleEndian,
    Utf16BigEndian,
    Utf32LittleEndian,
    Utf32BigEndian,
    Ascii,
    Latin1,
    Latin9,
    Windows1252
};

namespace Encodings {

using REPORTGENERATOR::Size;

constexpr int FirstBytes = 4; ///< as many determine the encoding

/// The encoding of a document that begins with a byte order mark or, in UTF-16 and UTF-32, with '<'. No value for other
/// documents: these are in an encoding in which ASCII characters are single bytes, in UTF-8 unless they declare another
/// one.
std::optional<Encoding> ofFirstBytes(const char *bytes, Size size);

/// Whether an XML declaration may contain this name. Case, '-' and '_' do not matter.
bool isKnown(const QString &name);

/// The encoding of a document with these first bytes that declares this name; no value if the name is not known, or if
/// the bytes are certainly not in this encoding.
std::optional<Encoding> declared(const QString &name, std::optional<Encoding> ofFirstBytes);

/// The usual name, for example "UTF-16LE".
QString name(Encoding encoding);

/// The names of all encodings, for messages. UTF-16 and UTF-32 are one each.
QString all();

/// The beginning of some bytes as a text, including a byte order mark.
struct Decoded
{
    QString text;
    Size size = 0; ///< of the bytes that encode the text
    bool isInvalid = false; ///< whether the next bytes encode no character; otherwise the last one is incomplete
};

/// Decodes all characters up to the first one that is invalid or incomplete.
Decoded decode(Encoding encoding, const char *bytes, Size size);

/// The same for UTF-8 without decoding it: the text is empty.
Decoded checkUtf8(const char *bytes, Size size);

/// The text with '?' for each character that the encoding does not have.
QByteArray encode(Encoding encoding, const QString &text);

/// Whether the encoding has the character.
bool canEncode(Encoding encoding, uint character);

} // namespace Encodings

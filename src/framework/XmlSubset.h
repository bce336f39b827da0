// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace JobXml {

/// The documents that are read in memory, without QXmlStreamReader: nearly all that programs write.
///
/// These are well-formed XML 1.0 documents that the reader accepts with exactly the same tags, attributes and texts.
/// The subset has:
///  - UTF-8 without a byte order mark or with one, and without U+FFFE and U+FFFF;
///  - an XML declaration, if there is one, of version 1.0 that names the encoding UTF-8 or none;
///  - comments, processing instructions, CDATA sections, character references and the five predefined entities;
///  - names that begin with an ASCII letter or '_', continue with ASCII letters, digits, '.', '-' and '_', and have at
///    most LongestName characters;
///  - at most MostAttributes attributes for each element, and elements nested up to Deepest levels.
///
/// It has no document type, no prefixes or namespaces, and no text of an element with ";]>", since the reader refuses
/// "&#93;]>".
namespace XmlSubset {

constexpr int MostAttributes = 32;
constexpr int Deepest = 256;
constexpr int LongestName = 1000; ///< the reader refuses names of more than 4096 characters

/// Whether the whole document is in the subset. Copies raw data (QByteArray::fromRawData()), which need not end with a
/// NUL, for the time of the call.
bool contains(const QByteArray &utf8);

} // namespace XmlSubset
} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// The forms of a document in a file.
enum class Form {
    Xml, ///< an XML document, in UTF-8 when it is written
    Tagged, ///< a representation of tagged records
    Compressed, ///< the same, compressed
    Snapshot, ///< the untagged snapshot, with big-endian numbers; readable by the version of the library that wrote it
    Json, ///< JSON, the only form that holds every document exactly
};

/// The names of the forms, and their suffixes: xml and .xml, tagged and .tpb, compressed and .tpz, snapshot and .tps,
/// json and .json.
namespace Forms {

/// All names, in the order of the enumeration.
TUNERDOCUMENTS_EXPORT QStringList list();

/// The name of a form: "tagged".
TUNERDOCUMENTS_EXPORT QString nameOf(Form form);

/// The form of that name; no value if there is none.
TUNERDOCUMENTS_EXPORT std::optional<Form> named(const QString &name);

/// The suffix of a form: ".tpb".
TUNERDOCUMENTS_EXPORT QString suffixOf(Form form);

/// The form with the suffix of a file name, in lower case or not; no value if no form has it.
TUNERDOCUMENTS_EXPORT std::optional<Form> bySuffix(const QString &fileName);

/// The form of a document by its first bytes: XML, JSON or the leading word of the binary forms. No value if they are
/// inconclusive: a snapshot has no mark. 4096 bytes are enough for documents that begin with blank lines.
TUNERDOCUMENTS_EXPORT std::optional<Form> byContent(const QByteArray &beginning);

/// How many times its own size a compressed document declares to expand to, rounded up; 0 for other forms. Finds it in
/// the first 12 bytes; `size` is that of the whole document.
TUNERDOCUMENTS_EXPORT int expansionOf(const QByteArray &beginning, qint64 size);

} // namespace Forms

} // namespace TunerDocuments

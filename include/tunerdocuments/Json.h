// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <jobxml/Visit.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

struct Finding;

namespace Paths {
struct Target;
}

/// How JSON is laid out.
enum class JsonLayout {
    Indented, ///< as in documents, with a line feed at the end
    OneLine, ///< without blanks, line ends and a line feed at the end
};

/// \name Parts of a document as JSON
/// An object of the model, the value of a member, or the item or member at the end of a path, as it is in a document.
/// The manual's page on JSON describes the mapping. Changes and checks nothing. Throws UnstorableContent for a text
/// that JSON cannot represent; its message begins with `name`.
///
/// For whole documents see Document.
/// @{
TUNERDOCUMENTS_EXPORT QByteArray toJson(const JobXml::DataObject &object, const QString &name,
                                        JsonLayout layout = JsonLayout::Indented);
TUNERDOCUMENTS_EXPORT QByteArray toJson(const JobXml::MemberView &member, const QString &name,
                                        JsonLayout layout = JsonLayout::Indented);
TUNERDOCUMENTS_EXPORT QByteArray toJson(const Paths::Target &target, const QString &name,
                                        JsonLayout layout = JsonLayout::Indented);
/// @}

/// \name Findings as JSON
/// An object in JSON on one line, without a line feed: "path", "line", "column", "message", "value", "choices" and
/// "suggestion". What is not known is null. Characters that are not printable are `\u` escapes.
/// @{
/// A problem or a warning, also with "rule", which is null for a problem, and "level". The path of a warning is that of
/// its member, Finding::place().
TUNERDOCUMENTS_EXPORT QByteArray toJson(const Finding &finding);
/// A problem among problems, which have neither rule nor different levels. The path is that of the object.
TUNERDOCUMENTS_EXPORT QByteArray problemToJson(const Finding &problem);
/// @}

} // namespace TunerDocuments

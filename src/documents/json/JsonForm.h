// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <limits>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "json/JsonText.h"

namespace TunerDocuments {

/// Why a text is not a document, and where: in the text and in the document.
struct JsonProblem
{
    QString message; ///< complete: with what follows

    /// \name What the message says, each by itself
    /// @{
    QString value{}; ///< as it is in the text, or the name of an unknown member; the beginning of a long one
    QStringList choices{}; ///< what is accepted instead, if it can be listed
    QString suggestion{}; ///< "did you mean 'Scan'?"; null if there is none
    /// @}

    /// \name Its place in the text
    /// Of the key or the value concerned, counted from 1, columns in UTF-16 units.
    /// @{
    int line = 0;
    int column = 0;
    /// @}

    /// \name Its place in the document
    /// @{
    QVector<JobXml::Step> steps; ///< from the document to the object concerned
    QString member; ///< the member of that object; null if it is not a single one
    QString path; ///< the same as text, see Paths; empty for the document itself
    /// @}

    /// True if the text is not JSON: it is the only problem then, without a place in the document.
    bool isUnreadable = false;
};

using JsonProblemVisitor = std::function<void(const JsonProblem &)>;

/// Complete documents as JSON: values to the last bit, null and empty texts, set flags. docs/json.md describes the
/// mapping.
namespace JsonForm {

/// \name Keys that are not members of the model
/// @{
constexpr char versionKey[] = "Version"; ///< of the document
constexpr char unsetKey[] = "unset"; ///< of every object: values of members that are not set
constexpr char schemaKey[] = "$schema"; ///< beside the document: which schema an editor should use; not stored
/// @}

/// Returns the document as JSON: {"TunerProperties": {"Version": "1.1", ...}}. Changes and checks nothing. Throws
/// JsonFailure for a text that JSON cannot represent.
QByteArray compose(const JobXml::TunerProperties &document);

/// Reads a document from JSON and returns the number of its problems. If there are any, the document stays unchanged,
/// and `visitor` is called with the first `most` of them, in the order of the text; the others are only counted, which
/// takes much less time. Reading does not validate, whatever the validate flag of the document is; the flag stays.
[[nodiscard]] qint64 read(JobXml::TunerProperties &document, const QByteArray &utf8,
                          const JsonProblemVisitor &visitor = {}, qint64 most = std::numeric_limits<qint64>::max());

/// The value of a member or an item of a list, in the JSON of a whole document that JsonText::parse() has returned;
/// null if the JSON does not have it. It may be in "unset". Its place in the text is what an edit of the member
/// replaces.
const Json *valueAt(const Json &document, const QVector<JobXml::Step> &steps);

/// Where the JSON of an object has a member.
enum class MemberPlace {
    Nowhere,
    Members, ///< among its members
    Unset, ///< in "unset"
};
MemberPlace placeOf(const JobXml::MemberView &member, const JobXml::DataObject &object);

/// The parts of a document: an object of the model, and the value of a member.
Json ofObject(const JobXml::DataObject &object);
Json ofMember(const JobXml::MemberView &member);

/// Reads the members of a new object, which need not be a document. Throws JsonFailure.
void readInto(JobXml::DataObject &object, const Json &json);

/// Reads a value for a member that is not an object. Throws JsonFailure.
QVariant readValue(const JobXml::MemberView &member, const Json &json);

} // namespace JsonForm

} // namespace TunerDocuments

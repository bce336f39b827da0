// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "json/JsonText.h"

namespace TunerDocuments {

/// Complete documents as JSON: values to the last bit, null and empty texts, set flags. docs/json.md describes the
/// mapping.
namespace JsonForm {

/// Returns the document as JSON: {"TunerProperties": {"Version": "1.1", ...}}. Changes and checks nothing. Throws
/// JsonFailure for a text that JSON cannot represent.
QByteArray compose(const JobXml::TunerProperties &document);

/// Reads a document from JSON. Throws JsonFailure, and leaves the document unchanged, if the JSON is not a document.
/// Reading does not validate, whatever the validate flag of the document is; the flag stays.
void read(JobXml::TunerProperties &document, QByteArray utf8);

/// The parts of a document: an object of the model, and the value of a member.
Json ofObject(const JobXml::DataObject &object);
Json ofMember(const JobXml::MemberView &member);

/// Reads the members of a new object, which need not be a document. Throws JsonFailure.
void readInto(JobXml::DataObject &object, const Json &json);

/// Reads a value for a member that is not an object. Throws JsonFailure.
QVariant readValue(const JobXml::MemberView &member, const Json &json);

} // namespace JsonForm

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "documents/JsonText.h"

/// Documents as JSON, complete: values to the last bit, null and empty texts, set flags. docs/json.md tells the
/// mapping.
namespace JsonForm {

/// The form of a document: {"TunerProperties": {"Version": "1.1", ...}}. Changes and checks nothing. Throws JsonFailure
/// for a text that JSON cannot carry.
QByteArray compose(const JobXml::TunerProperties &document);

/// Reads that. Throws JsonFailure, and leaves the document as it was, if it is anything else. What is read is not
/// validated, whatever the document's validate flag is; the flag stays.
void read(JobXml::TunerProperties &document, const QByteArray &utf8);

/// The parts of which it consists: an object of the model, and what a member holds.
Json ofObject(const JobXml::DataObject &object);
Json ofMember(const JobXml::MemberView &member);

} // namespace JsonForm

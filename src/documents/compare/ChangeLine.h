// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

#include <tunerdocuments/Diff.h>

#include "json/JsonText.h"

namespace TunerDocuments {

/// Differences as JSON. docs/changes.md describes them.
namespace ChangeLine {

/// The keys of the members.
namespace Key {
constexpr char change[] = "change";
constexpr char path[] = "path";
constexpr char newPath[] = "newPath";
constexpr char from[] = "from";
constexpr char to[] = "to";
constexpr char before[] = "before";
constexpr char after[] = "after";
constexpr char unset[] = "unset";
constexpr char set[] = "set";
constexpr char listWasSet[] = "listWasSet";
constexpr char listIsSet[] = "listIsSet";
} // namespace Key

/// "changed". The index of a name is the kind.
const QVector<QByteArray> &kindNames();

/// Throws JsonFailure for a text that JSON cannot represent.
Json compose(const Difference &difference);

/// Checks what needs no document: which members there are, and their types. Throws JsonFailure.
void check(const Json &line);

/// The object that has the identity of an item: the item, or the value that it has chosen.
QVector<JobXml::Step> stepsToIdentity(const JobXml::DataObject &item);

} // namespace ChangeLine

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QByteArray>

#include "framework/Random.h"

/// Documents of the model in every odd spelling that XML allows, and in many that it does not.
namespace XmlSpellings {

/// A well-formed document in UTF-8 without a document type. It may have what is not read in memory: prefixes, many
/// attributes, deep nesting, names beyond ASCII, other XML declarations. `root` is the class of its outermost object;
/// any class if it is empty.
QByteArray document(Random &random, const QByteArray &root = QByteArray());

/// The same with only what programs write: no more than one oddity of a kind, names of the model.
QByteArray plainDocument(Random &random, const QByteArray &root = QByteArray());

/// A document with a few bytes changed, inserted, removed or repeated; often not well-formed. The other document
/// provides parts.
QByteArray mutated(Random &random, const QByteArray &document, const QByteArray &other);

/// Pieces of documents that readers are likely to disagree about, for the mutations.
const std::vector<QByteArray> &tokens();

} // namespace XmlSpellings

// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <jobxml/TunerProperties.h>

#include "documents/Input.h"

/// The forms in which a document stands in a file.
enum class Form {
    Xml,
    Tagged,
    Compressed,
    Snapshot,
    Json,
};

namespace Forms {

/// "xml, tagged, compressed, snapshot or json", for messages.
QString names();

/// The words for them on the command line.
QStringList list();

/// ".xml, .tpb, .tpz, .tps or .json", for messages.
QString suffixes();

/// The one that goes with a form: ".xml".
QString suffixOf(Form form);

std::optional<Form> named(const QString &name);

/// The form that goes with the suffix of a file's name: .xml, .tpb, .tpz, .tps or .json.
std::optional<Form> bySuffix(const FileName &fileName);

/// The form of a file: XML, JSON and the binary forms by their first bytes; a snapshot, which carries no mark, by its
/// name. Where the first bytes say nothing the name counts for all of them, so that the reader can say what is wrong.
/// Throws FileFailure if neither tells.
Form recognise(Input &input);

/// Throws FileFailure if the file holds a compressed record that declares more than `times` its own size. Nothing is
/// expanded to find out, so a small file cannot make the program take memory and time for a large one.
void checkExpansion(Input &input, int times);

/// Reads the document under its own validate flag. Throws FileFailure if the file does not hold a document in this
/// form, or if the document throws. Tagged and compressed are read alike.
void load(JobXml::TunerProperties &document, Input &input, Form form);

/// Reads the document from bytes that compose() has returned. Returns false if they do not hold one.
bool readBack(JobXml::TunerProperties &document, QByteArray bytes, Form form);

/// The bytes of the document in this form. Throws FileFailure, in the shown name of the file that they are meant for,
/// if it cannot be written in this form; exceptions of the document pass through.
QByteArray compose(JobXml::TunerProperties &document, Form form, const QString &fileName);

} // namespace Forms

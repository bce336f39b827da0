// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <jobxml/Visit.h>

#include "documents/values/CannotEdit.h"
#include "documents/xml/EncodedText.h"

namespace TunerDocuments {

/// New parts of XML documents, in UTF-8. Numbers are exact, unlike those that the library writes.
namespace XmlText {

/// The texts of a value: one, or one for each name of a list. A name of a value that has none is a null text.
QStringList ofValue(const JobXml::MemberView &member);

/// A text as the value of an attribute in these quotes, and as the content of an element. Characters that the encoding
/// does not have are references. Both throw CannotEdit for a character that XML does not have.
QByteArray inAttribute(const QString &text, char quote, const EncodedText &encoding);
QByteArray inElement(const QString &text, const EncodedText &encoding);

/// Whether the text of an item has the alternative that it has chosen. That is the last one; others can only be written
/// before it.
bool hasChosenIn(const JobXml::DataObject &object);

/// How new elements are laid out.
struct Layout
{
    QByteArray lineEnd = "\n"; ///< empty for a document on one line
    QByteArray indentation; ///< of the element
    QByteArray step = "  "; ///< by which its content is indented further
    QByteArray prefix; ///< of its name and the names in it, with the colon
};

/// The object as an element, with everything in it that is set, and without a line end after it.
QByteArray element(const JobXml::DataObject &object, const Layout &layout, const EncodedText &encoding);

/// An element with a text.
QByteArray element(const QString &name, const QString &text, const Layout &layout, const EncodedText &encoding);

} // namespace XmlText

} // namespace TunerDocuments

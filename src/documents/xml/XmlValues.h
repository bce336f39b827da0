// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/Visit.h>
#include <reportbase/XmlMarkup.h>

#include "documents/values/Replacement.h"
#include "documents/xml/EncodedText.h"
#include "documents/xml/XmlChildren.h"
#include "documents/xml/XmlPlaces.h"

namespace TunerDocuments {

/// The values of one object in its text: in attributes, or in child elements without others in them. A new value is
/// written as the author writes the others.
class XmlValues
{
public:
    using Markup = REPORTGENERATOR::XmlMarkup;

    /// Adds the changes to `out` and, of elements as a whole, to `children`. All parameters must outlive this object.
    XmlValues(const Markup &markup, const XmlPlaces &places, const EncodedText &encoding, Replacements &out,
              XmlChildren &children)
        : m_markup(markup), m_places(places), m_encoding(encoding), m_out(out), m_children(children)
    {
    }

    /// Makes the text have the value of a member of the object, or not have it if it is not set. `typed` is written
    /// instead of the value's own text if it is not null. Throws CannotEdit.
    void write(const JobXml::MemberView &member, const QString &typed = QString());

    /// Whether the text has a value of a member that reads as `typed`, and denotes exactly that.
    bool hasExactly(const JobXml::MemberView &member, const QString &typed) const;

private:
    using Span = Markup::Span;

    /// Attributes next to a new one; -1 if there is none.
    struct Neighbors
    {
        int before = -1; ///< the last one that it follows
        int after = -1; ///< the first one that it precedes
    };

    class Names;

    QString readText(const XmlPlaces::Value &value) const;
    void writeNames(const JobXml::MemberView &member, const QVector<XmlPlaces::Value> &values);
    void replaceAttribute(int attribute, const QString &text, bool isNumber);
    void replaceContent(int element, const QString &text, bool isNumber);
    void removeValues(const QVector<XmlPlaces::Value> &values);
    void addValue(const JobXml::MemberView &member, const QString &text);
    void addAttribute(const JobXml::MemberView &member, const QString &text);
    Neighbors neighborsOf(const Markup::Element &place, const JobXml::MemberView &member) const;

    const Markup &m_markup;
    const XmlPlaces &m_places;
    const EncodedText &m_encoding;
    Replacements &m_out;
    XmlChildren &m_children;
};

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QVector>

#include <jobxml/Visit.h>
#include <reportbase/XmlMarkup.h>

#include "documents/values/Replacement.h"
#include "documents/xml/XmlPlaces.h"
#include "documents/xml/XmlText.h"

namespace TunerDocuments {

/// Changes of the child elements of an object: some are removed, others added next to them. Where an element is
/// removed and another one added after it, that takes its place, so that comments around it stay around it. A removed
/// element takes its line along if nothing else is on it.
class XmlChildren
{
public:
    using Markup = REPORTGENERATOR::XmlMarkup;

    /// How the elements of a document are laid out: their line ends and steps.
    static XmlText::Layout layoutOf(const Markup &markup);

    /// `elements` are those from which the object is read, at least one; new children are in the last one. The other
    /// parameters must outlive this object.
    XmlChildren(const Markup &markup, const XmlPlaces &places, const XmlText::Layout &documentLayout,
                QVector<int> elements, const JobXml::DataObject &object);

    XmlChildren(const XmlChildren &) = delete;
    XmlChildren &operator=(const XmlChildren &) = delete;

    const QVector<int> &elements() const { return m_elements; }
    const JobXml::DataObject &object() const { return m_object; }

    void remove(int element);
    void addBefore(int element, const QByteArray &text);
    void addAfter(int element, const QByteArray &text);
    /// Adds elements of that member where the library writes them.
    void add(const QString &member, const QByteArrayList &texts);

    /// How a new child of that member is laid out: like the child that it follows, or like the document.
    XmlText::Layout layoutFor(const QString &member) const;
    /// How a new child is laid out next to that one.
    XmlText::Layout layoutAt(int neighbor) const;
    /// How a new item is laid out next to another one of its list: with its content on one line if that has it so.
    XmlText::Layout layoutLike(int item) const;

    /// All of that.
    Replacements replacements() const;

private:
    struct Fate
    {
        bool isRemoved = false;
        QByteArrayList before{};
        QByteArrayList after{};
    };

    struct Neighbor
    {
        int element = -1; ///< -1 if there is none
        bool isBefore = false;
    };

    /// Children of one name that follow each other after blank lines.
    using Series = QVector<int>;

    bool isLeft(int element) const;
    QVector<Series> seriesOfChildren() const;
    Markup::Span gapBefore(const Series &series, int at) const;
    void spread(const Series &series, std::map<int, QByteArray> &separators,
                std::map<int, Markup::Span> &removed) const;
    Neighbor neighborOf(const QString &member) const;
    Replacement firstChildren() const;
    int endOfLineComments(int end) const;
    Markup::Span lineOf(const Markup::Span &element) const;

    const Markup &m_markup;
    const XmlPlaces &m_places;
    const XmlText::Layout &m_documentLayout;
    const QVector<int> m_elements;
    const JobXml::DataObject &m_object;
    std::map<int, Fate> m_fates; // of child elements
    QByteArrayList m_first; // of an element that has no children
};

} // namespace TunerDocuments

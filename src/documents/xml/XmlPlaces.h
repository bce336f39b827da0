// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QVector>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>
#include <reportbase/XmlMarkup.h>

namespace TunerDocuments {

/// Where the objects and members of a document are in its text. Follows the rules by which documents are read: names of
/// elements count without their prefixes, unknown elements are skipped, except that their content counts in the
/// document itself if that has the present version.
class XmlPlaces
{
public:
    using Markup = REPORTGENERATOR::XmlMarkup;

    /// Where a member has a value: in an attribute or in a child element.
    struct Value
    {
        bool isAttribute = false;
        int index = 0; ///< of the attribute or element in the markup
    };

    /// A child element that is read into a member.
    struct Child
    {
        int element = 0;
        QLatin1String member;
    };

    /// `tuner` must have been read from the markup; both must outlive this object.
    XmlPlaces(const Markup &markup, const JobXml::TunerProperties &tuner);

    /// Null if the places can be found; otherwise why they cannot: "the document has a 'Component' inside a
    /// 'Component'".
    QString refusal() const;

    /// The elements from which the object at these steps is read, in order: one, except for a member that is a child
    /// object and occurs several times; none if the text has nothing of it.
    QVector<int> elementsOf(const QVector<JobXml::Step> &steps) const;

    /// Where the member of an object with these elements has its values, in the order in which they are read. The last
    /// one counts, except for lists.
    QVector<Value> valuesOf(const QVector<int> &elements, const JobXml::DataObject &object,
                            const JobXml::MemberView &member) const;

    /// The child elements of an element that are read into members of the object, in order.
    QVector<Child> childrenOf(int element, const JobXml::DataObject &object) const;

private:
    const Markup &m_markup;
    const JobXml::TunerProperties &m_tuner;
    bool m_isOlder; // than the present version: unknown elements of the document are skipped with their content
};

} // namespace TunerDocuments

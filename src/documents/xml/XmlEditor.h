// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>
#include <reportbase/XmlMarkup.h>

#include "documents/values/ObjectEdit.h"
#include "documents/xml/EncodedText.h"
#include "documents/xml/XmlChildren.h"
#include "documents/xml/XmlPlaces.h"
#include "documents/xml/XmlText.h"

namespace TunerDocuments {

/// Changes an XML document in place: only the bytes of the values and items concerned change.
///
/// The text follows the description: every operation is called after the description has changed, and makes the text
/// read as the part that it names. Throws CannotEdit if the text has no place for it.
class XmlEditor
{
public:
    /// `tuner` must have been read from the document, and outlive this object.
    XmlEditor(const QByteArray &document, const JobXml::TunerProperties &tuner);
    XmlEditor(const XmlEditor &) = delete;
    XmlEditor &operator=(const XmlEditor &) = delete;
    ~XmlEditor();

    /// Null if the document can be edited; otherwise why it cannot.
    QString refusal() const;

    /// Makes the value of a member the one that the object has, or removes it if it is not set. `typed` is written
    /// instead of the value's own text if it is not null.
    void storeValue(const QVector<JobXml::Step> &object, const QString &member, const QString &typed = QString());

    /// Whether the text has the value of a member, which reads as `typed`, and denotes exactly that: as a rule, nothing
    /// has to be stored then.
    bool hasExactly(const QVector<JobXml::Step> &object, const QString &member, const QString &typed);

    /// Makes the text have a member that holds an object, or has it removed.
    void storeObject(const QVector<JobXml::Step> &object, const QString &member);

    /// Makes all changes of an edit, after apply() has made them to the description.
    void follow(const ObjectEdit &edit);

    /// The document with all changes.
    QByteArray document();

    /// Null if the text of the object, without the objects in it, reads as the object; otherwise the first difference:
    /// "MaxFFPDelay: 9223372036854775808 would be read as 0".
    QString mismatchOf(const QVector<JobXml::Step> &object);

private:
    using Markup = REPORTGENERATOR::XmlMarkup;
    using Span = Markup::Span;

    class Items;

    template <class Compute>
    void change(Compute compute);
    void keep(const Replacements &replacements);
    bool touches(const Replacements &replacements) const;
    void apply();
    void scan(const QByteArray &utf8);
    QByteArray changedText(int element, const Replacements &changes) const;
    void applyIfPending(const QString &value);
    void addMissing(QVector<JobXml::Step> steps);

    Replacements replacementsIn(const QVector<int> &elements, const JobXml::DataObject &object,
                                const ObjectEdit &edit) const;
    XmlChildren childrenOf(const QVector<int> &elements, const JobXml::DataObject &object) const;
    QVector<int> childElements(const XmlChildren &children, const JobXml::MemberView &member) const;
    int lastAlternative(const XmlChildren &children) const;
    void writeObject(Replacements &out, XmlChildren &children, const JobXml::MemberView &member,
                     const MemberEdit &edit) const;
    void addObject(XmlChildren &children, const JobXml::MemberView &member) const;
    void writeItems(Replacements &out, XmlChildren &children, const JobXml::MemberView &list,
                    const MemberEdit &edit) const;

    const JobXml::TunerProperties &m_tuner;
    EncodedText m_text;
    std::unique_ptr<Markup> m_markup;
    std::unique_ptr<XmlPlaces> m_places;
    XmlText::Layout m_layout; // of the document
    std::multimap<int, Replacement> m_pending; // by their beginning; they do not touch each other
    QSet<QString> m_pendingValues; // the members whose changes are pending
};

} // namespace TunerDocuments

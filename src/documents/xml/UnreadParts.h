// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>
#include <reportbase/XmlMarkup.h>

#include "documents/xml/XmlPlaces.h"

namespace TunerDocuments {

/// A part of the text of a document in XML that readers skip without a word.
struct UnreadPart
{
    /// What it is.
    enum Kind {
        Content, ///< a text or an element where none is read, or an attribute of another namespace
        EarlierValue, ///< a value of a member that has another one later, which counts
        SecondObject, ///< of a member that is read from both
        SecondAlternative, ///< of an item, which keeps both and has chosen the last one
    };

    Kind kind = Content; ///< what it is
    int offset = 0; ///< in the markup
    QString problem{}; ///< "there is a text that would be lost"
    QByteArray text{}; ///< what is lost, for comparisons
    QVector<JobXml::Step> steps{}; ///< to the object concerned
    QString member{}; ///< the member of that object; null if the object as a whole is concerned
};

/// Finds these parts, apart from unknown elements, attributes of values and unknown attributes without a prefix, which
/// rules of lint() find.
class UnreadParts
{
public:
    using Action = std::function<void(const UnreadPart &)>;

    /// `tuner` must have been read from the markup; both must outlive this object.
    UnreadParts(const REPORTGENERATOR::XmlMarkup &markup, const JobXml::TunerProperties &tuner);

    /// Calls the action with those of the object at the steps, and of everything in it.
    void visit(const QVector<JobXml::Step> &steps, const Action &action);

private:
    struct Value;

    void visitObject(int element, const JobXml::DataObject &object);
    void visitTexts(int element);
    void visitAttributes(int element);
    void visitValues(const JobXml::MemberView &member, const QVector<XmlPlaces::Value> &values);
    void visitValue(const XmlPlaces::Value &value, const JobXml::MemberView &member, int child);
    void visitPlainValue(int element, const JobXml::MemberView &member);
    void report(UnreadPart::Kind kind, const XmlPlaces::Value &value, const QString &problem, const QByteArray &text,
                const QString &member);
    void report(UnreadPart::Kind kind, int offset, const QString &problem, const QByteArray &text,
                const QString &member = QString());
    REPORTGENERATOR::XmlMarkup::Span spanOf(const XmlPlaces::Value &value) const;
    QByteArray bytes(const REPORTGENERATOR::XmlMarkup::Span &span) const;

    const REPORTGENERATOR::XmlMarkup &m_markup;
    const JobXml::TunerProperties &m_tuner;
    const XmlPlaces m_places;
    const Action *m_action = nullptr;
    QVector<JobXml::Step> m_steps;
};

} // namespace TunerDocuments

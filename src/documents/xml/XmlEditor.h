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

#include "documents/xml/EncodedText.h"
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
    /// instead of the value's own text if it is not null. Does nothing if the text reads as the same value already.
    void storeValue(const QVector<JobXml::Step> &object, const QString &member, const QString &typed = QString());

    /// Makes the text have a member that holds an object, or has it removed.
    void storeObject(const QVector<JobXml::Step> &object, const QString &member);

    /// Adds an item that is new in a list of the object.
    void insertItem(const QVector<JobXml::Step> &object, const QString &list, int index);
    /// Adds it as this text, which has been read into the item.
    void insertItem(const QVector<JobXml::Step> &object, const QString &list, int index, const QByteArray &element);
    /// Removes the item of that index.
    void removeItem(const QVector<JobXml::Step> &object, const QString &list, int index);
    void moveItem(const QVector<JobXml::Step> &object, const QString &list, int from, int to);

    /// The document with all changes.
    QByteArray document();

    /// Null if the text of the object, without the objects in it, reads as the object; otherwise the first difference:
    /// "MaxFFPDelay: 9223372036854775808 would be read as 0".
    QString mismatchOf(const QVector<JobXml::Step> &object);
    /// The same with everything in it.
    QString wholeMismatchOf(const QVector<JobXml::Step> &object);
    /// How many items of a list the text has.
    int itemCount(const QVector<JobXml::Step> &object, const QString &list);

private:
    using Markup = REPORTGENERATOR::XmlMarkup;
    using Span = Markup::Span;

    struct Replacement
    {
        Span span;
        QByteArray text;
    };
    using Replacements = QVector<Replacement>;

    template <class Compute>
    void change(Compute compute);
    bool touches(const Replacements &replacements) const;
    void apply();
    void scan(const QByteArray &utf8);

    Replacements valueReplacements(const QVector<JobXml::Step> &steps, const QString &name, const QString &typed) const;
    Replacements listReplacements(const QVector<int> &elements, const JobXml::DataObject &object,
                                  const JobXml::MemberView &member, const QVector<XmlPlaces::Value> &values) const;
    void replaceAttribute(Replacements &out, int attribute, const QString &text, bool isNumber) const;
    void replaceContent(Replacements &out, int element, const QString &text, bool isNumber) const;
    void removeValue(Replacements &out, const XmlPlaces::Value &value) const;
    void addValue(Replacements &out, const QVector<int> &elements, const JobXml::DataObject &object,
                  const JobXml::MemberView &member, const QString &text) const;
    void addAttribute(Replacements &out, int element, const JobXml::DataObject &object,
                      const JobXml::MemberView &member, const QString &text) const;
    void makeLast(Replacements &out, int item, const JobXml::DataObject &object,
                  const JobXml::MemberView &alternative) const;
    template <class Make>
    void addElement(Replacements &out, int parent, const JobXml::DataObject &object, const QString &member, int index,
                    Make make) const;
    Span lineOf(const Span &element) const;
    QVector<Span> textsIn(int element) const;
    QByteArray blanksBefore(int at) const;
    XmlText::Layout layoutIn(int parent) const;
    QString mismatch(const QVector<JobXml::Step> &object, const QByteArray &element, bool withObjects) const;
    QByteArray skeletonAround(const QVector<JobXml::Step> &object, const QByteArray &element) const;
    QByteArray withoutObjects(int element, const JobXml::DataObject &object) const;

    const JobXml::TunerProperties &m_tuner;
    EncodedText m_text;
    std::unique_ptr<Markup> m_markup;
    std::unique_ptr<XmlPlaces> m_places;
    std::map<int, Replacement> m_pending; // by their beginning; they do not touch each other
    QSet<QString> m_pendingValues; // the members whose changes are pending
};

} // namespace TunerDocuments

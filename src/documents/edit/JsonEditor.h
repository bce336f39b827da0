// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/edit/JsonLayout.h"
#include "documents/json/JsonForm.h"
#include "documents/values/ObjectEdit.h"
#include "documents/values/Replacement.h"
#include "json/Json.h"

namespace TunerDocuments {

/// Changes a JSON document in place: only the bytes of the values concerned change. Used as XmlEditor is: every
/// operation is called after the description has changed, and makes the text read as the part that it names.
///
/// Stored values and objects are collected, since reading the text again for each would take time in proportion to
/// their number and its size. finishStoring(), document() and mismatchOf() change the text; they throw CannotEdit if
/// JSON cannot hold a value.
class JsonEditor
{
public:
    /// `tuner` must have been read from the document, and outlive this object.
    JsonEditor(const QByteArray &document, const JobXml::TunerProperties &tuner);

    /// Makes the value of a member the one that the object has, or removes it if it is not set. `typed` is written
    /// instead if it is the same value in JSON.
    void storeValue(const QVector<JobXml::Step> &object, const QString &member, const QString &typed = QString());

    /// Whether the text has the value of a member, which reads as `typed`, and denotes exactly that: nothing has to be
    /// stored then.
    bool hasExactly(const QVector<JobXml::Step> &object, const QString &member, const QString &typed);

    /// The same as storeValue() for a member that holds an object.
    void storeObject(const QVector<JobXml::Step> &object, const QString &member);

    /// Changes the text as far as it has not followed yet. To be called before the description is changed by an edit,
    /// which may move what has been stored.
    void finishStoring();

    /// Makes all changes of an edit, after apply() has made them to the description. Throws CannotEdit.
    void follow(const ObjectEdit &edit);

    /// Null if the text of the object has the values of the object, apart from the objects in it; otherwise the first
    /// difference.
    QString mismatchOf(const QVector<JobXml::Step> &object);

    /// The document with all changes.
    QByteArray document();

private:
    class Items;
    class Members;
    class Names;

    const Json &json();
    bool isStored(const QVector<JobXml::Step> &object, const QString &member) const;
    bool hasExactly(const Json &value, const JobXml::MemberView &member, const QString &typed) const;
    JsonForm::MemberPlace placeOf(const JobXml::MemberView &member, const JobXml::DataObject &object) const;
    QByteArray valuesIn(const Json &json, const JobXml::DataObject &described) const;
    QByteArray textOf(const Json &value) const;
    Replacements replacementsInNames(const Json &list, const JobXml::MemberView &member) const;
    Replacements replacementsIn(const Json &json, const JobXml::DataObject &object, const ObjectEdit &edit) const;

    const JobXml::TunerProperties &m_tuner;
    QStringList m_setByVersion; // members that are set before any is read
    QByteArray m_text;
    Json m_json;
    bool m_isParsed = false;
    std::optional<JsonLayout> m_layout; // while the text follows an edit
    ObjectEdit m_stored; // which the text does not follow yet
};

} // namespace TunerDocuments

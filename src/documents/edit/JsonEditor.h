// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/values/ObjectEdit.h"
#include "documents/values/Replacement.h"
#include "json/Json.h"

namespace TunerDocuments {

/// Changes a JSON document in place: only the bytes of the values concerned change. Used as XmlEditor is: every
/// operation is called after the description has changed, and makes the text read as the part that it names. Throws
/// CannotEdit if the text has no place for it.
class JsonEditor
{
public:
    /// `tuner` must have been read from the document, and outlive this object.
    JsonEditor(const QByteArray &document, const JobXml::TunerProperties &tuner);

    /// Makes the value of a member the one that the object has, or removes it if it is not set. `typed` is written
    /// instead if it is the same value in JSON.
    void storeValue(const QVector<JobXml::Step> &object, const QString &member, const QString &typed = QString());

    /// The same for a member that holds an object.
    void storeObject(const QVector<JobXml::Step> &object, const QString &member);

    /// Makes all changes of an edit, after apply() has made them to the description.
    void follow(const ObjectEdit &edit);

    /// Null if the text of the object has the values of the object, apart from the objects in it; otherwise the first
    /// difference.
    QString mismatchOf(const QVector<JobXml::Step> &object);

    /// The document with all changes.
    QByteArray document() const { return m_text; }

private:
    class Items;
    class Members;

    const Json &json();
    const Json &objectIn(const QVector<JobXml::Step> &steps);
    void change(const QVector<JobXml::Step> &object, const ObjectEdit &edit, const QString &typed = QString());
    void apply(const Replacements &replacements);
    Replacements replacementsIn(const Json &json, const JobXml::DataObject &object, const ObjectEdit &edit,
                                const QString &typed = QString()) const;

    const JobXml::TunerProperties &m_tuner;
    QByteArray m_text;
    Json m_json;
    bool m_isParsed = false;
};

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

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

    /// Null if the text of the object has the values of the object, apart from the objects in it; otherwise the first
    /// difference.
    QString mismatchOf(const QVector<JobXml::Step> &object);

    /// The document with all changes.
    QByteArray document() const { return m_text; }

private:
    void store(const QVector<JobXml::Step> &object, const QString &member, const QByteArray &value);
    const Json &objectIn(const QVector<JobXml::Step> &steps);
    void replace(int begin, int end, const QByteArray &text);
    void insert(const Json &object, const JobXml::DataObject &described, const QByteArray &key,
                const QByteArray &value);
    void remove(const Json &object, const QByteArray &key);

    const JobXml::TunerProperties &m_tuner;
    QByteArray m_text;
    Json m_json;
    bool m_isParsed = false;
};

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/DataObject.h>

#include "json/Json.h"

namespace TunerDocuments {

/// Where the objects and members of a document are in its JSON.
class JsonPlaces
{
public:
    static constexpr int none = -1;

    /// Throws JsonFailure if the text is not JSON.
    explicit JsonPlaces(const QByteArray &text);

    /// The offset of the value of a member of the object at these steps, or of an entry of that value; of the object if
    /// the text does not have the member, or if there is none; `none` if the text has nothing of the document.
    int find(const QVector<JobXml::Step> &steps, const QString &member, int entry = none) const;

    /// The version of the document; null if it has none.
    QString version() const;
    int placeOfVersion() const; ///< of the document if it has no version

private:
    Json m_whole;
};

} // namespace TunerDocuments

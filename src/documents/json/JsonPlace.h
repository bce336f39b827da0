// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>
#include <QVector>

#include <jobxml/DataObject.h>
#include <jobxml/Visit.h>

#include "documents/paths/ItemSteps.h"
#include "json/Json.h"

namespace TunerDocuments {
namespace JsonReading {

/// The objects in an array, which are the items of a list in the document.
class Items
{
public:
    Items(const Json &array, const JobXml::MemberView &list) : m_array(array), m_list(list) { }

    /// The step to the item of the array at that index.
    QString step(int index);

private:
    const Json &m_array;
    const JobXml::MemberView &m_list;
    std::optional<Paths::ItemSteps> m_steps;
};

/// An object that is being read, and how it is reached.
struct Place
{
    const Place *parent = nullptr; ///< null for the document
    QLatin1String member{nullptr}; ///< of the parent
    int index = -1; ///< in a list, otherwise -1
    Items *items = nullptr; ///< of the list
    mutable QString path = {}; ///< when it is known

    bool isDocument() const { return !parent; }

    QString pathTo(const QString &step) const;
    QVector<JobXml::Step> steps() const;
};

/// A member of an object, or the object itself if there is none.
struct Where
{
    const Place &place;
    QLatin1String member{nullptr};
};

} // namespace JsonReading
} // namespace TunerDocuments

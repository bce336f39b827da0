// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>
#include <QVector>

#include <jobxml/DataObject.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// A difference between two documents.
struct TUNERDOCUMENTS_EXPORT Difference
{
    /// What differs.
    enum Kind {
        Removed, ///< `before` is the content
        Added, ///< `after` is the content
        Changed, ///< `before` and `after` are the values, and whether they are set
        Moved, ///< `before` and `after` are its positions, counted from 1
    };

    Kind kind; ///< determines what `before` and `after` are
    QString path; ///< in the first document; in the second one for an added item
    QString before; ///< in the first document, as text on one line; null for an added item
    QString after; ///< the same in the second one; null for a removed item

    /// On one line: "~ quantity: 1 -> 2".
    QString text() const;
};

/// Finds all differences between two objects of the same class, in the order of the first one, with added items at
/// their position. There are none if the objects are equal as JSON. Items of lists are paired by identity, then by
/// content, and the rest in order.
TUNERDOCUMENTS_EXPORT QVector<Difference> findDifferences(const JobXml::DataObject &first,
                                                          const JobXml::DataObject &second);

/// The same, passing each difference to the action as soon as it is found.
TUNERDOCUMENTS_EXPORT void findDifferences(const JobXml::DataObject &first, const JobXml::DataObject &second,
                                           const std::function<void(const Difference &)> &action);

} // namespace TunerDocuments

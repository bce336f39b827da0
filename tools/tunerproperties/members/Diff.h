// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>
#include <QVector>

#include <jobxml/DataObject.h>

/// Something in which a document differs from another one.
struct Difference
{
    enum Kind {
        Removed, ///< `before` tells what it held
        Added, ///< `after` tells what it holds
        Changed,
        Moved, ///< `before` and `after` are its places, counted from 1
    };

    Kind kind;
    QString path; ///< in the first document, of what was added in the second one
    QString before;
    QString after;

    /// On one line: "~ quantity: 1 -> 2".
    QString text() const;
};

/// Everything in which the second object differs from the first one of the same class, in the order of the first one,
/// what was added at its place; empty if both are the same as JSON. Items of lists are compared with those that have
/// the same identity, then with those of the same content; what is left, in the order in which it stands.
QVector<Difference> findDifferences(const JobXml::DataObject &first, const JobXml::DataObject &second);

/// The same, each as soon as it is found.
void findDifferences(const JobXml::DataObject &first, const JobXml::DataObject &second,
                     const std::function<void(const Difference &)> &action);

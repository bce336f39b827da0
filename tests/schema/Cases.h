// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

/// A document, and what the schema has to say about it.
struct Case
{
    QString name;
    QString document;
    QString
        complaint; ///< how the first complaint begins, with the element and attribute at fault; null: it is accepted
};

/// Documents exactly as the library writes them.
QVector<Case> acceptedCases();

/// Such documents that break one rule each, which is their name.
QVector<Case> refusedCases();

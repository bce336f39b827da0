// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

/// A document and the expected verdict.
struct Case
{
    QString name;
    QString document;
    /// The beginning of the first complaint, with the element and attribute at fault; null if the document is accepted.
    QString complaint;
};

/// Documents exactly as the library writes them.
QVector<Case> acceptedCases();

/// Documents that break one rule each, which the name of the case describes.
QVector<Case> refusedCases();

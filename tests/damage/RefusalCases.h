// SPDX-License-Identifier: MIT
#pragma once

#include "Aftermath.h"

namespace Damage {

/// Data that a class refuses to read, or the closest data that it accepts.
struct RefusalCase
{
    const char *name;
    Encoding encoding;
    QByteArray input; ///< an element, a record without leading word, a snapshot
    QString thrown; ///< while validating; null if nothing
    bool always = false; ///< thrown whether validating or not
};

QVector<RefusalCase> refusalsOf(const QString &className);

/// The input of the case inside the document that contains an object of the class.
QByteArray inDocument(const QString &className, const RefusalCase &refusal);

} // namespace Damage

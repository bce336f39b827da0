// SPDX-License-Identifier: MIT
#pragma once

#include "Aftermath.h"

namespace Damage {

/// Something that a class refuses to read, or the nearest to that which it takes.
struct RefusalCase
{
    const char *name;
    Encoding encoding;
    QByteArray input; ///< an element, a record without leading word, a snapshot
    QString thrown; ///< while validating; null if nothing
    bool always = false; ///< thrown whether validating or not
};

QVector<RefusalCase> refusalsOf(const QString &className);

/// The input of the case inside all that stands around an object of the class in a document.
QByteArray inDocument(const QString &className, const RefusalCase &refusal);

} // namespace Damage

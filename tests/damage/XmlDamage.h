// SPDX-License-Identifier: MIT
#pragma once

#include "Damaging.h"

namespace Damage {

/// Whether XML is read by LoadXml() from a file, or by SetXmlString() from a text, which requires valid UTF-8.
enum class XmlSource { File, Text };

/// The results of reading damaged XML, and their numbers.
struct XmlSweep
{
    int noText = 0; ///< not read, since the bytes are not valid UTF-8
    int taken = 0;
    int refused = 0; ///< with false
    int thrown = 0;
    QString wrong; ///< location and description of the first error, which ends the sweep

    int all() const { return noText + taken + refused + thrown; }
};

/// Compares the result of reading with the one that a plain reader and the rules determine. A document that was read
/// from a file must also be usable afterwards.
void readDamagedXml(XmlSweep &sweep, const QByteArray &damaged, XmlSource source, bool validate, const QString &where);

XmlSweep flipEveryBitOfXml(XmlSource source, bool validate);
XmlSweep cutXmlEverywhere(XmlSource source, bool validate);

} // namespace Damage

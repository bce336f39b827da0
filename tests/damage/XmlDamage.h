// SPDX-License-Identifier: MIT
#pragma once

#include "Damaging.h"

namespace Damage {

/// What is read with LoadXml(), from a file that holds the bytes, or with SetXmlString(), which takes only bytes that
/// are the UTF-8 of a text.
enum class XmlSource { File, Text };

/// The ways in which damaged XML was dealt with, and how often each was met.
struct XmlSweep
{
    int noText = 0; ///< not read, since a text was asked for
    int taken = 0;
    int refused = 0; ///< with false
    int thrown = 0;
    QString wrong; ///< where and what, for the first that was wrong; the sweep ends there

    int all() const { return noText + taken + refused + thrown; }
};

/// What must come of the damaged XML is decided by a plain reader and the rules. What is read from a file is used
/// afterwards as well.
void readDamagedXml(XmlSweep &sweep, const QByteArray &damaged, XmlSource source, bool validate, const QString &where);

XmlSweep flipEveryBitOfXml(XmlSource source, bool validate);
XmlSweep cutXmlEverywhere(XmlSource source, bool validate);

} // namespace Damage

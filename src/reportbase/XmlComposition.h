// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace REPORTGENERATOR {

class IRGObject;

/// An object as a whole XML document in memory.
struct XmlComposition
{
    QByteArray utf8; ///< null if the object wrote nothing
    qint64 lineOfLostText = 0; ///< where a text could not be written unchanged; 0 if there is none
};

/// Uses GetXml(), which a class may override.
XmlComposition composeXmlByWriter(const IRGObject &object);

} // namespace REPORTGENERATOR

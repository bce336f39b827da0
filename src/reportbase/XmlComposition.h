// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace REPORTGENERATOR {

class IRGObject;

/// An object as a whole XML document in memory.
struct XmlComposition
{
    QByteArray utf8; ///< null if the object wrote nothing
    int lineOfLostText = 0; ///< where a text could not be written as it is; 0 if every text could
};

/// By GetXml(), whatever it does.
XmlComposition composeXmlByWriter(const IRGObject &object);

} // namespace REPORTGENERATOR

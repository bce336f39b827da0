// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <reportbase/IRGObject.h>

/// The XML document of an object without its declaration.
inline QString elementOf(REPORTGENERATOR::IRGObject &object)
{
    const QString document = object.GetXmlString();
    return document.mid(document.indexOf(QLatin1Char('\n')) + 1);
}

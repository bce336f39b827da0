// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

void read(REPORTGENERATOR::IRGObject &object, QXmlStreamReader &reader)
{
    object.ProcessXmlStartElement(reader);
}

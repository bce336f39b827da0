// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

void read(REPORTGENERATOR::IRGObject &object, QXmlStreamReader &reader)
{
#ifdef CORRECTED
    object.ProcessXml(reader);
#else
    object.ProcessXmlStartElement(reader);
#endif
}

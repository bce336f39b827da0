// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

void rename(REPORTGENERATOR::IRGObject &object)
{
#ifdef CORRECTED
    object.GetObjectName();
#else
    object.SetObjectName(QString());
#endif
}

// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

void rename(REPORTGENERATOR::IRGObject &object)
{
    object.SetObjectName(QString());
}

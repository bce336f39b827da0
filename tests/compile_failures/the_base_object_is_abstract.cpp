// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

class Half : public REPORTGENERATOR::IRGObject
{
};

Half half;

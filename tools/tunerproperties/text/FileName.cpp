// SPDX-License-Identifier: MIT
#include "text/FileName.h"

#include "text/Printable.h"

QString FileName::shown() const
{
    return Printable::escapedName(m_bytes);
}

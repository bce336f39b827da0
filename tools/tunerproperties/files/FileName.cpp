// SPDX-License-Identifier: MIT
#include "files/FileName.h"

#include "text/Printable.h"

QString FileName::shown() const
{
    return Printable::escapedName(m_bytes);
}

// SPDX-License-Identifier: MIT
#include "FileName.h"

#include "Printable.h"

QString FileName::shown() const
{
    return Printable::escapedName(m_bytes);
}

// SPDX-License-Identifier: MIT
#include "framework/Label.h"

#include "framework/Member.h"

namespace JobXml {

QString label(const DataObject &object, int index)
{
    if (const Block *block = ObjectAccess::existingBlock(object)) {
        for (const Member *member : ObjectAccess::info(object).bitOrder()) {
            const QString identification = member->identification(*block);
            if (!identification.isEmpty())
                return object.GetObjectName() + QLatin1String(" \"") + identification + QLatin1Char('"');
        }
    }
    const QString &name = object.GetObjectName();
    return index < 0 ? name : name + QLatin1Char(' ') + QString::number(index + 1);
}

} // namespace JobXml

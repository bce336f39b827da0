// SPDX-License-Identifier: MIT
#include "framework/Label.h"

#include "framework/Member.h"

namespace JobXml {

QString identification(const DataObject &object)
{
    if (const Block *block = ObjectAccess::existingBlock(object)) {
        for (const Member *member : ObjectAccess::info(object).bitOrder()) {
            QString text = member->identification(*block);
            if (!text.isEmpty())
                return text;
        }
    }
    return QString();
}

QString label(const DataObject &object, int index)
{
    const QString &name = object.GetObjectName();
    const QString text = identification(object);
    if (!text.isEmpty())
        return name + QLatin1String(" \"") + text + QLatin1Char('"');
    return index < 0 ? name : name + QLatin1Char(' ') + QString::number(index + 1);
}

} // namespace JobXml

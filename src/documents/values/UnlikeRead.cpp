// SPDX-License-Identifier: MIT
#include "documents/values/UnlikeRead.h"

#include <QVector>

#include <tunerdocuments/Value.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

QString firstUnlikeRead(const DataObject &described, const DataObject &read, bool withObjects)
{
    QVector<MemberView> ofRead;
    visit(read, [&](const MemberView &member) { ofRead.append(member); });
    QString difference;
    int i = 0;
    visit(described, [&](const MemberView &mine) {
        const MemberView &other = ofRead.at(i++);
        if (!difference.isNull() || !mine.IsChosen() || (holdsObjects(mine) && !withObjects))
            return;
        const auto text = [](const MemberView &member) {
            return holdsObjects(member) ? QStringLiteral("%1 items").arg(member.GetSize())
                                        : ValueText::ofMember(member);
        };
        const bool isSame = mine.IsSet() == other.IsSet() && (!mine.IsSet() || text(mine) == text(other));
        if (!isSame)
            difference = QStringLiteral("%1: %2 would be read as %3").arg(mine.GetName(), text(mine), text(other));
        for (int child = 0; isSame && difference.isNull() && child < mine.GetSize() && child < other.GetSize(); ++child)
            difference = firstUnlikeRead(mine.GetChild(child), other.GetChild(child), true);
    });
    return difference;
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "documents/values/ObjectEdit.h"

#include <numeric>

#include <tunerdocuments/Value.h>

#include "documents/values/StayingItems.h"

using namespace JobXml;

namespace TunerDocuments {

QString ValueState::text() const
{
    const bool isNothing = value.userType() == QMetaType::QVariantList
        ? value.toList().isEmpty()
        : value.userType() == QMetaType::QString && value.toString().isNull();
    if (isSet)
        return ValueText::ofValue(value);
    return isNothing ? ValueText::notSet() : ValueText::ofValue(value) + QLatin1Char(' ') + ValueText::notSet();
}

ObjectEdit &ObjectEdit::at(const QVector<Step> &steps)
{
    ObjectEdit *edit = this;
    for (const Step &step : steps)
        edit = &edit->members[step.member].children[qMax(step.index, 0)];
    return *edit;
}

const MemberEdit *ObjectEdit::of(const MemberView &member) const
{
    const auto found = members.find(member.GetName());
    return found == members.end() ? nullptr : &found->second;
}

QVector<int> MemberEdit::orderOf(int size) const
{
    if (order)
        return *order;
    QVector<int> all(size + added.size());
    std::iota(all.begin(), all.end(), 0);
    return all;
}

QVector<bool> MemberEdit::stayingItems(QVector<int> order, int size)
{
    for (int &item : order)
        item = item < size ? item : -1;
    return TunerDocuments::stayingItems(order, size);
}

} // namespace TunerDocuments

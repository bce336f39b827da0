// SPDX-License-Identifier: MIT
#include "documents/values/Identical.h"

#include <cmath>
#include <vector>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// Numbers as they are written: -0 differs from 0, and all that are not a number are the same.
bool isSameNumber(double first, double second)
{
    if (std::isnan(first) || std::isnan(second))
        return std::isnan(first) && std::isnan(second);
    return first == second && std::signbit(first) == std::signbit(second);
}

bool isSameValue(const QVariant &first, const QVariant &second)
{
    if (first.userType() != second.userType())
        return false;
    switch (first.userType()) {
    case QMetaType::QString:
        return first.toString().isNull() == second.toString().isNull() && first.toString() == second.toString();
    case QMetaType::Float:
    case QMetaType::Double:
        return isSameNumber(first.toDouble(), second.toDouble());
    default:
        return first == second;
    }
}

} // namespace

bool areIdentical(const DataObject &first, const DataObject &second)
{
    const std::vector<MemberView> others = membersOf(second);
    std::size_t next = 0;
    bool areSame = true;
    visit(first, [&](const MemberView &member) {
        const MemberView &other = others[next++];
        if (!areSame)
            return;
        areSame = member.IsSet() == other.IsSet() && member.GetSize() == other.GetSize();
        if (!holdsObjects(member))
            areSame = areSame && isSameValue(member.GetValue(), other.GetValue());
        for (int i = 0; areSame && i < member.GetSize(); ++i)
            areSame = areIdentical(member.GetChild(i), other.GetChild(i));
    });
    return areSame;
}

} // namespace TunerDocuments

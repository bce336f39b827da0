// SPDX-License-Identifier: MIT
#include "documents/compare/Counterparts.h"

#include <jobxml/Visit.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

std::optional<QVector<Step>> Counterparts::find(const QVector<Step> &steps)
{
    QVector<Step> found;
    QString list;
    const DataObject *of = &m_of;
    const DataObject *in = &m_in;
    for (const Step &step : steps) {
        const auto ofMember = memberNamed(*of, step.member);
        const auto inMember = memberNamed(*in, step.member);
        if (!ofMember || !inMember || qMax(step.index, 0) >= ofMember->GetSize())
            return {};
        list += QLatin1Char('/') + step.member;
        int index = step.index;
        if (index >= 0)
            index = m_pairs.try_emplace(list, *inMember, *ofMember).first->second.ofSecond(index);
        if ((step.index >= 0 && index < 0) || qMax(index, 0) >= inMember->GetSize())
            return {};
        list += QString::number(step.index);
        found.append({step.member, index});
        of = &ofMember->GetChild(qMax(step.index, 0));
        in = &inMember->GetChild(qMax(index, 0));
    }
    return found;
}

} // namespace TunerDocuments

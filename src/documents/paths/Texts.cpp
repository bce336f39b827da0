// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments::Paths {

/// The steps to the items of the last list of each depth.
struct Texts::Lists
{
    struct List
    {
        const DataObject *object = nullptr;
        QString member;
        QStringList steps;
    };

    const QString &stepTo(int depth, const DataObject &object, const MemberView &list, int index)
    {
        if (last.size() <= depth)
            last.resize(depth + 1);
        List &known = last[depth];
        if (known.object != &object || known.member != list.GetName())
            known = {&object, list.GetName(), stepsTo(list)};
        return known.steps.at(index);
    }

    QVector<List> last;
};

Texts::Texts(const DataObject &root) : m_root(root), m_lists(std::make_unique<Lists>()) { }

Texts::~Texts() = default;

QString Texts::of(const QVector<Step> &steps)
{
    QStringList path;
    const DataObject *object = &m_root;
    for (int i = 0; i < steps.size() && object; ++i) {
        const auto member = memberNamed(*object, steps[i].member);
        const int index = qMax(steps[i].index, 0);
        if (!member || index >= member->GetSize())
            break;
        path.append(steps[i].index < 0 ? steps[i].member : m_lists->stepTo(i, *object, *member, index));
        object = &member->GetChild(index);
    }
    return path.isEmpty() ? QStringLiteral("") : path.join(QLatin1Char('/'));
}

} // namespace TunerDocuments::Paths

// SPDX-License-Identifier: MIT
#include "documents/json/JsonPlace.h"

#include <tunerdocuments/Path.h>

using JobXml::Step;

namespace TunerDocuments {
namespace JsonReading {

QString Items::step(int index)
{
    if (!m_steps) {
        QVector<QString> identities;
        int objects = 0;
        for (const Json &item : m_array.items())
            identities.append(item.isObject() ? Paths::identityOf(m_list.GetChild(objects++)) : QString());
        m_steps.emplace(m_list.GetName(), std::move(identities));
    }
    return m_steps->at(index);
}

QString Place::pathTo(const QString &step) const
{
    if (isDocument())
        return step;
    if (path.isNull())
        path = parent->pathTo(items ? items->step(index) : QString(member));
    return step.isNull() ? path : path + QLatin1Char('/') + step;
}

QVector<Step> Place::steps() const
{
    return isDocument() ? QVector<Step>() : parent->steps() + QVector<Step>{{member, index}};
}

} // namespace JsonReading
} // namespace TunerDocuments

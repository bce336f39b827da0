// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// Where an object or a member is in a document; in that itself by default.
struct ObjectPlace
{
    QString path{};
    QVector<JobXml::Step> steps{};

    ObjectPlace below(const QString &step, const JobXml::Step &to) const
    {
        return {path.isEmpty() ? step : path + QLatin1Char('/') + step, steps + QVector<JobXml::Step>{to}};
    }
    ObjectPlace below(const JobXml::MemberView &member) const
    {
        return below(member.GetName(), {member.GetName(), -1});
    }
};

} // namespace TunerDocuments

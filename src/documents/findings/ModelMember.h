// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/DataObject.h>
#include <jobxml/Visit.h>

namespace TunerDocuments {

/// A member of a class of the model, with those of its child objects.
struct ModelMember
{
    QString name;
    JobXml::MemberKind kind = JobXml::MemberKind::Object;
    QStringList names{}; ///< of an enumeration or a choice
    QVector<ModelMember> members{}; ///< of its child objects
};

/// The member of the object at the end of the steps, or the object itself if the name is null. Null if the model has no
/// such member. Takes the same time for every document.
const ModelMember *memberOf(const QVector<JobXml::Step> &steps, const QString &name);

/// Whether a problem, one with a place in the document that was read, is about something that a reader refuses although
/// the document then has it: an incomplete item of a list.
bool isAboutKeptItem(const JobXml::Problem &problem);

} // namespace TunerDocuments

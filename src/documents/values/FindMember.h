// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// All members of an object, in the order of visit().
std::vector<JobXml::MemberView> membersOf(const JobXml::DataObject &object);

/// The member of that name, if the class has it.
std::optional<JobXml::MemberView> memberNamed(const JobXml::DataObject &object, const QString &name);

/// The choice of a ValueItem; no value for objects of other classes.
std::optional<JobXml::MemberView> choiceOf(const JobXml::DataObject &object);

/// The alternative that a ValueItem has chosen, if there is one.
std::optional<JobXml::MemberView> chosenIn(const JobXml::DataObject &object);

/// Whether an alternative has data, chosen or not: it is set, or a member of it is.
bool hasData(const JobXml::MemberView &alternative);

/// The names of the alternatives of an item that have data.
QStringList alternativesWithData(const JobXml::DataObject &item);

/// Chooses again what an item had chosen: changing another alternative has chosen that.
void chooseAgain(JobXml::DataObject &item, const QVariant &choice);

/// Whether the member has child objects: an object, an alternative or a list of objects.
bool holdsObjects(const JobXml::MemberView &member);

/// Whether values of that kind are numbers, of any type.
inline bool isNumeric(JobXml::MemberKind kind)
{
    switch (kind) {
    case JobXml::MemberKind::Int:
    case JobXml::MemberKind::Int64:
    case JobXml::MemberKind::UInt64:
    case JobXml::MemberKind::Float:
    case JobXml::MemberKind::Double:
        return true;
    default:
        return false;
    }
}

/// Whether its value is a number of any type.
bool isNumber(const JobXml::MemberView &member);

/// The object at the end of the steps; null if there is none. An index of -1 means the only child.
const JobXml::DataObject *objectAt(const JobXml::DataObject &root, const QVector<JobXml::Step> &steps);

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/Visit.h>

#include "documents/values/FindMember.h"

namespace TunerDocuments {

/// What objects and members contain, for comparing and changing them.
namespace Contents {

/// Whether the member is set or its value is not the default. For values.
bool differsFromDefault(const JobXml::MemberView &member);

enum class Amount {
    Brief, ///< lists are shown by their size
    Whole,
};

/// What an object contains, on one line; empty for an object that is equal to a new one.
QString text(const JobXml::DataObject &object, Amount amount, bool withIdentity);

/// The same for the child object of a member, which need not have one.
QString textOfChild(const JobXml::MemberView &member);

/// Whether two objects of one class are equal as JSON.
bool areAlike(const JobXml::DataObject &first, const JobXml::DataObject &second);

/// The same for the child objects of two members; a missing child is equal to a new one. Flags are not compared.
bool childrenAreAlike(const JobXml::MemberView &first, const JobXml::MemberView &second);

/// Makes a new object equal to another one of its class: values, flags and choices. It does not validate afterwards.
void copy(const JobXml::DataObject &source, JobXml::DataObject &target);

/// Stores a value and the flag.
void store(JobXml::MemberEditor &member, const QVariant &value, bool isSet);

/// A new object of the class of the objects at the end of the steps, in a new document, which does not validate.
JobXml::DataObject &newObjectAt(JobXml::DataObject &document, const QVector<JobXml::Step> &steps);

} // namespace Contents

} // namespace TunerDocuments

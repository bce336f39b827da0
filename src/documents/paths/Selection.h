// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>

/// Which members and items the steps of a path select.
namespace TunerDocuments::Paths {

/// Whether a step has an asterisk, with which it may select several.
bool hasAsterisk(const Path::Step &step);

/// Whether a step of this member's name, or any name, selects it.
bool selectsMember(const Path::Step &step, const JobXml::MemberView &member);

/// Whether a step selects items by their texts or their position.
bool choosesItem(const Path::Step &step);

/// The items that fulfill the conditions of a step, up to the one at its position.
QVector<int> fittingItems(const JobXml::MemberView &list, const Path::Step &step);

/// The only item that a step selects. Throws PathFailure if there is none, or several.
int itemOf(const JobXml::MemberView &list, const Path::Step &step);

} // namespace TunerDocuments::Paths

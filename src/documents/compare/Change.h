// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Patch.h>

#include "documents/values/ObjectEdit.h"
#include "json/Json.h"

namespace TunerDocuments {

/// An object of a change, null if it equals a new one, and the document that keeps it.
struct WholeObject
{
    const JobXml::DataObject *object = nullptr;
    std::shared_ptr<JobXml::TunerProperties> owner = nullptr;
};

/// One side of a change, in one of its two documents.
class ChangeSide
{
public:
    virtual ~ChangeSide() = default;
    /// The value of the member.
    virtual ValueState value(const JobXml::MemberView &member) const = 0;
    /// The flag of a list or an object whose content does not change.
    virtual bool flag() const = 0;
    /// The flag of an object that changes as a whole.
    virtual bool objectIsSet() const = 0;
    /// The whole object. `steps` lead to an object of its class.
    virtual WholeObject object(const QVector<JobXml::Step> &steps) const = 0;
    /// The object that has the identity of a renamed item; of its members, only those count.
    virtual WholeObject identity(const QVector<JobXml::Step> &steps) const = 0;
    /// The position of an item, from 0.
    virtual int position() const = 0;
    /// The flag of the list of an item, if it does not follow from the number of its items.
    virtual std::optional<bool> listIsSet() const = 0;
};

/// One change of a patch.
class Change
{
public:
    virtual ~Change() = default;
    virtual Difference::Kind kind() const = 0;
    virtual QString path() const = 0;
    virtual bool isFlagOnly() const = 0;
    virtual const ChangeSide &before() const = 0;
    virtual const ChangeSide &after() const = 0;
};

/// A difference of two documents in memory as a change in that direction; refers to it.
std::unique_ptr<Change> changeOf(const Difference &difference, Patch::Direction direction);

/// A line of a patch, which ChangeLine::check() has accepted, as a change in that direction; refers to it.
std::unique_ptr<Change> changeOf(const Json &line, Patch::Direction direction);

} // namespace TunerDocuments

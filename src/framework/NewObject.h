// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/DataObject.h>

namespace JobXml {

using REPORTGENERATOR::ReadLimits;

/// \name fromXml() and fromBinary() of all classes
/// @{

/// Reads into a new object. Returns whether all of it was read; `error` is as DataObject describes it.
bool readNewFromXml(DataObject &object, const QString &xml, QString *error);
bool readNewFromBinary(DataObject &object, const QByteArray &representation, QString *error, const ReadLimits &limits);

template <class Class>
std::optional<Class> newFromXml(const QString &xml, QString *error)
{
    std::optional<Class> object(std::in_place);
    if (!readNewFromXml(*object, xml, error))
        object.reset();
    return object;
}

template <class Class>
std::optional<Class> newFromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    std::optional<Class> object(std::in_place);
    if (!readNewFromBinary(*object, representation, error, limits))
        object.reset();
    return object;
}
/// @}

} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "text/Size.h"

namespace JobXml {

class DataObject;

/// One function for each error of the model. The texts are in Errors.cpp alone.
namespace Errors {

[[noreturn]] void notSet(const DataObject &object, QLatin1String member);
[[noreturn]] void nullText(const DataObject &object, QLatin1String member);
/// Names the class instead of the object.
[[noreturn]] void invalidEnum(const QString &className, QLatin1String member);
[[noreturn]] void incompleteItem(const DataObject &object, QLatin1String item);
[[noreturn]] void itemWithoutData(const DataObject &object, QLatin1String item);
[[noreturn]] void emptyBoolean(const DataObject &object, QLatin1String member);
[[noreturn]] void unknownElement(const DataObject &object, const QString &element);
[[noreturn]] void wrongLength(const DataObject &object);
[[noreturn]] void invalidChoice(const DataObject &object);
[[noreturn]] void nothingChosen(const DataObject &object, QLatin1String choice);
[[noreturn]] void chosenNotSet(const DataObject &object, QLatin1String alternative);
[[noreturn]] void chosenWithoutData(const DataObject &object, QLatin1String alternative);

/// The text for access to an alternative, identified by its bit, that is not chosen. Reserved for later versions: today
/// every alternative may be used at any time, so nothing throws it.
QString accessToUnchosen(const DataObject &object, int alternative);

/// \name Problems that are reported but never thrown
/// @{
/// A mandatory list that is set but empty: the object passes its check and has no data.
QString emptyList(const DataObject &object, QLatin1String list);
/// The same for a derived class that overrides HasData().
QString withoutData(const DataObject &object);
/// `text[at]` is the first character that XML cannot carry.
QString notForXml(const DataObject &object, QLatin1String member, const QString &text, REPORTGENERATOR::Size at);
/// The same for a text that a derived class writes itself.
QString ownTextNotForXml(const DataObject &object);
/// @}

} // namespace Errors
} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace JobXml {

class DataObject;

/// Every failure of the model, one function each; the texts are in Errors.cpp and nowhere else.
namespace Errors {

[[noreturn]] void notSet(const DataObject &object, QLatin1String member);
[[noreturn]] void nullGiven(const DataObject &object, QLatin1String member);
/// Names the class, whatever the object is called.
[[noreturn]] void invalidEnumGiven(const QString &className, QLatin1String member);
[[noreturn]] void incompleteItem(const DataObject &object, QLatin1String item);
[[noreturn]] void itemWithoutData(const DataObject &object, QLatin1String item);
[[noreturn]] void emptyBoolean(const DataObject &object, QLatin1String member);
[[noreturn]] void unknownElement(const DataObject &object, const QString &element);
[[noreturn]] void wrongLength(const DataObject &object);
[[noreturn]] void invalidChoice(const DataObject &object);
[[noreturn]] void nothingChosen(const DataObject &object);
[[noreturn]] void chosenNotSet(const DataObject &object, QLatin1String alternative);
[[noreturn]] void chosenWithoutData(const DataObject &object, QLatin1String alternative);

/// The text for the use of an alternative, given by its bit, that is not the chosen one. Defined for callers of later
/// versions: today every alternative may be used at any time, so nothing raises it.
QString accessToUnchosen(const DataObject &object, int alternative);

/// \name Problems for which nothing is thrown
/// @{
/// A mandatory list that is set but empty: the object passes its check and has no data.
QString emptyList(const DataObject &object, QLatin1String list);
/// The same for a derived class, whose HasData() has reasons of its own.
QString withoutData(const DataObject &object);
/// `text[at]` is the first character that XML cannot carry.
QString notForXml(const DataObject &object, QLatin1String member, const QString &text, int at);
/// The same in what a derived class writes itself.
QString ownTextNotForXml(const DataObject &object);
/// @}

} // namespace Errors
} // namespace JobXml

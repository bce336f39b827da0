// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "../src/module/Classes.h"

/// The accessors of every member of every class, for tests of all of them. A visitor cannot replace this: it does not
/// call the accessors.
namespace Members {

/// A text, boolean, number or enumeration.
template <class T, class V>
struct Value
{
    const char *name;
    V (T::*get)() const;
    void (T::*set)(V);
    bool (T::*isSet)() const;
    void (T::*reset)();
    V (T::*getDefault)() const;
};

/// A child object or an alternative.
template <class T, class C>
struct Child
{
    const char *name;
    const C &(T::*get)() const;
    C &(T::*modify)();
    void (T::*set)(const C &);
    bool (T::*isSet)() const;
    void (T::*reset)();
    bool (T::*isValid)(const C &) const;
};

/// A list of objects, or of enumerators.
template <class T, class Item, class Argument = const Item &>
struct List
{
    const char *name;
    const QVector<Item> &(T::*get)() const;
    QVector<Item> &(T::*modify)();
    void (T::*set)(const QVector<Item> &);
    void (T::*append)(Argument);
    bool (T::*isSet)() const;
    void (T::*reset)();
};

} // namespace Members

#include "Members.inc"

namespace Members {

/// Calls `use` with one of these for each member of the class, in bit order.
template <class T, class Use>
void forEach(Use &&use)
{
    forEach(use, JobXml::ClassTag<T>());
}

} // namespace Members

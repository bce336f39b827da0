// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/DataObject.h>

/// Calls the accessors of one class, for all of its members in turn.
struct Accessors
{
    using Object = JobXml::DataObject;

    /// The const getters and `IsXSet`: what they return, as a text.
    QString (*read)(const Object &object);

    /// The setters and `AppendX`: stores what the members hold, and appends the items that the lists hold once more.
    void (*store)(Object &object);

    /// The getters that return a reference: resets the first item of a list and appends another, and resets other
    /// members.
    void (*modify)(Object &object);

    /// `ResetX`.
    void (*reset)(Object &object);

    /// The same for one member alone, by its index in the list.
    int (*count)();
    QString (*readOne)(const Object &object, int member);
    void (*copyOne)(const Object &from, Object &to, int member);
    void (*resetOne)(Object &object, int member);
};

/// The accessors of the class of that name; fails the test for any other name.
const Accessors &accessorsOf(const QString &className);

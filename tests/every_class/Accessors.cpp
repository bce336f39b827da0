// SPDX-License-Identifier: MIT
#include "Accessors.h"

#include <QHash>
#include <QVariant>

#include "Members.h"

using namespace JobXml;

namespace {

using Mode = StartupModes::StartupMode;

template <class Value>
QString textOf(const Value &value)
{
    return QVariant::fromValue(value).toString();
}

QString textOf(TunerProperties::type value)
{
    return QString::number(int(value));
}

QString textOf(const QVector<Mode> &modes)
{
    QString text;
    for (const Mode mode : modes)
        text += QString::number(int(mode)) + QLatin1Char(' ');
    return text;
}

QString textOf(const DataObject &object)
{
    return object.GetObjectName() + QStringLiteral("012").at(object.HasData() + object.AnyData());
}

template <class Item>
QString textOf(const QVector<Item> &items)
{
    QString text;
    for (const Item &item : items)
        text += textOf(static_cast<const DataObject &>(item)) + QLatin1Char(' ');
    return text;
}

// The operations on each member of an object.

class Reading
{
public:
    template <class T, class V>
    void operator()(T &object, const Members::Value<T, V> &member)
    {
        take(textOf((object.*member.get)()), (object.*member.isSet)());
    }
    template <class T, class C>
    void operator()(T &object, const Members::Child<T, C> &member)
    {
        take(textOf(static_cast<const DataObject &>((object.*member.get)())), (object.*member.isSet)());
    }
    template <class T, class Item, class Argument>
    void operator()(T &object, const Members::List<T, Item, Argument> &member)
    {
        take(textOf((object.*member.get)()), (object.*member.isSet)());
    }

    QString text;

private:
    void take(const QString &value, bool set) { text += value + (set ? QStringLiteral("! ") : QStringLiteral("? ")); }
};

class Storing
{
public:
    template <class T, class V>
    void operator()(T &object, const Members::Value<T, V> &member)
    {
        (object.*member.set)((object.*member.get)());
    }
    template <class T, class C>
    void operator()(T &object, const Members::Child<T, C> &member)
    {
        if ((object.*member.isSet)()) // storing would choose an alternative
            (object.*member.set)(C((object.*member.get)()));
    }
    template <class T, class Item, class Argument>
    void operator()(T &object, const Members::List<T, Item, Argument> &member)
    {
        (object.*member.set)((object.*member.get)());
        const QVector<Item> items = (object.*member.get)();
        for (const Item &item : items)
            (object.*member.append)(item);
    }
};

class Modifying
{
public:
    template <class T, class V>
    void operator()(T &, const Members::Value<T, V> &)
    {
    }
    template <class T, class C>
    void operator()(T &object, const Members::Child<T, C> &member)
    {
        (object.*member.modify)().Reset();
    }
    template <class T, class Item, class Argument>
    void operator()(T &object, const Members::List<T, Item, Argument> &member)
    {
        QVector<Item> &items = (object.*member.modify)();
        if (items.isEmpty())
            return;
        items.append(Item(items.constFirst()));
        reset(items[0]);
    }

private:
    static void reset(DataObject &item) { item.Reset(); }
    static void reset(Mode &mode) { mode = Mode::Stop; }
};

class Resetting
{
public:
    template <class T, class Member>
    void operator()(T &object, const Member &member)
    {
        (object.*member.reset)();
    }
};

class Copying
{
public:
    explicit Copying(const DataObject &source) : m_source(source) { }

    template <class T, class Member>
    void operator()(T &object, const Member &member)
    {
        (object.*member.set)((static_cast<const T &>(m_source).*member.get)());
    }

private:
    const DataObject &m_source;
};

/// Does something to one member and counts them all.
template <class Action>
class Only
{
public:
    explicit Only(int wanted, Action action = Action()) : does(std::move(action)), m_wanted(wanted) { }

    template <class T, class Member>
    void operator()(T &object, const Member &member)
    {
        if (seen++ == m_wanted)
            does(object, member);
    }

    Action does;
    int seen = 0;

private:
    int m_wanted;
};

template <class T, class Action>
Action done(JobXml::DataObject &object, Action action = Action())
{
    Members::forEach<T>([&](const auto &member) { action(static_cast<T &>(object), member); });
    return action;
}

template <class T>
Accessors accessors()
{
    return {
        // Members are listed for reading and for changing; reading changes nothing.
        [](const DataObject &object) { return done<T, Reading>(const_cast<DataObject &>(object)).text; },
        [](DataObject &object) { done<T, Storing>(object); },
        [](DataObject &object) { done<T, Modifying>(object); },
        [](DataObject &object) { done<T, Resetting>(object); },
        [] {
            T object;
            return done<T>(object, Only<Resetting>(-1)).seen;
        },
        [](const DataObject &object, int member) {
            return done<T>(const_cast<DataObject &>(object), Only<Reading>(member)).does.text;
        },
        [](const DataObject &from, DataObject &to, int member) { done<T>(to, Only<Copying>(member, Copying(from))); },
        [](DataObject &object, int member) { done<T>(object, Only<Resetting>(member)); },
    };
}

} // namespace

const Accessors &accessorsOf(const QString &className)
{
    static const auto all = [] {
        QHash<QString, Accessors> accessorsOfClasses;
        Classes::forEach([&](auto tag) {
            using Class = typename decltype(tag)::Class;
            accessorsOfClasses.insert(Class::GetStaticObjectName(), accessors<Class>());
        });
        return accessorsOfClasses;
    }();
    const auto found = all.constFind(className);
    if (found == all.constEnd())
        qFatal("no accessors of %s", qPrintable(className));
    return *found;
}

// SPDX-License-Identifier: MIT
#include "Accessors.h"

#include <QHash>
#include <QVariant>

#include <jobxml/TunerProperties.h>

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

// What is done to each member of an object: one function for each kind of member.

class Reading
{
public:
    template <class T, class Get, class Value>
    void value(T &object, Get get, void (T::*)(Value), bool (T::*isSet)() const, void (T::*)())
    {
        take(textOf((object.*get)()), (object.*isSet)());
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*get)() const, Value &(T::*)(), void (T::*)(const Value &),
               bool (T::*isSet)() const, void (T::*)())
    {
        take(textOf(static_cast<const DataObject &>((object.*get)())), (object.*isSet)());
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*)(),
              void (T::*)(const QVector<Item> &), void (T::*)(Given), bool (T::*isSet)() const, void (T::*)())
    {
        take(textOf((object.*get)()), (object.*isSet)());
    }

    QString text;

private:
    void take(const QString &value, bool set) { text += value + (set ? QStringLiteral("! ") : QStringLiteral("? ")); }
};

class Storing
{
public:
    template <class T, class Get, class Value>
    void value(T &object, Get get, void (T::*set)(Value), bool (T::*)() const, void (T::*)())
    {
        (object.*set)((object.*get)());
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*get)() const, Value &(T::*)(), void (T::*set)(const Value &),
               bool (T::*isSet)() const, void (T::*)())
    {
        if ((object.*isSet)()) // storing would choose an alternative
            (object.*set)(Value((object.*get)()));
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*)(),
              void (T::*set)(const QVector<Item> &), void (T::*append)(Given), bool (T::*)() const, void (T::*)())
    {
        (object.*set)((object.*get)());
        const QVector<Item> items = (object.*get)();
        for (const Item &item : items)
            (object.*append)(item);
    }
};

class Modifying
{
public:
    template <class T, class Get, class Value>
    void value(T &, Get, void (T::*)(Value), bool (T::*)() const, void (T::*)())
    {
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*)() const, Value &(T::*get)(), void (T::*)(const Value &),
               bool (T::*)() const, void (T::*)())
    {
        (object.*get)().Reset();
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*)() const, QVector<Item> &(T::*get)(),
              void (T::*)(const QVector<Item> &), void (T::*)(Given), bool (T::*)() const, void (T::*)())
    {
        QVector<Item> &items = (object.*get)();
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
    template <class T, class Get, class Value>
    void value(T &object, Get, void (T::*)(Value), bool (T::*)() const, void (T::*reset)())
    {
        (object.*reset)();
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*)() const, Value &(T::*)(), void (T::*)(const Value &), bool (T::*)() const,
               void (T::*reset)())
    {
        (object.*reset)();
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*)() const, QVector<Item> &(T::*)(),
              void (T::*)(const QVector<Item> &), void (T::*)(Given), bool (T::*)() const, void (T::*reset)())
    {
        (object.*reset)();
    }
};

class Copying
{
public:
    explicit Copying(DataObject &source) : m_source(source) { }

    template <class T, class Get, class Value>
    void value(T &object, Get get, void (T::*set)(Value), bool (T::*)() const, void (T::*)())
    {
        (object.*set)((sourceAs<T>().*get)());
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*get)() const, Value &(T::*)(), void (T::*set)(const Value &),
               bool (T::*)() const, void (T::*)())
    {
        (object.*set)((sourceAs<T>().*get)());
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*)(),
              void (T::*set)(const QVector<Item> &), void (T::*)(Given), bool (T::*)() const, void (T::*)())
    {
        (object.*set)((sourceAs<T>().*get)());
    }

private:
    template <class T>
    T &sourceAs() const
    {
        return static_cast<T &>(m_source);
    }

    DataObject &m_source;
};

/// Does something to one member and counts them all.
template <class Action>
class Only
{
public:
    explicit Only(int wanted, Action action = Action()) : does(std::move(action)), m_wanted(wanted) { }

    template <class T, class Get, class Value>
    void value(T &object, Get get, void (T::*set)(Value), bool (T::*isSet)() const, void (T::*reset)())
    {
        if (seen++ == m_wanted)
            does.value(object, get, set, isSet, reset);
    }

    template <class T, class Value>
    void child(T &object, const Value &(T::*get)() const, Value &(T::*modify)(), void (T::*set)(const Value &),
               bool (T::*isSet)() const, void (T::*reset)())
    {
        if (seen++ == m_wanted)
            does.child(object, get, modify, set, isSet, reset);
    }

    template <class T, class Item, class Given>
    void list(T &object, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*modify)(),
              void (T::*set)(const QVector<Item> &), void (T::*append)(Given), bool (T::*isSet)() const,
              void (T::*reset)())
    {
        if (seen++ == m_wanted)
            does.list(object, get, modify, set, append, isSet, reset);
    }

    Action does;
    int seen = 0;

private:
    int m_wanted;
};

// Setters of texts and the ways to append have deleted overloads for null pointers, so their types are written out.

template <class Action, class T>
void text(Action &does, T &object, QString (T::*get)() const, void (T::*set)(QString), bool (T::*isSet)() const,
          void (T::*reset)())
{
    does.value(object, get, set, isSet, reset);
}

template <class Action, class T, class Item>
void list(Action &does, T &object, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*modify)(),
          void (T::*set)(const QVector<Item> &), void (T::*append)(const Item &), bool (T::*isSet)() const,
          void (T::*reset)())
{
    does.list(object, get, modify, set, append, isSet, reset);
}

// The members of each class.
// clang-format off

template <class Action, class T>
void eachMember(Action &does, T &o) // of the four kinds with an id and a number or boolean
{
    text(does, o, &T::Getid, &T::Setid, &T::IsidSet, &T::Resetid);
    does.value(o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
}

template <class Action>
void eachMember(Action &does, ValueString &o)
{
    using T = ValueString;
    text(does, o, &T::Getid, &T::Setid, &T::IsidSet, &T::Resetid);
    text(does, o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
}

template <class Action, class T>
void eachMemberOfNumeric(Action &does, T &o)
{
    does.value(o, static_cast<QString (T::*)()>(&T::Getid), static_cast<void (T::*)(QString)>(&T::Setid), &T::IsidSet, &T::Resetid);
    does.value(o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
    does.value(o, &T::Getmin, &T::Setmin, &T::IsminSet, &T::Resetmin);
    does.value(o, &T::Getmax, &T::Setmax, &T::IsmaxSet, &T::Resetmax);
    does.value(o, &T::Getstep, &T::Setstep, &T::IsstepSet, &T::Resetstep);
}

template <class Action> void eachMember(Action &does, ValueNumericFloat &o) { eachMemberOfNumeric(does, o); }
template <class Action> void eachMember(Action &does, ValueNumericInt &o) { eachMemberOfNumeric(does, o); }
template <class Action> void eachMember(Action &does, ValueNumericInt64 &o) { eachMemberOfNumeric(does, o); }

template <class Action>
void eachMember(Action &does, ValueSelection &o)
{
    using T = ValueSelection;
    list(does, o, &T::GetSelectionItem, &T::GetSelectionItem, &T::SetSelectionItem, &T::AppendSelectionItem, &T::IsSelectionItemSet, &T::ResetSelectionItem);
    text(does, o, &T::Getid, &T::Setid, &T::IsidSet, &T::Resetid);
    does.value(o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
    text(does, o, &T::Gettext, &T::Settext, &T::IstextSet, &T::Resettext);
    does.value(o, &T::Getindex, &T::Setindex, &T::IsindexSet, &T::Resetindex);
}

template <class Action>
void eachMember(Action &does, SelectionItem &o)
{
    using T = SelectionItem;
    text(does, o, &T::Getname, &T::Setname, &T::IsnameSet, &T::Resetname);
    does.value(o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
}

template <class Action>
void eachMember(Action &does, ValueStringList &o)
{
    using T = ValueStringList;
    list(does, o, &T::GetStringItem, &T::GetStringItem, &T::SetStringItem, &T::AppendStringItem, &T::IsStringItemSet, &T::ResetStringItem);
    text(does, o, &T::Getid, &T::Setid, &T::IsidSet, &T::Resetid);
    text(does, o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
}

template <class Action>
void eachMember(Action &does, StringItem &o)
{
    using T = StringItem;
    text(does, o, &T::Getvalue, &T::Setvalue, &T::IsvalueSet, &T::Resetvalue);
}

template <class Action>
void eachMember(Action &does, ValueItem &o)
{
    using T = ValueItem;
    does.child(o, &T::GetValueBoolean, &T::GetValueBoolean, &T::SetValueBoolean, &T::IsValueBooleanSet, &T::ResetValueBoolean);
    does.child(o, &T::GetValueFloat, &T::GetValueFloat, &T::SetValueFloat, &T::IsValueFloatSet, &T::ResetValueFloat);
    does.child(o, &T::GetValueInt, &T::GetValueInt, &T::SetValueInt, &T::IsValueIntSet, &T::ResetValueInt);
    does.child(o, &T::GetValueInt64, &T::GetValueInt64, &T::SetValueInt64, &T::IsValueInt64Set, &T::ResetValueInt64);
    does.child(o, &T::GetValueNumericFloat, &T::GetValueNumericFloat, &T::SetValueNumericFloat, &T::IsValueNumericFloatSet, &T::ResetValueNumericFloat);
    does.child(o, &T::GetValueNumericInt, &T::GetValueNumericInt, &T::SetValueNumericInt, &T::IsValueNumericIntSet, &T::ResetValueNumericInt);
    does.child(o, &T::GetValueNumericInt64, &T::GetValueNumericInt64, &T::SetValueNumericInt64, &T::IsValueNumericInt64Set, &T::ResetValueNumericInt64);
    does.child(o, &T::GetValueSelection, &T::GetValueSelection, &T::SetValueSelection, &T::IsValueSelectionSet, &T::ResetValueSelection);
    does.child(o, &T::GetValueString, &T::GetValueString, &T::SetValueString, &T::IsValueStringSet, &T::ResetValueString);
    does.child(o, &T::GetValueStringList, &T::GetValueStringList, &T::SetValueStringList, &T::IsValueStringListSet, &T::ResetValueStringList);
}

template <class Action>
void eachMember(Action &does, Node &o)
{
    using T = Node;
    list(does, o, &T::GetValueItem, &T::GetValueItem, &T::SetValueItem, &T::AppendValueItem, &T::IsValueItemSet, &T::ResetValueItem);
    text(does, o, &T::Getid, &T::Setid, &T::IsidSet, &T::Resetid);
}

template <class Action>
void eachMember(Action &does, Component &o)
{
    using T = Component;
    list(does, o, &T::GetNode, &T::GetNode, &T::SetNode, &T::AppendNode, &T::IsNodeSet, &T::ResetNode);
    text(does, o, &T::Gettype, &T::Settype, &T::IstypeSet, &T::Resettype);
    text(does, o, &T::Getname, &T::Setname, &T::IsnameSet, &T::Resetname);
    text(does, o, &T::GetdisplayName, &T::SetdisplayName, &T::IsdisplayNameSet, &T::ResetdisplayName);
    does.value(o, &T::Getoptional, &T::Setoptional, &T::IsoptionalSet, &T::Resetoptional);
}

template <class Action>
void eachMember(Action &does, BandwidthSelection &o)
{
    using T = BandwidthSelection;
    text(does, o, &T::GetName, &T::SetName, &T::IsNameSet, &T::ResetName);
    does.value(o, &T::GetMaxBandwidth, &T::SetMaxBandwidth, &T::IsMaxBandwidthSet, &T::ResetMaxBandwidth);
}

template <class Action>
void eachMember(Action &does, StartupModes &o)
{
    using T = StartupModes;
    does.list(o, &T::GetStartupMode, &T::GetStartupMode, &T::SetStartupMode, static_cast<void (T::*)(Mode)>(&T::AppendStartupMode), &T::IsStartupModeSet, &T::ResetStartupMode);
}

template <class Action>
void eachMember(Action &does, TunerProperties &o)
{
    using T = TunerProperties;
    does.child(o, &T::GetStartupModes, &T::GetStartupModes, &T::SetStartupModes, &T::IsStartupModesSet, &T::ResetStartupModes);
    list(does, o, &T::GetBandwidthSelection, &T::GetBandwidthSelection, &T::SetBandwidthSelection, &T::AppendBandwidthSelection, &T::IsBandwidthSelectionSet, &T::ResetBandwidthSelection);
    does.value(o, &T::GetMaxFFPDelay, &T::SetMaxFFPDelay, &T::IsMaxFFPDelaySet, &T::ResetMaxFFPDelay);
    does.value(o, &T::GetHRPANSupported, &T::SetHRPANSupported, &T::IsHRPANSupportedSet, &T::ResetHRPANSupported);
    list(does, o, &T::GetComponent, &T::GetComponent, &T::SetComponent, &T::AppendComponent, &T::IsComponentSet, &T::ResetComponent);
    text(does, o, &T::Getname, &T::Setname, &T::IsnameSet, &T::Resetname);
    does.value(o, &T::Gettype, &T::Settype, &T::IstypeSet, &T::Resettype);
    text(does, o, &T::Getbaseresource, &T::Setbaseresource, &T::IsbaseresourceSet, &T::Resetbaseresource);
    text(does, o, &T::GetconnectableResources, &T::SetconnectableResources, &T::IsconnectableResourcesSet, &T::ResetconnectableResources);
    does.value(o, &T::Getquantity, &T::Setquantity, &T::IsquantitySet, &T::Resetquantity);
    text(does, o, &T::GetparentBaseResource, &T::SetparentBaseResource, &T::IsparentBaseResourceSet, &T::ResetparentBaseResource);
    does.value(o, &T::GethwProcessing, &T::SethwProcessing, &T::IshwProcessingSet, &T::ResethwProcessing);
}
// clang-format on

template <class T, class Action>
Action done(JobXml::DataObject &object, Action action = Action())
{
    eachMember(action, static_cast<T &>(object));
    return action;
}

template <class T>
Accessors accessors()
{
    return {
        // The members are listed for both uses, and ValueNumericFloat reads its id by a getter that is not const.
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
        [](const DataObject &from, DataObject &to, int member) {
            done<T>(to, Only<Copying>(member, Copying(const_cast<DataObject &>(from))));
        },
        [](DataObject &object, int member) { done<T>(object, Only<Resetting>(member)); },
    };
}

template <class... T>
QHash<QString, Accessors> table()
{
    return {{T::GetStaticObjectName(), accessors<T>()}...};
}

} // namespace

const Accessors &accessorsOf(const QString &className)
{
    static const auto all =
        table<TunerProperties, StartupModes, BandwidthSelection, Component, Node, ValueItem, ValueBoolean, ValueFloat,
              ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, ValueNumericInt64, ValueSelection,
              SelectionItem, ValueString, ValueStringList, StringItem>();
    const auto found = all.constFind(className);
    if (found == all.constEnd())
        qFatal("no accessors of %s", qPrintable(className));
    return *found;
}

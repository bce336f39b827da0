// SPDX-License-Identifier: MIT
#include <QtTest>

#include "DocumentSamples.h"
#include "Model.h"
#include "Surprises.h"

using namespace JobXml;
using namespace OutOfMemory;

// --- A complete object of each class, and another --------------------------------------------------------------------

namespace {

const Component &completeComponent()
{
    return samples<TunerProperties>().complete.GetComponent().first();
}

/// The value of this kind in the document.
template <class T>
T complete(const T &(ValueItem::*get)() const)
{
    for (const ValueItem &item : completeComponent().GetNode().first().GetValueItem()) {
        if ((item.*get)().HasData())
            return (item.*get)();
    }
    qFatal("the document lacks a kind of value");
}

template <class T>
T named(const char *id)
{
    T object;
    object.Setid(QLatin1String(id));
    return object;
}

StartupModes modes(const QVector<StartupModes::StartupMode> &list)
{
    StartupModes object;
    object.SetStartupMode(list);
    return object;
}

SelectionItem option(const char *name)
{
    SelectionItem item;
    item.Setname(QLatin1String(name));
    item.Setvalue(0.5);
    return item;
}

StringItem text(const char *value)
{
    StringItem item;
    item.Setvalue(QLatin1String(value));
    return item;
}

ValueSelection otherSelection()
{
    auto selection = named<ValueSelection>("other");
    selection.AppendSelectionItem(option("x"));
    return selection;
}

ValueStringList otherStringList()
{
    auto list = named<ValueStringList>("other");
    list.AppendStringItem(text("x"));
    return list;
}

} // namespace

#define SAMPLES(Class, complete, other)                                                                                \
    template <>                                                                                                        \
    const Samples<Class> &samples()                                                                                    \
    {                                                                                                                  \
        static const Samples<Class> objects(complete, other);                                                          \
        return objects;                                                                                                \
    }

SAMPLES(ValueBoolean, complete(&ValueItem::GetValueBoolean), named<ValueBoolean>("other"))
SAMPLES(ValueFloat, complete(&ValueItem::GetValueFloat), named<ValueFloat>("other"))
SAMPLES(ValueInt, complete(&ValueItem::GetValueInt), named<ValueInt>("other"))
SAMPLES(ValueInt64, complete(&ValueItem::GetValueInt64), named<ValueInt64>("other"))
SAMPLES(ValueNumericFloat, complete(&ValueItem::GetValueNumericFloat), named<ValueNumericFloat>("other"))
SAMPLES(ValueNumericInt, complete(&ValueItem::GetValueNumericInt), named<ValueNumericInt>("other"))
SAMPLES(ValueNumericInt64, complete(&ValueItem::GetValueNumericInt64), named<ValueNumericInt64>("other"))
SAMPLES(ValueSelection, complete(&ValueItem::GetValueSelection), otherSelection())
SAMPLES(ValueString, complete(&ValueItem::GetValueString), named<ValueString>("other"))
SAMPLES(ValueStringList, complete(&ValueItem::GetValueStringList), otherStringList())
SAMPLES(SelectionItem, option("i"), option("other"))
SAMPLES(StringItem, text("i"), text("other"))
SAMPLES(StartupModes, modes({StartupModes::StartupMode::DF, StartupModes::StartupMode::Scan}),
        modes({StartupModes::StartupMode::Stop}))
SAMPLES(BandwidthSelection, samples<TunerProperties>().complete.GetBandwidthSelection().first(), aBandwidth(1))
SAMPLES(ValueItem, completeComponent().GetNode().first().GetValueItem().last(), anIntItem())
SAMPLES(Node, completeComponent().GetNode().first(), aNode())
SAMPLES(Component, completeComponent(), aComponent())

// --- The operations on a member --------------------------------------------------------------------------------------

namespace {

/// The classes whose members were tried.
QStringList &triedClasses()
{
    static QStringList names;
    return names;
}

/// The operations of one class, which are tried one after the other.
template <class T>
class Members
{
public:
    /// A text, boolean, number or enumeration. Its getter is const in some classes and not in others.
    template <class V, class Get>
    Members &scalar(const char *name, Get get, void (T::*set)(V), bool (T::*isSet)() const, void (T::*reset)(), V value)
    {
        const auto isStored = [=](Objects<T> &o) { return (o.target.*isSet)() && (o.target.*get)() == value; };
        const auto store = [=](Objects<T> &o) { (o.target.*set)(value); };
        for (const Begins begins : {Begins::New, Begins::Shared})
            add(name, "set", begins, store, isStored);
        addResetAndGet(name, isSet, reset, [=](T &object) { (object.*get)(); });
        return *this;
    }

    /// A text. Some classes have two getters of their id, of which this takes the const one.
    Members &scalar(const char *name, QString (T::*get)() const, void (T::*set)(QString), bool (T::*isSet)() const,
                    void (T::*reset)(), const QString &value)
    {
        return scalar<QString, decltype(get)>(name, get, set, isSet, reset, value);
    }

    /// A child object or an alternative.
    template <class Child>
    Members &child(const char *name, const Child &(T::*get)() const, Child &(T::*modify)(),
                   void (T::*set)(const Child &), bool (T::*isSet)() const, void (T::*reset)())
    {
        const Child &value = samples<Child>().complete;
        const auto isStored = [=](Objects<T> &o) {
            return (o.target.*isSet)() && (std::as_const(o.target).*get)() == samples<Child>().complete;
        };
        const auto isMarked = [=](Objects<T> &o) { return (o.target.*isSet)(); };
        for (const Begins begins : {Begins::New, Begins::Shared}) {
            add(
                name, "set", begins, [=, &value](Objects<T> &o) { (o.target.*set)(value); }, isStored);
            add(
                name, "modify", begins, [=](Objects<T> &o) { (o.target.*modify)(); }, isMarked);
        }
        addResetAndGet(name, isSet, reset, [=](T &object) { (std::as_const(object).*get)(); });
        return *this;
    }

    /// A list of objects, or of modes.
    template <class Item>
    Members &list(const char *name, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*modify)(),
                  void (T::*set)(const QVector<Item> &), void (T::*append)(const Item &), bool (T::*isSet)() const,
                  void (T::*reset)())
    {
        return listOf(name, get, modify, set, append, isSet, reset);
    }
    template <class Item>
    Members &list(const char *name, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*modify)(),
                  void (T::*set)(const QVector<Item> &), void (T::*append)(Item), bool (T::*isSet)() const,
                  void (T::*reset)())
    {
        return listOf(name, get, modify, set, append, isSet, reset);
    }

    template <class Item, class ByItem>
    Members &listOf(const char *name, const QVector<Item> &(T::*get)() const, QVector<Item> &(T::*modify)(),
                    void (T::*set)(const QVector<Item> &), void (T::*append)(ByItem), bool (T::*isSet)() const,
                    void (T::*reset)())
    {
        const QVector<Item> &items = (samples<T>().complete.*get)();
        const Item &item = items.constFirst();
        const auto hold = [=](Objects<T> &o) {
            o.held = std::make_shared<QVector<Item>>((std::as_const(o.target).*get)());
        };
        const auto isStored = [=, &items](Objects<T> &o) {
            return (o.target.*isSet)() && (std::as_const(o.target).*get)() == items;
        };
        const auto isAppended = [=, &item](Objects<T> &o) {
            return (o.target.*isSet)() && (std::as_const(o.target).*get)().constLast() == item;
        };
        const auto isMarked = [=](Objects<T> &o) { return (o.target.*isSet)(); };
        const auto addAll = [&](Begins begins, const Action &prepare) {
            add(
                name, "set", begins, [=, &items](Objects<T> &o) { (o.target.*set)(items); }, isStored, prepare);
            add(
                name, "append", begins, [=, &item](Objects<T> &o) { (o.target.*append)(item); }, isAppended, prepare);
            add(
                name, "modify", begins, [=](Objects<T> &o) { (o.target.*modify)(); }, isMarked, prepare);
        };
        addAll(Begins::New, nothing);
        addAll(Begins::Filled, hold);
        addAll(Begins::Shared, nothing);
        addResetAndGet(name, isSet, reset, [=](T &object) { (std::as_const(object).*get)(); });
        return *this;
    }

    /// Tries all of them; returns whether each survived and no member is missing, and counts the failed allocations.
    bool areSurvived(int *allocations) const
    {
        const bool complete = isComplete();
        bool survived = complete;
        for (const Operation<T> &operation : m_operations) {
            if (!isSurvived(operation, allocations)) {
                qWarning("in: %s", operation.name.constData());
                survived = false;
            }
        }
        return survived && !m_operations.isEmpty();
    }

private:
    bool isComplete() const
    {
        QStringList members = Model::members(T());
        members.sort();
        QStringList listed = m_names;
        listed.sort();
        if (listed != members)
            qWarning("%s is tried with %s; it has %s", qPrintable(T::GetStaticObjectName()),
                     qPrintable(listed.join(QLatin1Char(' '))), qPrintable(members.join(QLatin1Char(' '))));
        triedClasses() += T::GetStaticObjectName();
        return listed == members;
    }

    using Action = typename Operation<T>::Action;
    using Question = typename Operation<T>::Question;

    static void nothing(Objects<T> &) { }

    template <class Get>
    void addResetAndGet(const char *name, bool (T::*isSet)() const, void (T::*reset)(), Get get)
    {
        m_names += QString::fromLatin1(name); // once for each member
        add(
            name, "reset", Begins::Shared, [=](Objects<T> &o) { (o.target.*reset)(); },
            [=](Objects<T> &o) { return !(o.target.*isSet)(); });
        add(
            name, "get", Begins::New, [=](Objects<T> &o) { get(o.target); },
            [=](Objects<T> &o) { return o.target.IsInitialized() && !(o.target.*isSet)(); });
        add(
            name, "get", Begins::Shared, [=](Objects<T> &o) { get(o.target); },
            [](Objects<T> &o) { return o.target == samples<T>().other; });
    }

    void add(const char *member, const char *what, Begins target, const Action &perform, const Question &isRight,
             const Action &prepare = nothing)
    {
        const QByteArray name = T::GetStaticObjectName().toLatin1() + ": " + what + ' ' + member + ", begins as "
            + QByteArray::number(int(target));
        m_operations.append({name, target, Leaves::Nothing, prepare, perform, isRight, {}, {}});
    }

    QVector<Operation<T>> m_operations;
    QStringList m_names;
};

#define SCALAR(Class, X, value) scalar(#X, &Class::Get##X, &Class::Set##X, &Class::Is##X##Set, &Class::Reset##X, value)
#define CHILD(Class, X)                                                                                                \
    child<X>(#X, &Class::Get##X, &Class::Get##X, &Class::Set##X, &Class::Is##X##Set, &Class::Reset##X)
#define LIST(Class, X)                                                                                                 \
    list(#X, &Class::Get##X, &Class::Get##X, &Class::Set##X, &Class::Append##X, &Class::Is##X##Set, &Class::Reset##X)

const QString word = QStringLiteral("word");

template <class T, class V>
Members<T> valueMembers(V value)
{
    Members<T> members;
    members.SCALAR(T, id, word).SCALAR(T, value, value);
    return members;
}

template <class T, class V>
Members<T> rangedMembers(V value)
{
    return valueMembers<T>(value).SCALAR(T, min, value).SCALAR(T, max, value).SCALAR(T, step, value);
}

} // namespace

/// Memory runs out while a member is set, appended to, reset or read, in every place once. A failure leaves the object
/// unchanged.
class OutOfMemoryMembersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ofTheValues()
    {
        QVERIFY(valueMembers<ValueBoolean>(true).areSurvived(&m_allocations));
        QVERIFY(valueMembers<ValueFloat>(1.5F).areSurvived(&m_allocations));
        QVERIFY(valueMembers<ValueInt>(7).areSurvived(&m_allocations));
        QVERIFY(valueMembers<ValueInt64>(qint64(7)).areSurvived(&m_allocations));
        QVERIFY(valueMembers<ValueString>(word).areSurvived(&m_allocations));
    }

    void ofTheRangedValues()
    {
        QVERIFY(rangedMembers<ValueNumericFloat>(1.5F).areSurvived(&m_allocations));
        QVERIFY(rangedMembers<ValueNumericInt>(7).areSurvived(&m_allocations));
        QVERIFY(rangedMembers<ValueNumericInt64>(qint64(7)).areSurvived(&m_allocations));
    }

    void ofTheListsOfValues()
    {
        QVERIFY(valueMembers<ValueSelection>(1.5)
                    .SCALAR(ValueSelection, text, word)
                    .SCALAR(ValueSelection, index, 1)
                    .LIST(ValueSelection, SelectionItem)
                    .areSurvived(&m_allocations));
        QVERIFY(Members<SelectionItem>()
                    .SCALAR(SelectionItem, name, word)
                    .SCALAR(SelectionItem, value, 1.5)
                    .areSurvived(&m_allocations));
        QVERIFY(valueMembers<ValueStringList>(word).LIST(ValueStringList, StringItem).areSurvived(&m_allocations));
        QVERIFY(Members<StringItem>().SCALAR(StringItem, value, word).areSurvived(&m_allocations));
    }

    void ofTheChoice()
    {
        QVERIFY(Members<ValueItem>()
                    .CHILD(ValueItem, ValueBoolean)
                    .CHILD(ValueItem, ValueFloat)
                    .CHILD(ValueItem, ValueInt)
                    .CHILD(ValueItem, ValueInt64)
                    .CHILD(ValueItem, ValueNumericFloat)
                    .CHILD(ValueItem, ValueNumericInt)
                    .CHILD(ValueItem, ValueNumericInt64)
                    .CHILD(ValueItem, ValueSelection)
                    .CHILD(ValueItem, ValueString)
                    .CHILD(ValueItem, ValueStringList)
                    .areSurvived(&m_allocations));
    }

    void ofNodeAndComponent()
    {
        QVERIFY(Members<Node>().SCALAR(Node, id, word).LIST(Node, ValueItem).areSurvived(&m_allocations));
        QVERIFY(Members<Component>()
                    .SCALAR(Component, type, word)
                    .SCALAR(Component, name, word)
                    .SCALAR(Component, displayName, word)
                    .SCALAR(Component, optional, true)
                    .LIST(Component, Node)
                    .areSurvived(&m_allocations));
    }

    void ofModesAndBandwidths()
    {
        QVERIFY(Members<StartupModes>().LIST(StartupModes, StartupMode).areSurvived(&m_allocations));
        QVERIFY(Members<BandwidthSelection>()
                    .SCALAR(BandwidthSelection, Name, word)
                    .SCALAR(BandwidthSelection, MaxBandwidth, 1.5)
                    .areSurvived(&m_allocations));
    }

    void ofTheDocument()
    {
        QVERIFY(Members<TunerProperties>()
                    .SCALAR(TunerProperties, name, word)
                    .SCALAR(TunerProperties, type, TunerProperties::type::SCP)
                    .SCALAR(TunerProperties, baseresource, word)
                    .SCALAR(TunerProperties, connectableResources, word)
                    .SCALAR(TunerProperties, quantity, 5)
                    .SCALAR(TunerProperties, parentBaseResource, word)
                    .SCALAR(TunerProperties, hwProcessing, true)
                    .SCALAR(TunerProperties, MaxFFPDelay, quint64(5))
                    .SCALAR(TunerProperties, HRPANSupported, true)
                    .CHILD(TunerProperties, StartupModes)
                    .LIST(TunerProperties, BandwidthSelection)
                    .LIST(TunerProperties, Component)
                    .areSurvived(&m_allocations));
    }

    // After all others.
    void noClassIsLeftOut()
    {
        triedClasses().sort();
        QCOMPARE(triedClasses(), Model::classes());
    }

    void cleanupTestCase() { qInfo("%d allocations, each failed alone and with all after it", m_allocations); }

private:
    int m_allocations = 0;
};

QTEST_GUILESS_MAIN(OutOfMemoryMembersTest)
#include "tst_OutOfMemoryMembers.moc"

// SPDX-License-Identifier: MIT
#include <QtTest>

#include "DocumentSamples.h"
#include "Members.h"
#include "Model.h"
#include "Surprises.h"

using namespace JobXml;
using namespace OutOfMemory;

// --- A complete object of each class, and another --------------------------------------------------------------------

namespace {

/// A value that no new object has, by its number.
template <class V>
V another(int number)
{
    if constexpr (std::is_same_v<V, QString>)
        return QString::number(number);
    else
        return V(number);
}

/// The first object of the class in the complete document.
template <class T>
T complete()
{
    std::optional<T> found;
    WholeTree::visit(samples<TunerProperties>().complete, [&](const DataObject &object) {
        if (!found && object.GetObjectName() == T::GetStaticObjectName())
            found = static_cast<const T &>(object);
    });
    if (!found)
        qFatal("the complete document lacks a %s", qPrintable(T::GetStaticObjectName()));
    return *found;
}

template <class T>
T other();

/// Sets the values of an object, and gives each list an item.
template <class T>
struct SetValuesAndLists
{
    T &object;

    template <class V>
    void operator()(const Members::Value<T, V> &member)
    {
        (object.*member.set)(another<V>(3));
    }
    template <class C>
    void operator()(const Members::Child<T, C> &)
    {
    }
    template <class Item, class Argument>
    void operator()(const Members::List<T, Item, Argument> &member)
    {
        if constexpr (std::is_enum_v<Item>)
            (object.*member.append)(another<Item>(3));
        else
            (object.*member.set)({other<Item>()});
    }
};

template <class T>
T other()
{
    T object;
    Members::forEach<T>(SetValuesAndLists<T>{object});
    return object;
}

template <>
ValueItem other()
{
    return anIntItem();
}

} // namespace

template <class T>
const Samples<T> &samples()
{
    static const Samples<T> objects(complete<T>(), other<T>());
    return objects;
}

// --- The operations on a member --------------------------------------------------------------------------------------

namespace {

/// The operations of one class, which are tried one after the other.
template <class T>
class Operations
{
public:
    Operations()
    {
        Members::forEach<T>([this](const auto &member) { this->add(member); });
    }

    /// Tries all of them; returns whether each survived and no member is missing, and adds up the allocations that
    /// failed.
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
    /// A text, boolean, number or enumeration.
    template <class V>
    void add(const Members::Value<T, V> &member)
    {
        const auto value = another<V>(1);
        const auto isStored = [=](Objects<T> &o) {
            return (o.target.*member.isSet)() && (o.target.*member.get)() == value;
        };
        const auto store = [=](Objects<T> &o) { (o.target.*member.set)(value); };
        for (const Begins begins : {Begins::New, Begins::Shared})
            add(member.name, "set", begins, store, isStored);
        addResetAndGet(member);
    }

    /// A child object or an alternative.
    template <class C>
    void add(const Members::Child<T, C> &member)
    {
        const C &value = samples<C>().complete;
        const auto isStored = [=](Objects<T> &o) {
            return (o.target.*member.isSet)() && (std::as_const(o.target).*member.get)() == samples<C>().complete;
        };
        const auto isMarked = [=](Objects<T> &o) { return (o.target.*member.isSet)(); };
        for (const Begins begins : {Begins::New, Begins::Shared}) {
            add(
                member.name, "set", begins, [=, &value](Objects<T> &o) { (o.target.*member.set)(value); }, isStored);
            add(
                member.name, "modify", begins, [=](Objects<T> &o) { (o.target.*member.modify)(); }, isMarked);
        }
        addResetAndGet(member);
    }

    /// A list of objects, or of modes.
    template <class Item, class Argument>
    void add(const Members::List<T, Item, Argument> &member)
    {
        const QVector<Item> &items = (samples<T>().complete.*member.get)();
        const Item &item = items.constFirst();
        const auto hold = [=](Objects<T> &o) {
            o.held = std::make_shared<QVector<Item>>((std::as_const(o.target).*member.get)());
        };
        const auto isStored = [=, &items](Objects<T> &o) {
            return (o.target.*member.isSet)() && (std::as_const(o.target).*member.get)() == items;
        };
        const auto isAppended = [=, &item](Objects<T> &o) {
            return (o.target.*member.isSet)() && (std::as_const(o.target).*member.get)().constLast() == item;
        };
        const auto isMarked = [=](Objects<T> &o) { return (o.target.*member.isSet)(); };
        const auto addAll = [&](Begins begins, const Action &prepare) {
            add(
                member.name, "set", begins, [=, &items](Objects<T> &o) { (o.target.*member.set)(items); }, isStored,
                prepare);
            add(
                member.name, "append", begins, [=, &item](Objects<T> &o) { (o.target.*member.append)(item); },
                isAppended, prepare);
            add(
                member.name, "modify", begins, [=](Objects<T> &o) { (o.target.*member.modify)(); }, isMarked, prepare);
        };
        addAll(Begins::New, nothing);
        addAll(Begins::Filled, hold);
        addAll(Begins::Shared, nothing);
        addResetAndGet(member);
    }

    bool isComplete() const
    {
        QStringList members = Model::members(T());
        members.sort();
        QStringList listed = m_names;
        listed.sort();
        if (listed != members)
            qWarning("%s is tried with %s; it has %s", qPrintable(T::GetStaticObjectName()),
                     qPrintable(listed.join(QLatin1Char(' '))), qPrintable(members.join(QLatin1Char(' '))));
        return listed == members;
    }

    using Action = typename Operation<T>::Action;
    using Question = typename Operation<T>::Question;

    static void nothing(Objects<T> &) { }

    template <class Member>
    void addResetAndGet(const Member &member)
    {
        m_names += QString::fromLatin1(member.name); // once for each member
        add(
            member.name, "reset", Begins::Shared, [=](Objects<T> &o) { (o.target.*member.reset)(); },
            [=](Objects<T> &o) { return !(o.target.*member.isSet)(); });
        add(
            member.name, "get", Begins::New, [=](Objects<T> &o) { (std::as_const(o.target).*member.get)(); },
            [=](Objects<T> &o) { return o.target.IsInitialized() && !(o.target.*member.isSet)(); });
        add(
            member.name, "get", Begins::Shared, [=](Objects<T> &o) { (std::as_const(o.target).*member.get)(); },
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

/// Classes that are tried by one function.
enum class Group { Values, RangedValues, ListsOfValues, Choice, NodeAndComponent, ModesAndBandwidths, Document };

template <class T>
Group groupOf()
{
    int values = 0;
    bool holdsObjects = false;
    visit(T(), [&](const MemberView &member) {
        holdsObjects = holdsObjects || Model::holdsObjects(member.GetKind());
        values += Model::holdsObjects(member.GetKind()) ? 0 : 1;
    });
    if (std::is_same_v<T, TunerProperties>)
        return Group::Document;
    if (std::is_same_v<T, ValueItem>)
        return Group::Choice;
    if (std::is_same_v<T, Node> || std::is_same_v<T, Component>)
        return Group::NodeAndComponent;
    if (std::is_same_v<T, StartupModes> || std::is_same_v<T, BandwidthSelection>)
        return Group::ModesAndBandwidths;
    if (holdsObjects || !ValueItem::GetChoiceValueItems().contains(T::GetStaticObjectName()))
        return Group::ListsOfValues;
    return values > 2 ? Group::RangedValues : Group::Values;
}

} // namespace

/// Memory runs out while a member is set, appended to, reset or read, in every place once. A failure leaves the object
/// unchanged.
class OutOfMemoryMembersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void singleValuesSurviveBadAlloc() { trySurviving(Group::Values); }
    void rangedValuesSurviveBadAlloc() { trySurviving(Group::RangedValues); }
    void listsOfValuesSurviveBadAlloc() { trySurviving(Group::ListsOfValues); }
    void choiceSurvivesBadAlloc() { trySurviving(Group::Choice); }
    void nodeAndComponentSurviveBadAlloc() { trySurviving(Group::NodeAndComponent); }
    void modesAndBandwidthsSurviveBadAlloc() { trySurviving(Group::ModesAndBandwidths); }
    void documentSurvivesBadAlloc() { trySurviving(Group::Document); }

    // After all others.
    void everyClassIsTested()
    {
        m_triedClasses.sort();
        QCOMPARE(m_triedClasses, Model::classes());
    }

    void cleanupTestCase() { qInfo("%d allocations, each failed alone and with all that follow", m_allocations); }

private:
    void trySurviving(Group group)
    {
        const int tried = m_triedClasses.size();
        Classes::forEach([&](auto tag) {
            using Class = typename decltype(tag)::Class;
            if (groupOf<Class>() != group)
                return;
            m_triedClasses += Class::GetStaticObjectName();
            QVERIFY2(Operations<Class>().areSurvived(&m_allocations), qPrintable(Class::GetStaticObjectName()));
        });
        QVERIFY(m_triedClasses.size() > tried);
    }

    int m_allocations = 0;
    QStringList m_triedClasses;
};

TEST_SUITE(OutOfMemoryMembersTest)
#include "tst_OutOfMemoryMembers.moc"

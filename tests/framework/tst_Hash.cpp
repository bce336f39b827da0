// SPDX-License-Identifier: MIT
#include <limits>

#include <QSet>
#include <QtTest>

#include <jobxml/Visit.h>

#include "../src/module/Classes.h"
#include "Documents.h"

using namespace JobXml;

namespace {

template <class T, class = void>
struct HasHash : std::false_type
{
};

template <class T>
struct HasHash<T, std::void_t<decltype(qHash(std::declval<const T &>()))>> : std::true_type
{
};

} // namespace

/// Equal objects have the same hash. Only classes with symmetric equality have one.
class HashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classesWithSymmetricEqualityHaveAHash()
    {
        QStringList withoutHash;
        Classes::forEach([&](auto tag) {
            using Class = typename decltype(tag)::Class;
            if (!HasHash<Class>::value)
                withoutHash += Class::GetStaticObjectName();
        });
        QCOMPARE(withoutHash.join(QLatin1Char(' ')),
                 QStringLiteral("TunerProperties Component Node ValueItem ValueSelection ValueStringList"));
    }

    void classesWithoutAHashHaveAsymmetricEquality()
    {
        const Node marked = aNode();
        Node unmarked(marked);
        visit(unmarked, [](MemberEditor &member) {
            if (member.GetKind() == MemberKind::ObjectList)
                member.SetFlag(false);
        });
        QVERIFY(unmarked == marked);
        QVERIFY(!(marked == unmarked));
        ValueItem reset;
        reset.SetValueInt(anInt());
        reset.ResetValueInt();
        ValueItem chosen;
        chosen.SetValueInt(anInt());
        QVERIFY(reset == chosen);
        QVERIFY(!(chosen == reset));
    }

    void equalObjectsHaveTheSameHash()
    {
        QCOMPARE(qHash(anInt(3)), qHash(anInt(3)));
        QCOMPARE(qHash(aBandwidth(), 7), qHash(aBandwidth(), 7));
        QCOMPARE(qHash(ValueInt()), qHash(initialized(ValueInt())));
    }

    void unsetMembersDoNotAffectTheHash()
    {
        ValueInt one = anInt(1);
        ValueInt two = anInt(2);
        one.Resetvalue();
        two.Resetvalue();
        QVERIFY(one == two);
        QCOMPARE(qHash(one), qHash(two));
        QVERIFY(qHash(one) != qHash(anInt(0)));
    }

    void zeroesHaveOneHashWhateverTheirSign()
    {
        ValueFloat plus;
        plus.Setvalue(0.0F);
        ValueFloat minus;
        minus.Setvalue(-0.0F);
        QVERIFY(plus == minus);
        QCOMPARE(qHash(plus), qHash(minus));
        SelectionItem positive;
        positive.Setvalue(0.0);
        SelectionItem negative;
        negative.Setvalue(-0.0);
        QVERIFY(positive == negative);
        QCOMPARE(qHash(positive), qHash(negative));
    }

    void nullAndEmptyTextsThatAreEqualHaveOneHash()
    {
        StringItem null;
        null.SetValidate(false);
        null.Setvalue(QString());
        StringItem empty;
        empty.Setvalue(QStringLiteral(""));
        QCOMPARE(null == empty, qHash(null) == qHash(empty));
    }

    void hashDependsOnValuesMembersOrderAndSeed()
    {
        QVERIFY(qHash(anInt(1)) != qHash(anInt(2)));
        QVERIFY(qHash(anInt(1), 1) != qHash(anInt(1), 2));
        ValueNumericInt lower;
        lower.Setmin(5);
        ValueNumericInt upper;
        upper.Setmax(5);
        QVERIFY(qHash(lower) != qHash(upper));
        using Mode = StartupModes::StartupMode;
        QVERIFY(qHash(modes({Mode::DF, Mode::FFM})) != qHash(modes({Mode::FFM, Mode::DF})));
        QVERIFY(qHash(modes({})) != qHash(StartupModes()));
        ValueInt64 wide;
        wide.Setvalue(1LL << 40);
        ValueInt64 narrow;
        narrow.Setvalue(0);
        QVERIFY(qHash(wide) != qHash(narrow));
    }

    void hashingLeavesAnObjectWithoutData()
    {
        const ValueInt value;
        qHash(value);
        QVERIFY(!value.IsInitialized());
    }

    void objectsCanBeCollectedInASet()
    {
        QSet<ValueInt> values;
        for (int i = 0; i < 100; ++i)
            values.insert(anInt(i % 10));
        QCOMPARE(values.size(), 10);
        QVERIFY(values.contains(anInt(9)));
        QVERIFY(!values.contains(anInt(10)));
    }

private:
    template <class T>
    static T initialized(T object)
    {
        object.ResetToDefault();
        return object;
    }

    static StartupModes modes(const QVector<StartupModes::StartupMode> &entries)
    {
        StartupModes object;
        object.SetStartupMode(entries);
        return object;
    }
};

TEST_SUITE_WITHOUT_APPLICATION(HashTest)
#include "tst_Hash.moc"

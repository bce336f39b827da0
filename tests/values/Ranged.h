// SPDX-License-Identifier: MIT
#pragma once

#include "Rules.h"

/// What holds for the three numbers with a range alike. Object is the class, Number the type of its numbers.

template <class Object, class Number>
void rangedMembersStoreAndReset()
{
    storesAndResets(ACCESSORS(Object, id), QStringLiteral("g"), QString());
    storesAndResets(ACCESSORS(Object, value), Number(5), Number(0));
    storesAndResets(ACCESSORS(Object, min), Number(-6), Number(0));
    storesAndResets(ACCESSORS(Object, max), Number(7), Number(0));
    storesAndResets(ACCESSORS(Object, step), Number(-8), Number(0));
}

template <class Object, class Number>
void everyRangedMemberIsValid()
{
    const Object object;
    QVERIFY(object.IsValidid(QString())); // although the setter refuses it
    QVERIFY(object.IsValidid(QStringLiteral("g")));
    for (const Number number : {std::numeric_limits<Number>::lowest(), Number(-1), Number(0),
                                std::numeric_limits<Number>::max(), std::numeric_limits<Number>::quiet_NaN()}) {
        QVERIFY(object.IsValidvalue(number));
        QVERIFY(object.IsValidmin(number));
        QVERIFY(object.IsValidmax(number));
        QVERIFY(object.IsValidstep(number));
    }
}

/// Set in the order in which they are checked, but for the numbers behind the one that is missing.
template <class Object>
void rangedCheckNamesTheFirstMissingMember(const QString &className)
{
    const auto missing = [&](const char *member) {
        return QStringLiteral("OutOfRangeException: %1: Please set %2 properly.").arg(className, QLatin1String(member));
    };
    Object object;
    object.Setstep(1);
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("id"));
    object.Resetstep();
    object.Setid(QStringLiteral("g"));
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("value"));
    object.Setvalue(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("min"));
    object.Setmin(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("max"));
    object.Setmax(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("step"));
    QCOMPARE(thrownBy([&] { object.Check(true); }), missing("step"));
    object.Setstep(0);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    object.Resetvalue();
    QCOMPARE(thrownBy([&] { object.Check(); }), missing("value"));

    auto withNullId = withoutValidation<Object>();
    withNullId.Setid(QString());
    QCOMPARE(thrownBy([&] { withNullId.Check(); }), missing("id"));
}

template <class Object>
void rangedDataIsAnIdAndAllFourNumbers()
{
    Object object;
    object.Setid(QStringLiteral("g"));
    QVERIFY(object.AnyData());
    object.Setvalue(0);
    object.Setmin(0);
    object.Setmax(0);
    QVERIFY(!object.HasData());
    object.Setstep(0);
    QVERIFY(object.HasData());
    for (const auto reset : {&Object::Resetid, &Object::Resetvalue, &Object::Resetmin, &Object::Resetmax}) {
        Object without(object);
        (without.*reset)();
        QVERIFY(!without.HasData());
    }
    for (const auto set : {&Object::Setvalue, &Object::Setmin, &Object::Setmax, &Object::Setstep}) {
        Object withOne;
        (withOne.*set)(0);
        QVERIFY(withOne.AnyData());
    }

    // An id that is there and not set is data, but does not pass the check.
    readSnapshot(object, snapshotOf(object).replace(0, 1, "\x1E"));
    QVERIFY(!object.IsidSet());
    QVERIFY(object.HasData());
    QVERIFY(!thrownBy([&] { object.Check(); }).isNull());
}

/// Nobody compares the numbers with each other.
template <class Object>
void aSenselessRangePassesAndSurvives()
{
    Object object;
    object.Setid(QStringLiteral("g"));
    object.Setvalue(5);
    object.Setmin(10);
    object.Setmax(1);
    object.Setstep(-2);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    Object fromXml;
    readXml(fromXml, xmlOf(object));
    Object fromRecord;
    readRecord(fromRecord, recordOf(object));
    Object fromSnapshot;
    QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(object)), 0);
    for (Object *read : {&fromXml, &fromRecord, &fromSnapshot}) {
        QVERIFY(*read == object);
        QVERIFY(read->Getvalue() == 5);
        QVERIFY(read->Getmin() == 10);
        QVERIFY(read->Getmax() == 1);
        QVERIFY(read->Getstep() == -2);
    }
}

/// Equal where both have set the same or neither has set anything, member by member.
template <class Object>
void rangedEqualityIsMemberByMember()
{
    Object object;
    object.Setid(QStringLiteral("g"));
    object.Setvalue(1);
    object.Setmin(2);
    object.Setmax(3);
    Object withStep(object);
    QVERIFY(object == withStep);
    withStep.Setstep(0);
    QVERIFY(object != withStep);
    QVERIFY(withStep != object);
    QVERIFY(Object() == Object());
    QVERIFY(Object() != object);

    const auto different = [&](auto change) {
        Object changed(object);
        change(changed);
        return changed != object && object != changed;
    };
    QVERIFY(different([](Object &changed) { changed.Setid(QStringLiteral("h")); }));
    QVERIFY(different([](Object &changed) { changed.Setvalue(9); }));
    QVERIFY(different([](Object &changed) { changed.Setmin(9); }));
    QVERIFY(different([](Object &changed) { changed.Setmax(9); }));
    QVERIFY(different([](Object &changed) { changed.Resetmin(); }));
    object.Setstep(1);
    QVERIFY(different([](Object &changed) { changed.Setstep(9); }));
}

/// `%1` of the texts is the class's name.
template <class Object>
void rangedElementsReadTheSameAsAttributes(const QString &className)
{
    Object object;
    readXml(object, QStringLiteral("<%1><value>7</value></%1>").arg(className));
    QVERIFY(object.IsvalueSet());
    QVERIFY(object.Getvalue() == 7);

    Object attributes;
    readXml(attributes, QStringLiteral("<%1 id=\"g\" value=\"7\" min=\"-1\" max=\"9\" step=\"2\"/>").arg(className));
    Object elements;
    readXml(elements,
            QStringLiteral("<%1 value=\"1\" unit=\"dB\"><step>2</step><other><min>5</min><value>6</value></other>"
                           "<max>9</max><min>-1</min><value>7</value><id>g</id></%1>")
                .arg(className));
    QVERIFY(elements == attributes);
    QVERIFY(elements.HasData());

    Object empty;
    readXml(empty, QStringLiteral("<%1><id/><value/><min/><max></max><step/></%1>").arg(className));
    QVERIFY(empty.HasData()); // the id is empty and not null; no number is 0
    QVERIFY(empty.Getvalue() == 0);
    readXml(attributes, QStringLiteral("<%1 min=\"12abc\"/>").arg(className));
    QVERIFY(attributes.IsminSet());
    QVERIFY(attributes.Getmin() == 0);
}

/// A record that holds an id and something unknown leaves the numbers alone.
template <class Object>
void rangedRecordsKeepWhatTheyDoNotMention(const Object &full)
{
    Object object(full);
    readRecord(object,
               bytes("00 00 00 17" // 23 bytes
                     "01 02 03 04 00 00 00 02 FF FF" // unknown
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 68")); // id "h"
    QCOMPARE(object.Getid(), QStringLiteral("h"));
    object.Setid(QStringLiteral("g"));
    QVERIFY(object == full);
}

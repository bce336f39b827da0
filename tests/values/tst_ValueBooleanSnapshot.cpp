// SPDX-License-Identifier: MIT
#include "Rules.h"

using namespace JobXml;

/// A switch as snapshot: the flags, followed by the values, without checks.
class ValueBooleanSnapshotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeSwitchHasThisSnapshot();
    void littleEndianStreamsReverseNumbersAndCharacters();
    void anUnsetValueIsNotWritten();
    void theValueIsReadAlthoughItWasNotWritten();
    void truncatedSnapshotIsReadUpToItsEnd();
    void incompleteObjectIsWrittenUnchecked();
    void aNullIdStaysNullAndAnEmptyOneEmpty();
    void flagsAreReadAsStored();
    void flagsThatWereSetBeforeAreReplaced();
    void valuesOfUnsetMembersAreStored();
    void flagsThatNoMemberOwnsAreDropped();
};

void ValueBooleanSnapshotTest::aWholeSwitchHasThisSnapshot()
{
    hasSnapshot(sample<ValueBoolean>("x", true),
                "03" // both set
                "00 00 00 02 00 78" // id "x"
                "01"); // value true
    hasSnapshot(sample<ValueBoolean>("xy", false), "03 00 00 00 04 00 78 00 79 00");
}

void ValueBooleanSnapshotTest::littleEndianStreamsReverseNumbersAndCharacters()
{
    hasSnapshot(sample<ValueBoolean>("xy", true), "03 04 00 00 00 78 00 79 00 01", littleEndian);
}

void ValueBooleanSnapshotTest::anUnsetValueIsNotWritten()
{
    ValueBoolean object;
    object.Setid(QStringLiteral("x"));
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 02 00 78"));
}

void ValueBooleanSnapshotTest::theValueIsReadAlthoughItWasNotWritten()
{
    ValueBoolean object;
    QCOMPARE(readSnapshot(object,
                          bytes("01 00 00 00 02 00 78"
                                "05 06")),
             1); // of what comes next, a byte is taken
    QCOMPARE(object.Getid(), QStringLiteral("x"));
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getvalue(), true);
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 02 00 78"));
}

void ValueBooleanSnapshotTest::truncatedSnapshotIsReadUpToItsEnd()
{
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("01 00 00 00 02 00 78")); }), QString());
    QVERIFY(object.IsidSet());
    QCOMPARE(object.Getid(), QStringLiteral("x"));
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getvalue(), false);
}

void ValueBooleanSnapshotTest::incompleteObjectIsWrittenUnchecked()
{
    const ValueBoolean object; // validating, and without anything
    QCOMPARE(hex(snapshotOf(object)), hex("00 FF FF FF FF"));
    QVERIFY(object.IsInitialized());
}

void ValueBooleanSnapshotTest::aNullIdStaysNullAndAnEmptyOneEmpty()
{
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes("03 FF FF FF FF 01")); }), QString()); // not by the setter
    QVERIFY(object.IsidSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(!object.HasData());
    QCOMPARE(hex(snapshotOf(object)), hex("03 FF FF FF FF 01"));

    QCOMPARE(readSnapshot(object, bytes("03 00 00 00 00 01")), 0);
    QVERIFY(!object.Getid().isNull());
    QVERIFY(object.HasData());
    QCOMPARE(hex(snapshotOf(object)), hex("03 00 00 00 00 01"));
}

void ValueBooleanSnapshotTest::flagsAreReadAsStored()
{
    ValueBoolean object;
    readSnapshot(object, bytes("02 00 00 00 02 00 78 00"));
    QVERIFY(!object.IsidSet());
    QVERIFY(object.IsvalueSet());
    QCOMPARE(object.Getid(), QStringLiteral("x"));
    QCOMPARE(hex(snapshotOf(object)), hex("02 00 00 00 02 00 78 00"));
}

void ValueBooleanSnapshotTest::flagsThatWereSetBeforeAreReplaced()
{
    auto object = sample<ValueBoolean>("x", true);
    readSnapshot(object, bytes("00 00 00 00 02 00 79 00"));
    QVERIFY(!object.IsidSet());
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getid(), QStringLiteral("y"));
    QCOMPARE(object.Getvalue(), false);
}

void ValueBooleanSnapshotTest::valuesOfUnsetMembersAreStored()
{
    ValueBoolean object;
    readSnapshot(object, bytes("00 00 00 00 02 00 79 01"));
    QCOMPARE(object.Getid(), QStringLiteral("y"));
    QCOMPARE(object.Getvalue(), true);
}

void ValueBooleanSnapshotTest::flagsThatNoMemberOwnsAreDropped()
{
    ValueBoolean object;
    QCOMPARE(readSnapshot(object, bytes("FF 00 00 00 02 00 78 01")), 0);
    QVERIFY(object == sample<ValueBoolean>("x", true));
    QCOMPARE(hex(snapshotOf(object)), hex("03 00 00 00 02 00 78 01"));
}

TEST_SUITE(ValueBooleanSnapshotTest)
#include "tst_ValueBooleanSnapshot.moc"

// SPDX-License-Identifier: MIT
#include <QBuffer>

#include "Rules.h"

using namespace JobXml;

namespace {

const char lengthError[] = "BinaryParsingException: ValueBoolean::SetBinary(...): Length error occurred during "
                           "processing of binary representation";

const char record[] = "00 00 00 16" // 22 bytes
                      "2B 26 2D C9 00 00 00 05 00 00 00 01 78" // id "x"
                      "89 53 7E 94 00 00 00 01 01"; // value true

} // namespace

/// A switch as tagged record, as an example for the records of every class.
class ValueBooleanRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeSwitchHasThisRecord();
    void leadingWordIsWrittenOnlyWhenRequested();
    void recordIsReadAfterLeadingWordAndLength();
    void littleEndianStreamsReverseNumbersOnly();
    void floatingPointPrecisionMakesNoDifference();
    void recordsFollowEachOtherInAStream();
    void recordIsWrittenAtThePositionOfTheDevice();

    void anUnsetValueIsNotWritten();
    void aNullIdIsWrittenAsNullAndComesBackEmpty();
    void anIncompleteSwitchIsRefusedBeforeAnythingIsWritten();
    void anObjectWithoutDataWritesNothingEvenIfItsCheckPasses();
    void writingInitializesWithoutValidation();

    void unknownRecordsAreSkipped();
    void recordsMayComeInAnyOrderAndTheLastCounts();
    void missingRecordsLeaveMembersUnchanged();
    void everyByteButZeroIsTrue();
    void aRecordOfNoLengthReadsNothing();
    void aNegativeLengthIsALengthErrorAtOnce();
    void aLengthThatIsTooLongIsALengthErrorAtTheEndOfTheStream();
    void wrongLengthThrowsLengthError_data();
    void wrongLengthThrowsLengthError();
    void valuesReadBeforeALengthErrorAreKept();
    void memberIsReadByItsTypeRegardlessOfItsLength();
    void truncatedIdIsNotStored();
    void readingStopsAfterTheRecord();
};

void ValueBooleanRecordsTest::aWholeSwitchHasThisRecord()
{
    hasRecord(sample<ValueBoolean>("x", true), record);
}

void ValueBooleanRecordsTest::leadingWordIsWrittenOnlyWhenRequested()
{
    const auto object = sample<ValueBoolean>("x", true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    QVERIFY(object.GetBinary(stream, 0x12345678, true));
    QCOMPARE(hex(written),
             hex("12 34 56 78" // the leading word
                 "00 00 00 16" // 22 bytes follow
                 "2B 26 2D C9" // id
                 "00 00 00 05" // its payload: 5 bytes
                 "00 00 00 01 78" // one byte, an x
                 "89 53 7E 94" // value
                 "00 00 00 01" // its payload: 1 byte
                 "01")); // true
    QCOMPARE(hex(recordOf(object)), hex(written.mid(4)));
}

void ValueBooleanRecordsTest::recordIsReadAfterLeadingWordAndLength()
{
    QDataStream stream(bytes("12 34 56 78 00 00 00 16 2B 26 2D C9 00 00 00 05 00 00 00 01 78"
                             "89 53 7E 94 00 00 00 01 01"));
    qint32 leadingWord = 0;
    qint32 length = 0;
    stream >> leadingWord >> length;
    ValueBoolean object;
    object.SetBinary(stream, 22);
    QCOMPARE(object.Getid(), QStringLiteral("x"));
    QCOMPARE(object.Getvalue(), true);
    QVERIFY(object.IsidSet());
    QVERIFY(object.IsvalueSet());
    QVERIFY(stream.atEnd());
}

void ValueBooleanRecordsTest::littleEndianStreamsReverseNumbersOnly()
{
    hasRecord(sample<ValueBoolean>("xy", true),
              "17 00 00 00" // 23 bytes
              "C9 2D 26 2B 06 00 00 00 02 00 00 00 78 79" // id "xy"
              "94 7E 53 89 01 00 00 00 01", // value true
              littleEndian);
}

void ValueBooleanRecordsTest::floatingPointPrecisionMakesNoDifference()
{
    hasRecord(sample<ValueBoolean>("x", true), record, singlePrecision);
}

void ValueBooleanRecordsTest::recordsFollowEachOtherInAStream()
{
    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    QVERIFY(sample<ValueBoolean>("x", true).GetBinary(out, 0, false));
    QVERIFY(sample<ValueBoolean>("y", false).GetBinary(out, 0, false));
    QCOMPARE(hex(written),
             hex("00 00 00 16 2B 26 2D C9 00 00 00 05 00 00 00 01 78 89 53 7E 94 00 00 00 01 01"
                 "00 00 00 16 2B 26 2D C9 00 00 00 05 00 00 00 01 79 89 53 7E 94 00 00 00 01 00"));
}

void ValueBooleanRecordsTest::recordIsWrittenAtThePositionOfTheDevice()
{
    QByteArray written(34, '\xEE');
    QBuffer buffer(&written);
    buffer.open(QIODevice::ReadWrite);
    buffer.seek(4);
    QDataStream stream(&buffer);
    QVERIFY(sample<ValueBoolean>("x", true).GetBinary(stream, 0, false));
    QCOMPARE(buffer.pos(), 30);
    QCOMPARE(hex(written), hex(bytes("EE EE EE EE") + bytes(record) + bytes("EE EE EE EE")));
}

void ValueBooleanRecordsTest::anUnsetValueIsNotWritten()
{
    auto object = withoutValidation<ValueBoolean>();
    object.Setid(QStringLiteral("x"));
    QCOMPARE(hex(recordOf(object)), hex("00 00 00 0D 2B 26 2D C9 00 00 00 05 00 00 00 01 78"));
}

void ValueBooleanRecordsTest::aNullIdIsWrittenAsNullAndComesBackEmpty()
{
    const auto object = withoutValidation<ValueBoolean>();
    const char written[] = "00 00 00 0C 2B 26 2D C9 00 00 00 04 FF FF FF FF";
    QCOMPARE(hex(recordOf(object)), hex(written));

    ValueBoolean read; // validating: the setter does not see a null text
    readRecord(read, bytes(written));
    QVERIFY(read.IsidSet());
    QCOMPARE(read.Getid(), QStringLiteral(""));
    QVERIFY(!read.Getid().isNull());
    QVERIFY(!read.IsvalueSet());
}

void ValueBooleanRecordsTest::anIncompleteSwitchIsRefusedBeforeAnythingIsWritten()
{
    ValueBoolean object;
    object.Setid(QStringLiteral("x"));
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }),
             QStringLiteral("OutOfRangeException: ValueBoolean: Please set value properly."));
    object.Reset();
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }),
             QStringLiteral("OutOfRangeException: ValueBoolean: Please set id properly."));
    QCOMPARE(hex(written), QString());
}

void ValueBooleanRecordsTest::anObjectWithoutDataWritesNothingEvenIfItsCheckPasses()
{
    const Unchecked<ValueBoolean> object;
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    QVERIFY(!object.GetBinary(stream, 1, true));
    QCOMPARE(hex(written), QString());
}

void ValueBooleanRecordsTest::writingInitializesWithoutValidation()
{
    const auto object = withoutValidation<ValueBoolean>();
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    QVERIFY(object.GetBinary(stream, 1, true));
    QVERIFY(object.IsInitialized());
}

void ValueBooleanRecordsTest::unknownRecordsAreSkipped()
{
    ValueBoolean object;
    readRecord(object,
               bytes("00 00 00 32" // 50 bytes
                     "2B 26 2D C8 00 00 00 01 FF" // one more than nothing, before
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 78" // id "x"
                     "00 00 00 00 00 00 00 00" // nothing at all, in between
                     "89 53 7E 94 00 00 00 01 01" // value true
                     "FF FF FF FF 00 00 00 03 89 53 7E")); // and at the end
    QVERIFY(object == sample<ValueBoolean>("x", true));
}

void ValueBooleanRecordsTest::recordsMayComeInAnyOrderAndTheLastCounts()
{
    ValueBoolean object;
    readRecord(object,
               bytes("00 00 00 2C" // 44 bytes
                     "89 53 7E 94 00 00 00 01 01"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 78"
                     "89 53 7E 94 00 00 00 01 00"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 79"));
    QVERIFY(object == sample<ValueBoolean>("y", false));
}

void ValueBooleanRecordsTest::missingRecordsLeaveMembersUnchanged()
{
    auto object = sample<ValueBoolean>("x", true);
    readRecord(object, bytes("00 00 00 0D 2B 26 2D C9 00 00 00 05 00 00 00 01 79"));
    QVERIFY(object == sample<ValueBoolean>("y", true));
    readRecord(object, bytes("00 00 00 09 89 53 7E 94 00 00 00 01 00"));
    QVERIFY(object == sample<ValueBoolean>("y", false));
}

void ValueBooleanRecordsTest::everyByteButZeroIsTrue()
{
    for (const char *written : {"00 00 00 09 89 53 7E 94 00 00 00 01 02", "00 00 00 09 89 53 7E 94 00 00 00 01 FF"}) {
        ValueBoolean object;
        readRecord(object, bytes(written));
        QCOMPARE(object.Getvalue(), true);
    }
}

void ValueBooleanRecordsTest::aRecordOfNoLengthReadsNothing()
{
    auto object = sample<ValueBoolean>("x", true);
    QDataStream stream(bytes("2B 26 2D C9 00 00 00 05 00 00 00 01 79"));
    object.SetBinary(stream, 0);
    QCOMPARE(stream.device()->pos(), 0);
    QVERIFY(object == sample<ValueBoolean>("x", true));

    ValueBoolean nothing;
    nothing.SetBinary(stream, 0);
    QVERIFY(nothing.IsInitialized());
}

void ValueBooleanRecordsTest::aNegativeLengthIsALengthErrorAtOnce()
{
    QDataStream stream(bytes("2B 26 2D C9 00 00 00 05 00 00 00 01 78"));
    for (const int length : {-1, -13, std::numeric_limits<int>::min()}) {
        ValueBoolean object;
        QCOMPARE(thrownBy([&] { object.SetBinary(stream, length); }), QLatin1String(lengthError));
        QCOMPARE(stream.device()->pos(), 0);
        QVERIFY(object.IsInitialized());
        QVERIFY(!object.AnyData());
    }
}

void ValueBooleanRecordsTest::aLengthThatIsTooLongIsALengthErrorAtTheEndOfTheStream()
{
    QByteArray written = bytes(record);
    written[3] = 26; // four bytes more than the member records
    ValueBoolean object;
    QCOMPARE(thrownBy([&] { readRecord(object, written); }), QLatin1String(lengthError));
    QVERIFY(object == sample<ValueBoolean>("x", true));
}

void ValueBooleanRecordsTest::wrongLengthThrowsLengthError_data()
{
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("shorter than its members") << bytes("00 00 00 08 89 53 7E 94 00 00 00 01 01");
    QTest::newRow("no room for a tag") << bytes("00 00 00 01 89 53 7E 94 00 00 00 01 01");
    QTest::newRow("longer than its members") << bytes("00 00 00 0A 89 53 7E 94 00 00 00 01 01");
    QTest::newRow("member longer than the record") << bytes("00 00 00 09 89 53 7E 94 00 00 00 02 01");
    QTest::newRow("member shorter than its type") << bytes("00 00 00 09 89 53 7E 94 00 00 00 00 01");
    QTest::newRow("negative length of a member") << bytes("00 00 00 09 89 53 7E 94 FF FF FF FF 01");
    QTest::newRow("negative length of an unknown record") << bytes("00 00 00 08 01 02 03 04 FF FF FF F8");
    QTest::newRow("unknown record longer than the stream") << bytes("00 00 00 0C 01 02 03 04 00 00 00 04 01");
    QTest::newRow("unknown record of the greatest length") << bytes("00 00 00 09 01 02 03 04 7F FF FF FF 01");
    QTest::newRow("unknown record of the least length") << bytes("00 00 00 09 01 02 03 04 80 00 00 00 01");
    QTest::newRow("nothing there") << bytes("00 00 00 09");
    QTest::newRow("ends within a tag") << bytes("00 00 00 09 89 53");
    QTest::newRow("ends within a length") << bytes("00 00 00 09 89 53 7E 94 00 00");
    QTest::newRow("ends before the payload") << bytes("00 00 00 09 89 53 7E 94 00 00 00 01");
}

void ValueBooleanRecordsTest::wrongLengthThrowsLengthError()
{
    QFETCH(QByteArray, written);
    for (const bool validate : {true, false}) {
        ValueBoolean object;
        object.SetValidate(validate);
        QCOMPARE(thrownBy([&] { readRecord(object, written); }), QLatin1String(lengthError));
    }
}

void ValueBooleanRecordsTest::valuesReadBeforeALengthErrorAreKept()
{
    ValueBoolean object;
    QCOMPARE(thrownBy([&] {
                 readRecord(object,
                            bytes("00 00 00 14" // one byte less than there are
                                  "2B 26 2D C9 00 00 00 05 00 00 00 01 78"
                                  "89 53 7E 94 00 00 00 01 01"));
             }),
             QLatin1String(lengthError));
    QVERIFY(object == sample<ValueBoolean>("x", true));
}

void ValueBooleanRecordsTest::memberIsReadByItsTypeRegardlessOfItsLength()
{
    // The lengths add up although the value's is one too long; the remaining byte is not read.
    QDataStream stream(bytes("89 53 7E 94 00 00 00 02 01 55"));
    ValueBoolean object;
    object.SetBinary(stream, 10);
    QCOMPARE(object.Getvalue(), true);
    QCOMPARE(stream.device()->pos(), 9);
}

void ValueBooleanRecordsTest::truncatedIdIsNotStored()
{
    auto object = sample<ValueBoolean>("before", true);
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 10 2B 26 2D C9 00 00 00 08 00 00 00 04 61 62")); }),
             QLatin1String(lengthError));
    QVERIFY(object == sample<ValueBoolean>("before", true));
}

void ValueBooleanRecordsTest::readingStopsAfterTheRecord()
{
    QDataStream stream(bytes(record) + bytes("2B 26 2D C9 00 00 00 05 00 00 00 01 79"));
    qint32 length = 0;
    stream >> length;
    ValueBoolean object;
    object.SetBinary(stream, length);
    QCOMPARE(stream.device()->pos(), 26);
    QCOMPARE(object.Getid(), QStringLiteral("x"));
}

TEST_SUITE(ValueBooleanRecordsTest)
#include "tst_ValueBooleanRecords.moc"

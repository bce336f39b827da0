// SPDX-License-Identifier: MIT
#include "Selections.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

const char lengthError[] = "BinaryParsingException: ValueSelection::SetBinary(...): Length error occurred during "
                           "processing of binary representation";

ValueSelection full()
{
    return selection({option("a", 1.5), option("b", -2)});
}

const char record[] = "00 00 00 8A" // 138 bytes
                      "2B 26 2D C9 00 00 00 05 00 00 00 01 73" // id "s"
                      "C1 4D 66 5E 00 00 00 08 00 00 00 04 30 2E 35 30" // value "0.50"
                      "A3 23 E1 0D 00 00 00 06 00 00 00 02 6F 6E" // text "on"
                      "21 28 39 4B 00 00 00 08 FF FF FF FF FF FF FF FF" // index -1
                      "4F B1 9F 31 00 00 00 47 00 00 00 02" // two options in 71 bytes
                      "00 00 00 1D" //   29 bytes
                      "CB 4C F6 45 00 00 00 05 00 00 00 01 61" //   name "a"
                      "C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30" //   value "1.50"
                      "00 00 00 1E" //   30 bytes
                      "CB 4C F6 45 00 00 00 05 00 00 00 01 62" //   name "b"
                      "C1 4D 66 5E 00 00 00 09 00 00 00 05 2D 32 2E 30 30"; //   value "-2.00"

void verifyOneLenientOption(const ValueSelection &object, const std::shared_ptr<Logger> &logger)
{
    QCOMPARE(object.GetSelectionItem().size(), 1);
    QVERIFY(object.IsSelectionItemSet());
    QCOMPARE(object.GetSelectionItem().at(0).GetValidate(), false);
    QCOMPARE(object.GetSelectionItem().at(0).GetLogger(), logger);
}

} // namespace

/// Selections in XML, in tagged records and in snapshots.
class ValueSelectionEncodingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeSelectionHasThisElement();
    void aWholeSelectionHasThisRecord();
    void aWholeSelectionHasThisSnapshot();
    void littleEndianStreamsReverseNumbersAndCharacters();
    void snapshotsFollowTheStreamsPrecisionAndRecordsDoNot();
    void emptySelectionIsWrittenWithoutValidation();
    void optionsOfAnUnsetListAreCountedButNotWritten();
    void anIncompleteSelectionIsRefusedBeforeAnythingIsWritten();
    void anIncompleteOptionIsRefusedWhileItIsWritten();
    void twoDecimalsAreWrittenAndNoMore();

    void elementsAreReadLikeAttributes();
    void emptyElementsAreEmptyTextsAndZero();
    void unknownElementsAreSkippedWithTheirContent();
    void optionElementsJoinTheOptionsPresent();
    void anIncompleteOptionElementIsRefusedWhileValidating();
    void optionReadFromAnElementInheritsFlagAndLogger();

    void recordsJoinTheOptionsPresent();
    void recordsMayComeInAnyOrderAndUnknownOnesAreSkipped();
    void theIndexIsReadFromItsLowBits();
    void aRecordOfNoOptionsLeavesTheListUnset();
    void anIncompleteOptionRecordIsRefusedWhileValidating();
    void optionReadFromARecordInheritsFlagAndLogger();
    void optionWithWrongLengthThrowsItsOwnLengthError();
    void missingOptionsThrowALengthErrorOfTheSelection();
    void wrongLengthThrowsLengthError();

    void snapshotsJoinTheOptionsPresent();
    void optionsOfASnapshotAreReadOnlyWhenTheListIsSet();
    void anIncompleteOptionInASnapshotIsRefusedWhileValidating();
    void truncatedOptionIsNotAppended();
    void aSnapshotStoresItsMembersWithoutTheSetters();
};

void ValueSelectionEncodingsTest::aWholeSelectionHasThisElement()
{
    hasElement(full(),
               QStringLiteral("<ValueSelection id=\"s\" value=\"0.50\" text=\"on\" index=\"-1\">"
                              "<SelectionItem name=\"a\" value=\"1.50\"/><SelectionItem name=\"b\" value=\"-2.00\"/>"
                              "</ValueSelection>"));
}

void ValueSelectionEncodingsTest::aWholeSelectionHasThisRecord()
{
    hasRecord(full(), record);
}

void ValueSelectionEncodingsTest::aWholeSelectionHasThisSnapshot()
{
    hasSnapshot(full(),
                "1F 00 00 00 02" // all five set, two options
                "03 00 00 00 02 00 61 3F F8 00 00 00 00 00 00" //   both set, "a", 1.5
                "03 00 00 00 02 00 62 C0 00 00 00 00 00 00 00" //   both set, "b", -2
                "00 00 00 02 00 73" // id "s"
                "3F E0 00 00 00 00 00 00" // value 0.5
                "00 00 00 04 00 6F 00 6E" // text "on"
                "FF FF FF FF FF FF FF FF"); // index -1
}

void ValueSelectionEncodingsTest::littleEndianStreamsReverseNumbersAndCharacters()
{
    ValueSelection object = selection({option("a", 1.5)});
    object.Setindex(258);
    hasRecord(object,
              "68 00 00 00" // 104 bytes
              "C9 2D 26 2B 05 00 00 00 01 00 00 00 73"
              "5E 66 4D C1 08 00 00 00 04 00 00 00 30 2E 35 30"
              "0D E1 23 A3 06 00 00 00 02 00 00 00 6F 6E"
              "4B 39 28 21 08 00 00 00 02 01 00 00 00 00 00 00"
              "31 9F B1 4F 25 00 00 00 01 00 00 00"
              "1D 00 00 00 45 F6 4C CB 05 00 00 00 01 00 00 00 61 5E 66 4D C1 08 00 00 00 04 00 00 00 31 2E 35 30",
              littleEndian);
    hasSnapshot(object,
                "1F 01 00 00 00"
                "03 02 00 00 00 61 00 00 00 00 00 00 00 F8 3F"
                "02 00 00 00 73 00"
                "00 00 00 00 00 00 E0 3F"
                "04 00 00 00 6F 00 6E 00"
                "02 01 00 00 00 00 00 00",
                littleEndian);
}

void ValueSelectionEncodingsTest::snapshotsFollowTheStreamsPrecisionAndRecordsDoNot()
{
    hasSnapshot(selection({option("a", 1.5)}),
                "1F 00 00 00 01"
                "03 00 00 00 02 00 61 3F C0 00 00"
                "00 00 00 02 00 73"
                "3F 00 00 00"
                "00 00 00 04 00 6F 00 6E"
                "FF FF FF FF FF FF FF FF",
                singlePrecision);
    hasRecord(full(), record, singlePrecision);
}

void ValueSelectionEncodingsTest::emptySelectionIsWrittenWithoutValidation()
{
    const auto object = withoutValidation<ValueSelection>();
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueSelection id=\"\" value=\"0.00\" text=\"\" index=\"0\"/>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 44" // 68 bytes
                 "2B 26 2D C9 00 00 00 04 FF FF FF FF" // id null
                 "C1 4D 66 5E 00 00 00 08 00 00 00 04 30 2E 30 30" // value "0.00"
                 "A3 23 E1 0D 00 00 00 04 FF FF FF FF" // text null
                 "21 28 39 4B 00 00 00 08 00 00 00 00 00 00 00 00" // index 0
                 "4F B1 9F 31 00 00 00 04 00 00 00 00")); // no options
    QCOMPARE(hex(snapshotOf(object)),
             hex("00 00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00"));
}

void ValueSelectionEncodingsTest::optionsOfAnUnsetListAreCountedButNotWritten()
{
    ValueSelection object = withUnsetOptions();
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<ValueSelection id=\"s\" value=\"0.50\" text=\"on\" index=\"-1\"/>"));
    QCOMPARE(hex(recordOf(object).right(12)), hex("4F B1 9F 31 00 00 00 04 00 00 00 01"));
    QCOMPARE(hex(snapshotOf(object)),
             hex("1E 00 00 00 01 00 00 00 02 00 73 3F E0 00 00 00 00 00 00"
                 "00 00 00 04 00 6F 00 6E FF FF FF FF FF FF FF FF"));
}

void ValueSelectionEncodingsTest::anIncompleteSelectionIsRefusedBeforeAnythingIsWritten()
{
    ValueSelection object = selectionWithoutOptions();
    QString xml;
    QXmlStreamWriter writer(&xml);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    const auto missingOptions =
        QStringLiteral("OutOfRangeException: ValueSelection: Please set SelectionItem properly.");
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }), missingOptions);
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }), missingOptions);
    object.SetSelectionItem({option("a", 1), SelectionItem()});
    const auto missingName = QStringLiteral("OutOfRangeException: SelectionItem: Please set name properly.");
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }), missingName);
    QCOMPARE(thrownBy([&] { return object.GetBinary(stream, 1, true); }), missingName);
    QCOMPARE(xml, QString());
    QCOMPARE(hex(written), QString());
}

void ValueSelectionEncodingsTest::anIncompleteOptionIsRefusedWhileItIsWritten()
{
    Unchecked<ValueSelection> object;
    static_cast<ValueSelection &>(object) = selectionWithoutOptions();
    object.SetSelectionItem({option("a", 1.5), SelectionItem(), option("b", 2)});
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { object.GetXml(writer); }),
             QStringLiteral("IncompleteDefinitionException: Parameters for SelectionItem are not set properly in "
                            "'ValueSelection'."));
    QCOMPARE(xml,
             QStringLiteral("<ValueSelection id=\"s\" value=\"0.50\" text=\"on\" index=\"-1\">"
                            "<SelectionItem name=\"a\" value=\"1.50\"/>")); // stays
}

void ValueSelectionEncodingsTest::twoDecimalsAreWrittenAndNoMore()
{
    ValueSelection object = selection({option("a", 0.333), option("b", 1.5)});
    object.Setvalue(0.333);
    const auto element = QStringLiteral("<ValueSelection id=\"s\" value=\"0.33\" text=\"on\" index=\"-1\">"
                                        "<SelectionItem name=\"a\" value=\"0.33\"/>"
                                        "<SelectionItem name=\"b\" value=\"1.50\"/></ValueSelection>");
    QCOMPARE(xmlOf(object), element);
    ValueSelection fromXml;
    readXml(fromXml, element);
    ValueSelection fromRecord;
    readRecord(fromRecord, recordOf(object));
    for (const ValueSelection *read : {&fromXml, &fromRecord}) {
        QVERIFY(read->Getvalue() == 0.33);
        QVERIFY(read->GetSelectionItem().at(0).Getvalue() == 0.33);
        QVERIFY(read->GetSelectionItem().at(1).Getvalue() == 1.5);
    }
    ValueSelection fromSnapshot;
    readSnapshot(fromSnapshot, snapshotOf(object));
    QVERIFY(fromSnapshot == object);
}

void ValueSelectionEncodingsTest::elementsAreReadLikeAttributes()
{
    ValueSelection object;
    readXml(object,
            QStringLiteral("<ValueSelection id=\"no\" value=\"9\" text=\"no\" index=\"9\"><index>-1</index>"
                           "<SelectionItem><value>1.5</value><name>a</name></SelectionItem><text>on</text>"
                           "<SelectionItem name=\"b\" value=\"-2\"/><value>0.5</value><id>s</id></ValueSelection>"));
    QVERIFY(object == full());
}

void ValueSelectionEncodingsTest::emptyElementsAreEmptyTextsAndZero()
{
    for (const char *element : {"<ValueSelection><id/><value/><text></text><index/></ValueSelection>",
                                "<ValueSelection id=\"\" value=\"x\" text=\"\" index=\"1.5\"/>"}) {
        ValueSelection object = full(); // validating, which null would not survive
        readXml(object, QString::fromLatin1(element));
        QVERIFY(object.HasData());
        QCOMPARE(object.Getid(), QStringLiteral(""));
        QCOMPARE(object.Gettext(), QStringLiteral(""));
        QVERIFY(object.Getvalue() == 0);
        QCOMPARE(object.Getindex(), 0);
        object.Reset();
        readXml(object, QString::fromLatin1(element));
        QVERIFY(object.IsvalueSet());
        QVERIFY(object.IsindexSet());
    }
}

void ValueSelectionEncodingsTest::unknownElementsAreSkippedWithTheirContent()
{
    ValueSelection object;
    readXml(object,
            QStringLiteral("<ValueSelection id=\"s\" value=\"0.5\" unit=\"dB\" text=\"on\" index=\"-1\">"
                           "<Other><SelectionItem name=\"no\" value=\"1\"/><text>no</text></Other>"
                           "<SelectionItem name=\"a\"><id>no</id><value>1.5</value></SelectionItem>"
                           "<StringItem value=\"no\"/></ValueSelection>"));
    QVERIFY(object == selection({option("a", 1.5)}));
}

void ValueSelectionEncodingsTest::optionElementsJoinTheOptionsPresent()
{
    ValueSelection object = selection({option("z", 0)});
    readXml(object,
            QStringLiteral("<ValueSelection><SelectionItem name=\"a\" value=\"1.5\"/>"
                           "<SelectionItem name=\"b\" value=\"-2\"/></ValueSelection>"));
    QVERIFY(object == selection({option("z", 0), option("a", 1.5), option("b", -2)}));
}

void ValueSelectionEncodingsTest::anIncompleteOptionElementIsRefusedWhileValidating()
{
    const auto element = QStringLiteral("<ValueSelection text=\"on\"><SelectionItem name=\"a\" value=\"1\"/>"
                                        "<SelectionItem name=\"b\"/><SelectionItem/></ValueSelection>");
    ValueSelection object;
    QCOMPARE(thrownBy([&] { readXml(object, element); }), QLatin1String(incompleteOption));
    QCOMPARE(object.Gettext(), QStringLiteral("on"));
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("a")));

    auto lenient = withoutValidation<ValueSelection>();
    readXml(lenient, element);
    QCOMPARE(namesOf(lenient), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QString()}));
}

void ValueSelectionEncodingsTest::optionReadFromAnElementInheritsFlagAndLogger()
{
    const auto logger = std::make_shared<Logger>();
    auto object = withoutValidation<ValueSelection>();
    object.SetLogger(logger);
    readXml(object, QStringLiteral("<ValueSelection><SelectionItem name=\"a\"/></ValueSelection>"));
    verifyOneLenientOption(object, logger);
}

void ValueSelectionEncodingsTest::recordsJoinTheOptionsPresent()
{
    ValueSelection object = selection({option("z", 0)});
    readRecord(object, bytes(record));
    QVERIFY(object == selection({option("z", 0), option("a", 1.5), option("b", -2)}));
}

void ValueSelectionEncodingsTest::recordsMayComeInAnyOrderAndUnknownOnesAreSkipped()
{
    ValueSelection object;
    readRecord(object,
               bytes("00 00 00 74" // 116 bytes
                     "4F B1 9F 31 00 00 00 25 00 00 00 01 00 00 00 1D" // an option of 29 bytes
                     "CB 4C F6 45 00 00 00 05 00 00 00 01 61 C1 4D 66 5E 00 00 00 08 00 00 00 04 31 2E 35 30"
                     "29 40 EB DD 00 00 00 04 00 00 00 07" // the list of another class
                     "21 28 39 4B 00 00 00 08 FF FF FF FF FF FF FF FF" // index -1
                     "A3 23 E1 0D 00 00 00 06 00 00 00 02 6F 6E" // text "on"
                     "2B 26 2D C9 00 00 00 05 00 00 00 01 73" // id "s"
                     "C1 4D 66 5E 00 00 00 08 00 00 00 04 30 2E 35 30")); // value "0.50"
    QVERIFY(object == selection({option("a", 1.5)}));
}

void ValueSelectionEncodingsTest::theIndexIsReadFromItsLowBits()
{
    ValueSelection object;
    readRecord(object, bytes("00 00 00 10 21 28 39 4B 00 00 00 08 00 00 00 01 FF FF FF FE"));
    QVERIFY(object.IsindexSet());
    QCOMPARE(object.Getindex(), -2);
}

void ValueSelectionEncodingsTest::aRecordOfNoOptionsLeavesTheListUnset()
{
    // It is appending that sets the flag.
    for (const char *none :
         {"00 00 00 0C 4F B1 9F 31 00 00 00 04 00 00 00 00", "00 00 00 0C 4F B1 9F 31 00 00 00 04 FF FF FF FF"}) {
        ValueSelection object = selectionWithoutOptions();
        readRecord(object, bytes(none));
        QVERIFY(!object.IsSelectionItemSet());
        QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    }
}

void ValueSelectionEncodingsTest::anIncompleteOptionRecordIsRefusedWhileValidating()
{
    const char incomplete[] = "00 00 00 21" // 33 bytes
                              "4F B1 9F 31 00 00 00 19 00 00 00 02"
                              "00 00 00 0D CB 4C F6 45 00 00 00 05 00 00 00 01 61" // name "a" and no value
                              "00 00 00 00"; // nothing at all
    ValueSelection object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes(incomplete)); }), QLatin1String(incompleteOption));
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    auto lenient = withoutValidation<ValueSelection>();
    readRecord(lenient, bytes(incomplete));
    QCOMPARE(namesOf(lenient), (QStringList{QStringLiteral("a"), QString()}));
}

void ValueSelectionEncodingsTest::optionReadFromARecordInheritsFlagAndLogger()
{
    const auto logger = std::make_shared<Logger>();
    auto object = withoutValidation<ValueSelection>();
    object.SetLogger(logger);
    readRecord(object, bytes("00 00 00 10 4F B1 9F 31 00 00 00 08 00 00 00 01 00 00 00 00"));
    verifyOneLenientOption(object, logger);
}

void ValueSelectionEncodingsTest::optionWithWrongLengthThrowsItsOwnLengthError()
{
    ValueSelection object;
    QCOMPARE(thrownBy([&] {
                 readRecord(object,
                            bytes("00 00 00 1D 4F B1 9F 31 00 00 00 15 00 00 00 01"
                                  "00 00 00 0E CB 4C F6 45 00 00 00 05 00 00 00 01 61"));
             }),
             QStringLiteral("BinaryParsingException: SelectionItem::SetBinary(...): Length error occurred during "
                            "processing of binary representation"));
    QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
}

void ValueSelectionEncodingsTest::missingOptionsThrowALengthErrorOfTheSelection()
{
    for (const char *missing : {"00 00 00 0C 4F B1 9F 31 00 00 00 04 00 00 00 01", // counted, and nothing else
                                "00 00 00 0C 4F B1 9F 31 00 00 00 04 7F FF FF FF",
                                "00 00 00 0C 4F B1 9F 31 00 00 00 04 00", // ends within the count
                                "00 00 00 10 4F B1 9F 31 00 00 00 08 00 00 00 01 00"}) { // and within a length
        ValueSelection object;
        QCOMPARE(thrownBy([&] { readRecord(object, bytes(missing)); }), QLatin1String(lengthError));
        QVERIFY(std::as_const(object).GetSelectionItem().isEmpty());
    }
}

void ValueSelectionEncodingsTest::wrongLengthThrowsLengthError()
{
    ValueSelection object;
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("00 00 00 0F A3 23 E1 0D 00 00 00 06 00 00 00 02 6F 6E")); }),
             QLatin1String(lengthError));
    QCOMPARE(object.Gettext(), QStringLiteral("on"));
    QCOMPARE(thrownBy([&] { readRecord(object, bytes("FF FF FF FF")); }), QLatin1String(lengthError));
}

void ValueSelectionEncodingsTest::snapshotsJoinTheOptionsPresent()
{
    ValueSelection object = selection({option("z", 0)});
    QCOMPARE(readSnapshot(object, snapshotOf(full())), 0);
    QVERIFY(object == selection({option("z", 0), option("a", 1.5), option("b", -2)}));
}

void ValueSelectionEncodingsTest::optionsOfASnapshotAreReadOnlyWhenTheListIsSet()
{
    ValueSelection object;
    QCOMPARE(readSnapshot(object,
                          bytes("1E 00 00 00 02 00 00 00 02 00 73 3F E0 00 00 00 00 00 00"
                                "00 00 00 04 00 6F 00 6E FF FF FF FF FF FF FF FF")),
             0);
    QVERIFY(!object.IsSelectionItemSet());
    QVERIFY(object == selectionWithoutOptions());
}

void ValueSelectionEncodingsTest::anIncompleteOptionInASnapshotIsRefusedWhileValidating()
{
    const char snapshot[] = "1F 00 00 00 02"
                            "03 00 00 00 02 00 61 3F F8 00 00 00 00 00 00"
                            "01 00 00 00 02 00 62 C0 00 00 00 00 00 00 00" // a value that is there and not set
                            "00 00 00 02 00 73 3F E0 00 00 00 00 00 00 00 00 00 04 00 6F 00 6E"
                            "FF FF FF FF FF FF FF FF";
    ValueSelection object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes(snapshot)); }), QLatin1String(incompleteOption));
    QCOMPARE(namesOf(object), QStringList(QStringLiteral("a")));
    auto lenient = withoutValidation<ValueSelection>();
    QCOMPARE(readSnapshot(lenient, bytes(snapshot)), 0);
    QCOMPARE(hex(snapshotOf(lenient)), hex(snapshot));
}

void ValueSelectionEncodingsTest::truncatedOptionIsNotAppended()
{
    for (const char *snapshot : {"1F 00 00 00 02 03 00 00 00 02 00 61 3F F8 00 00 00 00 00 00", // before the second
                                 "1F 00 00 00 02 03 00 00 00 02 00 61 3F F8 00 00 00 00 00 00 03 00 00 00 02 00 62"}) {
        ValueSelection object; // validating: what was cut off does not get as far as the append rule
        QCOMPARE(thrownBy([&] { readSnapshot(object, bytes(snapshot)); }), QString());
        QCOMPARE(namesOf(object), QStringList(QStringLiteral("a")));
    }
}

void ValueSelectionEncodingsTest::aSnapshotStoresItsMembersWithoutTheSetters()
{
    ValueSelection object;
    const char snapshot[] = "0A 00 00 00 00 FF FF FF FF 3F E0 00 00 00 00 00 00 FF FF FF FF 00 00 00 01 00 00 00 07";
    QCOMPARE(thrownBy([&] { readSnapshot(object, bytes(snapshot)); }), QString());
    QVERIFY(object.IsidSet());
    QVERIFY(object.Getid().isNull());
    QVERIFY(!object.IsvalueSet());
    QCOMPARE(object.Getvalue(), 0.5);
    QVERIFY(object.IstextSet());
    QVERIFY(object.Gettext().isNull());
    QVERIFY(!object.IsindexSet());
    QCOMPARE(object.Getindex(), 7); // narrowed
}

TEST_SUITE(ValueSelectionEncodingsTest)
#include "tst_ValueSelectionEncodings.moc"

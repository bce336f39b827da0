// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encodings.h"
#include "ExceptionText.h"

#include <jobxml/StartupModes.h>

using namespace JobXml;

using Mode = StartupModes::StartupMode;
using Modes = QVector<Mode>;

namespace {

const char missingModes[] = "OutOfRangeException: StartupModes: Please set StartupMode properly.";
const char refusedMode[] = "IncompleteDefinitionException: StartupModes: Tried to append not completely defined or "
                           "invalid item StartupMode.";

// Scan and Stop.
const char element[] = "<StartupModes><StartupMode>Scan</StartupMode><StartupMode>Stop</StartupMode></StartupModes>";

const char record[] = "00 00 00 24" // 36 bytes
                      "62 7B 74 CE 00 00 00 1C 00 00 00 02" // modes: two
                      "00 00 00 08 00 00 00 04 53 63 61 6E" //   "Scan"
                      "00 00 00 08 00 00 00 04 53 74 6F 70"; //   "Stop"

const char snapshot[] = "01 00 00 00 02 00 0A"; // set, two modes: 0 and 10

StartupModes modes(const Modes &list)
{
    StartupModes object;
    object.SetStartupMode(list);
    return object;
}

/// Modes whose flag is clear.
StartupModes withUnsetList(const Modes &list)
{
    StartupModes object = modes(list);
    readSnapshot(object, bytes("00 00 00 00 00"));
    return object;
}

} // namespace

class StartupModesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameIdentifierAndNoVersion();
    void theElevenModesHaveTheirNamesInThisOrder();
    void nameMustMatchExactly();
    void aSingleModeIsValidWithinTheElevenNames();
    void aListIsValidOnlyWhenEmpty();

    void aNewObjectMissesItsModesEvenWithoutValidation();
    void emptyListPassesTheCheckButIsNotData();
    void invalidModeFailsTheCheck_data();
    void invalidModeFailsTheCheck();
    void presenceDependsOnModesAndNotOnTheFlag();
    void nonConstGetterOfTheListSetsItsFlag();
    void aListIsStoredUnchecked();
    void invalidModeIsNotAppendedWhileValidating();
    void resettingEmptiesTheList();

    void twoModesHaveThisElement();
    void twoModesHaveThisRecord();
    void twoModesHaveThisSnapshot();
    void anEmptyListIsWrittenOnlyWithoutValidation();
    void invalidModeIsWrittenWithoutName();
    void modesOfAListThatIsNotSetAreWritten();

    void otherElementsAreIgnored();
    void attributesAreIgnored();
    void anUnknownNameIsRefusedOnlyWhileValidating();
    void elementsRecordsAndSnapshotsJoinTheModesPresent();
    void recordsOfUnknownTagAreSkipped();
    void recordLengthsMustAddUp();
    void aSnapshotIsReadByItsCount();
    void byteThatIsNotAModeIsRefusedOnlyWhileValidating();

    void listsAreEqualWhenSetAndEqualOrBothUnset();
};

void StartupModesTest::itHasItsNameIdentifierAndNoVersion()
{
    QCOMPARE(StartupModes::GetStaticObjectName(), QStringLiteral("StartupModes"));
    QCOMPARE(StartupModes().GetObjectName(), QStringLiteral("StartupModes"));
    QCOMPARE(StartupModes::GetId(), Q_INT64_C(0xA7563754));
    QVERIFY(StartupModes().GetVersion().isNull());
}

void StartupModesTest::theElevenModesHaveTheirNamesInThisOrder()
{
    const QStringList names = {QStringLiteral("Scan"),   QStringLiteral("FastScan"), QStringLiteral("MScan"),
                               QStringLiteral("FFM"),    QStringLiteral("WFFM"),     QStringLiteral("Step"),
                               QStringLiteral("DF"),     QStringLiteral("MSearch"),  QStringLiteral("Polar"),
                               QStringLiteral("Search"), QStringLiteral("Stop")};
    QCOMPARE(StartupModes::GetStartupModes(), names);
    const StartupModes object;
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(object.StartupModeToName(Mode(i)), names.at(i));
        QCOMPARE(object.NameToStartupMode(names.at(i)), Mode(i));
    }
    QVERIFY(object.StartupModeToName(Mode(-1)).isNull());
    QVERIFY(object.StartupModeToName(Mode(11)).isNull());
    QCOMPARE(Mode::FFM, Mode(3));
    QCOMPARE(Mode::Stop, Mode(10));
    QCOMPARE(object.GetInvalidStartupMode(), Mode(-1));
    QCOMPARE(object.GetDefaultStartupMode(), Mode(-1));
}

void StartupModesTest::nameMustMatchExactly()
{
    const StartupModes object;
    QCOMPARE(object.NameToStartupMode(QStringLiteral("FFM")), Mode(3));
    QCOMPARE(object.NameToStartupMode(QStringLiteral("DF")), Mode(6));
    QCOMPARE(object.NameToStartupMode(QStringLiteral("scan")), Mode(-1));
    QCOMPARE(object.NameToStartupMode(QStringLiteral("Scan ")), Mode(-1));
    QCOMPARE(object.NameToStartupMode(QString()), Mode(-1));
}

void StartupModesTest::aSingleModeIsValidWithinTheElevenNames()
{
    const StartupModes object;
    for (int i = 0; i < 11; ++i)
        QVERIFY(object.IsValidStartupMode(Mode(i)));
    QVERIFY(!object.IsValidStartupMode(Mode(11)));
    QVERIFY(!object.IsValidStartupMode(Mode(127)));
    QVERIFY(!object.IsValidStartupMode(Mode(-1)));
    QVERIFY(!object.IsValidStartupMode(Mode(-128)));
}

void StartupModesTest::aListIsValidOnlyWhenEmpty()
{
    const StartupModes empty;
    const StartupModes filled = modes({Mode::Scan, Mode::Stop});
    for (const StartupModes &object : {empty, filled}) {
        QVERIFY(object.IsValidStartupMode(Modes()));
        QVERIFY(!object.IsValidStartupMode(Modes{Mode::Scan}));
        QVERIFY(!object.IsValidStartupMode(Modes{Mode::FFM, Mode::Stop}));
        QVERIFY(!object.IsValidStartupMode(Modes{Mode::Invalid}));
    }
}

void StartupModesTest::aNewObjectMissesItsModesEvenWithoutValidation()
{
    for (const bool validate : {true, false}) {
        StartupModes object;
        object.SetValidate(validate);
        QVERIFY(!object.HasData() && !object.AnyData());
        QCOMPARE(thrownBy([&] { object.Check(); }), QString::fromLatin1(missingModes));
    }
}

void StartupModesTest::emptyListPassesTheCheckButIsNotData()
{
    const StartupModes object = modes({});
    QVERIFY(object.IsStartupModeSet());
    QCOMPARE(thrownBy([&] { object.Check(); }), QString());
    QVERIFY(!object.HasData() && !object.AnyData());
}

void StartupModesTest::invalidModeFailsTheCheck_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("-1") << -1;
    QTest::newRow("11") << 11;
    QTest::newRow("-128") << -128;
}

void StartupModesTest::invalidModeFailsTheCheck()
{
    QFETCH(int, mode);
    StartupModes object = modes({Mode::Scan, Mode(mode)});
    QCOMPARE(thrownBy([&] { object.Check(); }), QString::fromLatin1(missingModes));
    QCOMPARE(thrownBy([&] { xmlOf(object); }), QString::fromLatin1(missingModes));
    QCOMPARE(thrownBy([&] { recordOf(object); }), QString::fromLatin1(missingModes));
    object.SetValidate(false);
    QCOMPARE(thrownBy([&] { object.Check(); }), QString::fromLatin1(missingModes));
}

void StartupModesTest::presenceDependsOnModesAndNotOnTheFlag()
{
    const StartupModes set = modes({Mode::Scan});
    QVERIFY(set.HasData() && set.AnyData());
    const StartupModes unset = withUnsetList({Mode::Scan});
    QVERIFY(!unset.IsStartupModeSet());
    QVERIFY(unset.HasData() && unset.AnyData());
    QCOMPARE(thrownBy([&] { unset.Check(); }), QString::fromLatin1(missingModes));
}

void StartupModesTest::nonConstGetterOfTheListSetsItsFlag()
{
    StartupModes object;
    QVERIFY(std::as_const(object).GetStartupMode().isEmpty());
    QVERIFY(!object.IsStartupModeSet());
    object.GetStartupMode().append(Mode::DF);
    QVERIFY(object.IsStartupModeSet());
    QCOMPARE(std::as_const(object).GetStartupMode(), Modes{Mode::DF});
}

void StartupModesTest::aListIsStoredUnchecked()
{
    StartupModes object;
    QCOMPARE(thrownBy([&] { object.SetStartupMode({Mode::Invalid, Mode(50)}); }), QString());
    QVERIFY(object.IsStartupModeSet());
    QCOMPARE(std::as_const(object).GetStartupMode(), (Modes{Mode::Invalid, Mode(50)}));
}

void StartupModesTest::invalidModeIsNotAppendedWhileValidating()
{
    StartupModes object;
    QCOMPARE(thrownBy([&] { object.AppendStartupMode(Mode::Invalid); }), QString::fromLatin1(refusedMode));
    QCOMPARE(thrownBy([&] { object.AppendStartupMode(Mode(11)); }), QString::fromLatin1(refusedMode));
    QVERIFY(!object.IsStartupModeSet());
    object.AppendStartupMode(Mode::Stop);
    QVERIFY(object.IsStartupModeSet());
    object.SetValidate(false);
    object.AppendStartupMode(Mode::Invalid);
    QCOMPARE(std::as_const(object).GetStartupMode(), (Modes{Mode::Stop, Mode::Invalid}));
}

void StartupModesTest::resettingEmptiesTheList()
{
    StartupModes object = modes({Mode::Scan});
    object.ResetStartupMode();
    QVERIFY(!object.IsStartupModeSet());
    QVERIFY(std::as_const(object).GetStartupMode().isEmpty());
    object = modes({Mode::Scan});
    object.ResetToDefault();
    QVERIFY(object.IsInitialized() && !object.IsStartupModeSet() && !object.AnyData());
}

void StartupModesTest::twoModesHaveThisElement()
{
    QCOMPARE(xmlOf(modes({Mode::Scan, Mode::Stop})), QString::fromLatin1(element));
    StartupModes read;
    readXml(read, QString::fromLatin1(element));
    QVERIFY(read == modes({Mode::Scan, Mode::Stop}));
    QCOMPARE(xmlOf(read), QString::fromLatin1(element));
}

void StartupModesTest::twoModesHaveThisRecord()
{
    QCOMPARE(hex(recordOf(modes({Mode::Scan, Mode::Stop}))), hex(record));
    StartupModes read;
    readRecord(read, bytes(record));
    QVERIFY(read == modes({Mode::Scan, Mode::Stop}));
    QCOMPARE(hex(recordOf(read)), hex(record));
}

void StartupModesTest::twoModesHaveThisSnapshot()
{
    QCOMPARE(hex(snapshotOf(modes({Mode::Scan, Mode::Stop}))), hex(snapshot));
    StartupModes read;
    QCOMPARE(readSnapshot(read, bytes(snapshot)), 0);
    QVERIFY(read == modes({Mode::Scan, Mode::Stop}));
    QCOMPARE(hex(snapshotOf(read)), hex(snapshot));
}

void StartupModesTest::anEmptyListIsWrittenOnlyWithoutValidation()
{
    StartupModes object = modes({});
    QCOMPARE(xmlOf(object), QString());
    QCOMPARE(recordOf(object), QByteArray());
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 00"));
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<StartupModes/>"));
    QCOMPARE(hex(recordOf(object)), hex("00 00 00 0C 62 7B 74 CE 00 00 00 04 00 00 00 00"));
}

void StartupModesTest::invalidModeIsWrittenWithoutName()
{
    StartupModes object = modes({Mode::Invalid});
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<StartupModes><StartupMode></StartupMode></StartupModes>"));
    QCOMPARE(hex(snapshotOf(object)), hex("01 00 00 00 01 FF"));
    QCOMPARE(thrownBy([&] { object.Check(); }), QString::fromLatin1(missingModes));
}

void StartupModesTest::modesOfAListThatIsNotSetAreWritten()
{
    StartupModes object = withUnsetList({Mode::Scan});
    object.SetValidate(false);
    QCOMPARE(xmlOf(object), QStringLiteral("<StartupModes><StartupMode>Scan</StartupMode></StartupModes>"));
    QCOMPARE(hex(recordOf(object)),
             hex("00 00 00 18 62 7B 74 CE 00 00 00 10 00 00 00 01 00 00 00 08 00 00 00 04 53 63 61 6E"));
    QCOMPARE(hex(snapshotOf(object)), hex("00 00 00 00 01 00"));
}

void StartupModesTest::otherElementsAreIgnored()
{
    StartupModes object;
    readXml(object, QStringLiteral("<StartupModes><StartupMode>Step</StartupMode><Other/></StartupModes>"));
    QCOMPARE(std::as_const(object).GetStartupMode(), Modes{Mode(5)});
    readXml(object,
            QStringLiteral("<StartupModes><Other><StartupMode>Scan</StartupMode></Other>"
                           "<StartupMode>DF</StartupMode></StartupModes>"));
    QCOMPARE(std::as_const(object).GetStartupMode(), (Modes{Mode(5), Mode(6)}));
}

void StartupModesTest::attributesAreIgnored()
{
    StartupModes object;
    readXml(object, QStringLiteral("<StartupModes StartupMode=\"Scan\" Version=\"0.1\"/>"));
    QVERIFY(!object.IsStartupModeSet());
    QVERIFY(!object.AnyData());
}

void StartupModesTest::anUnknownNameIsRefusedOnlyWhileValidating()
{
    const QString xml = QStringLiteral("<StartupModes><StartupMode>Stride</StartupMode></StartupModes>");
    const QByteArray stride = bytes("00 00 00 1A 62 7B 74 CE 00 00 00 12 00 00 00 01"
                                    "00 00 00 0A 00 00 00 06 53 74 72 69 64 65");
    StartupModes object;
    QCOMPARE(thrownBy([&] { readXml(object, xml); }), QString::fromLatin1(refusedMode));
    QCOMPARE(thrownBy([&] { readRecord(object, stride); }), QString::fromLatin1(refusedMode));
    QVERIFY(!object.AnyData());
    object.SetValidate(false);
    readXml(object, xml);
    readRecord(object, stride);
    QCOMPARE(std::as_const(object).GetStartupMode(), (Modes{Mode(-1), Mode(-1)}));
}

void StartupModesTest::elementsRecordsAndSnapshotsJoinTheModesPresent()
{
    StartupModes object = modes({Mode::DF});
    readXml(object, QString::fromLatin1(element));
    readRecord(object, bytes(record));
    QCOMPARE(readSnapshot(object, bytes(snapshot)), 0);
    QCOMPARE(std::as_const(object).GetStartupMode(),
             (Modes{Mode::DF, Mode::Scan, Mode::Stop, Mode::Scan, Mode::Stop, Mode::Scan, Mode::Stop}));
}

void StartupModesTest::recordsOfUnknownTagAreSkipped()
{
    StartupModes object;
    readRecord(object,
               bytes("00 00 00 21" // 33 bytes
                     "12 34 56 78 00 00 00 01 FF" // an unknown record
                     "62 7B 74 CE 00 00 00 10 00 00 00 01 00 00 00 08 00 00 00 04 53 63 61 6E"));
    QCOMPARE(std::as_const(object).GetStartupMode(), Modes{Mode::Scan});
}

void StartupModesTest::recordLengthsMustAddUp()
{
    for (const char *wrong : {"FF FF FF FF", "00 00 00 10 62 7B 74 CE 00 00 00 04 00 00 00 00",
                              "00 00 00 0B 62 7B 74 CE 00 00 00 04 00 00 00 00"}) {
        StartupModes object;
        QCOMPARE(thrownBy([&] { readRecord(object, bytes(wrong)); }),
                 QStringLiteral("BinaryParsingException: StartupModes::SetBinary(...): Length error occurred during "
                                "processing of binary representation"));
    }
}

void StartupModesTest::aSnapshotIsReadByItsCount()
{
    // The flag of the list is clear. The mode is read nevertheless, and appending it sets the flag.
    StartupModes object;
    QCOMPARE(readSnapshot(object, bytes("00 00 00 00 01 06")), 0);
    QCOMPARE(std::as_const(object).GetStartupMode(), Modes{Mode::DF});
    QVERIFY(object.IsStartupModeSet());
}

void StartupModesTest::byteThatIsNotAModeIsRefusedOnlyWhileValidating()
{
    const QByteArray beyond = bytes("01 00 00 00 02 00 0B");
    StartupModes object;
    QCOMPARE(thrownBy([&] { readSnapshot(object, beyond); }), QString::fromLatin1(refusedMode));
    QCOMPARE(std::as_const(object).GetStartupMode(), Modes{Mode::Scan});
    object.SetValidate(false);
    QCOMPARE(readSnapshot(object, beyond), 0);
    QCOMPARE(std::as_const(object).GetStartupMode(), (Modes{Mode::Scan, Mode::Scan, Mode(11)}));
}

void StartupModesTest::listsAreEqualWhenSetAndEqualOrBothUnset()
{
    QVERIFY(modes({Mode::Scan, Mode::Stop}) == modes({Mode::Scan, Mode::Stop}));
    QVERIFY(modes({Mode::Scan, Mode::Stop}) != modes({Mode::Stop, Mode::Scan}));
    QVERIFY(modes({Mode::Scan}) != modes({Mode::Scan, Mode::Scan}));
    QVERIFY(StartupModes() == StartupModes());
    QVERIFY(modes({}) != StartupModes());
    QVERIFY(StartupModes() != modes({}));
    QVERIFY(withUnsetList({Mode::Scan}) == StartupModes());
    QVERIFY(withUnsetList({Mode::Scan}) != modes({Mode::Scan}));
}

TEST_SUITE(StartupModesTest)
#include "tst_StartupModes.moc"

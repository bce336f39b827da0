// SPDX-License-Identifier: MIT
#include "NewMembers.h"
#include "Rows.h"
#include "tools/Tool.h"

class ToolShowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberIsShownWithItsValue();
    void membersThatAreNotSetAreMarked();
    void emptyTextDiffersFromAMissingOne();
    void unknownNamesAreShownAsNull();
    void versionIsTheOneThatWasRead();
    void numbersAreShownExactly_data();
    void numbersAreShownExactly();
    void floatIsShownWithItsOwnDigits();
    void textsStayOnOneLine();
    void everyFormShowsTheSame_data();
    void everyFormShowsTheSame();
    void outputIsUtf8InEveryLocale();
    void showingDoesNotValidate();
    void alternativesThatAreNotChosenAreShown();
    void objectsThatAreNotSetAreShownIfTheyHaveData();
    void aDocumentIsShownWithoutACommand();
    void aFileWithTheNameOfACommandIsNotShownWithoutACommand();
};

namespace {

QString shown(const QByteArray &xml)
{
    const Run run = Workshop().run(line("show -"), xml);
    return run.status == 0 && run.err.isEmpty() ? run.out : QStringLiteral("status %1: ").arg(run.status) + run.err;
}

} // namespace

void ToolShowTest::everyMemberIsShownWithItsValue()
{
    const QString tree = shown(R"(<TunerProperties Version="1.1" name="N" type="Receiver" baseresource="B"
            connectableResources="C" quantity="-2" parentBaseResource="P" hwProcessing="true">
        <StartupModes><StartupMode>Stop</StartupMode><StartupMode>Scan</StartupMode></StartupModes>
        <BandwidthSelection><Name>narrow</Name><MaxBandwidth>2400.25</MaxBandwidth></BandwidthSelection>
        <BandwidthSelection><Name>wide</Name><MaxBandwidth>80000000</MaxBandwidth></BandwidthSelection>
        <MaxFFPDelay>5000000000</MaxFFPDelay>
        <HRPANSupported>true</HRPANSupported>
        <Component type="t1" name="n1" displayName="d1" optional="false">
          <Node id="plain">
            <ValueItem><ValueBoolean id="a" value="true"/></ValueItem>
            <ValueItem><ValueFloat id="b" value="0.35"/></ValueItem>
            <ValueItem><ValueInt id="c" value="-7"/></ValueItem>
            <ValueItem><ValueInt64 id="d" value="9000000000"/></ValueItem>
            <ValueItem><ValueString id="e" value="text"/></ValueItem>
          </Node>
          <Node id="ranged">
            <ValueItem><ValueNumericFloat id="f" value="1.5" min="-2" max="3.25" step="0.1"/></ValueItem>
            <ValueItem><ValueNumericInt id="g" value="1" min="2" max="3" step="4"/></ValueItem>
            <ValueItem><ValueNumericInt64 id="h" value="5" min="6" max="7" step="8"/></ValueItem>
          </Node>
        </Component>
        <Component type="t2" name="n2" displayName="d2" optional="true">
          <Node id="lists">
            <ValueItem><ValueSelection id="i" value="0.5" text="half" index="1">
              <SelectionItem name="none" value="0"/><SelectionItem name="half" value="0.5"/>
            </ValueSelection></ValueItem>
            <ValueItem><ValueStringList id="j" value="x">
              <StringItem value="x"/><StringItem value="y"/>
            </ValueStringList></ValueItem>
          </Node>
        </Component>
      </TunerProperties>)");
    const auto expected = QStringLiteral(R"(TunerProperties
  Version: "1.1"
  name: "N"
  type: "Receiver"
  baseresource: "B"
  connectableResources: "C"
  quantity: -2
  parentBaseResource: "P"
  hwProcessing: true
  StartupModes: StartupMode ["Stop", "Scan"]
  BandwidthSelection 1: Name "narrow", MaxBandwidth 2400.25
  BandwidthSelection 2: Name "wide", MaxBandwidth 80000000
  MaxFFPDelay: 5000000000
  HRPANSupported: true
  Component 1: type "t1", name "n1", displayName "d1", optional false
    Node 1: id "plain"
      ValueItem 1 / ValueBoolean: id "a", value true
      ValueItem 2 / ValueFloat: id "b", value 0.35
      ValueItem 3 / ValueInt: id "c", value -7
      ValueItem 4 / ValueInt64: id "d", value 9000000000
      ValueItem 5 / ValueString: id "e", value "text"
    Node 2: id "ranged"
      ValueItem 1 / ValueNumericFloat: id "f", value 1.5, min -2, max 3.25, step 0.1
      ValueItem 2 / ValueNumericInt: id "g", value 1, min 2, max 3, step 4
      ValueItem 3 / ValueNumericInt64: id "h", value 5, min 6, max 7, step 8
  Component 2: type "t2", name "n2", displayName "d2", optional true
    Node 1: id "lists"
      ValueItem 1 / ValueSelection: id "i", value 0.5, text "half", index 1
        SelectionItem 1: name "none", value 0
        SelectionItem 2: name "half", value 0.5
      ValueItem 2 / ValueStringList: id "j", value "x"
        StringItem 1: value "x"
        StringItem 2: value "y"
)");
    QCOMPARE(Model::withoutNewMembers(tree, expected), expected);
}

void ToolShowTest::membersThatAreNotSetAreMarked()
{
    const QString tree = shown(R"(<TunerProperties Version="1.1">
        <StartupModes/>
        <BandwidthSelection/>
        <Component>
          <Node>
            <ValueItem/>
            <ValueItem><ValueStringList/></ValueItem>
            <ValueItem><ValueNumericInt/></ValueItem>
          </Node>
        </Component>
        <Component/>
      </TunerProperties>)");
    const auto expected = QStringLiteral(R"(TunerProperties
  Version: "1.1"
  name: (not set)
  type: (not set)
  baseresource: (not set)
  connectableResources: (not set)
  quantity: 1 (not set)
  parentBaseResource: (not set)
  hwProcessing: false (not set)
  StartupModes: StartupMode (not set)
  BandwidthSelection 1: Name (not set), MaxBandwidth 0 (not set)
  MaxFFPDelay: 0 (not set)
  HRPANSupported: false (not set)
  Component 1: type (not set), name (not set), displayName (not set), optional false (not set)
    Node 1: id (not set)
      ValueItem 1: (empty)
      ValueItem 2 / ValueStringList: id (not set), value (not set), StringItem (not set)
      ValueItem 3 / ValueNumericInt: id (not set), value 0 (not set), min 0 (not set), max 0 (not set), step 0 (not set)
  Component 2: type (not set), name (not set), displayName (not set), optional false (not set), Node (not set)
)");
    QCOMPARE(Model::withoutNewMembers(tree, expected), expected);
}

void ToolShowTest::emptyTextDiffersFromAMissingOne()
{
    const QString tree = shown(R"(<TunerProperties Version="1.1" name="" type="SCP" baseresource="">
        <Component type="" displayName=""/></TunerProperties>)");
    QVERIFY(tree.contains(QLatin1String("\n  name: \"\"\n")));
    QVERIFY(tree.contains(QLatin1String("\n  baseresource: \"\"\n")));
    QVERIFY(tree.contains(QLatin1String("\n  Component 1: type \"\", name (not set), displayName \"\", ")));
}

void ToolShowTest::unknownNamesAreShownAsNull()
{
    const QString tree = shown(R"(<TunerProperties Version="1.1" type="receiver">
        <StartupModes><StartupMode>Scan</StartupMode><StartupMode>scan</StartupMode></StartupModes>
        </TunerProperties>)");
    QVERIFY(tree.contains(QLatin1String("\n  type: (null)\n")));
    QVERIFY(tree.contains(QLatin1String("\n  StartupModes: StartupMode [\"Scan\", (null)]\n")));
    QVERIFY(tree.endsWith(QLatin1String("\n  Component: (not set)\n")));
}

void ToolShowTest::versionIsTheOneThatWasRead()
{
    QVERIFY(
        shown("<TunerProperties Version=\"0.9\"/>").startsWith(QLatin1String("TunerProperties\n  Version: \"0.9\"\n")));
    QVERIFY(shown("<TunerProperties/>").startsWith(QLatin1String("TunerProperties\n  Version: (not set)\n")));
    // Older documents start from the defaults, of which the quantity counts as set.
    QVERIFY(shown("<TunerProperties Version=\"0.9\"/>").contains(QLatin1String("\n  quantity: 1\n")));
}

void ToolShowTest::numbersAreShownExactly_data()
{
    const Rows<QString, QString> row("read", "shown");
    row("0", "0");
    row("-0.0", "-0");
    row("2.50", "2.5");
    row("0.1", "0.1");
    row("1.005", "1.005");
    row("-1500000", "-1500000");
    row("0.1000000000000000055511151231257827", "0.1");
    row("0.30000000000000004", "0.30000000000000004");
    row("1234567890123456", "1234567890123456");
    row("1e16", "1e+16");
    row("1.7976931348623157e308", "1.7976931348623157e+308");
    row("0.000001", "0.000001");
    row("0.0000001", "1e-07");
    row("inf", "inf");
    row("nan", "nan");
}

void ToolShowTest::numbersAreShownExactly()
{
    QFETCH(QString, read);
    QFETCH(QString, shown);
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\"><BandwidthSelection><Name>n</Name>"
                                       "<MaxBandwidth>%1</MaxBandwidth></BandwidthSelection></TunerProperties>");
    const QString tree = ::shown(xml.arg(read).toUtf8());
    const QString expected = QStringLiteral("Name \"n\", MaxBandwidth ") + shown;
    const QString line = tree.section(QLatin1String("BandwidthSelection 1: "), 1).section(QLatin1Char('\n'), 0, 0);
    QCOMPARE(Model::withoutNewMembers(line, expected), expected);
}

void ToolShowTest::floatIsShownWithItsOwnDigits()
{
    const QString tree = shown("<TunerProperties Version=\"1.1\"><Component><Node><ValueItem>"
                               "<ValueNumericFloat id=\"f\" value=\"0.1\" min=\"16777217\" max=\"1.5e30\" "
                               "step=\"1e-7\"/></ValueItem></Node></Component></TunerProperties>");
    QVERIFY(tree.endsWith(
        QLatin1String("ValueNumericFloat: id \"f\", value 0.1, min 16777216, max 1.5e+30, step 1e-07\n")));
}

void ToolShowTest::textsStayOnOneLine()
{
    const QString tree =
        shown("<TunerProperties Version=\"1.1\" name=\"a&#10;b&#9;c&#13;d &quot;e&quot; f\\g &#x85;&#x2028; é\"/>");
    QVERIFY(tree.contains(QStringLiteral("\n  name: \"a\\nb\\tc\\rd \\\"e\\\" f\\\\g \\u0085\\u2028 \u00e9\"\n")));
}

void ToolShowTest::everyFormShowsTheSame_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << examplePath(name);
}

void ToolShowTest::everyFormShowsTheSame()
{
    QFETCH(QString, path);
    Workshop shop;
    const Run fromXml = shop.run({QStringLiteral("show"), path});
    QCOMPARE(fromXml.status, 0);
    QCOMPARE(fromXml.err, QString());
    QVERIFY(fromXml.out.startsWith(QLatin1String("TunerProperties\n  Version: \"1.1\"\n")));
    for (const char *name : {"out.tpb", "out.tpz", "out.tps"}) {
        const QString out = QString::fromUtf8(name);
        QCOMPARE(shop.run({QStringLiteral("convert"), path, out}).status, 0);
        const Run run = shop.run({QStringLiteral("show"), out});
        QCOMPARE(run.out, fromXml.out);
        QCOMPARE(run.status, 0);
    }
}

void ToolShowTest::outputIsUtf8InEveryLocale()
{
    for (const char *locale : {"C", "C.UTF-8"}) {
        Workshop shop;
        shop.setEnvironment(QStringLiteral("LC_ALL"), QString::fromUtf8(locale));
        const Run run = shop.run(line("show -"), "<TunerProperties Version=\"1.1\" name=\"&#x3A9; &#x1F4E1;\"/>");
        QVERIFY(run.bytes.contains("\n  name: \"\xCE\xA9 \xF0\x9F\x93\xA1\"\n"));
        QCOMPARE(run.status, 0);
    }
}

void ToolShowTest::showingDoesNotValidate()
{
    const QString tree = shown("<TunerProperties Version=\"1.1\" hwProcessing=\"\"><Extra/></TunerProperties>");
    QVERIFY(tree.contains(QLatin1String("\n  hwProcessing: false\n")));
}

void ToolShowTest::alternativesThatAreNotChosenAreShown()
{
    const QString tree = shown(R"(<TunerProperties Version="1.1"><Component><Node><ValueItem>
        <ValueInt id="i" value="1"/><ValueString id="s" value="x"/></ValueItem></Node></Component></TunerProperties>)");
    QVERIFY2(tree.endsWith(QStringLiteral("      ValueItem 1 / ValueString: id \"s\", value \"x\"\n"
                                          "        ValueInt (not chosen): id \"i\", value 1\n")),
             qPrintable(tree));
}

void ToolShowTest::objectsThatAreNotSetAreShownIfTheyHaveData()
{
    const Run run = Workshop().run(line("show -"),
                                   R"({"TunerProperties": {"Version": "1.1",
        "unset": {"StartupModes": {"StartupMode": ["DF"]}, "BandwidthSelection": [{"Name": "w"}]}}})");
    QVERIFY2(
        run.out.contains(QStringLiteral("  StartupModes (not set): StartupMode [\"DF\"]\n"
                                        "  BandwidthSelection 1 (not set): Name \"w\", MaxBandwidth 0 (not set)\n")),
        qPrintable(run.out));
}

void ToolShowTest::aDocumentIsShownWithoutACommand()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), smallXml);
    shop.write(QStringLiteral("-b.xml"), smallXml);
    const QString expected = shop.run(line("show a.xml")).out;
    QVERIFY(expected.startsWith(QStringLiteral("TunerProperties")));
    for (const char *arguments : {"a.xml", "./a.xml", "--from xml a.xml", "a.xml --from=xml", "-- -b.xml", "-"}) {
        const Run run = shop.run(line(arguments), smallXml);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.out, expected);
        QCOMPARE(run.status, 0);
    }
    const Run two = shop.run(line("a.xml a.xml"));
    QCOMPARE(two.err,
             QStringLiteral("tunerproperties: 'show' expects FILE\n"
                            "tunerproperties: try 'tunerproperties show --help'\n"));
    QCOMPARE(two.status, 2);
}

void ToolShowTest::aFileWithTheNameOfACommandIsNotShownWithoutACommand()
{
    Workshop shop;
    shop.write(QStringLiteral("diff"), smallXml);
    QCOMPARE(shop.run(line("diff")).status, 2);
    QCOMPARE(shop.run(line("./diff")).status, 0);
}

TEST_SUITE(ToolShowTest)
#include "tst_ToolShow.moc"

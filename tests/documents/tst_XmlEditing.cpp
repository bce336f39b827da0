// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>

#include "Encoded.h"
#include "Rows.h"
#include "documents/Edited.h"

using namespace TunerDocuments;

/// Editing XML in place changes only the values concerned.
class XmlEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueIsReplacedWhereItIs_data();
    void valueIsReplacedWhereItIs();
    void newValueFollowsItsNeighbors_data();
    void newValueFollowsItsNeighbors();
    void unsetValueDisappears_data();
    void unsetValueDisappears();
    void listOfNamesIsReplacedNameByName_data();
    void listOfNamesIsReplacedNameByName();
    void otherKindOfValueReplacesTheElement();
    void encodingStays_data();
    void encodingStays();
    void characterThatTheEncodingLacksIsAReference();
    void unusualBytesAreNotEdited();
    void severalChangesOfOneObjectAreCombined();
    void unchangedDocumentKeepsItsBytes();
    void documentWithinItselfIsNotEdited();
    void characterThatXmlLacksIsRefused();
};

namespace {

const QString name = QStringLiteral("d.xml");

} // namespace

void XmlEditingTest::valueIsReplacedWhereItIs_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> row("before", "path", "value", "after");
    row("attribute in double quotes", "<TunerProperties Version=\"1.1\" name=\"a\" x=\"b\"/>", "name", "<'\"&>",
        "<TunerProperties Version=\"1.1\" name=\"&lt;'&quot;&amp;&gt;\" x=\"b\"/>");
    row("attribute in single quotes", "<TunerProperties Version='1.1' name = 'a&#66;c'/>", "name", "it's \"it\"",
        "<TunerProperties Version='1.1' name = 'it&apos;s \"it\"'/>");
    row("line ends and tabs in an attribute", "<TunerProperties Version='1.1' name=''/>", "name", "a\nb\tc\rd",
        "<TunerProperties Version='1.1' name='a&#10;b&#9;c&#13;d'/>");
    row("blanks around a number", "<TunerProperties Version='1.1' quantity='\t2 '/>", "quantity", "007",
        "<TunerProperties Version='1.1' quantity='\t007 '/>");
    row("element", "<TunerProperties Version='1.1'><name>a</name></TunerProperties>", "name", "b\r\n]]>",
        "<TunerProperties Version='1.1'><name>b&#13;\n]]&gt;</name></TunerProperties>");
    row("number in an element",
        "<TunerProperties Version='1.1'>\n<MaxFFPDelay> <!--ns--> 5 </MaxFFPDelay></TunerProperties>", "MaxFFPDelay",
        "6", "<TunerProperties Version='1.1'>\n<MaxFFPDelay> <!--ns--> 6 </MaxFFPDelay></TunerProperties>");
    row("text in pieces", "<TunerProperties Version='1.1'><name>a<!--1-->b<![CDATA[c]]><?p?>d</name></TunerProperties>",
        "name", "z", "<TunerProperties Version='1.1'><name>z<!--1--><?p?></name></TunerProperties>");
    row("comment that begins with the end of its mark",
        "<TunerProperties Version='1.1'><hwProcessing><!--->-->\n</hwProcessing></TunerProperties>", "hwProcessing",
        "1", "<TunerProperties Version='1.1'><hwProcessing><!--->-->1</hwProcessing></TunerProperties>");
    row("element after one in a comment that begins with the end of its mark",
        "<TunerProperties Version='1.1'><!---><name>a</name>--><name>b</name></TunerProperties>", "name", "c",
        "<TunerProperties Version='1.1'><!---><name>a</name>--><name>c</name></TunerProperties>");
    row("element before one in a comment that begins with the end of its mark",
        "<TunerProperties Version='1.1'><name>b</name><!---><name>a</name>--></TunerProperties>", "name", "c",
        "<TunerProperties Version='1.1'><name>c</name><!---><name>a</name>--></TunerProperties>");
    row("CDATA section", "<TunerProperties Version='1.1'><name><![CDATA[<]]></name></TunerProperties>", "name", "&",
        "<TunerProperties Version='1.1'><name>&amp;</name></TunerProperties>");
    row("empty-element tag", "<TunerProperties Version='1.1'><p:name /></TunerProperties>", "name", "z",
        "<TunerProperties Version='1.1'><p:name >z</p:name></TunerProperties>");
    row("empty element", "<TunerProperties Version='1.1'><name></name></TunerProperties>", "name", "z",
        "<TunerProperties Version='1.1'><name>z</name></TunerProperties>");
    row("element that overrides an attribute",
        "<TunerProperties Version='1.1' name='a'><name>b</name></TunerProperties>", "name", "c",
        "<TunerProperties Version='1.1' name='a'><name>c</name></TunerProperties>");
    row("the last of several elements", "<TunerProperties Version='1.1'><name>a</name><name>b</name></TunerProperties>",
        "name", "c", "<TunerProperties Version='1.1'><name>a</name><name>c</name></TunerProperties>");
    row("value inside an unknown element of the document",
        "<TunerProperties Version='1.1'><Group><name>a</name></Group></TunerProperties>", "name", "c",
        "<TunerProperties Version='1.1'><Group><name>c</name></Group></TunerProperties>");
    row("not inside an unknown element of another object",
        "<TunerProperties "
        "Version='1.1'><Component><Old><name>a</name></Old><name>b</name></Component></TunerProperties>",
        "Component/name", "c",
        "<TunerProperties "
        "Version='1.1'><Component><Old><name>a</name></Old><name>c</name></Component></TunerProperties>");
    row("not inside an unknown element of an older document",
        "<TunerProperties Version='1.0'><Old><name>a</name></Old><name>b</name></TunerProperties>", "name", "c",
        "<TunerProperties Version='1.0'><Old><name>a</name></Old><name>c</name></TunerProperties>");
    row("decimals as typed",
        "<TunerProperties "
        "Version='1.1'><BandwidthSelection><MaxBandwidth>2400.123456</MaxBandwidth></BandwidthSelection>"
        "<BandwidthSelection><MaxBandwidth>0.2567</MaxBandwidth></BandwidthSelection></TunerProperties>",
        "BandwidthSelection[2]/MaxBandwidth", "12.50",
        "<TunerProperties "
        "Version='1.1'><BandwidthSelection><MaxBandwidth>2400.123456</MaxBandwidth></BandwidthSelection>"
        "<BandwidthSelection><MaxBandwidth>12.50</MaxBandwidth></BandwidthSelection></TunerProperties>");
    row("second of two equal items",
        "<TunerProperties Version='1.1'><Component><Node id='a'/><!-- <Node id='a'/> --><Node id='a'/></Component>"
        "</TunerProperties>",
        "Component/Node[id=a][2]/id", "b",
        "<TunerProperties Version='1.1'><Component><Node id='a'/><!-- <Node id='a'/> --><Node id='b'/></Component>"
        "</TunerProperties>");
    row("the alternative that counts",
        "<TunerProperties Version='1.1'><Component><Node><ValueItem><ValueInt value='1'/><ValueInt id='i' value='2'/>"
        "</ValueItem></Node></Component></TunerProperties>",
        "Component/Node/ValueItem/value", "3",
        "<TunerProperties Version='1.1'><Component><Node><ValueItem><ValueInt value='1'/><ValueInt id='i' value='3'/>"
        "</ValueItem></Node></Component></TunerProperties>");
    row("after a document type",
        "<!DOCTYPE TunerProperties SYSTEM \"x>.dtd\"><TunerProperties Version='1.1' name='a'/>", "name", "b",
        "<!DOCTYPE TunerProperties SYSTEM \"x>.dtd\"><TunerProperties Version='1.1' name='b'/>");
    row("byte order mark", "\xEF\xBB\xBF<TunerProperties Version='1.1' name='a'/>", "name", "\xC3\xA4",
        "\xEF\xBB\xBF<TunerProperties Version='1.1' name='\xC3\xA4'/>");
    row("byte order marks in a text", "<TunerProperties Version='1.1' name='a'/>", "name",
        "a\xEF\xBB\xBF"
        "b",
        "<TunerProperties Version='1.1' name='a\xEF\xBB\xBF"
        "b'/>");
    row("false is written for a word that reads as true", "<TunerProperties Version='1.1' hwProcessing='x'/>",
        "hwProcessing", "0", "<TunerProperties Version='1.1' hwProcessing='0'/>");
    // Readers accept nearly every text. The one that is required must be there afterwards.
    row("true for a word that reads as true", "<TunerProperties Version='1.1' hwProcessing='maybe'/>", "hwProcessing",
        "true", "<TunerProperties Version='1.1' hwProcessing='true'/>");
    row("false for an empty element", "<TunerProperties Version='1.1'><hwProcessing/></TunerProperties>",
        "hwProcessing", "false", "<TunerProperties Version='1.1'><hwProcessing>false</hwProcessing></TunerProperties>");
    row("0 for a word that reads as 0", "<TunerProperties Version='1.1' quantity='abc'/>", "quantity", "0",
        "<TunerProperties Version='1.1' quantity='0'/>");
    row("0 for a number that is out of range", "<TunerProperties Version='1.1' quantity='99999999999'/>", "quantity",
        "0", "<TunerProperties Version='1.1' quantity='0'/>");
    row("decimals that are lost in reading",
        "<TunerProperties Version='1.1'><Component><Node><ValueItem><ValueFloat value='0.1000000001'/></ValueItem>"
        "</Node></Component></TunerProperties>",
        "Component/Node/ValueItem/value", "0.10",
        "<TunerProperties Version='1.1'><Component><Node><ValueItem><ValueFloat value='0.10'/></ValueItem>"
        "</Node></Component></TunerProperties>");
    row("value of an older version that is only read", "<TunerProperties Version='1.0'/>", "quantity", "1",
        "<TunerProperties Version='1.0' quantity='1'/>");
}

void XmlEditingTest::valueIsReplacedWhereItIs()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    QCOMPARE(edited(before, {{path, value}}), after);
}

void XmlEditingTest::newValueFollowsItsNeighbors_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> row("before", "path", "value", "after");
    row("attribute between others", "<TunerProperties Version='1.1' name='a' baseresource='b'/>", "type", "SCP",
        "<TunerProperties Version='1.1' name='a' type='SCP' baseresource='b'/>");
    row("attribute after the version", "<TunerProperties Version='1.1'/>", "name", "a",
        "<TunerProperties Version='1.1' name='a'/>");
    row("attribute on a line of its own",
        "<TunerProperties Version=\"1.1\"\n                 name=\"a\"\n                 "
        "quantity=\"2\">\n</TunerProperties>",
        "baseresource", "b",
        "<TunerProperties Version=\"1.1\"\n                 name=\"a\"\n                 baseresource=\"b\"\n"
        "                 quantity=\"2\">\n</TunerProperties>");
    row("first attribute", "<TunerProperties Version='1.1'><Component><Node/></Component></TunerProperties>",
        "Component/Node/id", "n",
        "<TunerProperties Version='1.1'><Component><Node id=\"n\"/></Component></TunerProperties>");
    row("attribute before the only one", "<TunerProperties Version='1.1'><Component name='n'/></TunerProperties>",
        "Component/type", "t", "<TunerProperties Version='1.1'><Component type='t' name='n'/></TunerProperties>");
    row("element among elements",
        "<TunerProperties Version='1.1'>\n  <Component>\n    <type>t</type>\n  </Component>\n</TunerProperties>",
        "Component/name", "n",
        "<TunerProperties Version='1.1'>\n  <Component>\n    <type>t</type>\n    <name>n</name>\n  </Component>\n"
        "</TunerProperties>");
    row("element in its place, with the indentation and line ends of its neighbors",
        "<TunerProperties Version='1.1'>\r\n\t<StartupModes/>\r\n\t<Component/>\r\n</TunerProperties>", "MaxFFPDelay",
        "5",
        "<TunerProperties Version='1.1'>\r\n\t<StartupModes/>\r\n\t<MaxFFPDelay>5</MaxFFPDelay>\r\n\t<Component/>\r\n"
        "</TunerProperties>");
    row("element before all others",
        "<TunerProperties Version='1.1'>\n  <!-- parts -->\n  <Component/>\n</TunerProperties>", "HRPANSupported",
        "true",
        "<TunerProperties Version='1.1'>\n  <!-- parts -->\n  <HRPANSupported>true</HRPANSupported>\n  <Component/>\n"
        "</TunerProperties>");
    row("first element of an empty-element tag",
        "<TunerProperties Version='1.1'>\n\t<BandwidthSelection/>\n</TunerProperties>", "BandwidthSelection/Name", "w",
        "<TunerProperties Version='1.1'>\n\t<BandwidthSelection>\n\t\t<Name>w</Name>\n\t</BandwidthSelection>\n"
        "</TunerProperties>");
    row("first element of an empty element",
        "<TunerProperties Version='1.1'>\n  <BandwidthSelection>\n  </BandwidthSelection>\n</TunerProperties>",
        "BandwidthSelection/Name", "w",
        "<TunerProperties Version='1.1'>\n  <BandwidthSelection>\n    <Name>w</Name>\n  </BandwidthSelection>\n"
        "</TunerProperties>");
    row("document on one line", "<TunerProperties Version='1.1'><BandwidthSelection/></TunerProperties>",
        "BandwidthSelection/MaxBandwidth", "0.1",
        "<TunerProperties Version='1.1'><BandwidthSelection><MaxBandwidth>0.1</MaxBandwidth></BandwidthSelection>"
        "</TunerProperties>");
    row("element with the prefix of its neighbors",
        "<t:TunerProperties xmlns:t='u' Version='1.1'><t:BandwidthSelection/></t:TunerProperties>",
        "BandwidthSelection/Name", "w",
        "<t:TunerProperties xmlns:t='u' Version='1.1'><t:BandwidthSelection><t:Name>w</t:Name></t:BandwidthSelection>"
        "</t:TunerProperties>");
}

void XmlEditingTest::newValueFollowsItsNeighbors()
{
    valueIsReplacedWhereItIs();
}

void XmlEditingTest::unsetValueDisappears_data()
{
    const Rows<QByteArray, QString, QByteArray> row("before", "path", "after");
    row("attribute with the blanks before it", "<TunerProperties Version='1.1'\n name='a' type='SCP'/>", "name",
        "<TunerProperties Version='1.1' type='SCP'/>");
    row("element with its line",
        "<TunerProperties Version='1.1'>\n  <MaxFFPDelay>5</MaxFFPDelay>\n  <Component/>\n</TunerProperties>",
        "MaxFFPDelay", "<TunerProperties Version='1.1'>\n  <Component/>\n</TunerProperties>");
    row("element on a line with a comment",
        "<TunerProperties Version='1.1'>\r\n  <MaxFFPDelay>5</MaxFFPDelay> <!-- ns -->\r\n</TunerProperties>",
        "MaxFFPDelay", "<TunerProperties Version='1.1'>\r\n   <!-- ns -->\r\n</TunerProperties>");
    row("attribute and elements",
        "<TunerProperties Version='1.1' name='a'><name>b</name><name>c</name></TunerProperties>", "name",
        "<TunerProperties Version='1.1'></TunerProperties>");
    row("child object",
        "<TunerProperties Version='1.1'>\n  <StartupModes>\n    <StartupMode>DF</StartupMode>\n  </StartupModes>\n"
        "</TunerProperties>",
        "StartupModes", "<TunerProperties Version='1.1'>\n</TunerProperties>");
    row("list of objects",
        "<TunerProperties Version='1.1'>\n  <BandwidthSelection/>\n  <!-- kept -->\n  <BandwidthSelection/>\n"
        "</TunerProperties>",
        "BandwidthSelection", "<TunerProperties Version='1.1'>\n  <!-- kept -->\n</TunerProperties>");
}

void XmlEditingTest::unsetValueDisappears()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QByteArray, after);
    QCOMPARE(edited(before, {{path, QString()}}), after);
}

void XmlEditingTest::listOfNamesIsReplacedNameByName_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("same number") << QStringLiteral("Stop,DF") << QByteArray("<M>Stop</M><!--1-->\n  <M>DF</M>");
    QTest::newRow("more") << QStringLiteral("Scan,DF,Stop,Polar")
                          << QByteArray("<M>Scan</M><!--1-->\n  <M>DF</M>\n  <M>Stop</M>\n  <M>Polar</M>");
    QTest::newRow("before those that stay")
        << QStringLiteral("Stop,Scan,Step") << QByteArray("<M>Stop</M>\n  <M>Scan</M><!--1-->\n  <M>Step</M>");
    QTest::newRow("between those that stay")
        << QStringLiteral("Scan,Stop,Step") << QByteArray("<M>Scan</M><!--1-->\n  <M>Stop</M>\n  <M>Step</M>");
    QTest::newRow("without the first") << QStringLiteral("Step") << QByteArray("<!--1-->\n  <M>Step</M>");
    QTest::newRow("fewer") << QStringLiteral("DF") << QByteArray("<M>DF</M><!--1-->");
}

void XmlEditingTest::listOfNamesIsReplacedNameByName()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    const auto document = [](QByteArray modes) {
        modes.replace("<M>", "<StartupMode>").replace("</M>", "</StartupMode>");
        return "<TunerProperties Version='1.1'>\n <StartupModes>\n  " + modes
            + "\n </StartupModes>\n</TunerProperties>";
    };
    QCOMPARE(
        edited(document("<M>Scan</M><!--1-->\n  <M>Step</M>"), {{QStringLiteral("StartupModes/StartupMode"), value}}),
        document(after));
}

void XmlEditingTest::otherKindOfValueReplacesTheElement()
{
    const QByteArray before = "<TunerProperties Version='1.1'>\n <Component>\n  <Node>\n   <ValueItem>\n"
                              "    <!-- gain -->\n    <ValueInt id='i' value='2'/>\n   </ValueItem>\n  </Node>\n"
                              " </Component>\n</TunerProperties>\n";
    const QString item = QStringLiteral("Component/Node/ValueItem/");
    QCOMPARE(edited(before, {{item + QStringLiteral("ChoiceValueItem"), QStringLiteral("ValueFloat")}}),
             QByteArray(before).replace("    <!-- gain -->\n    <ValueInt id='i' value='2'/>",
                                        "    <!-- gain -->\n    <ValueFloat/>"));
    QCOMPARE(edited(before,
                    {{item + QStringLiteral("ChoiceValueItem"), QStringLiteral("ValueFloat")},
                     {item + QStringLiteral("id"), QStringLiteral("i")},
                     {item + QStringLiteral("value"), QStringLiteral("2.5")}}),
             QByteArray(before).replace("    <!-- gain -->\n    <ValueInt id='i' value='2'/>",
                                        "    <!-- gain -->\n    <ValueFloat id=\"i\" value=\"2.5\"/>"));
}

void XmlEditingTest::encodingStays_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("hasMark");
    QTest::newRow("UTF-16, little-endian") << QByteArray("UTF-16LE") << true;
    QTest::newRow("UTF-16, big-endian") << QByteArray("UTF-16BE") << true;
    QTest::newRow("UTF-16 without a mark") << QByteArray("UTF-16LE") << false;
    QTest::newRow("UTF-32, little-endian") << QByteArray("UTF-32LE") << true;
    QTest::newRow("UTF-32, big-endian") << QByteArray("UTF-32BE") << true;
    QTest::newRow("UTF-32 without a mark") << QByteArray("UTF-32LE") << false;
    QTest::newRow("Latin-1") << QByteArray("ISO-8859-1") << false;
    QTest::newRow("Windows") << QByteArray("windows-1252") << false;
}

void XmlEditingTest::encodingStays()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, hasMark);
    const auto document = [&](const QString &value) {
        const bool hasByteOrder = encoding.endsWith("LE") || encoding.endsWith("BE");
        const QString declared = QString::fromLatin1(hasByteOrder ? encoding.chopped(2) : encoding);
        const QString text = (hasMark ? QString(QChar(QChar::ByteOrderMark)) : QString())
            + QStringLiteral("<?xml version='1.0' encoding='%1'?>\r\n<TunerProperties Version='1.1' name='%2'/>")
                  .arg(declared, value);
        return encoded(encoding, text);
    };
    QCOMPARE(edited(document(QStringLiteral("\u00DC")), {{QStringLiteral("name"), QStringLiteral("\u00E4")}}),
             document(QStringLiteral("\u00E4")));
}

void XmlEditingTest::characterThatTheEncodingLacksIsAReference()
{
    const QByteArray xml = "<?xml version='1.0' encoding='ISO-8859-1'?><TunerProperties Version='1.1' name=''/>";
    QCOMPARE(edited(xml, {{QStringLiteral("name"), QStringLiteral("\u2153 \U0001F600")}}),
             QByteArray(xml).replace("name=''", "name='&#8531; &#128512;'"));
}

// A decoder that drops bytes would lose them in the parts that stay.
void XmlEditingTest::unusualBytesAreNotEdited()
{
    const QByteArray xml = QByteArray("<?xml version='1.0' encoding='ISO-2022-JP'?>\x1B(B\n"
                                      "<TunerProperties Version='1.1' name='a'/>");
    Editor editor(Document(), xml, name);
    QCOMPARE(editor.isInPlace(), false);
    QVERIFY2(editor.reasonAgainst().startsWith(QStringLiteral("its bytes are not the usual ones")),
             qPrintable(editor.reasonAgainst()));
}

void XmlEditingTest::severalChangesOfOneObjectAreCombined()
{
    QCOMPARE(edited("<TunerProperties Version='1.1' quantity='1'/>",
                    {{QStringLiteral("name"), QStringLiteral("a")},
                     {QStringLiteral("type"), QStringLiteral("MCP")},
                     {QStringLiteral("quantity"), QStringLiteral("2")},
                     {QStringLiteral("name"), QStringLiteral("b")},
                     {QStringLiteral("type"), QString()},
                     {QStringLiteral("hwProcessing"), QStringLiteral("true")}}),
             QByteArray("<TunerProperties Version='1.1' name='b' quantity='2' hwProcessing='true'/>"));
}

void XmlEditingTest::unchangedDocumentKeepsItsBytes()
{
    const QByteArray xml = "<TunerProperties Version='1.1' hwProcessing='TRUE' quantity=' 02'>"
                           "<HRPANSupported>1</HRPANSupported><MaxFFPDelay><![CDATA[5]]></MaxFFPDelay>"
                           "<BandwidthSelection><MaxBandwidth>&#x30;.50<!--kHz--></MaxBandwidth></BandwidthSelection>"
                           "</TunerProperties>";
    QCOMPARE(edited(xml,
                    {{QStringLiteral("hwProcessing"), QStringLiteral("true")},
                     {QStringLiteral("quantity"), QStringLiteral("2")},
                     {QStringLiteral("HRPANSupported"), QStringLiteral("true")},
                     {QStringLiteral("MaxFFPDelay"), QStringLiteral("5")},
                     {QStringLiteral("BandwidthSelection/MaxBandwidth"), QStringLiteral("0.5")}}),
             xml);
}

void XmlEditingTest::documentWithinItselfIsNotEdited()
{
    const QByteArray xml = "<TunerProperties Version='1.1'><Component><Component/></Component></TunerProperties>";
    Editor editor(Document::fromBytes(xml, name), xml, name);
    QCOMPARE(editor.isInPlace(), false);
    QCOMPARE(editor.reasonAgainst(), QStringLiteral("the document has a 'Component' inside another one"));
}

void XmlEditingTest::characterThatXmlLacksIsRefused()
{
    const QByteArray xml = "<TunerProperties Version='1.1'/>";
    Editor editor(Document::fromBytes(xml, name), xml, name);
    try {
        editor.set(QStringLiteral("name"), QStringLiteral("a\u0001"));
        QFAIL("it was accepted");
    } catch (const UnstorableContent &error) {
        QCOMPARE(error.text(),
                 QStringLiteral("d.xml: cannot edit the document in place: XML cannot carry the character U+0001"));
    }
}

TEST_SUITE(XmlEditingTest)
#include "tst_XmlEditing.moc"

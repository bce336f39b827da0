// SPDX-License-Identifier: MIT
#include <QTest>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "Encoded.h"
#include "Rows.h"
#include "documents/ChangedBytes.h"
#include "documents/Edited.h"
#include "documents/JsonOf.h"
#include "documents/RandomChanges.h"
#include "documents/RandomEdits.h"
#include "documents/json/JsonForm.h"
#include "framework/XmlSpellings.h"

using namespace TunerDocuments;
using JobXml::MemberKind;
using JobXml::TunerProperties;
using REPORTGENERATOR::XmlMarkup;

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
    void randomEditsChangeNothingElse();
    void randomEditsOfOddDocumentsReadAsTheDescription();
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

namespace {

/// The names of all elements and attributes, the values of these, and the comments.
QStringList partsOf(const QByteArray &xml)
{
    const XmlMarkup markup(xml);
    QStringList parts;
    for (const XmlMarkup::Element &element : markup.elements())
        parts.append(QString::fromUtf8(markup.bytes(element.name).data(), element.name.size()));
    for (const XmlMarkup::Attribute &attribute : markup.attributes())
        parts.append(QString::fromUtf8(xml.mid(attribute.name.begin, attribute.whole().size())));
    for (const XmlMarkup::Comment &comment : markup.comments())
        parts.append(QString::fromUtf8(xml.mid(comment.whole.begin, comment.whole.size())));
    parts.sort();
    return parts;
}

/// How many of the parts the other list does not have.
int missing(QStringList parts, const QStringList &others)
{
    for (const QString &part : others)
        parts.removeOne(part);
    return parts.size();
}

/// The child elements of that name, whatever their prefix.
QVector<int> childrenNamed(const XmlMarkup &markup, int element, const QString &childName)
{
    QVector<int> children;
    for (int i = element + 1; i < markup.elements().at(element).next; i = markup.elements().at(i).next) {
        if (markup.localName(markup.elements().at(i)) == childName)
            children.append(i);
    }
    return children;
}

/// Whether all child elements of the document itself are members: the content of others may count in it.
bool hasOnlyMembers(const XmlMarkup &markup)
{
    QStringList names;
    visit(TunerProperties(), [&](const JobXml::MemberView &member) { names.append(member.GetName()); });
    bool hasOnly = true;
    for (int i = 1; i < markup.elements().size(); i = markup.elements().at(i).next)
        hasOnly = hasOnly && names.contains(markup.localName(markup.elements().at(i)));
    return hasOnly;
}

/// The only element that these steps lead to; -1 if there is none, or not a single one.
int elementAt(const XmlMarkup &markup, const QVector<JobXml::Step> &steps)
{
    int element = 0;
    for (const JobXml::Step &step : steps) {
        const QVector<int> children = childrenNamed(markup, element, step.member);
        if (step.index < 0 && children.size() != 1)
            return -1;
        element = children.value(qMax(step.index, 0), -1);
        if (element < 0)
            return -1;
    }
    return element;
}

/// The place of a value: what is replaced, and what is removed with it.
struct ValuePlace
{
    ChangedBytes::Part value;
    ChangedBytes::Part whole;
};

QVector<ValuePlace> placesOf(const XmlMarkup &markup, int element, const JobXml::MemberView &member)
{
    QVector<ValuePlace> places;
    const int attribute =
        member.IsAttribute() ? markup.findAttribute(markup.elements().at(element), member.GetName()) : -1;
    if (attribute >= 0) {
        const XmlMarkup::Attribute &place = markup.attributes().at(attribute);
        places.append(ValuePlace{{place.value.begin, place.value.end}, {place.whole().begin, place.whole().end}});
    }
    for (const int child : childrenNamed(markup, element, member.GetName())) {
        const XmlMarkup::Element &place = markup.elements().at(child);
        const ChangedBytes::Part content = place.isEmptyTag
            ? ChangedBytes::Part{place.startTag.end - 2, place.startTag.end}
            : ChangedBytes::Part{place.content.begin, place.content.end};
        places.append(ValuePlace{content, {place.whole().begin, place.whole().end}});
    }
    return places;
}

/// The text as it is when a first child is added to the element: without the blanks before its end tag, and not as an
/// empty-element tag.
QByteArray opened(const QByteArray &xml, const XmlMarkup &markup, int element)
{
    const XmlMarkup::Element &place = markup.elements().at(element);
    if (place.isEmptyTag)
        return xml.left(place.startTag.end - 2) + "></" + xml.mid(place.name.begin, place.name.size()) + '>'
            + xml.mid(place.startTag.end);
    const int end = ChangedBytes::withBlanks(xml, {place.content.end, place.content.end}).begin;
    return xml.left(qMax(end, place.content.begin)) + xml.mid(place.content.end);
}

/// Compares the bytes before and after one edit.
class Comparison
{
public:
    /// To be made before the edit.
    Comparison(const QByteArray &xml, const RandomEdit &edit)
        : m_xml(xml), m_markup(xml), m_edit(edit), m_kind(edit.target.member.GetKind()),
          m_names(namesOf(edit.target.member)), m_isUnset(edit.value.isNull())
    {
        // A choice exchanges an element: the names and comments that stay are compared for it.
        const bool isKnown =
            m_kind != MemberKind::Choice && m_kind != MemberKind::Alternative && hasOnlyMembers(m_markup);
        m_object = isKnown ? elementAt(m_markup, stepsToObject()) : -1;
        if (m_object >= 0)
            m_places = placesOf(m_markup, m_object, edit.target.member);
    }

    /// Whether the edit has a single place, or those of a list, which are known.
    bool isStrict() const
    {
        return m_object >= 0 && (m_places.size() <= 1 || (isList() && m_places.size() == m_names.size()));
    }

    bool isAddition() const { return m_places.isEmpty(); }
    bool isList() const { return m_kind == MemberKind::EnumerationList; }

    /// Whether the text differs only in that place.
    bool holds(const QByteArray &after) const
    {
        if (m_places.isEmpty())
            return m_isUnset ? after == m_xml : isAdded(after) && isRequested(after);
        if (isList())
            return ChangedBytes::areWithin(m_xml, after, changedNames());
        return (m_isUnset || isRequested(after)) && holdsInPlace(after);
    }

private:
    static QStringList namesOf(const JobXml::MemberView &member)
    {
        QStringList names;
        const QVariantList entries =
            member.GetKind() == MemberKind::EnumerationList ? member.GetValue().toList() : QVariantList();
        for (const QVariant &entry : entries)
            names.append(entry.toString());
        return names;
    }

    QVector<JobXml::Step> stepsToObject() const { return m_edit.target.steps.mid(0, m_edit.target.steps.size() - 1); }

    /// From the first name that differs to the last one.
    ChangedBytes::Part changedNames() const
    {
        const QStringList after = m_isUnset ? QStringList() : m_edit.value.split(QLatin1Char(','));
        const SharedNames shared(m_names, after);
        const auto whole = [&](int place) { return m_places.at(place).whole; };
        ChangedBytes::Part part = ChangedBytes::withBlanks(m_xml, {whole(0).begin, whole(m_places.size() - 1).end});
        if (shared.first > 0)
            part.begin = whole(shared.first - 1).end;
        if (shared.last > 0)
            part.end = whole(m_places.size() - shared.last).begin;
        return part;
    }

    /// Whether the last text of the value, which counts, denotes what was requested. It is not decoded.
    bool isRequested(const QByteArray &after) const
    {
        const XmlMarkup markup(after);
        const int object = elementAt(markup, stepsToObject());
        if (object < 0)
            return false;
        const QVector<ValuePlace> places = placesOf(markup, object, m_edit.target.member);
        if (places.isEmpty())
            return false;
        const ChangedBytes::Part value = places.last().value;
        const QByteArray text = after.mid(value.begin, value.end - value.begin);
        return text.contains('&') || text.contains('<') || denotes(m_kind, QString::fromUtf8(text), m_edit.value);
    }

    bool holdsInPlace(const QByteArray &after) const
    {
        const ValuePlace &place = m_places.first();
        return m_isUnset ? ChangedBytes::areRemoved(m_xml, after, place.whole)
                         : ChangedBytes::areWithin(m_xml, after, place.value);
    }

    bool isAdded(const QByteArray &after) const
    {
        const XmlMarkup::Span object = m_markup.elements().at(m_object).whole();
        return ChangedBytes::areWithin(m_xml, after, {object.begin, object.end})
            && (ChangedBytes::areOnePiece(m_xml, after)
                || ChangedBytes::areOnePiece(opened(m_xml, m_markup, m_object), after))
            && missing(partsOf(after), partsOf(m_xml)) <= (isList() ? m_edit.value.count(QLatin1Char(',')) + 1 : 1);
    }

    const QByteArray m_xml;
    const XmlMarkup m_markup;
    const RandomEdit m_edit;
    const MemberKind m_kind;
    const QStringList m_names; // of a list
    const bool m_isUnset;
    int m_object = -1; // the element that has the member
    QVector<ValuePlace> m_places;
};

/// The result of random edits on one document.
struct Trial
{
    bool isEdited = false;
    bool isRefused = false;
    int replaced = 0; ///< values whose bytes were compared, see Comparison
    int added = 0;
    int removed = 0;
    int lists = 0; ///< the same, of names
};

Trial tryEdits(const QByteArray &xml, quint32 seed, int count)
{
    Trial trial;
    Document document;
    try {
        document = Document::fromBytes(xml, name);
    } catch (const DocumentError &) {
        return trial; // not a document
    }
    RandomChanges random{seed};
    Editor editor(document, xml, name);
    if (!editor.isInPlace()) {
        trial.isRefused = true;
        return trial;
    }
    QByteArray result = xml;
    bool removes = false; // an element, and with it the comments in it
    const auto verify = [&](bool holds, const char *sentence, const QByteArray &before) {
        if (!holds)
            QTest::qFail(
                qPrintable(QStringLiteral("%1: %2: %3\n--- became ---\n%4")
                               .arg(seed)
                               .arg(QLatin1String(sentence), QString::fromUtf8(before), QString::fromUtf8(result))),
                __FILE__, __LINE__);
    };
    for (int i = 0; i < count; ++i) {
        const RandomEdit edit = randomEdit(editor.document().tuner, random);
        const Comparison comparison(result, edit);
        const QByteArray before = result;
        try {
            removes = removes || edit.value.isNull() || edit.target.member.GetKind() == MemberKind::Choice
                || edit.target.member.GetKind() == MemberKind::EnumerationList;
            if (!apply(editor, edit))
                continue; // the model refuses it
            result = editor.toBytes();
        } catch (const DocumentError &) {
            trial.isRefused = true;
            return trial;
        }
        const QString problem = problemAfter(Document::fromBytes(result, name).tuner, edit);
        verify(problem.isNull(), qPrintable(problem), before);
        if (!comparison.isStrict())
            continue;
        verify(comparison.holds(result), qPrintable(edit.target.path + QStringLiteral(": other bytes change")), before);
        if (result == before)
            continue;
        ++(edit.value.isNull() ? trial.removed : comparison.isAddition() ? trial.added : trial.replaced);
        trial.lists += comparison.isList();
    }
    trial.isEdited = true;
    const TunerProperties read = Document::fromBytes(result, name).tuner;
    verify(jsonOf(read) == jsonOf(editor.document().tuner), "the text reads as the description", xml);
    // Each edit replaces or removes the places of one value, and adds at most one; of a list five.
    const QStringList before = partsOf(xml);
    const QStringList after = partsOf(result);
    verify(removes || XmlMarkup(result).comments().size() == XmlMarkup(xml).comments().size(), "comments stay", xml);
    verify(missing(after, before) <= 5 * count, "nothing else is added", xml);
    return trial;
}

} // namespace

void XmlEditingTest::randomEditsChangeNothingElse()
{
    int edited = 0;
    int refused = 0;
    int replaced = 0;
    int added = 0;
    int removed = 0;
    int lists = 0;
    for (quint32 seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        const QByteArray xml = XmlSpellings::plainDocument(random, "TunerProperties");
        const Trial trial = tryEdits(xml, seed, 1 + int(seed % 3));
        edited += trial.isEdited;
        refused += trial.isRefused;
        replaced += trial.replaced;
        added += trial.added;
        removed += trial.removed;
        lists += trial.lists;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(edited > 2700, qPrintable(QString::number(edited)));
    QVERIFY2(refused < 250, qPrintable(QString::number(refused)));
    QVERIFY2(replaced > 2000, qPrintable(QString::number(replaced)));
    QVERIFY2(added > 1350, qPrintable(QString::number(added)));
    QVERIFY2(removed > 650, qPrintable(QString::number(removed)));
    QVERIFY2(lists > 50, qPrintable(QString::number(lists)));
}

void XmlEditingTest::randomEditsOfOddDocumentsReadAsTheDescription()
{
    int edited = 0;
    for (quint32 seed = 0; seed < 2500; ++seed) {
        Random random(seed);
        edited += tryEdits(XmlSpellings::document(random, "TunerProperties"), seed, 2).isEdited;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(edited > 1650, qPrintable(QString::number(edited)));
}

TEST_SUITE(XmlEditingTest)
#include "tst_XmlEditing.moc"

// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Merge.h>

#include "Encoded.h"

using namespace TunerDocuments;

/// Content of documents in XML that merging does not see.
class UnmergedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contentThatOnlyTheirsHasIsLost_data();
    void contentThatOnlyTheirsHasIsLost();
    void contentIsComparedAtItsPlace_data();
    void contentIsComparedAtItsPlace();
    void contentOfOursStays();
    void encodingDoesNotMatter();
    void otherFormsHaveNoSuchContent();
    void commentsAreComparedByTheirTextAndCounted_data();
    void commentsAreComparedByTheirTextAndCounted();
};

namespace {

/// Two nodes with a value each. Each line has one element, or a few.
const char text[] = R"(<TunerProperties Version="1.1" type="SCP" baseresource="b">
  <StartupModes><StartupMode>Scan</StartupMode></StartupModes>
  <BandwidthSelection><Name>w</Name><MaxBandwidth>5</MaxBandwidth></BandwidthSelection>
  <Component type="A" name="a" optional="false">
    <Node id="n"><ValueItem><ValueInt id="n" value="40"/></ValueItem></Node>
    <Node id="m"><ValueItem><ValueFloat id="m" value="0.5"/></ValueItem></Node>
  </Component>
</TunerProperties>
)";

MergeInput read(const QByteArray &bytes)
{
    return {Document::fromBytes(bytes, QStringLiteral("x.xml"), LoadOptions().setForm(Form::Xml)), bytes};
}

QByteArray with(const char *before, const QByteArray &after, const QByteArray &in = text)
{
    if (in.count(before) != 1)
        qFatal("'%s' is not there once", before);
    return QByteArray(in).replace(before, after);
}

QStringList lossesOf(const QByteArray &base, const QByteArray &ours, const QByteArray &theirs)
{
    QStringList lines;
    const UnmergedContent content = unmergedContent(read(base), read(ours), read(theirs));
    for (const Finding &loss : content.losses)
        lines.append(loss.text(QStringLiteral("t")));
    return lines;
}

} // namespace

void UnmergedTest::contentThatOnlyTheirsHasIsLost_data()
{
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QString>("loss");

    const auto row = [](const char *name, const char *before, const char *after, const char *loss) {
        QTest::newRow(name) << with(before, after) << QString::fromUtf8(loss);
    };
    row("text of a number", "value=\"40\"", "value=\"4O\"",
        "t:5:46: Component[type=A,name=a]/Node[id=n]/ValueItem[id=n]/ValueInt/value: '4O' of value is not a number; it "
        "is read as 0 [not-a-number]");
    row("fraction of a whole number", "value=\"40\"", "value=\"40.5\"",
        "t:5:46: Component[type=A,name=a]/Node[id=n]/ValueItem[id=n]/ValueInt/value: '40.5' of value is not a whole "
        "number; it is read as 0 [not-a-number]");
    row("number out of range", ">5<", ">1e999<",
        "t:3:37: BandwidthSelection[Name=w]/MaxBandwidth: '1e999' of MaxBandwidth is out of range; it is read as inf; "
        "use a number from -1.7e308 to 1.7e308 [number-out-of-range]");
    row("boolean", "\"false\"", "\"no\"",
        "t:4:32: Component[type=A,name=a]/optional: 'no' of optional is not a boolean; it is read as true; use 'false' "
        "[not-a-boolean]");
    row("unknown attribute", "<Node id=\"n\"", "<Node uid=\"1\" id=\"n\"",
        "t:5:11: Component[type=A,name=a]/Node[id=n]: unknown attribute 'uid' of Node; it is ignored; did you mean "
        "'id'? [unknown-attribute]");
    row("unknown element", "  </Component>", "<Nod id=\"o\"/></Component>",
        "t:7:1: Component[type=A,name=a]: unknown element 'Nod' in Component; it is skipped; did you mean 'Node'? "
        "[unknown-element]");
    row("disabled rule", "<Node id=\"n\"",
        "<!-- tunerproperties-lint-disable unknown-attribute -->\n<Node uid=\"1\" id=\"n\"",
        "t:6:7: Component[type=A,name=a]/Node[id=n]: unknown attribute 'uid' of Node; it is ignored; did you mean "
        "'id'? [unknown-attribute]");
    row("attribute of another namespace", "<Node id=\"n\"", "<Node xmlns:v=\"v\" v:x=\"1\" id=\"n\"",
        "t:5:23: Component[type=A,name=a]/Node[id=n]: there is an attribute of another namespace, which would be lost");
    row("misplaced prefix", "<Node id=\"n\"", "<Node xmlns:v=\"v\" v:id=\"1\" id=\"n\"",
        "t:5:23: Component[type=A,name=a]/Node[id=n]: unknown attribute 'v:id' of Node; it is ignored; did you mean "
        "'id'? [unknown-attribute]");
    row("attribute of a value", "<MaxBandwidth>", "<MaxBandwidth unit=\"kHz\">",
        "t:3:51: BandwidthSelection[Name=w]/MaxBandwidth: unknown attribute 'unit' of MaxBandwidth; it is ignored "
        "[unknown-attribute]");
    row("element in a value", ">5<", ">5<b/><",
        "t:3:52: BandwidthSelection[Name=w]: there is an element in a value, which would be lost");
    row("text in an object", "<ValueItem><ValueFloat", "<ValueItem>\n text <ValueFloat",
        "t:7:2: Component[type=A,name=a]/Node[id=m]/ValueItem[id=m]: there is a text that would be lost");
    row("value that is there twice", "<Name>w</Name>", "<Name>v</Name><Name>w</Name>",
        "t:3:37: BandwidthSelection[Name=w]: 'Name' is there twice");
    row("alternative that is there twice", "<ValueFloat id=\"m\" value=\"0.5\"/>",
        "<ValueFloat id=\"m\" value=\"7\"/><ValueFloat id=\"m\" value=\"0.5\"/>",
        "t:6:59: Component[type=A,name=a]/Node[id=m]/ValueItem[id=m]: 'ValueFloat' is there twice");
    row("unknown name", "\"SCP\"", "\"SPC\"",
        "t:1:32: enum is not valid (classname=TunerProperties,membername=m_type): unknown name 'SPC'; expected MCP, "
        "SCP, FFP, Receiver or DirectionFinder; did you mean 'SCP'?");
    row("newer version", "\"1.1\"", "\"1.2\"",
        "t:1:18: version '1.2' is unknown; the newest is 1.1; use '1.1' [unknown-version]");
    row("older version", "\"1.1\"", "\"1.0\"",
        "t:1:18: version '1.0' is older than 1.1; readers reset the document to its defaults; use Version=\"1.1\" "
        "[reset-by-version]");
    row("nothing: other spellings, members that are read twice, alternatives that are not chosen",
        "<StartupModes><StartupMode>Scan</StartupMode></StartupModes>",
        "<StartupModes><StartupMode>Scan</StartupMode></StartupModes>"
        "<StartupModes><StartupMode>Stop</StartupMode></StartupModes>"
        "<Component xmlns=\"v\" type=\"A\" name=\"b\" optional=\"TRUE\"><Node id=\"&#110;\"><ValueItem><ValueInt "
        "id=\"n\" "
        "value=\" 1\"/><ValueString id=\"n\"/></ValueItem></Node></Component>",
        "");
}

void UnmergedTest::contentThatOnlyTheirsHasIsLost()
{
    QFETCH(QByteArray, theirs);
    QFETCH(QString, loss);
    QCOMPARE(lossesOf(text, text, theirs).join(QLatin1Char('\n')), loss);
    QCOMPARE(lossesOf(theirs, text, theirs + ' '), QStringList()); // it was there before
    QCOMPARE(lossesOf(text, theirs, theirs + ' '), QStringList()); // ours keeps it
}

void UnmergedTest::contentIsComparedAtItsPlace_data()
{
    QTest::addColumn<QByteArray>("base");
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<int>("losses");

    const QByteArray strange = with("<Node id=\"n\"", "<Node v=\"1\" id=\"n\"");
    const QByteArray node = "<Node v=\"1\" id=\"n\"><ValueItem><ValueInt id=\"n\" value=\"40\"/></ValueItem></Node>";
    QTest::newRow("renamed item") << strange << with("name=\"a\"", "name=\"b\"", strange) << 0;
    QTest::newRow("moved item") << strange
                                << with("</Node>\n  </", "</Node>" + node + "</", QByteArray(strange).replace(node, ""))
                                << 0;
    QTest::newRow("other value of the attribute") << strange << with("v=\"1\"", "v=\"2\"", strange) << 1;
    QTest::newRow("other place") << strange
                                 << with("<Node id=\"m\"", "<Node v=\"1\" id=\"m\"", with(" v=\"1\"", "", strange))
                                 << 1;
    QTest::newRow("another one") << strange << with("<Node id=\"m\"", "<Node v=\"1\" id=\"m\"", strange) << 1;
    QTest::newRow("new item with the same")
        << strange
        << with("</Component>", "</Component><Component type=\"A\" name=\"c\">" + node + "</Component>", strange) << 1;
    const QByteArray unknown = with("</Component>", "<u>\n  <v a=\"1\"/></u></Component>");
    QTest::newRow("other layout") << unknown << with("<u>\n  <v", "<u> <v", unknown) << 0;
    QTest::newRow("other content") << unknown << with("a=\"1\"", "a=\"2\"", unknown) << 1;
    const QByteArray entered = with("</Component>", "</Component></u>", with("<Component", "<u><Component"));
    QTest::newRow("change of what is read from an unknown element") << entered << with("0.5", "0.75", entered) << 0;
    QTest::newRow("other number that is none") << with("\"40\"", "\"a\"") << with("\"40\"", "\"b\"") << 1;
    QTest::newRow("same text") << strange << strange << 0;
}

void UnmergedTest::contentIsComparedAtItsPlace()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, theirs);
    QFETCH(int, losses);
    QCOMPARE(lossesOf(base, base, theirs).size(), losses);
}

void UnmergedTest::contentOfOursStays()
{
    const QByteArray theirs = with("<Node id=\"n\"", "<Node v=\"1\" id=\"n\"", with("\"40\"", "\"a\""));
    QCOMPARE(lossesOf(text, with("\"40\"", "\"a\""), theirs),
             QStringList{QStringLiteral("t:5:11: Component[type=A,name=a]/Node[id=n]: unknown attribute 'v' of Node; "
                                        "it is ignored; expected id [unknown-attribute]")});
}

void UnmergedTest::encodingDoesNotMatter()
{
    const QByteArray theirs = with("<Node id=\"n\"", "<Node v=\"\xC3\xA4\" w=\"1\" id=\"n\"");
    const QByteArray utf16 = encoded("UTF-16", QString::fromUtf8(theirs));
    const QString loss = QStringLiteral("t:5:17: Component[type=A,name=a]/Node[id=n]: unknown attribute 'w' of Node; "
                                        "it is ignored; expected id [unknown-attribute]");
    QCOMPARE(lossesOf(text, text, utf16).value(1), loss);
    QCOMPARE(lossesOf(theirs, text, utf16), QStringList());
    QCOMPARE(lossesOf(utf16, text, theirs), QStringList());
}

void UnmergedTest::otherFormsHaveNoSuchContent()
{
    const QByteArray json = R"({"TunerProperties": {"Version": "1.0"}})";
    const MergeInput inJson{Document::fromBytes(json, QStringLiteral("x.json")), json};
    const QByteArray xml = with("value=\"40\"", "value=\"a\"");
    QVERIFY(unmergedContent(read(text), read(text), inJson).losses.isEmpty());
    QVERIFY(unmergedContent(MergeInput(), inJson, inJson).losses.isEmpty());
    QCOMPARE(unmergedContent(inJson, inJson, read(xml)).losses.size(), 1);
    QCOMPARE(unmergedContent(MergeInput(), MergeInput(), read(xml)).losses.size(), 1);
}

void UnmergedTest::commentsAreComparedByTheirTextAndCounted_data()
{
    QTest::addColumn<QByteArray>("base");
    QTest::addColumn<QByteArray>("ours");
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QString>("places");

    const auto row = [](const char *name, const char *base, const char *ours, const char *theirs, const char *places) {
        QTest::newRow(name) << QByteArray(base) << QByteArray(ours) << QByteArray(theirs) << QString::fromUtf8(places);
    };
    row("new ones", "", "", "<!--a-->\n <!--b-->", "1:1 2:2");
    row("of the base", "<!--a--><!--b-->", "", "<!--b--><!--a-->", "");
    row("of ours", "", "<!--a--><!--b-->", "<!--b--><!--a-->", "");
    row("changed one", "<!--a-->", "<!--a-->", "<!--b-->", "1:1");
    row("another one with the same text", "<!--a-->", "<!--a-->", "<!--a-->\n<!--a-->", "2:1");
    row("another one that ours has added", "<!--a-->", "<!--a--><!--a-->", "<!--a-->\n<!--a-->", "");
    row("laid out differently", "<!-- a\n  b -->", "", "<!-- a b -->", "");
}

void UnmergedTest::commentsAreComparedByTheirTextAndCounted()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, ours);
    QFETCH(QByteArray, theirs);
    QFETCH(QString, places);
    const UnmergedContent content = unmergedContent(read(base + text), read(ours + text), read(theirs + text));
    QStringList found;
    for (const Finding &comment : content.comments)
        found.append(QStringLiteral("%1:%2").arg(comment.line).arg(comment.column));
    QCOMPARE(found.join(QLatin1Char(' ')), places);
    QVERIFY(content.losses.isEmpty());
}

TEST_SUITE(UnmergedTest)
#include "tst_Unmerged.moc"

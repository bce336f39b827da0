// SPDX-License-Identifier: MIT
#include <QTest>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "Rows.h"
#include "documents/Edited.h"
#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"
#include "framework/XmlSpellings.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;
using REPORTGENERATOR::XmlMarkup;

/// Adding, removing and moving items in a document keeps the rest of its text.
class RearrangingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addedItemIsLaidOutAsItsNeighbors_data();
    void addedItemIsLaidOutAsItsNeighbors();
    void addedContentIsReadCompletely_data();
    void addedContentIsReadCompletely();
    void removedItemTakesItsLineAlong_data();
    void removedItemTakesItsLineAlong();
    void movedItemKeepsItsText_data();
    void movedItemKeepsItsText();
    void blankLinesStayBetweenItems();
    void wrongPlaceIsRefused_data();
    void wrongPlaceIsRefused();
    void refusedOperationChangesNothing();
    void pathOfARemovedItemIsThatBeforeTheOperation();
    void otherFormsAreWrittenAnew();
    void documentBecomesAnotherOneInItsOwnSpelling();
    void alternativesThatAreNotChosenAreWrittenBeforeTheChosenOne_data();
    void alternativesThatAreNotChosenAreWrittenBeforeTheChosenOne();
    void quantityThatAnOlderVersionSetsIsUnset();
    void commentsAndUnknownContentStayWhenADocumentBecomesAnotherOne();
    void randomDocumentBecomesAnyOtherInXml();
    void randomDocumentBecomesAnyOtherInJson();
};

namespace {

const QString name = QStringLiteral("d.xml");

QByteArray document(const QByteArray &content)
{
    return "<TunerProperties Version='1.1'>" + content + "</TunerProperties>";
}

QByteArray jsonDocument(const QByteArray &members)
{
    return "{\"TunerProperties\": {\"Version\": \"1.1\"" + members + "}}";
}

} // namespace

void RearrangingTest::addedItemIsLaidOutAsItsNeighbors_data()
{
    const Rows<QByteArray, QString, QByteArray, QByteArray> row("before", "path", "content", "result");
    row("after elements that begin on the line of the tag",
        document("<!-- head --><StartupModes/>\n    <Component type='a'/>\n"), "Component[type=b]", "",
        document("<!-- head --><StartupModes/>\n    <Component type='a'/>\n    <Component type=\"b\"/>\n"));
    row("beside an item with another indentation than its parent's first child",
        document("\n  <StartupModes/>\n      <Component type='a'/>\n"), "Component[1]", "{\"Node\": [{\"id\": \"n\"}]}",
        document("\n  <StartupModes/>\n      <Component>\n        <Node id=\"n\"/>\n      </Component>\n"
                 "      <Component type='a'/>\n"));
    row("list in JSON with tabs", "{\n\t\"TunerProperties\": {\n\t\t\"Component\": []\n\t}\n}", "Component[type=b]", "",
        "{\n\t\"TunerProperties\": {\n\t\t\"Component\": [\n\t\t\t{\"type\": \"b\"}\n\t\t]\n\t}\n}");
    row("last of a list", document("\n\t<Component type='a'/> <!-- a -->\n\t<!-- end -->\n"), "Component[type=b]", "",
        document("\n\t<Component type='a'/> <!-- a -->\n\t<Component type=\"b\"/>\n\t<!-- end -->\n"));
    row("beside an item whose content is on its line",
        document("\n <Component>\n  <Node>\n   <ValueItem><ValueInt id='i'/></ValueItem>\n  </Node>\n </Component>\n"),
        "Component/Node/ValueItem", "<ValueItem><ValueString id='s'/></ValueItem>",
        document("\n <Component>\n  <Node>\n   <ValueItem><ValueInt id='i'/></ValueItem>\n"
                 "   <ValueItem><ValueString id=\"s\"/></ValueItem>\n  </Node>\n </Component>\n"));
    row("beside an item without content",
        document("\n <Component>\n  <Node>\n   <ValueItem/>\n  </Node>\n </Component>\n"), "Component/Node/ValueItem",
        "<ValueItem><ValueString id='s'/></ValueItem>",
        document("\n <Component>\n  <Node>\n   <ValueItem/>\n   <ValueItem>\n    <ValueString id=\"s\"/>\n"
                 "   </ValueItem>\n  </Node>\n </Component>\n"));
    row("after a comment that begins with the end of its mark",
        document("\n\t<Component type='a'/> <!--->-->\n\t<!-- end -->\n"), "Component[type=b]", "",
        document("\n\t<Component type='a'/> <!--->-->\n\t<Component type=\"b\"/>\n\t<!-- end -->\n"));
    row("at a position", document("\n  <Component type='a'/>\n  <Component type='b'/>\n"), "Component[2]",
        "{\"type\": \"x\"}",
        document("\n  <Component type='a'/>\n  <Component type=\"x\"/>\n  <Component type='b'/>\n"));
    row("before all others", document("\r\n  <!-- a -->\r\n  <Component type='a'/>\r\n"), "Component[1]",
        "{\"type\": \"x\"}", document("\r\n  <!-- a -->\r\n  <Component type=\"x\"/>\r\n  <Component type='a'/>\r\n"));
    row("first of its list", document("\n  <StartupModes/>\n  <Component/>\n"), "BandwidthSelection", "",
        document("\n  <StartupModes/>\n  <BandwidthSelection/>\n  <Component/>\n"));
    row("in an empty-element tag", document("\n  <Component type='a'/>\n"), "Component/Node[id=n]", "",
        document("\n  <Component type='a'>\n    <Node id=\"n\"/>\n  </Component>\n"));
    row("with everything in it", document("\n <Component type='a'>\n  <!-- nodes -->\n </Component>\n"),
        "Component[type=a]/Node[id=n]", "<Node>\n<ValueItem><ValueFloat id='gain' value='0.2567'/></ValueItem></Node>",
        document(
            "\n <Component type='a'>\n  <!-- nodes -->\n  <Node id=\"n\">\n   <ValueItem>\n    <ValueFloat id=\"gain\" "
            "value=\"0.2567\"/>\n   </ValueItem>\n  </Node>\n </Component>\n"));
    row("second of those with the same name", document("<Component type='a'/><Component/><Component type='a'/>"),
        "Component[type=a][2]", "{\"name\": \"n\"}",
        document("<Component type='a'/><Component/><Component type=\"a\" name=\"n\"/><Component type='a'/>"));
    row("value that a path names", document("<Component><Node/></Component>"), "Component/Node/ValueItem[id=v]",
        "{\"ValueInt\": {\"value\": 3}}",
        document("<Component><Node><ValueItem><ValueInt id=\"v\" value=\"3\"/></ValueItem></Node></Component>"));
    row("the greatest number", document("<Component><Node/></Component>"), "Component/Node/ValueItem",
        "{\"ValueFloat\": {\"id\": \"v\", \"value\": -3.4028234663852886e38}}",
        document(
            "<Component><Node><ValueItem><ValueFloat id=\"v\" value=\"-3.4028234663852886e+38\"/></ValueItem></Node>"
            "</Component>"));
    row("name in a list of names", document("\n  <StartupModes>\n    <StartupMode>DF</StartupMode>\n  </StartupModes>"),
        "StartupModes/StartupMode", "Scan,Stop",
        document("\n  <StartupModes>\n    <StartupMode>DF</StartupMode>\n    <StartupMode>Scan</StartupMode>\n    "
                 "<StartupMode>Stop</StartupMode>\n  </StartupModes>"));
    row("beside a name that the model does not have",
        document("<StartupModes><StartupMode>Turbo</StartupMode><StartupMode> Scan</StartupMode></StartupModes>"),
        "StartupModes/StartupMode", "DF",
        document("<StartupModes><StartupMode>Turbo</StartupMode><StartupMode> Scan</StartupMode>"
                 "<StartupMode>DF</StartupMode></StartupModes>"));
    row("object", document("\n  <Component/>\n"), "StartupModes", "{\"StartupMode\": [\"DF\"]}",
        document("\n  <StartupModes>\n    <StartupMode>DF</StartupMode>\n  </StartupModes>\n  <Component/>\n"));
    row("in JSON on lines", jsonDocument(",\n  \"Component\": [\n    {\"type\": \"a\"}\n  ]\n"), "Component[type=b]",
        "", jsonDocument(",\n  \"Component\": [\n    {\"type\": \"a\"},\n    {\"type\": \"b\"}\n  ]\n"));
    row("with lines of its own in JSON", jsonDocument(",\n  \"Component\": [\n    {\"type\": \"a\"}\n  ]\n"),
        "Component[1]", "{\"Node\": [{\"id\": \"n\", \"ValueItem\": [{\"ValueInt\": {\"value\": 3}}]}]}",
        jsonDocument(",\n  \"Component\": [\n    {\n      \"Node\": [\n        {\n          \"id\": \"n\",\n"
                     "          \"ValueItem\": [\n            {\"ChoiceValueItem\": \"ValueInt\", "
                     "\"ValueInt\": {\"value\": 3}}\n          ]\n        }\n      ]\n    },"
                     "\n    {\"type\": \"a\"}\n  ]\n"));
    row("first of a list in JSON", jsonDocument(",\n  \"Component\": []\n"), "Component[type=b]", "",
        jsonDocument(",\n  \"Component\": [\n    {\"type\": \"b\"}\n  ]\n"));
    row("new list in JSON", jsonDocument(", \"quantity\" : 2"), "Component[type=b]", "",
        jsonDocument(", \"quantity\" : 2, \"Component\" : [{\"type\": \"b\"}]"));
    row("name in a list on one line in JSON",
        jsonDocument(", \"StartupModes\": {\"StartupMode\": [\"FFM\", \"Scan\"]}"), "StartupModes/StartupMode", "DF",
        jsonDocument(", \"StartupModes\": {\"StartupMode\": [\"FFM\", \"Scan\", \"DF\"]}"));
    row("name in a list on several lines in JSON",
        jsonDocument(", \"StartupModes\": {\n    \"StartupMode\": [\n        \"FFM\",\n        \"Scan\"\n    ]\n}"),
        "StartupModes/StartupMode", "DF,Stop",
        jsonDocument(
            ", \"StartupModes\": {\n    \"StartupMode\": [\n        \"FFM\",\n        \"Scan\",\n        \"DF\","
            "\n        \"Stop\"\n    ]\n}"));
    row("first name of a list in JSON", jsonDocument(", \"StartupModes\": {\"StartupMode\": [ ]}"),
        "StartupModes/StartupMode", "DF", jsonDocument(", \"StartupModes\": {\"StartupMode\": [\"DF\"]}"));
    row("objects in JSON that have a line for each member",
        jsonDocument(
            ",\r\n    \"BandwidthSelection\": [\r\n        {\r\n            \"Name\": \"a\"\r\n        }\r\n    ],"
            "\r\n    \"Component\": []\r\n"),
        "BandwidthSelection", "{\"Name\": \"b\", \"MaxBandwidth\": 1.5}",
        jsonDocument(",\r\n    \"BandwidthSelection\": [\r\n        {\r\n            \"Name\": \"a\"\r\n        },\r\n"
                     "        {\r\n            \"Name\": \"b\",\r\n            \"MaxBandwidth\": 1.5\r\n        }\r\n"
                     "    ],\r\n    \"Component\": []\r\n"));
    row("objects in objects in JSON, as elsewhere in the document",
        "{\n    \"TunerProperties\": {\n        \"StartupModes\": {\n            \"StartupMode\": [\"DF\", \"Stop\"]\n"
        "        },\n        \"BandwidthSelection\": [\n            {\n                \"Name\": \"a\"\n            }\n"
        "        ],\n        \"Component\": []\n    }\n}\n",
        "Component", "{\"Node\": [{}, {\"ValueItem\": [{\"ValueStringList\": {\"id\": \"i\"}}]}]}",
        "{\n    \"TunerProperties\": {\n        \"StartupModes\": {\n            \"StartupMode\": [\"DF\", \"Stop\"]\n"
        "        },\n        \"BandwidthSelection\": [\n            {\n                \"Name\": \"a\"\n            }\n"
        "        ],\n        \"Component\": [\n            {\n                \"Node\": [\n                    {},\n"
        "                    {\n                        \"ValueItem\": [\n                            {\n"
        "                                \"ChoiceValueItem\": \"ValueStringList\",\n"
        "                                \"ValueStringList\": {\n                                    \"id\": \"i\"\n"
        "                                }\n                            }\n                        ]\n"
        "                    }\n                ]\n            }\n        ]\n    }\n}\n");
    row("object on one line in JSON that is indented by 4",
        "{\n    \"TunerProperties\": {\n        \"BandwidthSelection\": [\n            { \"Name\": \"a\" }\n        ]\n"
        "    }\n}\n",
        "BandwidthSelection", "{\"Name\": \"b\", \"MaxBandwidth\": 1.5}",
        "{\n    \"TunerProperties\": {\n        \"BandwidthSelection\": [\n            { \"Name\": \"a\" },\n"
        "            {\"Name\": \"b\", \"MaxBandwidth\": 1.5}\n        ]\n    }\n}\n");
    row("first member of an object in JSON that has a line for each",
        "{\n \"TunerProperties\": {\n  \"BandwidthSelection\": [\n   {\n    \"Name\": \"a\"\n   },\n   {}\n  ]\n "
        "}\n}\n",
        "StartupModes", "",
        "{\n \"TunerProperties\": {\n  \"StartupModes\": {},\n  \"BandwidthSelection\": [\n   {\n    \"Name\": \"a\"\n"
        "   },\n   {}\n  ]\n }\n}\n");
    row("beside objects on one line in JSON on one line",
        jsonDocument(",\"Component\":[{\"type\" :\"a\",  \"name\" :\"n\"}]"), "Component",
        "{\"type\":\"b\",\"name\":\"m\"}",
        jsonDocument(",\"Component\":[{\"type\" :\"a\",  \"name\" :\"n\"}, {\"type\" :\"b\",  \"name\" :\"m\"}]"));
}

void RearrangingTest::addedItemIsLaidOutAsItsNeighbors()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, result);
    QCOMPARE(edited(before, [&](Editor &editor) { editor.add(path, content, QStringLiteral("new")); }), result);
}

void RearrangingTest::addedContentIsReadCompletely_data()
{
    const Rows<QByteArray, QByteArray> row("content", "message");
    row("unknown attribute", "<?xml version='1.0'?>\n<Node id='n'\n idd='m'/>",
        "c.xml:3:2: unknown attribute 'idd' of Node; it is ignored; did you mean 'id'?");
    row("unknown element", "<Node><Valueitem/></Node>",
        "c.xml:1:7: unknown element 'Valueitem' in Node; it is skipped; did you mean 'ValueItem'?");
    row("other element", "\n<Component/>", "c.xml:2:1: is a 'Component', not a 'Node'");
    row("text without an element", "id=n", "c.xml: is not an element with all of its tags");
    row("unfinished element", "<Node>", "c.xml: is not an element with all of its tags");
    row("number that is none", "<Node><ValueItem><ValueInt id='i' value='x'/></ValueItem></Node>",
        "c.xml:1:35: 'x' of value is not a number; it is read as 0");
    row("two elements", "<Node/>\n <!-- b --><Node/>", "c.xml:2:12: there is a second element");
    row("text after the element", "<Node/> and more", "c.xml:1:9: there is a text after the element");
    row("text in an object", "<Node id='n'>\n text<!-- c --></Node>", "c.xml:2:2: there is a text that would be lost");
    row("element in a value", "<Node><id>a<b/>c</id></Node>",
        "c.xml:1:12: there is an element in a value, which would be lost");
    row("value that is there twice", "<Node id='a'><id>b</id></Node>", "c.xml:1:14: 'id' is there twice");
    row("several alternatives", "<Node><ValueItem><ValueInt/><ValueString/></ValueItem></Node>",
        "c.xml:1:29: an item holds one value, and there are several");
    row("unknown member", "{\"id\": \"n\",\n \"idd\": 1}",
        "c.xml:2:2: unknown member 'idd' of Node; did you mean 'id'?");
    row("malformed JSON", "{\"id\": }",
        "c.xml:1:8: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal");
}

void RearrangingTest::addedContentIsReadCompletely()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, message);
    const QByteArray text = document("<Component/>");
    QCOMPARE(
        edited(text,
               [&](Editor &editor) { editor.add(QStringLiteral("Component/Node"), content, QStringLiteral("c.xml")); }),
        message);
}

void RearrangingTest::removedItemTakesItsLineAlong_data()
{
    const Rows<QByteArray, QStringList, QByteArray> row("before", "paths", "result");
    const QByteArray three = document("\n  <!-- a -->\n  <Component type='a'/>\n  <Component type='b'/> <!-- b -->\n"
                                      "  <Component type='c'>\n    <Node/>\n  </Component>\n");
    row("on a line", three, {QStringLiteral("Component[type=a]")},
        document("\n  <!-- a -->\n  <Component type='b'/> <!-- b -->\n  <Component type='c'>\n    <Node/>\n"
                 "  </Component>\n"));
    row("beside a comment", three, {QStringLiteral("Component[type=b]")},
        document("\n  <!-- a -->\n  <Component type='a'/>\n   <!-- b -->\n  <Component type='c'>\n    <Node/>\n"
                 "  </Component>\n"));
    row("several", three, {QStringLiteral("Component[3]"), QStringLiteral("Component[1]")},
        document("\n  <!-- a -->\n  <Component type='b'/> <!-- b -->\n"));
    row("all by a pattern", three, {QStringLiteral("Component[*]")}, document("\n  <!-- a -->\n   <!-- b -->\n"));
    row("an item and one in it", three, {QStringLiteral("Component[3]/Node"), QStringLiteral("Component[3]")},
        document("\n  <!-- a -->\n  <Component type='a'/>\n  <Component type='b'/> <!-- b -->\n"));
    row("a value", document("<Component type='a' name='b'/>"), {QStringLiteral("Component/type")},
        document("<Component name='b'/>"));
    row("what a value item holds", document("<Component><Node><ValueItem><ValueInt/></ValueItem></Node></Component>"),
        {QStringLiteral("Component/Node/ValueItem/ValueInt")},
        document("<Component><Node><ValueItem></ValueItem></Node></Component>"));
    row("in JSON",
        jsonDocument(",\n\"Component\": [\n {\"type\": \"a\"},\n {\"type\": \"b\"} ,\n {\"type\": \"c\"}\n]"),
        {QStringLiteral("Component[1]"), QStringLiteral("Component[3]")},
        jsonDocument(",\n\"Component\": [\n {\"type\": \"b\"}\n]"));
    row("all in JSON", jsonDocument(", \"Component\": [{}, {}] "), {QStringLiteral("Component")}, jsonDocument(" "));
}

void RearrangingTest::removedItemTakesItsLineAlong()
{
    QFETCH(QByteArray, before);
    QFETCH(QStringList, paths);
    QFETCH(QByteArray, result);
    QCOMPARE(edited(before, [&](Editor &editor) { editor.remove(paths); }), result);
}

void RearrangingTest::movedItemKeepsItsText_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("result");
    const QByteArray first = "<Component  type = 'a'  x='1'><!-- in a --></Component>";
    const QByteArray three =
        document("\n  <!-- a -->\n  " + first + "\n  <Component type='b'/> <!-- b -->\n  <Component type='c'/>\n");
    const QString a = QStringLiteral("Component[type=a]");
    QTest::newRow("to the end") << three << a << 3
                                << document("\n  <!-- a -->\n  <Component type='b'/> <!-- b -->\n"
                                            "  <Component type='c'/>\n  "
                                            + first + "\n");
    QTest::newRow("by one") << three << a << 2
                            << document("\n  <!-- a -->\n  <Component type='b'/> <!-- b -->\n  " + first
                                        + "\n  <Component type='c'/>\n");
    QTest::newRow("to the front") << three << QStringLiteral("Component[3]") << 1
                                  << document("\n  <!-- a -->\n  <Component type='c'/>\n  " + first
                                              + "\n  <Component type='b'/> <!-- b -->\n");
    QTest::newRow("to where it is") << three << a << 1 << three;
    QTest::newRow("in JSON") << jsonDocument(",\"Component\":[{\"type\" : \"a\"},{},{ }]")
                             << QStringLiteral("Component[1]") << 3
                             << jsonDocument(",\"Component\":[{},{ },{\"type\" : \"a\"}]");
}

void RearrangingTest::movedItemKeepsItsText()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(int, position);
    QFETCH(QByteArray, result);
    QCOMPARE(edited(before, [&](Editor &editor) { editor.move(path, position); }), result);
}

void RearrangingTest::blankLinesStayBetweenItems()
{
    const auto items = [](const QByteArray &types) {
        QByteArrayList all;
        for (const char type : types)
            all.append("<Component type='" + QByteArray(1, type) + "'/>");
        return document("\n  <StartupModes/>\n  <!-- items -->\n  " + all.join("\n\n  ") + "\n");
    };
    const QByteArrayList orders = {"abcd", "dabc", "bcda", "acbd", "dcba", "a", "d", "bc", "bdac"};
    for (const QByteArray &from : orders) {
        for (const QByteArray &to : orders) {
            const TunerProperties other = Document::fromBytes(items(to), name).tuner;
            QByteArray result = edited(items(from), [&](Editor &editor) { editor.become(other); });
            if (from.size() > 1 && !(from == "bc" && (to == "a" || to == "d")))
                QCOMPARE(result.replace('"', '\''), items(to));
        }
    }
}

void RearrangingTest::wrongPlaceIsRefused_data()
{
    const Rows<QString, QString, QString, QByteArray> row("operation", "path", "argument", "message");
    row("item that exists", "add", "Component[type=a]", "",
        "Component[type=a]: exists already; add [2] to the path for another one");
    row("position after the end", "add", "Component[4]", "",
        "Component[4]: there are only 2, so a new one can be at [3] at most");
    row("position after the end of those that fit", "add", "Component[type=a][3]", "",
        "Component[type=a][3]: there are only 1, so a new one can be at [2] at most");
    row("pattern", "add", "Component[*]/Node", "", "Component[*]/Node: is a pattern, not the place of one new item");
    row("value", "add", "name", "", "name: is a value; set it instead");
    row("object that exists", "add", "StartupModes", "", "StartupModes: exists already");
    row("name that is none", "add", "StartupModes/StartupMode", "Dance",
        "StartupModes/StartupMode: unknown StartupMode 'Dance'; expected Scan, FastScan, MScan, FFM, WFFM, Step, DF, "
        "MSearch, Polar, Search or Stop");
    row("name that a NUL follows", "add", "StartupModes/StartupMode",
        QString(QStringLiteral("Scan") + QChar(0) + QStringLiteral("x")),
        "StartupModes/StartupMode: unknown StartupMode 'Scan\\u0000x'; did you mean 'Scan'?");
    row("no name", "add", "StartupModes/StartupMode", "", "StartupModes/StartupMode: the name to add is missing");
    row("condition that the content contradicts", "add", "Component[name=x]", "<Component name='y'/>",
        "Component[name=x]: 'name' is also \"y\"");
    row("conditions that contradict each other", "add", "Component[name=x,name=y]", "",
        "Component[name=x,name=y]: 'name' is also \"x\"");
    row("condition that the item does not have", "add", "Component[colour=red]", "",
        "Component[colour=red]: colour: unknown member 'colour' of Component; expected type, name, displayName, "
        "optional or Node");
    row("item of several", "add", "Component/Node", "",
        "Component: 2 items match; choose one: Component[1], Component[2]");
    row("pattern that nothing fits", "remove", "Component[*]/Node[*]", "",
        "Component[*]/Node[*]: nothing fits the pattern");
    row("item that does not exist", "remove", "Component[type=x]", "",
        "Component[type=x]: there is no such Component; there are Component[1], Component[2]");
    row("position 0", "move", "Component[1]", "0", "Component[1]: cannot be at 0; there are 2");
    row("position after the last", "move", "Component[1]", "3", "Component[1]: cannot be at 3; there are 2");
    row("list", "move", "Component", "1", "Component: is not an item of a list");
}

void RearrangingTest::wrongPlaceIsRefused()
{
    QFETCH(QString, operation);
    QFETCH(QString, path);
    QFETCH(QString, argument);
    QFETCH(QByteArray, message);
    const QByteArray text = document("<StartupModes><StartupMode>DF</StartupMode></StartupModes><Component type='a'/>"
                                     "<Component type='b'/>");
    QCOMPARE(edited(text,
                    [&](Editor &editor) {
                        if (operation == QLatin1String("add"))
                            editor.add(path, argument.toUtf8(), QStringLiteral("new"));
                        else if (operation == QLatin1String("remove"))
                            editor.remove({path});
                        else
                            editor.move(path, argument.toInt());
                    }),
             message);
}

void RearrangingTest::refusedOperationChangesNothing()
{
    const QByteArray text = document("<Component type='a'/>");
    Editor editor(Document::fromBytes(text, name), text, name);
    const auto refused = [&](const auto &operation) {
        try {
            operation(editor);
        } catch (const PathFailure &) {
            return true;
        }
        return false;
    };
    QVERIFY(refused([](Editor &it) { it.remove({QStringLiteral("Component"), QStringLiteral("Component[2]")}); }));
    QVERIFY(refused([](Editor &it) { it.add(QStringLiteral("Component[3]")); }));
    QVERIFY(refused([](Editor &it) { it.move(QStringLiteral("Component[1]"), 2); }));
    QCOMPARE(editor.isChanged(), false);
    QCOMPARE(editor.toBytes(), text);
    editor.add(QStringLiteral("Component[type=b]"));
    QCOMPARE(editor.isChanged(), true);
    QCOMPARE(editor.document().tuner.GetComponent().size(), 2);
}

void RearrangingTest::pathOfARemovedItemIsThatBeforeTheOperation()
{
    const QByteArray text = document("<Component type='a'/><Component type='b'/><Component type='c'/>");
    QCOMPARE(edited(text,
                    [](Editor &editor) {
                        editor.remove({QStringLiteral("Component[1]"), QStringLiteral("Component[2]")});
                    }),
             document("<Component type='c'/>"));
    QCOMPARE(edited(text,
                    [](Editor &editor) {
                        editor.remove({QStringLiteral("Component[1]")});
                        editor.remove({QStringLiteral("Component[2]")});
                        editor.add(QStringLiteral("Component[2]"), "<Component name='n'/>");
                        editor.set(QStringLiteral("Component[1]/name"), QStringLiteral("m"));
                        editor.move(QStringLiteral("Component[2]"), 1);
                    }),
             document("<Component name=\"n\"/><Component type='b' name='m'/>"));
}

void RearrangingTest::otherFormsAreWrittenAnew()
{
    const Document original = Document::fromBytes(document("<Component type='a' name='n'/>"), name);
    const QByteArray tagged = original.toBytes(Form::Tagged, name);
    TunerProperties tuner = Document::fromBytes(tagged, QStringLiteral("d.tpb")).tuner;
    Editor editor(Document::fromBytes(tagged, QStringLiteral("d.tpb")), tagged, QStringLiteral("d.tpb"));
    editor.add(QStringLiteral("Component[type=b,name=n]"));
    QCOMPARE(editor.isInPlace(), false);
    QCOMPARE(editor.losses().size(), 0);
    JobXml::Component added;
    added.SetValidate(false);
    added.Settype(QStringLiteral("b"));
    added.Setname(QStringLiteral("n"));
    tuner.GetComponent().append(added);
    QCOMPARE(editor.toBytes(), Document(tuner, Form::Tagged).toBytes(Form::Tagged, name));
}

void RearrangingTest::documentBecomesAnotherOneInItsOwnSpelling()
{
    const QByteArray text =
        document("\n <quantity>02</quantity>\n <Component type='a' name='m'>\n  <Node id='x'  />\n </Component>"
                 "\n <Component type='b' name='m'/>\n");
    TunerProperties other = Document::fromBytes(text, name).tuner;
    other.SetValidate(false);
    other.Setname(QStringLiteral("n"));
    other.Setquantity(3);
    other.GetComponent().move(0, 1);
    other.GetComponent()[1].Setoptional(true);
    other.GetComponent()[0].GetNode().append(JobXml::Node());
    const QByteArray result =
        document("\n <name>n</name>\n <quantity>3</quantity>\n <Component type='b' name='m'>\n  <Node/>\n"
                 " </Component>\n <Component type='a' name='m' optional='true'>\n  <Node id='x'  />\n </Component>\n");
    QCOMPARE(edited(text, [&](Editor &editor) { editor.become(other); }), result);
}

// The last alternative in the text is the one that is chosen.
void RearrangingTest::alternativesThatAreNotChosenAreWrittenBeforeTheChosenOne_data()
{
    const Rows<QByteArray, QByteArray> rows("before", "result");
    const auto withItems = [](QByteArray items) {
        items.replace("<I", "<ValueInt id=\"i\" value=").replace("<F", "<ValueFloat id=\"i\" value=");
        return document("\n <Component>\n  <Node id=\"n\">\n" + items + "  </Node>\n </Component>\n");
    };
    const auto row = [&](const char *title, const QByteArray &before, const QByteArray &result) {
        rows(title, withItems(before), withItems(result));
    };
    const QByteArray one = "   <ValueItem>\n    <I\"1\"/> <!-- 1 -->\n   </ValueItem>\n";
    const QByteArray two = "   <ValueItem>\n    <F\"2\"/>\n    <I\"1\"/> <!-- 1 -->\n   </ValueItem>\n";
    row("one more", one, two);
    row("one less", two, one);
    row("another one is chosen", one, "   <ValueItem>\n    <I\"1\"/> <!-- 1 -->\n    <F\"2\"/>\n   </ValueItem>\n");
    row("the other one of two is chosen", two,
        "   <ValueItem>\n    <I\"1\"/> <!-- 1 -->\n    <F\"2\"/>\n   </ValueItem>\n");
    row("the other one of two is chosen and changes", two,
        "   <ValueItem>\n    <I\"1\"/> <!-- 1 -->\n    <F\"3\"/>\n   </ValueItem>\n");
    row("an item without any", "   <ValueItem/>\n", "   <ValueItem>\n    <F\"2\"/>\n    <I\"1\"/>\n   </ValueItem>\n");
    row("an item without any, in the order of the model", "   <ValueItem/>\n",
        "   <ValueItem>\n    <I\"1\"/>\n    <F\"2\"/>\n   </ValueItem>\n");
    row("new item", one,
        one + "   <ValueItem>\n    <ValueBoolean id=\"b\"/>\n    <F\"2\"/>\n    <I\"3\"/>\n   </ValueItem>\n");
}

void RearrangingTest::alternativesThatAreNotChosenAreWrittenBeforeTheChosenOne()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, result);
    const TunerProperties other = Document::fromBytes(result, name).tuner;
    Editor editor(Document::fromBytes(before, name), before, name);
    editor.become(other);
    QCOMPARE(editor.toBytes(), result);
    QCOMPARE(editor.losses().size(), 0);
}

void RearrangingTest::quantityThatAnOlderVersionSetsIsUnset()
{
    TunerProperties other;
    other.SetValidate(false);
    other.Setname(QStringLiteral("n"));
    QCOMPARE(edited("{\"TunerProperties\":{}}", [&](Editor &editor) { editor.become(other); }),
             QByteArray("{\"TunerProperties\":{\"name\": \"n\", \"unset\": {\"quantity\":1}}}"));
    QCOMPARE(edited("<TunerProperties/>", [&](Editor &editor) { editor.become(other); }),
             QByteArray("d.xml: cannot edit the document in place: quantity: 1 (not set) would be read as 1"));
}

namespace {

/// Comments, and attributes and elements that the model does not have.
QStringList foreignParts(const QByteArray &xml)
{
    const XmlMarkup markup(xml);
    QStringList parts;
    for (const XmlMarkup::Comment &comment : markup.comments())
        parts.append(QString::fromUtf8(xml.mid(comment.whole.begin, comment.whole.size())));
    for (const XmlMarkup::Attribute &attribute : markup.attributes()) {
        if (markup.bytes(attribute.name) == QLatin1String("mine"))
            parts.append(QString::fromUtf8(xml.mid(attribute.name.begin, attribute.whole().size())));
    }
    return parts;
}

/// Another document, or the same one with some changes.
TunerProperties changed(const TunerProperties &document, int seed)
{
    TunerProperties other = seed % 3 == 0 ? randomDocument(seed) : document;
    other.SetValidate(false);
    RandomChanges random{quint32(seed)};
    for (int i = seed % 5; i > 0; --i)
        random.change(other);
    return other;
}

bool areEqual(const TunerProperties &first, const TunerProperties &second)
{
    return findDifferences(first, second).isEmpty();
}

} // namespace

void RearrangingTest::commentsAndUnknownContentStayWhenADocumentBecomesAnotherOne()
{
    const QByteArray text =
        document("\n<!-- 1 -->\n<Component type='a' name='m' mine='1'>\n<!-- 2 -->\n<Node id='n' mine='2'/>\n"
                 "<!-- 3 -->\n<Node id='m'><!-- 4 --></Node>\n</Component>\n<!-- 5 -->\n"
                 "<Component type='b' name='m'><!-- 6 --></Component>\n<!-- 7 -->\n");
    const TunerProperties before = Document::fromBytes(text, name).tuner;
    for (int seed = 0; seed < 500; ++seed) {
        TunerProperties other = before;
        other.SetValidate(false);
        RandomChanges random{quint32(seed)};
        other.Setquantity(random.below(3));
        for (int i = 0; i < 2; ++i)
            other.GetComponent().move(random.below(2), random.below(2));
        other.GetComponent()[0].GetNode().insert(0, JobXml::Node());
        other.GetComponent()[1].Setoptional(random.below(2) != 0);
        Editor editor(Document::fromBytes(text, name), text, name);
        editor.become(other);
        const QByteArray result = editor.toBytes();
        QVERIFY2(areEqual(Document::fromBytes(result, name).tuner, other), result.constData());
        QStringList parts = foreignParts(result);
        QStringList expected = foreignParts(text);
        parts.sort();
        expected.sort();
        QCOMPARE(parts, expected);
    }
}

void RearrangingTest::randomDocumentBecomesAnyOtherInXml()
{
    int exact = 0;
    int done = 0;
    for (int seed = 0; seed < 3000; ++seed) {
        Random spelling{quint32(seed)};
        const QByteArray root = "TunerProperties";
        const QByteArray xml =
            seed % 2 ? XmlSpellings::plainDocument(spelling, root) : XmlSpellings::document(spelling, root);
        Document before;
        TunerProperties other;
        const bool isWritable = seed % 4 != 0; // completely
        try {
            before = Document::fromBytes(xml, name);
            other = changed(before.tuner, seed);
            other.SetValidate(false); // which assigning does not change
            if (isWritable)
                other = Document::fromBytes(Document(other).toBytes(Form::Xml, name), name).tuner;
        } catch (const DocumentError &) {
            continue; // not a document, or not one that XML can hold
        }
        const auto describe = [&](const QByteArray &result) {
            return QByteArray::number(seed) + ": " + result + "\n--- from ---\n" + xml;
        };
        try {
            Editor editor(before, xml, name);
            editor.become(other);
            const QByteArray result = editor.toBytes();
            QVERIFY2(areEqual(editor.document().tuner, other), describe(result).constData());
            const bool isExact = areEqual(Document::fromBytes(result, name).tuner, other);
            QCOMPARE(editor.losses().isEmpty(), isExact);
            QVERIFY2(isExact || !isWritable, describe(result).constData());
            exact += isExact;
            ++done;
        } catch (const DocumentError &error) {
            // An older version makes the quantity count as set, whatever the text has.
            const bool isOlder = before.tuner.GetInitialVersionLoaded() != before.tuner.GetVersion();
            QStringList reasons = {QStringLiteral("XML cannot carry"), QStringLiteral("inside another one"),
                                   QStringLiteral("not the usual ones"),
                                   QStringLiteral("the tags of the document cannot be found")};
            if (isOlder)
                reasons.append(QStringLiteral("quantity: "));
            const bool isKnown = std::any_of(reasons.begin(), reasons.end(),
                                             [&](const QString &reason) { return error.text().contains(reason); });
            QVERIFY2(isKnown, describe(error.text().toUtf8()).constData());
        }
    }
    QVERIFY2(exact > 1900, qPrintable(QString::number(exact)));
    QVERIFY2(done > exact + 150, qPrintable(QString::number(done)));
}

void RearrangingTest::randomDocumentBecomesAnyOtherInJson()
{
    int done = 0;
    for (int seed = 0; seed < 1500; ++seed) {
        const TunerProperties first = randomDocument(seed, seed % 4);
        TunerProperties second = seed % 3 == 0 ? randomDocument(seed + 1, 3) : first;
        second.SetValidate(false);
        RandomChanges random{quint32(seed)};
        for (int i = seed % 7; i > 0; --i)
            random.change(second);
        QByteArray json;
        QByteArray expected;
        try {
            json = JsonForm::compose(first);
            expected = JsonForm::compose(second);
        } catch (const JsonFailure &) {
            continue; // JSON cannot carry it
        }
        if (seed % 2 == 0)
            json = JsonText::compact(JsonText::parse(json));
        if (seed % 5 == 0)
            json.replace("\"1.1\"", "\"1.0\"");
        const QString fileName = QStringLiteral("d.json");
        Editor editor(Document::fromBytes(json, fileName), json, fileName);
        editor.become(second);
        const QByteArray result = editor.toBytes();
        const QByteArray read = JsonForm::compose(Document::fromBytes(result, fileName).tuner);
        QVERIFY2(read == expected,
                 (QByteArray::number(seed) + ": " + json + "\n--- became ---\n" + result + "\n--- not ---\n" + expected)
                     .constData());
        ++done;
    }
    QVERIFY2(done > 1000, qPrintable(QString::number(done)));
}

TEST_SUITE(RearrangingTest)
#include "tst_Rearranging.moc"

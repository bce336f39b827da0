// SPDX-License-Identifier: MIT
#include "JsonDocument.h"
#include "tools/Tool.h"

#include <QRegularExpression>

#include <jobxml/TunerProperties.h>

/// Writing and reading the JSON form.
class ToolJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void membersHaveTheirNamesAsKeys();
    void membersThatAreNotSetAreInUnset();
    void nullDiffersFromTheEmptyText();
    void numbersAreExact();
    void enumerationsAreWrittenAsNames();
    void examplesReadBackByteForByte_data();
    void examplesReadBackByteForByte();
    void suffixAndContentDetermineTheForm();
    void membersMayBeInAnyOrder();
    void numbersOf64BitsAreNumbersWhereJavaScriptHoldsThemExactly();
    void numbersOf64BitsMayBeNumbersOrStrings();
    void missingChoiceIsTheSingleAlternative();
    void schemaIsAcceptedBesideTheDocument();
    void olderVersionsBeginWithTheDefaultQuantity_data();
    void olderVersionsBeginWithTheDefaultQuantity();
    void textsMayContainEveryCharacter();
    void validatingReportsTheSameProblems();
    void invalidDocumentsAreNotWritten();
    void showCanWriteJson();
    void thePageShowsWhatIsWritten();
};

namespace {

constexpr char smallJson[] = R"({
  "TunerProperties": {
    "Version": "1.1",
    "type": "SCP",
    "baseresource": "b",
    "Component": [
      {
        "type": "t",
        "name": "c",
        "optional": true,
        "Node": [
          {
            "id": "n",
            "ValueItem": [
              {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 7}}
            ]
          }
        ]
      }
    ]
  }
}
)";

QString onOneLine(QString json)
{
    static const QRegularExpression lineEnd(QStringLiteral("\n *"));
    return json.replace(QRegularExpression(QStringLiteral(",\n *")), QStringLiteral(", ")).remove(lineEnd);
}

/// The members of a document as the tool writes them on one line after reading `members`.
QString again(const QByteArray &members)
{
    const QByteArray json = jsonWith(members);
    const Run run = Workshop().run(line("convert - - --to json --no-validate"), json);
    const QString text = onOneLine(run.out);
    const QString start = QStringLiteral(R"({"TunerProperties": {"Version": "1.1", )");
    const bool isDocument = run.status == 0 && text.startsWith(start) && text.endsWith(QLatin1String("}}"));
    return isDocument ? text.mid(start.size(), text.size() - start.size() - 2) : text + run.err;
}

} // namespace

void ToolJsonTest::membersHaveTheirNamesAsKeys()
{
    const QByteArray xml = R"(<TunerProperties Version="1.1" name="N" type="Receiver" baseresource="B"
            connectableResources="C" quantity="-2" parentBaseResource="P" hwProcessing="true">
        <StartupModes><StartupMode>Stop</StartupMode><StartupMode>Scan</StartupMode></StartupModes>
        <BandwidthSelection><Name>narrow</Name><MaxBandwidth>2400.25</MaxBandwidth></BandwidthSelection>
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
          <Node id="lists">
            <ValueItem><ValueSelection id="i" value="0.5" text="half" index="1">
              <SelectionItem name="none" value="0"/><SelectionItem name="half" value="0.5"/>
            </ValueSelection></ValueItem>
            <ValueItem><ValueStringList id="j" value="x">
              <StringItem value="x"/><StringItem value="y"/>
            </ValueStringList></ValueItem>
          </Node>
        </Component>
      </TunerProperties>)";
    const Run run = Workshop().run(line("convert - - --to json"), xml);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, QStringLiteral(R"({
  "TunerProperties": {
    "Version": "1.1",
    "name": "N",
    "type": "Receiver",
    "baseresource": "B",
    "connectableResources": "C",
    "quantity": -2,
    "parentBaseResource": "P",
    "hwProcessing": true,
    "StartupModes": {"StartupMode": ["Stop", "Scan"]},
    "BandwidthSelection": [
      {"Name": "narrow", "MaxBandwidth": 2400.25}
    ],
    "MaxFFPDelay": 5000000000,
    "HRPANSupported": true,
    "Component": [
      {
        "type": "t1",
        "name": "n1",
        "displayName": "d1",
        "optional": false,
        "Node": [
          {
            "id": "plain",
            "ValueItem": [
              {"ChoiceValueItem": "ValueBoolean", "ValueBoolean": {"id": "a", "value": true}},
              {"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "b", "value": 0.35}},
              {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "c", "value": -7}},
              {"ChoiceValueItem": "ValueInt64", "ValueInt64": {"id": "d", "value": 9000000000}},
              {"ChoiceValueItem": "ValueString", "ValueString": {"id": "e", "value": "text"}}
            ]
          },
          {
            "id": "ranged",
            "ValueItem": [
              {
                "ChoiceValueItem": "ValueNumericFloat",
                "ValueNumericFloat": {"id": "f", "value": 1.5, "min": -2.0, "max": 3.25, "step": 0.1}
              },
              {
                "ChoiceValueItem": "ValueNumericInt",
                "ValueNumericInt": {"id": "g", "value": 1, "min": 2, "max": 3, "step": 4}
              },
              {
                "ChoiceValueItem": "ValueNumericInt64",
                "ValueNumericInt64": {"id": "h", "value": 5, "min": 6, "max": 7, "step": 8}
              }
            ]
          },
          {
            "id": "lists",
            "ValueItem": [
              {
                "ChoiceValueItem": "ValueSelection",
                "ValueSelection": {
                  "id": "i",
                  "value": 0.5,
                  "text": "half",
                  "index": 1,
                  "SelectionItem": [
                    {"name": "none", "value": 0.0},
                    {"name": "half", "value": 0.5}
                  ]
                }
              },
              {
                "ChoiceValueItem": "ValueStringList",
                "ValueStringList": {
                  "id": "j",
                  "value": "x",
                  "StringItem": [
                    {"value": "x"},
                    {"value": "y"}
                  ]
                }
              }
            ]
          }
        ]
      }
    ]
  }
}
)"));
}

void ToolJsonTest::membersThatAreNotSetAreInUnset()
{
    // The first column is also the expected output.
    for (const char *members : {
             R"("quantity": 1)",
             R"("unset": {"quantity": 2})",
             R"("unset": {"name": ""})",
             R"("StartupModes": {})",
             R"("StartupModes": {"StartupMode": []})",
             R"("StartupModes": {"unset": {"StartupMode": ["DF"]}})",
             R"("unset": {"StartupModes": {"StartupMode": []}})",
             R"("Component": [])",
             R"("unset": {"Component": [{}]})",
         })
        QCOMPARE(again(members), QString::fromUtf8(members));

    const auto item = [](const char *members) {
        return again(QByteArray(R"("Component": [{"Node": [{"ValueItem": [{)") + members + "}]}]}]");
    };
    const auto expected = [](const char *members) {
        return QStringLiteral(R"("Component": [{"Node": [{"ValueItem": [{%1}]}]}])").arg(QString::fromUtf8(members));
    };
    for (const char *members : {
             R"()",
             R"("ChoiceValueItem": null, "ValueInt": {})",
             R"("ChoiceValueItem": null, "ValueFloat": {}, "ValueInt": {})",
             R"("ChoiceValueItem": "ValueInt")",
             R"("ChoiceValueItem": "ValueInt", "unset": {"ValueInt": {"value": 3}})",
             R"("ChoiceValueItem": "ValueInt", "ValueFloat": {}, "ValueInt": {})",
             R"("ChoiceValueItem": 77, "ValueString": {"id": null})",
         })
        QCOMPARE(item(members), expected(members));

    // Defaults of members that are not set are omitted.
    QCOMPARE(again(R"("quantity": 3, "unset": {"hwProcessing": false, "Component": [], "StartupModes": {}})"),
             QStringLiteral(R"("quantity": 3)"));
    QCOMPARE(item(R"("ChoiceValueItem": null, "unset": {"ValueInt": {"unset": {"value": 0}}})"), expected(""));
}

void ToolJsonTest::nullDiffersFromTheEmptyText()
{
    QCOMPARE(again(R"("name": null, "baseresource": "")"), QStringLiteral(R"("name": null, "baseresource": "")"));
}

void ToolJsonTest::numbersAreExact()
{
    const auto bandwidths = [](const char *numbers) {
        QByteArray json = R"("BandwidthSelection": [)";
        for (const QByteArray &number : QByteArray(numbers).split(' '))
            json += R"({"MaxBandwidth": )" + number + "}, ";
        return json.left(json.size() - 2) + "]";
    };
    for (const char *numbers :
         {"0.0", "-0.0", "0.1", "1e+21", "1.7976931348623157e+308", "5e-324", "1000000000000000.0",
          "0.30000000000000004", "\"NaN\"", "\"Infinity\"", "\"-Infinity\""})
        QCOMPARE(again(bandwidths(numbers)), QString::fromUtf8(bandwidths(numbers)));
    QCOMPARE(again(bandwidths("7 1E3 0.1000 1e-400 -12.50")),
             QString::fromUtf8(bandwidths("7.0 1000.0 0.1 0.0 -12.5")));

    for (const char *member : {R"("MaxFFPDelay": "18446744073709551615")", R"("MaxFFPDelay": 0)",
                               R"("quantity": -2147483648)", R"("quantity": 2147483647)"})
        QCOMPARE(again(member), QString::fromUtf8(member));
}

void ToolJsonTest::enumerationsAreWrittenAsNames()
{
    for (const char *member : {R"("type": "FFP")", R"("type": null)", R"("type": 7)", R"("type": -128)",
                               R"("StartupModes": {"StartupMode": ["Scan", null, 11, -2, "Stop"]})"})
        QCOMPARE(again(member), QString::fromUtf8(member));
    QCOMPARE(again(R"("type": 3)"), QStringLiteral(R"("type": "Receiver")"));
}

void ToolJsonTest::examplesReadBackByteForByte_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << name;
}

void ToolJsonTest::examplesReadBackByteForByte()
{
    QFETCH(QString, name);
    Workshop shop;
    for (const char *form : {"xml", "tagged", "compressed", "snapshot"}) {
        const QString form8 = QString::fromUtf8(form);
        const auto convert = [&](const QString &from, const QString &to) {
            const Run run = shop.run({QStringLiteral("convert"), from, to, QStringLiteral("--to"), form8});
            QCOMPARE(run.err, QString());
        };
        convert(examplePath(name), QStringLiteral("direct.tps"));
        QCOMPARE(shop.run({QStringLiteral("convert"), examplePath(name), QStringLiteral("a.json")}).status, 0);
        convert(QStringLiteral("a.json"), QStringLiteral("throughJson.tps"));
        QVERIFY(shop.read(QStringLiteral("direct.tps")).size() > 100);
        QCOMPARE(shop.read(QStringLiteral("throughJson.tps")), shop.read(QStringLiteral("direct.tps")));
    }
}

void ToolJsonTest::suffixAndContentDetermineTheForm()
{
    Workshop shop;
    QCOMPARE(shop.run(line("convert - a.json"), smallXml).err, QString());
    QCOMPARE(shop.read(QStringLiteral("a.json")), QByteArray(smallJson));
    for (const QByteArray &start :
         {QByteArray(), QByteArray(" \r\n\t"), QByteArray("\xEF\xBB\xBF"), QByteArray("\xEF\xBB\xBF\n")}) {
        shop.write(QStringLiteral("data"), start + smallJson);
        const Run run = shop.run(line("convert data a.xml"));
        if (start.size() == 4)
            QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QCOMPARE(shop.read(QStringLiteral("a.xml")), QByteArray(smallXml));
    }
    // A snapshot with the same first two bytes is not JSON.
    QCOMPARE(shop.run(line("show --from json -"), QByteArray("{\n\0\0", 4)).status, 3);
    shop.write(QStringLiteral("a.tps"), QByteArray("\x7B\x0A\0\0\0\x06", 6));
    QVERIFY(shop.run(line("show a.tps"))
                .err.startsWith(QStringLiteral("tunerproperties: a.tps: the snapshot is truncated")));
}

void ToolJsonTest::membersMayBeInAnyOrder()
{
    QCOMPARE(again(R"("unset": {"quantity": 9}, "Component": [], "type": "SCP", "name": "n")"),
             QStringLiteral(R"("name": "n", "type": "SCP", "Component": [], "unset": {"quantity": 9})"));
    const Run run = Workshop().run(line("convert - - --to json --no-validate"),
                                   R"({"TunerProperties": {"Component": [], "Version": "1.1"}})");
    QCOMPARE(onOneLine(run.out), QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "Component": []}})"));
}

void ToolJsonTest::numbersOf64BitsAreNumbersWhereJavaScriptHoldsThemExactly()
{
    const auto value = [](const char *json) {
        return again(QByteArray(R"("Component": [{"Node": [{"ValueItem": [{"ValueInt64": {"value": )") + json
                     + "}}]}]}]")
            .section(QStringLiteral("\"value\": "), 1)
            .section(QLatin1Char('}'), 0, 0);
    };
    QCOMPARE(value("9007199254740991"), QStringLiteral("9007199254740991"));
    QCOMPARE(value("9007199254740992"), QStringLiteral("\"9007199254740992\""));
    QCOMPARE(value("-9007199254740991"), QStringLiteral("-9007199254740991"));
    QCOMPARE(value("-9007199254740992"), QStringLiteral("\"-9007199254740992\""));
    QCOMPARE(value("-9223372036854775808"), QStringLiteral("\"-9223372036854775808\""));
    QCOMPARE(value("\"9223372036854775807\""), QStringLiteral("\"9223372036854775807\""));
    QCOMPARE(value("\"-7\""), QStringLiteral("-7"));
    QCOMPARE(again(R"("MaxFFPDelay": "9007199254740991")"), QStringLiteral(R"("MaxFFPDelay": 9007199254740991)"));
    QCOMPARE(again(R"("MaxFFPDelay": 9007199254740992)"), QStringLiteral(R"("MaxFFPDelay": "9007199254740992")"));
}

void ToolJsonTest::numbersOf64BitsMayBeNumbersOrStrings()
{
    QCOMPARE(again(R"("MaxFFPDelay": 18446744073709551615)"),
             QStringLiteral(R"("MaxFFPDelay": "18446744073709551615")"));
    QCOMPARE(again(R"("MaxFFPDelay": "0")"), QStringLiteral(R"("MaxFFPDelay": 0)"));
}

void ToolJsonTest::missingChoiceIsTheSingleAlternative()
{
    const auto item = [](const char *members) {
        return again(QByteArray(R"("Component": [{"Node": [{"ValueItem": [{)") + members + "}]}]}]")
            .section(QStringLiteral("\"ValueItem\": [{"), 1)
            .section(QStringLiteral("}]}]}]"), 0, 0);
    };
    QCOMPARE(item(R"("ValueFloat": {"id": "f", "value": 0.5})"),
             QStringLiteral(R"("ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "f", "value": 0.5})"));
    QCOMPARE(item(R"("ValueFloat": {})"), QStringLiteral(R"("ChoiceValueItem": "ValueFloat", "ValueFloat": {})"));
    // Alternatives that are not set do not count.
    QCOMPARE(
        item(R"("unset": {"ValueInt": {"value": 3}}, "ValueFloat": {})"),
        QStringLiteral(R"("ChoiceValueItem": "ValueFloat", "ValueFloat": {}, "unset": {"ValueInt": {"value": 3}})"));
    QCOMPARE(item(R"("unset": {"ValueInt": {"value": 3}})"), QStringLiteral(R"("unset": {"ValueInt": {"value": 3}})"));
    // With several, nothing is chosen.
    QCOMPARE(item(R"("ValueInt": {}, "ValueFloat": {})"),
             QStringLiteral(R"("ChoiceValueItem": null, "ValueFloat": {}, "ValueInt": {})"));
    // A choice need not be the first or the last member.
    QCOMPARE(item(R"("ValueInt": {}, "ChoiceValueItem": "ValueInt", "ValueFloat": {})"),
             QStringLiteral(R"("ChoiceValueItem": "ValueInt", "ValueFloat": {}, "ValueInt": {})"));
    QCOMPARE(item(R"("ValueInt": {}, "ChoiceValueItem": 77)"),
             QStringLiteral(R"("ChoiceValueItem": 77, "ValueInt": {})"));
}

void ToolJsonTest::schemaIsAcceptedBesideTheDocument()
{
    const QByteArray schema = R"("$schema": "tuner-properties.schema.json")";
    for (const QByteArray &json : {'{' + schema + QByteArray(smallJson).mid(1).prepend(','),
                                   QByteArray(smallJson).trimmed().chopped(1) + ',' + schema + "}\n"}) {
        const Run run = Workshop().run(line("convert - - --to json"), json);
        QCOMPARE(run.err, QString());
        QCOMPARE(run.bytes, QByteArray(smallJson)); // nothing stores it
    }
}

void ToolJsonTest::olderVersionsBeginWithTheDefaultQuantity_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("isReset");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("older") << QByteArray(R"("Version": "1.0",)") << true;
    QTest::newRow("no number") << QByteArray(R"("Version": "<&\"'>",)") << true;
    QTest::newRow("this one") << QByteArray(R"("Version": "1.1",)") << false;
    QTest::newRow("newer") << QByteArray(R"("Version": "2.0",)") << false;
}

void ToolJsonTest::olderVersionsBeginWithTheDefaultQuantity()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, isReset);
    // An older document begins with the default quantity, which counts as set.
    const Run run = Workshop().run(line("convert - - --to json --no-validate"),
                                   R"({"TunerProperties": {)" + version + R"("name": "n"}})");
    QCOMPARE(run.err, QString());
    QCOMPARE(onOneLine(run.out),
             isReset ? QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "name": "n", "quantity": 1}})")
                     : QStringLiteral(R"({"TunerProperties": {"Version": "1.1", "name": "n"}})"));
}

void ToolJsonTest::textsMayContainEveryCharacter()
{
    const char *const members = R"("name": "\u0000\u0001\b\t\n\f\r\"\\/\u007f)"
                                "\u00E9"
                                R"(\u2028\ufeff\ufffe)"
                                "\U0001F600\"";
    QCOMPARE(again(members), QString::fromUtf8(members));
    QCOMPARE(again("\"name\": \"\u007F\u2028\uFEFF\uFFFE\U000E0041\""),
             QStringLiteral(R"("name": "\u007f\u2028\ufeff\ufffe\udb40\udc41")"));
    QCOMPARE(again(R"("name": "\u00e9\ud83d\ude00\/")"), QStringLiteral("\"name\": \"\u00E9\U0001F600/\""));
}

void ToolJsonTest::validatingReportsTheSameProblems()
{
    Workshop shop;
    const QByteArray json = QByteArray(smallJson).replace(R"("type": "t",)", "").replace(R"("type": "SCP",)", "");
    shop.write(QStringLiteral("a.json"), json);
    const Run run = shop.run(line("validate a.json"));
    QVERIFY(run.out.startsWith(QStringLiteral(
        "a.json: Component[1]: Component: Please set type properly.\n"
        "a.json: TunerProperties: Please set type properly. Expected MCP, SCP, FFP, Receiver or DirectionFinder\n")));
    QCOMPARE(run.status, 1);
    shop.write(QStringLiteral("b.json"), smallJson);
    QCOMPARE(shop.run(line("validate b.json")).status, 0);
}

void ToolJsonTest::invalidDocumentsAreNotWritten()
{
    Workshop shop;
    const Run run = shop.run(line("convert - a.json"), QByteArray(smallXml).replace(" type=\"SCP\"", ""));
    QVERIFY(run.err.startsWith(QStringLiteral("tunerproperties: -: TunerProperties: Please set type properly. Expected "
                                              "MCP, SCP, FFP, Receiver or DirectionFinder\n")));
    QCOMPARE(run.status, 1);
    QCOMPARE(shop.files(), QStringList());
}

void ToolJsonTest::showCanWriteJson()
{
    QCOMPARE(Workshop().run(line("show --format json -"), smallXml).bytes, QByteArray(smallJson));
    QCOMPARE(Workshop().run(line("show --format json -"), R"(<TunerProperties Version="1.1"/>)").out,
             QStringLiteral("{\"TunerProperties\": {\"Version\": \"1.1\"}}\n"));
}

void ToolJsonTest::thePageShowsWhatIsWritten()
{
    QFile page(QStringLiteral(JSON_PAGE));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QStringList blocks = QString::fromUtf8(page.readAll()).split(QStringLiteral("```json\n")).mid(1);
    QCOMPARE(blocks.size(), 2);
    const QByteArray document = blocks[0].section(QStringLiteral("```"), 0, 0).toUtf8();
    QCOMPARE(Workshop().run(line("convert - - --to json"), document).bytes, document);
    const QString members = blocks[1].section(QStringLiteral("```"), 0, 0).trimmed();
    QCOMPARE(QLatin1Char('{') + again(members.mid(1, members.size() - 2).toUtf8()) + QLatin1Char('}'), members);
}

TEST_SUITE(ToolJsonTest)
#include "tst_ToolJson.moc"

// SPDX-License-Identifier: MIT
#include "Rows.h"
#include "tools/Tool.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <jobxml/TunerProperties.h>

#include "NewMembers.h"

/// New documents, and the schema.
class ToolNewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewDocumentIsExplained();
    void everyTypeIsValid_data();
    void everyTypeIsValid();
    void optionsSetNameAndResource();
    void textsOfOptionsAreEscaped();
    void typeIsRequired();
    void unknownTypeIsAnError();
    void textsThatXmlCannotRepresentAreErrors();
    void theSchemaIsTheOneThatIsInstalled();
    void theModelIsTheOneThatIsInstalled();
    void everyFormatIsTheFileThatIsInstalled_data();
    void everyFormatIsTheFileThatIsInstalled();
    void anUnknownFormatIsAnErrorThatListsTheFormats();
};

void ToolNewTest::aNewDocumentIsExplained()
{
    const Run run = Workshop().run(line("new --type Receiver"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    const auto expected = QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<!--
  One tuner resource: what it is, what it offers, and its configurable parts.

  name                  Optional. The name of the tuner.
  type                  What kind of tuner it is. One of MCP, SCP, FFP, Receiver or DirectionFinder.
  baseresource          The resource that the tuner is based on.
  connectableResources  Optional. The resources that can be connected to the tuner.
  quantity              Optional. How many instances of the tuner there are; 1 if absent. Any
                        number.
  parentBaseResource    Optional. The resource that the base resource belongs to.
  hwProcessing          Optional. Whether the tuner processes in hardware.
  <StartupModes>        Optional. The measurement modes in which the tuner can start up. Holds
                        <StartupMode>: Scan, FastScan, MScan, FFM, WFFM, Step, DF, MSearch, Polar,
                        Search or Stop.
  <BandwidthSelection>  Optional. The bandwidths that can be selected. Holds <Name>, <MaxBandwidth>.
  <MaxFFPDelay>         Optional. The maximum FFP delay, in the unit of the producer. The library's
                        XML reader takes it for a signed number: what is beyond 9223372036854775807
                        is written and valid, but reads as 0.
  <HRPANSupported>      Optional. Whether HRPAN is supported.
  <Component>           The configurable parts of the tuner, one at least.
-->
<TunerProperties Version="1.1" type="Receiver" baseresource="baseresource">
  <!--
    One configurable part of a tuner.

    type         What kind of part this is.
    name         The name of the part within the tuner.
    displayName  Optional. The name to show to a user.
    optional     Whether the tuner may lack this part.
    <Node>       The configurable parameters, one at least.
  -->
  <Component type="type" name="name" optional="false">
    <!--
      One configurable parameter of a component.

      id           The identifier of the parameter within its component.
      <ValueItem>  The values that the parameter carries, one at least.
    -->
    <Node id="id">
      <!--
        One value of a node: exactly one of several kinds.

        <ValueBoolean>       A switch.
        <ValueFloat>         A floating-point number of 32 bits. Holds id, value.
        <ValueInt>           A whole number of 32 bits. Holds id, value.
        <ValueInt64>         A whole number of 64 bits. Holds id, value.
        <ValueNumericFloat>  A floating-point number of 32 bits and what it can be set to. Holds id,
                             value, min, max, step.
        <ValueNumericInt>    A whole number of 32 bits and what it can be set to. Holds id, value,
                             min, max, step.
        <ValueNumericInt64>  A whole number of 64 bits and what it can be set to. Holds id, value,
                             min, max, step.
        <ValueSelection>     A number that is chosen from named options. Holds id, value, text,
                             index, <SelectionItem>.
        <ValueString>        A text. Holds id, value.
        <ValueStringList>    A text, out of or alongside a list of texts. Holds id, value,
                             <StringItem>.
      -->
      <ValueItem>
        <!--
          A switch.

          id     The identifier of the value within its node.
          value  Whether the switch is on.
        -->
        <ValueBoolean id="id" value="false"/>
      </ValueItem>
    </Node>
  </Component>
</TunerProperties>
)");
    QCOMPARE(Model::withoutNewMembers(run.out, expected), expected);
}

void ToolNewTest::everyTypeIsValid_data()
{
    QTest::addColumn<QString>("type");
    for (const QString &type : JobXml::TunerProperties::Gettypes())
        QTest::newRow(qPrintable(type)) << type;
}

void ToolNewTest::everyTypeIsValid()
{
    QFETCH(QString, type);
    Workshop shop;
    const Run made = shop.run({QStringLiteral("new"), QStringLiteral("--type"), type});
    WrittenXml::keep(QStringLiteral("TunerProperties"), made.bytes); // is checked against the schema
    const Run validated = shop.run(line("validate -"), made.bytes);
    QCOMPARE(validated.err, QString());
    QCOMPARE(validated.status, 0);
    QCOMPARE(shop.run(line("get - type"), made.bytes).out, type + QLatin1Char('\n'));
}

void ToolNewTest::optionsSetNameAndResource()
{
    Workshop shop;
    const QByteArray xml = shop.run(line("new --type SCP --name N --baseresource=B")).bytes;
    QCOMPARE(shop.run(line("get - name"), xml).out, QStringLiteral("N\n"));
    QCOMPARE(shop.run(line("get - baseresource"), xml).out, QStringLiteral("B\n"));
    QCOMPARE(shop.run(line("get - type"), xml).out, QStringLiteral("SCP\n"));
}

void ToolNewTest::textsOfOptionsAreEscaped()
{
    Workshop shop;
    const QString hostile = QStringLiteral("--> <x a=\"'&amp;\n\u00E4");
    const QByteArray xml =
        shop.run({QStringLiteral("new"), QStringLiteral("--type=MCP"), QStringLiteral("--name"), hostile}).bytes;
    QCOMPARE(shop.run(line("get - name"), xml).out, hostile + QLatin1Char('\n'));
    QCOMPARE(shop.run(line("validate -"), xml).status, 0);
}

void ToolNewTest::typeIsRequired()
{
    const Run run = Workshop().run(line("new"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: 'new' requires --type: MCP, SCP, FFP, Receiver or DirectionFinder\n"
                            "tunerproperties: try 'tunerproperties new --help'\n"));
    QCOMPARE(run.status, 2);
}

void ToolNewTest::unknownTypeIsAnError()
{
    const Run run = Workshop().run(line("new --type receiver"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: unknown type 'receiver'; did you mean 'Receiver'?\n"
                            "tunerproperties: try 'tunerproperties new --help'\n"));
    QCOMPARE(run.status, 2);
}

void ToolNewTest::textsThatXmlCannotRepresentAreErrors()
{
    const Run run =
        Workshop().run({QStringLiteral("new"), QStringLiteral("--type=MCP"), QStringLiteral("--name=\x01")});
    QCOMPARE(run.out, QString());
    QVERIFY(run.err.startsWith(QStringLiteral("tunerproperties: -: ")));
    QCOMPARE(run.status, 1);
}

void ToolNewTest::theSchemaIsTheOneThatIsInstalled()
{
    QFile file(QStringLiteral(SCHEMA_FILE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray schema = file.readAll();
    QVERIFY(schema.size() > 10000);
    const Run run = Workshop().run(line("schema"));
    QCOMPARE(run.bytes, schema);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(Workshop().run(line("schema a.xml")).status, 2);
}

void ToolNewTest::theModelIsTheOneThatIsInstalled()
{
    QFile file(QStringLiteral(MODEL_FILE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray model = file.readAll();
    const Run run = Workshop().run(line("schema --format model"));
    QCOMPARE(run.bytes, model);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(Workshop().run(line("schema --format xsd")).bytes, Workshop().run(line("schema")).bytes);

    const QJsonArray classes = QJsonDocument::fromJson(model).object().value(QStringLiteral("classes")).toArray();
    QStringList names;
    for (const QJsonValue &each : classes)
        names += each.toObject().value(QStringLiteral("name")).toString();
    names.sort();
    QCOMPARE(names, Model::classes());
}

void ToolNewTest::everyFormatIsTheFileThatIsInstalled_data()
{
    const Rows<QString, QString> row("arguments", "name");
    row("schema", "tuner-properties.xsd");
    row("schema --format xsd", "tuner-properties.xsd");
    row("schema --format author", "tuner-properties-author.xsd");
    row("schema --format json", "tuner-properties.schema.json");
    row("schema --format model", "model.json");
}

void ToolNewTest::everyFormatIsTheFileThatIsInstalled()
{
    QFETCH(QString, arguments);
    QFETCH(QString, name);
    QFile file(QStringLiteral(SHARE_DIR "/") + name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.size() > 10000);
    const Run run = Workshop().run(line(qPrintable(arguments)));
    QCOMPARE(run.bytes, content);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolNewTest::anUnknownFormatIsAnErrorThatListsTheFormats()
{
    const Run run = Workshop().run(line("schema --format yaml"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: unknown format 'yaml'; expected xsd, author, json or model\n"
                            "tunerproperties: try 'tunerproperties schema --help'\n"));
    QCOMPARE(run.status, 2);
}

TEST_SUITE(ToolNewTest)
#include "tst_ToolNew.moc"

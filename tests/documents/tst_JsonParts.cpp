// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Parts of a document as JSON.
class JsonPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placeOfAPathIsJson_data();
    void placeOfAPathIsJson();
    void layoutIsThatOfDocumentsUnlessItIsOneLine();
    void textThatJsonCannotRepresentIsRefused();
};

namespace {

TunerProperties document()
{
    return Document::fromBytes(
               R"(<TunerProperties Version="1.1" name="N" quantity="2">
           <StartupModes><StartupMode>DF</StartupMode><StartupMode>Scan</StartupMode></StartupModes>
           <BandwidthSelection><Name>w</Name><MaxBandwidth>1.5</MaxBandwidth></BandwidthSelection>
           <BandwidthSelection><Name>x</Name></BandwidthSelection></TunerProperties>)",
               QStringLiteral("d.xml"))
        .tuner;
}

} // namespace

void JsonPartsTest::placeOfAPathIsJson_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("holdsObjects");
    QTest::addColumn<QByteArray>("json");
    const auto add = [](const char *path, bool holdsObjects, const char *json) {
        QTest::newRow(path) << QString::fromUtf8(path) << holdsObjects << QByteArray(json);
    };
    add("name", false, R"("N")");
    add("quantity", false, "2");
    add("StartupModes/StartupMode", false, R"(["DF","Scan"])");
    add("StartupModes", true, R"({"StartupMode":["DF","Scan"]})");
    add("BandwidthSelection[2]", true, R"({"Name":"x"})");
    add("BandwidthSelection", true, R"([{"Name":"w","MaxBandwidth":1.5},{"Name":"x"}])");
    add("BandwidthSelection[Name=w]/MaxBandwidth", false, "1.5");
}

void JsonPartsTest::placeOfAPathIsJson()
{
    QFETCH(QString, path);
    QFETCH(bool, holdsObjects);
    QFETCH(QByteArray, json);
    const TunerProperties tuner = document();
    const Paths::Target target = Paths::find(tuner, path);
    QCOMPARE(target.holdsObjects(), holdsObjects);
    QCOMPARE(toJson(target, QStringLiteral("d.xml"), JsonLayout::OneLine), json);
}

void JsonPartsTest::layoutIsThatOfDocumentsUnlessItIsOneLine()
{
    const TunerProperties tuner = document();
    const QString name = QStringLiteral("d.xml");
    const Paths::Target modes = Paths::find(tuner, QStringLiteral("StartupModes"));
    const QByteArray indented = "{\"StartupMode\": [\"DF\", \"Scan\"]}\n";
    QCOMPARE(toJson(modes, name), indented);
    QCOMPARE(toJson(modes.member, name), indented);
    QCOMPARE(toJson(modes.member.GetChild(), name), indented);
    const QByteArray oneLine = R"({"StartupMode":["DF","Scan"]})";
    QCOMPARE(toJson(modes.member, name, JsonLayout::OneLine), oneLine);
    QCOMPARE(toJson(modes.member.GetChild(), name, JsonLayout::OneLine), oneLine);
}

void JsonPartsTest::textThatJsonCannotRepresentIsRefused()
{
    TunerProperties tuner = document();
    tuner.SetValidate(false);
    tuner.Setname(QString(QChar(0xD800)));
    const Paths::Target target = Paths::find(tuner, QStringLiteral("name"));
    for (const JsonLayout layout : {JsonLayout::Indented, JsonLayout::OneLine}) {
        QString text;
        try {
            toJson(target, QStringLiteral("d.xml"), layout);
        } catch (const DocumentError &error) {
            text = error.text();
        }
        QVERIFY2(text.startsWith(QStringLiteral("d.xml: ")), qPrintable(text));
    }
}

TEST_SUITE(JsonPartsTest)
#include "tst_JsonParts.moc"

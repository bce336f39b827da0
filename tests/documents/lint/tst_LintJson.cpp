// SPDX-License-Identifier: MIT
#include <tunerdocuments/Document.h>
#include <tunerdocuments/Lint.h>

#include "Suites.h"
#include "documents/RandomChanges.h"

using namespace TunerDocuments;

/// Findings in JSON have the places of the values concerned.
class LintJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findingsAreAtTheirValuesInTheOrderOfTheText();
    void findingAboutAnObjectIsAtItsBegin();
    void valueOfAMemberThatIsNotSetIsFound();
    void alternativesWithoutAChoiceAreFoundOnceEach();
    void numberThatXmlCannotHoldIsFound();
    void columnsAreThoseOfErrors_data();
    void columnsAreThoseOfErrors();
    void problemsReceiveTheirPlaces();
    void numbersCountByTheirValues_data();
    void numbersCountByTheirValues();
    void versionThatIsNotThePresentOneIsFound_data();
    void versionThatIsNotThePresentOneIsFound();
    void wrongTextHasNoEffect();
    void findingsOfRandomDocumentsAreAtTheirPlaces();
};

namespace {

const QString fileName = QStringLiteral("a.json");

QStringList linesOf(const QByteArray &json, const QByteArray &text, const LintOptions &options = {})
{
    QStringList lines;
    lint(
        Document::fromBytes(json, fileName), text,
        [&](const Finding &finding) { lines.append(finding.text(fileName)); }, options);
    return lines;
}

QStringList linesOf(const QByteArray &json)
{
    return linesOf(json, json);
}

/// Each finding as "line:column rule".
QStringList placesOf(const QByteArray &json)
{
    QStringList places;
    lint(Document::fromBytes(json, fileName), json, [&](const Finding &finding) {
        places.append(QStringLiteral("%1:%2 %3").arg(finding.line).arg(finding.column).arg(finding.rule));
    });
    return places;
}

/// A document with this as its only value, from the beginning of the second line.
QByteArray withValue(const QByteArray &value)
{
    return "{\"TunerProperties\": {\"Version\": \"1.1\", \"Component\": [{\"Node\": [{\"ValueItem\": [{\n" + value
        + "\n}]}]}]}}";
}

} // namespace

void LintJsonTest::findingsAreAtTheirValuesInTheOrderOfTheText()
{
    const QByteArray json = R"({"TunerProperties": {
  "Version": "1.1",
  "BandwidthSelection": [
    {"Name": "a", "MaxBandwidth": 1},
    {"MaxBandwidth": -1, "Name": "a"}
  ],
  "StartupModes": {"StartupMode": ["DF", "Scan", "DF"]},
  "Component": [{"type": "t", "name": "c", "optional": true, "Node": [
    {"id": "n", "ValueItem": [{"ValueNumericInt": {"value": 11, "max": 10, "min": 0, "step": 0}}]},
    {"id": "n"}]}]
}})";
    const QString node = QStringLiteral("Component[type=t,name=c]/Node[id=n]");
    QCOMPARE(linesOf(json).join(QLatin1Char('\n')),
             QStringLiteral("a.json:5:22: BandwidthSelection[Name=a][2]/MaxBandwidth: bandwidth -1 is not a positive, "
                            "finite number [bandwidth-not-positive]\n"
                            "a.json:5:34: BandwidthSelection[Name=a][2]/Name: bandwidth 1 already has Name 'a' "
                            "[duplicate-bandwidth]\n"
                            "a.json:7:50: StartupModes/StartupMode: start-up mode 'DF' is already at position 1 "
                            "[duplicate-startup-mode]\n"
                            "a.json:9:61: %1[1]/ValueItem[1]/ValueNumericInt/value: value 11 is above max 10; use a "
                            "value from 0 to 10 [value-out-of-range]\n"
                            "a.json:9:94: %1[1]/ValueItem[1]/ValueNumericInt/step: step 0 is not a positive number "
                            "[step-not-positive]\n"
                            "a.json:10:12: %1[2]/id: node 1 already has id 'n' [duplicate-node]")
                 .arg(node));
}

void LintJsonTest::findingAboutAnObjectIsAtItsBegin()
{
    QCOMPARE(placesOf(withValue(R"("ValueInt": {"id": "i"}, "ChoiceValueItem": null)")),
             QStringList{QStringLiteral("2:13 unchosen-data")});
    QCOMPARE(placesOf("{\"TunerProperties\":\n {}}"), QStringList{QStringLiteral("2:2 reset-by-version")});
}

void LintJsonTest::valueOfAMemberThatIsNotSetIsFound()
{
    QCOMPARE(placesOf(withValue("\"ValueString\": {\"id\": \"s\", \"unset\":\n{\"value\": \"a\\u200B\"}}")),
             QStringList{QStringLiteral("3:11 unprintable-text")});
}

void LintJsonTest::alternativesWithoutAChoiceAreFoundOnceEach()
{
    const QString item = QStringLiteral("Component[1]/Node[1]/ValueItem[1]/");
    QCOMPARE(
        linesOf(withValue("\"ValueInt\": {\"id\": \"i\"},\n\"ValueFloat\": {\"id\": \"j\"}")).join(QLatin1Char('\n')),
        QStringLiteral("a.json:2:13: %1ValueInt: ValueInt has data, but nothing is chosen; set ChoiceValueItem to "
                       "'ValueInt', or remove ValueInt [unchosen-data]\n"
                       "a.json:3:15: %1ValueFloat: ValueFloat has data, but nothing is chosen; set "
                       "ChoiceValueItem to 'ValueFloat', or remove ValueFloat [unchosen-data]")
            .arg(item));
}

void LintJsonTest::numberThatXmlCannotHoldIsFound()
{
    const auto document = [](const QByteArray &delay) {
        return "{\"TunerProperties\": {\"Version\": \"1.1\", \"MaxFFPDelay\": " + delay + "}}";
    };
    const QString end =
        QStringLiteral(" is out of range for readers of XML, which take it for 0; use a number from 0 to "
                       "9223372036854775807 [number-out-of-range]");
    QCOMPARE(linesOf(document("9223372036854775808")),
             QStringList{QStringLiteral("a.json:1:55: MaxFFPDelay: MaxFFPDelay 9223372036854775808") + end});
    QCOMPARE(linesOf(document("18446744073709551615")),
             QStringList{QStringLiteral("a.json:1:55: MaxFFPDelay: MaxFFPDelay 18446744073709551615") + end});
    QCOMPARE(linesOf(document("9223372036854775807")), QStringList());
}

void LintJsonTest::columnsAreThoseOfErrors_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::newRow("nothing") << QByteArray() << 1 << 1;
    QTest::newRow("two bytes") << QByteArray("\"$schema\": \"\xC3\xA4\", ") << 1 << 17;
    QTest::newRow("a surrogate pair") << QByteArray("\"$schema\": \"\xF0\x9F\x98\x80\", ") << 1 << 18;
    QTest::newRow("a line feed") << QByteArray("\n  ") << 2 << 3;
    QTest::newRow("a carriage return, which is a blank") << QByteArray("\r") << 1 << 2;
    QTest::newRow("both") << QByteArray("\r\n\r\n") << 3 << 1;
}

void LintJsonTest::columnsAreThoseOfErrors()
{
    QFETCH(QByteArray, before);
    QFETCH(int, line);
    QFETCH(int, column);
    const QByteArray start = "{" + before;
    const int offset = line == 1 ? 1 : 0; // of the bracket
    const auto json = [&](const char *bandwidth) {
        return start + "\"TunerProperties\": {\"Version\": \"1.1\", \"BandwidthSelection\": [{\"MaxBandwidth\": "
            + bandwidth + "}]}}";
    };
    const QString place = QStringLiteral("a.json:%1:%2: ").arg(line).arg(column + offset + 78);
    const QString found = linesOf(json("-1")).value(0);
    QVERIFY2(found.startsWith(place), qPrintable(found));
    try {
        Document::fromBytes(json("true"), fileName);
        QFAIL("nothing was thrown");
    } catch (const InvalidContent &invalid) {
        QVERIFY2(invalid.text().startsWith(place), qPrintable(invalid.text()));
    }
    const QByteArray marked = "\xEF\xBB\xBF" + json("-1");
    QCOMPARE(linesOf(marked).value(0), found);
}

void LintJsonTest::problemsReceiveTheirPlaces()
{
    const QByteArray json = R"({"TunerProperties": {"Version": "1.1", "type": "SCP", "baseresource": "b",
  "Component": [
    {"type": "t", "name": "c",
     "Node": [{"id": "n"}, {}]}]}})";
    Findings findings(100);
    const Document document = Document::fromBytes(json, fileName, {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, json, findings);
    QStringList places;
    for (const Finding &problem : findings.listed())
        places.append(
            QStringLiteral("%1:%2 %3/%4").arg(problem.line).arg(problem.column).arg(problem.path, problem.member));
    const QString component = QStringLiteral("Component[type=t,name=c]");
    places.sort();
    QCOMPARE(places.join(QLatin1Char('\n')),
             QStringLiteral("3:5 %1/optional\n"
                            "4:15 %1/Node[id=n]/ValueItem\n"
                            "4:28 %1/Node[2]/ValueItem\n"
                            "4:28 %1/Node[2]/id")
                 .arg(component));
}

void LintJsonTest::numbersCountByTheirValues_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("three decimals") << QByteArray("0.257") << true;
    QTest::newRow("an exponent") << QByteArray("257e-3") << true;
    QTest::newRow("two decimals") << QByteArray("0.25") << false;
    QTest::newRow("an exponent, for two decimals") << QByteArray("25.0e-2") << false;
    QTest::newRow("zeros") << QByteArray("0.25000") << false;
}

void LintJsonTest::numbersCountByTheirValues()
{
    QFETCH(QByteArray, number);
    QFETCH(bool, isFound);
    const QStringList expected{QStringLiteral("2:36 lost-decimals")};
    QCOMPARE(placesOf(withValue("\"ValueFloat\": {\"id\": \"f\", \"value\": " + number + "}")),
             isFound ? expected : QStringList());
}

void LintJsonTest::versionThatIsNotThePresentOneIsFound_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QString>("expected");
    const QString end = QStringLiteral("readers reset the document to its defaults; use \"Version\": \"1.1\" "
                                       "[reset-by-version]");
    QTest::newRow("none") << QByteArray() << QStringLiteral("a.json:1:21: the version is missing; ") + end;
    QTest::newRow("older") << QByteArray("\"Version\": \"1.0\"")
                           << QStringLiteral("a.json:1:33: version '1.0' is older than 1.1; ") + end;
    QTest::newRow("not a number") << QByteArray("\"Version\": \"x\"")
                                  << QStringLiteral("a.json:1:33: version 'x' is older than 1.1; ") + end;
    QTest::newRow("present") << QByteArray("\"Version\": \"1.1\"") << QString();
    QTest::newRow("newer") << QByteArray("\"Version\": \"1.2\"")
                           << QStringLiteral("a.json:1:33: version '1.2' is unknown; the newest is 1.1; use '1.1' "
                                             "[unknown-version]");
}

void LintJsonTest::versionThatIsNotThePresentOneIsFound()
{
    QFETCH(QByteArray, version);
    QFETCH(QString, expected);
    const QByteArray json = "{\"TunerProperties\": {" + version + "}}";
    QCOMPARE(linesOf(json).join(QLatin1Char('\n')), expected);
    LintOptions counting;
    counting.setMost(0);
    QCOMPARE(lint(Document::fromBytes(json, fileName), json, {}, counting), qint64(expected.isEmpty() ? 0 : 1));
}

void LintJsonTest::wrongTextHasNoEffect()
{
    const QByteArray json = withValue(R"("ValueNumericInt": {"value": 11, "max": 10})");
    const QString path =
        QStringLiteral("Component[1]/Node[1]/ValueItem[1]/ValueNumericInt/value: value 11 is above max 10 "
                       "[value-out-of-range]");
    for (const char *text : {"", "{", "<TunerProperties/>"})
        QCOMPARE(linesOf(json, text), QStringList{QStringLiteral("a.json: ") + path});
    LintOptions options;
    options.setDisabled({QStringLiteral("reset-by-version")});
    for (const char *text : {"[]", "{}", "0"})
        QCOMPARE(linesOf(json, text, options), QStringList{QStringLiteral("a.json: ") + path});
    QCOMPARE(linesOf(json, "{\"TunerProperties\": {\"Component\": 1}}", options),
             QStringList{QStringLiteral("a.json:1:21: ") + path});
}

void LintJsonTest::findingsOfRandomDocumentsAreAtTheirPlaces()
{
    int examined = 0;
    for (int seed = 0; seed < 500; ++seed) {
        QByteArray json;
        try {
            json = Document(randomDocument(seed, seed % 7)).toBytes(Form::Json, fileName);
        } catch (const DocumentError &) {
            continue; // with half of a surrogate pair
        }
        const Document document = Document::fromBytes(json, fileName);
        const QStringList lines = QString::fromUtf8(json).split(QLatin1Char('\n'));
        int lastLine = 0;
        qint64 count = 0;
        lint(document, json, [&](const Finding &finding) {
            ++count;
            QVERIFY2(finding.line >= lastLine && finding.line > 0, qPrintable(finding.text(fileName)));
            lastLine = finding.line;
            // The key is before the value, except for entries of lists and missing members.
            const QString before = lines[finding.line - 1].left(finding.column - 1);
            const QString key = QLatin1Char('"') + finding.member + QStringLiteral("\": ");
            if (finding.rule == QLatin1String("duplicate-startup-mode")
                || finding.rule == QLatin1String("duplicate-value"))
                return;
            QVERIFY2(before.endsWith(key), qPrintable(finding.text(fileName) + QStringLiteral(" after ") + before));
            ++examined;
        });
        LintOptions counting;
        counting.setMost(0);
        QCOMPARE(lint(document, json, {}, counting), count);
    }
    QVERIFY2(examined > 500, qPrintable(QString::number(examined)));
}

TEST_SUITE(LintJsonTest)
#include "tst_LintJson.moc"

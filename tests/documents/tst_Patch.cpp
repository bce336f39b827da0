// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Patch.h>

#include "Rows.h"
#include "documents/JsonOf.h"
#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Changes make one document from another.
class PatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patchMakesTheSecondDocumentFromTheFirst();
    void patchOfDocumentsThatJsonCannotCarryMakesTheSecondFromTheFirst();
    void everyStateOfAMemberIsCarried_data();
    void everyStateOfAMemberIsCarried();
    void otherChangesOfADocumentStay();
    void changesThatDoNotFitAreRefusedAsAWhole_data();
    void changesThatDoNotFitAreRefusedAsAWhole();
    void linesThatAreNotChangesAreRefused_data();
    void linesThatAreNotChangesAreRefused();
    void patchKeepsCopiesOfTheDocuments();
    void patchKeepsTheValidateFlag();
    void versionThatWasLoadedIsNotChanged();
    void failureHasItsWholeTextWhateverCharactersItContains();
    void manyChangesTakeLittleTime();
};

namespace {

using Direction = Patch::Direction;

const QString file = QStringLiteral("changes");

QByteArray linesOf(const TunerProperties &first, const TunerProperties &second)
{
    QByteArray lines;
    findDifferences(first, second, [&](const Difference &difference) { lines += toJson(difference, file) + '\n'; });
    return lines;
}

/// A random document, and a second one: its neighbor, one with a few changes, or one with many.
QPair<TunerProperties, TunerProperties> randomPair(int seed)
{
    const TunerProperties first = randomDocument(seed, seed % 5);
    if (seed % 4 == 0)
        return {first, randomDocument(seed + 1, seed % 3)};
    TunerProperties second = first;
    second.SetValidate(false);
    RandomChanges random{quint32(seed) + 77};
    for (int i = 1 + (seed % 4 == 1 ? seed % 3 : seed % 40); i > 0; --i)
        random.change(second);
    return {first, second};
}

/// What the failure says; null if there is none.
QString failureOf(const Patch &patch, TunerProperties &document)
{
    try {
        patch.apply(document);
    } catch (const PatchFailure &failure) {
        return failure.text();
    }
    return QString();
}

} // namespace

void PatchTest::patchMakesTheSecondDocumentFromTheFirst()
{
    int different = 0;
    for (int seed = 0; seed < 10000; ++seed) {
        const auto [first, second] = randomPair(seed);
        const QByteArray firstJson = jsonOf(first);
        const QByteArray secondJson = jsonOf(second);
        if (firstJson.isEmpty() || secondJson.isEmpty())
            continue; // the next test has them
        const QByteArray lines = linesOf(first, second);
        const Patch patch = Patch::fromJson(lines, file);
        TunerProperties patched = first;
        const QString failure = failureOf(patch, patched);
        QVERIFY2(failure.isNull(), qPrintable(QString::number(seed) + QStringLiteral(": ") + failure));
        QVERIFY2(jsonOf(patched) == secondJson, (QByteArray::number(seed) + ":\n" + lines).constData());
        QCOMPARE(patch.isEmpty(), firstJson == secondJson);
        different += firstJson == secondJson ? 0 : 1;
        patch.apply(patched, Direction::Backward);
        QVERIFY2(jsonOf(patched) == firstJson, (QByteArray::number(seed) + " backward:\n" + lines).constData());
        if (seed % 10 == 0) {
            Patch::between(first, second).apply(patched);
            QVERIFY2(jsonOf(patched) == secondJson, (QByteArray::number(seed) + " in memory").constData());
        }
    }
    QVERIFY2(different > 9000, QByteArray::number(different).constData());
}

void PatchTest::patchOfDocumentsThatJsonCannotCarryMakesTheSecondFromTheFirst()
{
    int others = 0;
    for (int seed = 0; seed < 1000; ++seed) {
        auto [first, second] = randomPair(seed);
        const QString text = QStringLiteral("x") + QChar(0xD800 + seed % 3);
        TunerProperties &one = seed % 2 ? first : second;
        one.SetparentBaseResource(text);
        if (!one.GetComponent().isEmpty())
            one.GetComponent().first().SetdisplayName(text + QChar(0xDFFF));
        second.SetValidate(false);
        QVERIFY(jsonOf(one).isEmpty());
        TunerProperties patched = first;
        const Patch patch = Patch::between(first, second);
        patch.apply(patched);
        QVERIFY(findDifferences(patched, second).isEmpty());
        QVERIFY2(snapshotOf(patched) == snapshotOf(second), (QByteArray::number(seed)).constData());
        patch.apply(patched, Direction::Backward);
        QVERIFY(findDifferences(patched, first).isEmpty());
        QVERIFY_THROWS_EXCEPTION(DocumentError, linesOf(first, second));
        ++others;
    }
    QCOMPARE(others, 1000);
}

void PatchTest::everyStateOfAMemberIsCarried_data()
{
    const Rows<QByteArray, QByteArray, QByteArray> row("first", "second", "lines");
    row("a number", R"("quantity": 1)", R"("quantity": 2)",
        R"({"change":"changed","path":"quantity","before":1,"after":2})");
    row("set to the default", R"("type": "SCP")", R"("type": "SCP", "quantity": 1)",
        R"({"change":"changed","path":"quantity","after":1})");
    row("a value that is not set", R"("quantity": 3)", R"("unset": {"quantity": 4})",
        R"({"change":"changed","path":"quantity","before":3,"unset":{"after":4}})");
    row("null and empty", R"("name": null)", R"("name": "")",
        R"({"change":"changed","path":"name","before":null,"after":""})");
    row("signs of zero", R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": 0.0}])",
        R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": -0.0}])",
        R"({"change":"changed","path":"BandwidthSelection[Name=x]/MaxBandwidth","before":0.0,"after":-0.0})");
    row("not a number", R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "NaN"}])",
        R"("BandwidthSelection": [{"Name": "x", "MaxBandwidth": "-Infinity"}])",
        R"({"change":"changed","path":"BandwidthSelection[Name=x]/MaxBandwidth","before":"NaN","after":"-Infinity"})");
    row("modes", R"("StartupModes": {"StartupMode": ["Scan"]})",
        R"("StartupModes": {"StartupMode": ["Scan", 44, null]})",
        R"({"change":"changed","path":"StartupModes/StartupMode","before":["Scan"],"after":["Scan",44,null]})");
    row("an object that comes", R"("quantity": 1)", R"("quantity": 1, "StartupModes": {"StartupMode": ["DF"]})",
        R"({"change":"added","path":"StartupModes","after":{"StartupMode":["DF"]}})");
    row("an empty object that goes", R"("quantity": 1, "StartupModes": {})", R"("quantity": 1)",
        R"({"change":"removed","path":"StartupModes","before":{}})");
    row("an object that becomes empty", R"("StartupModes": {"StartupMode": ["DF"]})", R"("StartupModes": {})",
        R"({"change":"changed","path":"StartupModes","before":{"StartupMode":["DF"]},"after":{}})");
    row("an object that is set no more", R"("StartupModes": {"StartupMode": ["DF"]})",
        R"("unset": {"StartupModes": {"StartupMode": ["DF"]}})",
        R"({"change":"changed","path":"StartupModes","set":{"before":true,"after":false}})");
    row("a list that is set no more", R"("Component": [{}])", R"("unset": {"Component": [{}]})",
        R"({"change":"changed","path":"Component","set":{"before":true,"after":false}})");
    row("items that come and go", R"("BandwidthSelection": [{"Name": "a"}, {"Name": "b"}])",
        R"("BandwidthSelection": [{"Name": "b"}, {"Name": "c", "MaxBandwidth": 2.5}])",
        R"({"change":"removed","path":"BandwidthSelection[Name=a]","from":1,"before":{"Name":"a"}}
{"change":"added","path":"BandwidthSelection[Name=c]","to":2,"after":{"Name":"c","MaxBandwidth":2.5}})");
    row("an empty list that stays set", R"("BandwidthSelection": [{"Name": "a"}])", R"("BandwidthSelection": [])",
        R"({"change":"removed","path":"BandwidthSelection[Name=a]","from":1,"before":{"Name":"a"},"listIsSet":true})");
    row("an item of a list that is not set", R"("quantity": 1)",
        R"("quantity": 1, "unset": {"BandwidthSelection": [{"Name": "a"}]})",
        R"({"change":"added","path":"BandwidthSelection[Name=a]","to":1,"after":{"Name":"a"},"listIsSet":false})");
    row("moved", R"("BandwidthSelection": [{"Name": "a"}, {"Name": "b"}, {"Name": "c"}])",
        R"("BandwidthSelection": [{"Name": "b"}, {"Name": "c"}, {"Name": "a"}])",
        R"({"change":"moved","path":"BandwidthSelection[Name=a]","from":1,"to":3})");
    row("items without identity", R"("Component": [{"name": "a"}, {"name": "b"}])",
        R"("Component": [{"name": "b"}, {"name": "a", "optional": true}])",
        R"({"change":"changed","path":"Component[1]","newPath":"Component[2]","before":1,"after":2})");
    row("renamed", R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.5}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 2.5}])",
        R"({"change":"renamed","path":"BandwidthSelection[Name=a]","newPath":"BandwidthSelection[Name=b]",)"
        R"("before":{"Name":"a"},"after":{"Name":"b"}})");
    const auto item = [](const QByteArray &members) {
        return R"("Component": [{"type": "t", "name": "c", "Node": [{"id": "n", "ValueItem": [{)" + members + "}]}]}]";
    };
    const QByteArray at = R"("path":"Component[type=t,name=c]/Node[id=n]/ValueItem[)";
    row("64 bits",
        item(R"("ChoiceValueItem": "ValueInt64", "ValueInt64": {"id": "i", "value": "9223372036854775807"})"),
        item(R"("ChoiceValueItem": "ValueInt64", "ValueInt64": {"id": "i", "value": "-9223372036854775808"})"),
        R"({"change":"changed",)" + at
            + R"(id=i]/ValueInt64/value","before":"9223372036854775807","after":"-9223372036854775808"})");
    row("another choice, and what is not chosen",
        item(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1})"),
        item(
            R"("ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "i", "value": 0.1}, "ValueInt": {"id": "i", "value": 2})"),
        R"({"change":"changed",)" + at
            + R"(id=i]/ChoiceValueItem","before":"ValueInt","after":"ValueFloat"})"
              "\n"
              R"({"change":"added",)"
            + at
            + R"(id=i]/ValueFloat","after":{"id":"i","value":0.1}})"
              "\n"
              R"({"change":"changed",)"
            + at + R"(id=i]/ValueInt/value","before":1,"after":2})");
    row("nothing chosen", item(""), item(R"("ChoiceValueItem": 77)"),
        R"({"change":"changed",)" + at + R"(1]/ChoiceValueItem","after":77})");
    row("a renamed value", item(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1})"),
        item(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": "j", "value": 1})"),
        R"({"change":"renamed",)" + at
            + R"(id=i]","newPath":"Component[type=t,name=c]/Node[id=n]/ValueItem[id=j]",)"
              R"("before":{"id":"i"},"after":{"id":"j"}})");
}

void PatchTest::everyStateOfAMemberIsCarried()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QByteArray, lines);
    const TunerProperties one = documentOf(first);
    const TunerProperties other = documentOf(second);
    if (QByteArray(QTest::currentDataTag()) != "items without identity")
        QCOMPARE(QString::fromUtf8(linesOf(one, other)), QString::fromUtf8(lines + '\n'));
    TunerProperties patched = one;
    const Patch patch = Patch::fromJson(linesOf(one, other), file);
    patch.apply(patched);
    QCOMPARE(jsonOf(patched), jsonOf(other));
    patch.apply(patched, Direction::Backward);
    QCOMPARE(jsonOf(patched), jsonOf(one));
}

// Paths lead to items by their identity, so other items may come and go.
void PatchTest::otherChangesOfADocumentStay()
{
    const Patch patch =
        Patch::fromJson(linesOf(documentOf(R"("Component": [{"type": "t", "name": "c", "optional": true}])"),
                                documentOf(R"("Component": [{"type": "t", "name": "c", "optional": false}])")),
                        file);
    TunerProperties document = documentOf(
        R"("quantity": 7, "Component": [{"type": "t", "name": "b"}, {"type": "t", "name": "c", "optional": true}])");
    patch.apply(document);
    QCOMPARE(
        jsonOf(document),
        jsonOf(documentOf(
            R"("quantity": 7, "Component": [{"type": "t", "name": "b"}, {"type": "t", "name": "c", "optional": false}])")));
}

void PatchTest::changesThatDoNotFitAreRefusedAsAWhole_data()
{
    const Rows<QByteArray, QString> row("line", "failure");
    row("another value", R"({"change":"changed","path":"quantity","before":1,"after":2})",
        "quantity: expected 1, but it is 5");
    row("another flag", R"({"change":"changed","path":"quantity","unset":{"before":5},"after":2})",
        "quantity: expected 5 (not set), but it is 5");
    row("a value of another type", R"({"change":"changed","path":"quantity","before":5,"after":"six"})",
        "quantity: the string 'six' is not a whole number");
    row("an unknown member", R"({"change":"changed","path":"quantiy","before":5,"after":6})",
        "quantiy: unknown member 'quantiy' of TunerProperties; did you mean 'quantity'?");
    row("an unknown item", R"({"change":"changed","path":"BandwidthSelection[Name=z]/Name","before":"z","after":"y"})",
        "BandwidthSelection[Name=z]: there is no such BandwidthSelection; there are BandwidthSelection[Name=a], "
        "BandwidthSelection[Name=b]");
    row("below a value", R"({"change":"changed","path":"quantity/value","after":1})",
        "quantity: is a value and has no members");
    row("below an object without data",
        R"({"change":"changed","path":"Component[1]/Node[1]/ValueItem[1]/ValueFloat/value","after":1.0})",
        "Component[1]/Node[1]/ValueItem[1]/ValueFloat: has no data");
    row("an item with another content",
        R"({"change":"removed","path":"BandwidthSelection[Name=a]","from":1,"before":{"Name":"a","MaxBandwidth":3.0}})",
        "BandwidthSelection[Name=a]: differs from what the changes expect: ~ MaxBandwidth: 3 -> 2");
    row("removed and changed",
        R"({"change":"removed","path":"BandwidthSelection[Name=a]","before":{"Name":"a","MaxBandwidth":2.0}}
{"change":"changed","path":"BandwidthSelection[Name=a]/MaxBandwidth","before":2.0,"after":1.0})",
        "BandwidthSelection[Name=a]: is changed twice");
    row("changed twice", R"({"change":"changed","path":"quantity","before":5,"after":6}
{"change":"changed","path":"quantity","before":5,"after":7})",
        "quantity: is changed twice");
    row("moved twice", R"({"change":"moved","path":"BandwidthSelection[Name=a]","from":1,"to":2}
{"change":"moved","path":"BandwidthSelection[Name=a]","from":1,"to":1})",
        "BandwidthSelection[Name=a]: is changed twice");
    row("two items at one place", R"({"change":"moved","path":"BandwidthSelection[Name=a]","from":1,"to":2}
{"change":"moved","path":"BandwidthSelection[Name=b]","from":2,"to":2})",
        "BandwidthSelection[Name=b]: two items cannot be at 2");
    row("beyond the end", R"({"change":"added","path":"BandwidthSelection[Name=c]","to":4,"after":{"Name":"c"}})",
        "BandwidthSelection[Name=c]: cannot be at 4, since there will be only 3");
    row("without a position", R"({"change":"added","path":"BandwidthSelection[Name=c]","after":{"Name":"c"}})",
        "BandwidthSelection[Name=c]: the position is missing");
    row("an object that exists", R"({"change":"added","path":"Component[1]/Node[1]/ValueItem[1]/ValueInt","after":{}})",
        "Component[1]/Node[1]/ValueItem[1]/ValueInt: exists already");
    row("an object that does not exist", R"({"change":"removed","path":"StartupModes","before":{}})",
        "StartupModes: is not set");
    row("a value that is removed", R"({"change":"removed","path":"quantity","before":{}})",
        "quantity: is a value; it can be changed, but neither added nor removed");
    row("a list without a selection", R"({"change":"removed","path":"BandwidthSelection","before":{}})",
        "BandwidthSelection: is not an item of a list");
    row("a list as a value", R"({"change":"changed","path":"BandwidthSelection","after":{}})",
        "BandwidthSelection: is a list; only its items and its flag change");
    row("the flag of a value", R"({"change":"changed","path":"quantity","set":{"before":true,"after":false}})",
        "quantity: is neither an object nor a list, so it has no flag alone");
    row("another flag of a list", R"({"change":"changed","path":"Component","set":{"before":false,"after":true}})",
        "Component: expected it not to be set, but it is");
    row("another name",
        R"({"change":"renamed","path":"BandwidthSelection[1]","before":{"Name":"x"},"after":{"Name":"y"}})",
        "BandwidthSelection[1]/Name: expected \"x\", but it is \"a\"");
    row("replaced and changed inside",
        R"({"change":"changed","path":"Component[1]/Node[1]/ValueItem[1]/ValueInt","before":{"value":1},"after":{}}
{"change":"changed","path":"Component[1]/Node[1]/ValueItem[1]/ValueInt/value","before":1,"after":2})",
        "Component[1]/Node[1]/ValueItem[1]/ValueInt: is changed twice");
    row("an empty path", R"({"change":"changed","path":"","after":1})",
        "expected a member name at character 1 of the path");
    row("a NUL character", R"({"change":"changed","path":"\u0000","after":1})",
        R"(\u0000: unknown member '\u0000' of TunerProperties; expected name, type, baseresource, connectableResources, )"
        "quantity, parentBaseResource, hwProcessing, StartupModes, BandwidthSelection, MaxFFPDelay, HRPANSupported or "
        "Component"); // the former finding nul_in_path
    row("an object with an unknown member",
        R"({"change":"added","path":"BandwidthSelection[Name=c]","to":1,"after":{"name":"c"}})",
        "BandwidthSelection[Name=c]: unknown member 'name' of BandwidthSelection; did you mean 'Name'?");
}

void PatchTest::changesThatDoNotFitAreRefusedAsAWhole()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, failure);
    TunerProperties document = documentOf(
        R"("name": "x", "quantity": 5, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}, {"Name": "b"}],
           "Component": [{"Node": [{"ValueItem": [{"ChoiceValueItem": "ValueInt", "ValueInt": {"value": 1}}]}]}])");
    const QByteArray before = jsonOf(document);
    const QByteArray first = R"({"change":"changed","path":"name","before":"x","after":"y"})"
                             "\n";
    QCOMPARE(failureOf(Patch::fromJson(first + line, file), document), failure);
    QCOMPARE(jsonOf(document), before);
    QCOMPARE(failureOf(Patch::fromJson(first, file), document), QString());
    QCOMPARE(document.Getname(), QStringLiteral("y"));
}

void PatchTest::linesThatAreNotChangesAreRefused_data()
{
    const Rows<QByteArray, QString> row("line", "failure");
    row("not JSON", "~ quantity: 1 -> 2",
        "changes:3:1: syntax error while parsing value - invalid literal; last read: '~'");
    row("not an object", "[1]", "changes: line 3: '[1]' is not an object");
    row("no change", "{}", "changes: line 3: the member 'change' is missing");
    row("an unknown change", R"({"change":"replaced"})",
        "changes: line 3: unknown change 'replaced'; expected removed, added, changed, moved or renamed");
    row("no path", R"({"change":"changed"})", "changes: line 3: the member 'path' is missing");
    row("a path that is not a text", R"({"change":"changed","path":1})", "changes: line 3: path: '1' is not a string");
    row("no position", R"({"change":"moved","path":"Component[1]","from":1})",
        "changes: line 3: the member 'to' is missing");
    row("a position of zero", R"({"change":"moved","path":"Component[1]","from":0,"to":1})",
        "changes: line 3: from: '0' is not a position, counted from 1");
    row("a position beyond all", R"({"change":"moved","path":"Component[1]","from":1,"to":2147483648})",
        "changes: line 3: to: '2147483648' is not a position, counted from 1");
    row("an unknown member", R"({"change":"moved","path":"Component[1]","from":1,"to":1,"before":1})",
        "changes: line 3: unknown member 'before'; expected change, path, newPath, from or to");
    row("half a flag", R"({"change":"changed","path":"Component","set":{"before":true}})",
        "changes: line 3: set: '{\"before\":true}' is not an object with the members before and after, which are true "
        "or false");
    row("an unset that is not an object", R"({"change":"changed","path":"name","unset":1})",
        "changes: line 3: unset: '1' is not an object");
    row("unset of something else", R"({"change":"changed","path":"name","unset":{"name":1}})",
        "changes: line 3: unset: unknown member 'name'; expected before or after");
    row("a flag that is a number", R"({"change":"removed","path":"Component[1]","before":{},"listIsSet":1})",
        "changes: line 3: listIsSet: '1' is not true or false");
}

void PatchTest::linesThatAreNotChangesAreRefused()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, failure);
    QString found;
    try {
        Patch::fromJson(R"({"change":"changed","path":"name","after":"y"})"
                        "\n\n"
                            + line,
                        file);
    } catch (const DocumentError &error) {
        found = error.text();
    }
    QCOMPARE(found, failure);
}

void PatchTest::patchKeepsCopiesOfTheDocuments()
{
    TunerProperties document = documentOf(R"("quantity": 1, "Component": [{"type": "t"}])");
    Patch patch;
    QVERIFY(patch.isEmpty());
    {
        TunerProperties second = documentOf(R"("quantity": 2, "Component": [{"type": "t"}, {"type": "u"}])");
        patch = Patch::between(document, second);
        second.Setquantity(9);
        second.ResetComponent();
    }
    QVERIFY(!patch.isEmpty());
    patch.apply(document);
    QCOMPARE(jsonOf(document), jsonOf(documentOf(R"("quantity": 2, "Component": [{"type": "t"}, {"type": "u"}])")));
    QCOMPARE(failureOf(patch, document), QStringLiteral("quantity: expected 1, but it is 2"));
}

void PatchTest::patchKeepsTheValidateFlag()
{
    const Patch patch = Patch::fromJson(R"({"change":"changed","path":"baseresource","after":null})", file);
    for (const bool validate : {true, false}) {
        TunerProperties document;
        document.SetValidate(validate);
        patch.apply(document);
        QCOMPARE(document.GetValidate(), validate);
        QVERIFY(document.IsbaseresourceSet());
    }
}

// The version is not a member. A document without one was reset when it was read, so its quantity is set.
void PatchTest::versionThatWasLoadedIsNotChanged()
{
    TunerProperties older;
    older.SetValidate(false);
    QVERIFY(older.SetXmlString(QStringLiteral("<TunerProperties Version=\"1.0\" name=\"older\"/>"), false));
    const TunerProperties other = documentOf(R"("name": "other")");
    QCOMPARE(QString::fromUtf8(linesOf(older, other)),
             QStringLiteral(R"({"change":"changed","path":"name","before":"older","after":"other"}
{"change":"changed","path":"quantity","before":1}
)"));
    QCOMPARE(older.GetInitialVersionLoaded(), QStringLiteral("1.0"));
    Patch::fromJson(linesOf(older, other), file).apply(older);
    QCOMPARE(jsonOf(older), jsonOf(other));
    QCOMPARE(older.GetInitialVersionLoaded(), QStringLiteral("1.0"));
}

void PatchTest::failureHasItsWholeTextWhateverCharactersItContains()
{
    const QString path = QString(QChar(0)) + QStringLiteral("\n\u202E");
    const PatchFailure failure(path, QStringLiteral("reason"));
    QCOMPARE(failure.path(), path);
    QCOMPARE(failure.text(), path + QStringLiteral(": reason"));
    QCOMPARE(QString::fromUtf8(failure.what()), QStringLiteral("\\u0000\\n\\u202e: reason"));
}

// Looking for the places of 10,000 items one by one would be 100 million comparisons, and exceed the timeout of the
// test.
void PatchTest::manyChangesTakeLittleTime()
{
    constexpr int count = 10000;
    TunerProperties first;
    TunerProperties second;
    first.SetValidate(false);
    second.SetValidate(false);
    for (int i = 0; i < count; ++i) {
        JobXml::BandwidthSelection bandwidth;
        bandwidth.SetName(QString::number(i));
        bandwidth.SetMaxBandwidth(i);
        first.AppendBandwidthSelection(bandwidth);
        bandwidth.SetMaxBandwidth(i + 1);
        if (i % 5 == 0)
            bandwidth.SetName(QStringLiteral("new"));
        if (i % 7 != 0)
            second.AppendBandwidthSelection(bandwidth);
    }
    QVector<JobXml::BandwidthSelection> &items = second.GetBandwidthSelection();
    std::reverse(items.begin(), items.end());
    TunerProperties patched = first;
    Patch::fromJson(linesOf(first, second), file).apply(patched);
    QVERIFY(findDifferences(patched, second).isEmpty());
}

TEST_SUITE(PatchTest)
#include "tst_Patch.moc"

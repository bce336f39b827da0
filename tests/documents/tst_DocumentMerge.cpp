// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Merge.h>

#include "Rows.h"
#include "documents/JsonOf.h"
#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Two documents that were made from the same one become one.
class DocumentMergeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneSideWithoutChangesLeavesTheOther();
    void sameChangesOnBothSidesAreOneChange();
    void sidesCanBeExchangedUpToConflicts();
    void changesOfBothSidesAreMade_data();
    void changesOfBothSidesAreMade();
    void contradictionsAreConflicts_data();
    void contradictionsAreConflicts();
    void mergingChangesNoSide();
    void resultHasTheValidateFlagOfOurs();
    void manyItemsTakeLittleTime();
};

namespace {

/// Also for documents that JSON cannot carry.
bool areSame(const TunerProperties &first, const TunerProperties &second)
{
    return findDifferences(first, second).isEmpty() && snapshotOf(first) == snapshotOf(second);
}

TunerProperties changed(const TunerProperties &base, quint32 seed, int changes)
{
    TunerProperties document = base;
    document.SetValidate(false);
    RandomChanges random{seed};
    while (changes-- > 0)
        random.change(document);
    return document;
}

/// The JSON with the entries of all arrays sorted.
QByteArray sortedText(const Json &json)
{
    if (!json.isList() && !json.isObject())
        return JsonText::compact(json);
    QByteArrayList parts;
    if (json.isList()) {
        for (const Json &entry : json.items())
            parts.append(sortedText(entry));
        std::sort(parts.begin(), parts.end());
    } else {
        for (const Json::Member &member : json.members())
            parts.append(member.key + ':' + sortedText(member.value));
    }
    return '(' + parts.join(',') + ')';
}

/// Null if JSON cannot carry the document.
QByteArray sortedText(const TunerProperties &document)
{
    try {
        return sortedText(JsonForm::ofObject(document));
    } catch (const JsonFailure &) {
        return QByteArray();
    }
}

QString conflictsOf(const MergeResult &result)
{
    QStringList texts;
    for (const MergeConflict &conflict : result.conflicts)
        texts.append(conflict.text());
    return texts.join(QLatin1Char('\n'));
}

} // namespace

void DocumentMergeTest::oneSideWithoutChangesLeavesTheOther()
{
    int different = 0;
    for (int seed = 0; seed < 3000; ++seed) {
        const TunerProperties base = randomDocument(seed, seed % 5);
        const TunerProperties other =
            seed % 8 == 0 ? randomDocument(seed + 1) : changed(base, quint32(seed) + 5, 1 + seed % 12);
        const QByteArray name = QByteArray::number(seed);
        const MergeResult ours = merge(base, other, base);
        QVERIFY2(ours.conflicts.isEmpty() && areSame(ours.document, other), (name + " ours").constData());
        const MergeResult theirs = merge(base, base, other);
        QVERIFY2(theirs.conflicts.isEmpty(), (name + " theirs: " + conflictsOf(theirs).toUtf8()).constData());
        QVERIFY2(areSame(theirs.document, other), (name + " theirs").constData());
        different += areSame(base, other) ? 0 : 1;
    }
    QVERIFY2(different > 2500, (QByteArray::number(different)).constData());
}

void DocumentMergeTest::sameChangesOnBothSidesAreOneChange()
{
    for (int seed = 0; seed < 2000; ++seed) {
        const TunerProperties base = randomDocument(seed, seed % 5);
        const TunerProperties both = changed(base, quint32(seed) + 9, 1 + seed % 12);
        const MergeResult result = merge(base, both, both);
        QVERIFY2(result.conflicts.isEmpty() && areSame(result.document, both), (QByteArray::number(seed)).constData());
    }
}

// Only the order of items that both sides have added at the same place depends on which side is ours.
void DocumentMergeTest::sidesCanBeExchangedUpToConflicts()
{
    int merged = 0;
    int conflicting = 0;
    int sameOrder = 0;
    for (int seed = 0; seed < 4000; ++seed) {
        const TunerProperties base = randomDocument(seed, seed % 3);
        const TunerProperties ours = changed(base, quint32(seed) * 2 + 1, 1 + seed % 3);
        const TunerProperties theirs = changed(base, quint32(seed) * 2 + 2, 1 + seed % 2);
        const MergeResult result = merge(base, ours, theirs);
        const MergeResult exchanged = merge(base, theirs, ours);
        QVERIFY2(
            result.conflicts.isEmpty() == exchanged.conflicts.isEmpty(),
            (QByteArray::number(seed) + ": " + conflictsOf(result).toUtf8() + " / " + conflictsOf(exchanged).toUtf8())
                .constData());
        if (!result.conflicts.isEmpty()) {
            ++conflicting;
            continue;
        }
        QVERIFY2(sortedText(result.document) == sortedText(exchanged.document), (QByteArray::number(seed)).constData());
        sameOrder += areSame(result.document, exchanged.document) ? 1 : 0;
        ++merged;
    }
    QVERIFY2(merged > 2000 && conflicting > 50,
             (QByteArray::number(merged) + ' ' + QByteArray::number(conflicting)).constData());
    QVERIFY2(sameOrder > merged * 9 / 10, (QByteArray::number(sameOrder)).constData());
}

namespace {

QByteArray bandwidths(const QByteArray &names)
{
    QByteArray items;
    for (const char name : names)
        items += QByteArray(items.isEmpty() ? "" : ", ") + R"({"Name": ")" + name + "\"}";
    return R"("BandwidthSelection": [)" + items + "]";
}

QByteArray item(const QByteArray &members)
{
    return R"("Component": [{"type": "t", "name": "c", "Node": [{"id": "n", "ValueItem": [{)" + members + "}]}]}]";
}

QByteArray intItem(const char *id, const char *value)
{
    return item(R"("ChoiceValueItem": "ValueInt", "ValueInt": {"id": ")" + QByteArray(id) + R"(", "value": )" + value
                + "}");
}

} // namespace

void DocumentMergeTest::changesOfBothSidesAreMade_data()
{
    const Rows<QByteArray, QByteArray, QByteArray, QByteArray> row("base", "ours", "theirs", "merged");
    row("different values", R"("name": "a", "quantity": 1)", R"("name": "b", "quantity": 1)",
        R"("name": "a", "quantity": 2)", R"("name": "b", "quantity": 2)");
    row("a flag and a value", R"("name": "a", "quantity": 1)", R"("name": "a")", R"("name": "b", "quantity": 1)",
        R"("name": "b")");
    row("the same value", R"("quantity": 1)", R"("quantity": 2)", R"("quantity": 2)", R"("quantity": 2)");
    row("an object that comes", R"("quantity": 1)", R"("quantity": 2)",
        R"("quantity": 1, "StartupModes": {"StartupMode": ["DF"]})",
        R"("quantity": 2, "StartupModes": {"StartupMode": ["DF"]})");
    row("an object that goes", R"("quantity": 1, "StartupModes": {"StartupMode": ["DF"]})",
        R"("quantity": 2, "StartupModes": {"StartupMode": ["DF"]})", R"("quantity": 1)", R"("quantity": 2)");
    row("items at different places", bandwidths("ab"), bandwidths("xab"), bandwidths("aby"), bandwidths("xaby"));
    row("items at the same place", bandwidths("ab"), bandwidths("axyb"), bandwidths("azb"), bandwidths("axyzb"));
    row("items at the end", bandwidths("a"), bandwidths("ax"), bandwidths("ay"), bandwidths("axy"));
    row("the same item", bandwidths("a"), bandwidths("axy"), bandwidths("aby"), bandwidths("axby"));
    row("items that go", bandwidths("abcd"), bandwidths("acd"), bandwidths("abc"), bandwidths("ac"));
    row("all items that go", bandwidths("ab"), bandwidths("a"), bandwidths("b"), R"("type": null)");
    row("an item and its neighbor", bandwidths("abc"), bandwidths("ac"), bandwidths("abxc"), bandwidths("axc"));
    row("moved by theirs", bandwidths("abcd"), bandwidths("abxcd"), bandwidths("dabc"), bandwidths("dabxc"));
    row("moved by ours", bandwidths("abcd"), bandwidths("dabc"), bandwidths("abxcd"), bandwidths("dabxc"));
    row("moved alike", bandwidths("abcd"), bandwidths("dabc"), bandwidths("dabcx"), bandwidths("dabcx"));
    row("different items moved", bandwidths("abcdef"), bandwidths("bacdef"), bandwidths("abcdfe"),
        bandwidths("bacdfe"));
    row("renamed and changed", R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 2.0}])");
    row("added by both, in parts", R"("quantity": 1)", R"("quantity": 1, "BandwidthSelection": [{"Name": "a"}])",
        R"("quantity": 1, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])",
        R"("quantity": 1, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])");
    row("another kind of value", intItem("i", "1") + R"(, "quantity": 1)", intItem("i", "1") + R"(, "quantity": 2)",
        item(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "i", "value": "x"})") + R"(, "quantity": 1)",
        item(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "i", "value": "x"})") + R"(, "quantity": 2)");
    row("values deep inside", intItem("i", "1"), intItem("i", "2"),
        intItem("i", "1").replace(R"("id": "n")", R"("id": "m")"),
        intItem("i", "2").replace(R"("id": "n")", R"("id": "m")"));
}

void DocumentMergeTest::changesOfBothSidesAreMade()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, ours);
    QFETCH(QByteArray, theirs);
    QFETCH(QByteArray, merged);
    const MergeResult result = merge(documentOf(base), documentOf(ours), documentOf(theirs));
    QCOMPARE(conflictsOf(result), QString());
    if (QByteArray(QTest::currentDataTag()) == "all items that go")
        QVERIFY(!result.document.IsBandwidthSelectionSet());
    else
        QCOMPARE(QString::fromUtf8(JsonForm::compose(result.document)),
                 QString::fromUtf8(JsonForm::compose(documentOf(merged))));
}

void DocumentMergeTest::contradictionsAreConflicts_data()
{
    const Rows<QByteArray, QByteArray, QByteArray, QByteArray, QString> row("base", "ours", "theirs", "merged",
                                                                            "conflict");
    row("a value", R"("name": "a", "quantity": 1)", R"("name": "a", "quantity": 2)", R"("name": "b", "quantity": 3)",
        R"("name": "b", "quantity": 2)", "quantity: changed on both sides: 2 in ours, 3 in theirs, 1 in the base");
    row("a value that is set no more", R"("name": "a", "quantity": 5)", R"("name": "a")",
        R"("name": "a", "quantity": 3)", R"("name": "a")",
        "quantity: changed on both sides: 1 (not set) in ours, 3 in theirs, 5 in the base");
    row("removed by theirs", R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])", R"("BandwidthSelection": [])",
        R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])",
        "BandwidthSelection[Name=a]: changed in ours, removed in theirs: Name \"a\", MaxBandwidth 2 in ours, Name "
        "\"a\", "
        "MaxBandwidth 1 in the base");
    row("removed by ours", R"("BandwidthSelection": [{"Name": "b"}, {"Name": "a", "MaxBandwidth": 1.0}])",
        bandwidths("b"), R"("BandwidthSelection": [{"Name": "b"}, {"Name": "a", "MaxBandwidth": 2.0}])",
        bandwidths("b"),
        "BandwidthSelection[Name=a]: removed in ours, changed in theirs: Name \"a\", MaxBandwidth 2 in theirs, Name "
        "\"a\", MaxBandwidth 1 in the base");
    row("an object removed by theirs", R"("StartupModes": {"StartupMode": ["DF"]}, "quantity": 1)",
        R"("StartupModes": {"StartupMode": ["DF", "Scan"]}, "quantity": 1)", R"("quantity": 2)",
        R"("quantity": 2, "unset": {"StartupModes": {"StartupMode": ["DF", "Scan"]}})",
        "StartupModes: changed in ours, removed in theirs: StartupMode [\"DF\", \"Scan\"] in ours, StartupMode "
        "[\"DF\"] in the base");
    row("added with different values", R"("quantity": 1)",
        R"("quantity": 1, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        R"("quantity": 1, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 2.0}])",
        R"("quantity": 1, "BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        "BandwidthSelection[Name=a]/MaxBandwidth: changed on both sides: 1 in ours, 2 in theirs, 0 (not set) in the "
        "base");
    row("two kinds of value", intItem("i", "1"),
        item(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "i", "value": "x"})"), intItem("i", "2"),
        item(R"("ChoiceValueItem": "ValueString", "ValueString": {"id": "i", "value": "x"})"),
        "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: changed on both sides: ValueString value \"x\" in ours, "
        "ValueInt value 2 in theirs, ValueInt value 1 in the base");
    row("renamed to two names", R"("BandwidthSelection": [{"Name": "a", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "c", "MaxBandwidth": 1.0}])",
        R"("BandwidthSelection": [{"Name": "b", "MaxBandwidth": 1.0}])",
        "BandwidthSelection[Name=b]/Name: changed on both sides: \"b\" in ours, \"c\" in theirs, \"a\" in the base");
    row("moved to two places", bandwidths("abcde"), bandwidths("bcade"), bandwidths("bcdea"), bandwidths("bcade"),
        "BandwidthSelection: reordered differently on both sides");
}

void DocumentMergeTest::contradictionsAreConflicts()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, ours);
    QFETCH(QByteArray, theirs);
    QFETCH(QByteArray, merged);
    QFETCH(QString, conflict);
    const MergeResult result = merge(documentOf(base), documentOf(ours), documentOf(theirs));
    QCOMPARE(conflictsOf(result), conflict);
    QCOMPARE(result.conflicts.size(), 1);
    QCOMPARE(QString::fromUtf8(JsonForm::compose(result.document)),
             QString::fromUtf8(JsonForm::compose(documentOf(merged))));
}

void DocumentMergeTest::mergingChangesNoSide()
{
    const TunerProperties base = randomDocument(3, 4);
    const TunerProperties ours = changed(base, 5, 9);
    const TunerProperties theirs = changed(base, 6, 9);
    const QByteArray before = snapshotOf(base) + snapshotOf(ours) + snapshotOf(theirs);
    merge(base, ours, theirs);
    QCOMPARE(snapshotOf(base) + snapshotOf(ours) + snapshotOf(theirs), before);
}

void DocumentMergeTest::resultHasTheValidateFlagOfOurs()
{
    const TunerProperties base = documentOf(R"("quantity": 1)");
    for (const bool validate : {true, false}) {
        TunerProperties ours = base;
        ours.SetValidate(validate);
        QCOMPARE(merge(base, ours, documentOf(R"("quantity": 2)")).document.GetValidate(), validate);
    }
}

// Comparing all pairs would be 100 million comparisons, and exceed the timeout of the test.
void DocumentMergeTest::manyItemsTakeLittleTime()
{
    constexpr int count = 10000;
    TunerProperties base;
    base.SetValidate(false);
    for (int i = 0; i < count; ++i) {
        JobXml::BandwidthSelection bandwidth;
        bandwidth.SetName(QString::number(i));
        bandwidth.SetMaxBandwidth(i);
        base.AppendBandwidthSelection(bandwidth);
    }
    TunerProperties ours = base;
    ours.GetBandwidthSelection().removeFirst();
    for (int i = 0; i + 1 < count; i += 3)
        ours.GetBandwidthSelection()[i].SetName(QStringLiteral("o%1").arg(i));
    TunerProperties theirs = base;
    std::reverse(theirs.GetBandwidthSelection().begin(), theirs.GetBandwidthSelection().end());
    for (int i = 0; i < count; i += 5)
        theirs.GetBandwidthSelection()[i].SetMaxBandwidth(-1);
    const MergeResult result = merge(base, ours, theirs);
    QCOMPARE(conflictsOf(result), QString());
    QCOMPARE(result.document.GetBandwidthSelection().size(), count - 1);
}

TEST_SUITE(DocumentMergeTest)
#include "tst_DocumentMerge.moc"

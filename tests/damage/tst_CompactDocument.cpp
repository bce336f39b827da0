// SPDX-License-Identifier: MIT
#include <QtTest>

#include "CompactDocument.h"
#include "Expected.h"
#include "HeapPeak.h"
#include "Model.h"
#include "WholeTree.h"

using namespace JobXml;
using namespace Damage;

namespace {

/// Collects the members that are set, and those that are not.
class MemberNotes
{
public:
    QStringList set;
    QStringList notSet;

    void note(const DataObject &object)
    {
        visit(object, [&](const MemberView &member) {
            if (!member.IsChosen() || member.GetKind() == MemberKind::Choice)
                return;
            const bool isEmptyList = member.GetKind() == MemberKind::EnumerationList
                ? member.GetValue().toList().isEmpty()
                : member.GetKind() == MemberKind::ObjectList && member.GetSize() == 0;
            note(object.GetObjectName() + QLatin1Char('.') + member.GetName(), member.IsSet() && !isEmptyList);
            WholeTree::forEachChild(member, [&](const DataObject &child, int) { note(child); });
        });
    }

private:
    void note(const QString &member, bool isSet)
    {
        QStringList &notes = isSet ? set : notSet;
        if (!notes.contains(member))
            notes += member;
    }
};

/// The names of the first list that the second one lacks.
QString without(const QStringList &names, const QStringList &others)
{
    QStringList left;
    for (const QString &name : names) {
        if (!others.contains(name))
            left += name;
    }
    return left.join(QLatin1String(", "));
}

} // namespace

/// The document that the other tests of this folder damage is complete, and so are the rules of these tests.
class CompactDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberOfEveryClassIsSet();
    void rulesNameEveryMember();
    void everyKindOfValueIsThere();
    void everyEncodingContainsTheWholeDocument();
    void everyTagIsInTheRecord();
    void documentIsSmallEnoughForExhaustiveTests();
    void heapIsCounted();
};

void CompactDocumentTest::everyMemberOfEveryClassIsSet()
{
    MemberNotes notes;
    notes.note(compactDocument());
    QCOMPARE(notes.notSet, QStringList());

    QStringList all;
    for (const ClassRule &rule : classRules()) {
        for (const MemberRule &member : rule.members)
            all += QStringLiteral("%1.%2").arg(QLatin1String(rule.name), QLatin1String(member.name));
    }
    QCOMPARE(without(all, notes.set), QString());
    QCOMPARE(without(notes.set, all), QString());
}

// A new object of each class shows all of its members.
void CompactDocumentTest::rulesNameEveryMember()
{
    const auto compare = [](const DataObject &object) {
        const QStringList shown = Model::members(object);
        QStringList ruled;
        for (const MemberRule &member : ruleOf(object.GetObjectName()).members)
            ruled += QLatin1String(member.name);
        QCOMPARE(without(shown, ruled), QString());
        QCOMPARE(without(ruled, shown), QString());
    };
    Model::forEachClass(compare);
    QCOMPARE(classRules().size(), Model::classes().size());
}

void CompactDocumentTest::everyKindOfValueIsThere()
{
    const QVector<JobXml::Component> components = compactDocument().GetComponent();
    QStringList kinds;
    for (const ValueItem &item : components.first().GetNode().first().GetValueItem())
        kinds += item.ChoiceValueItemToName(item.GetChoiceValueItem());
    QCOMPARE(kinds, ValueItem::GetChoiceValueItems());
}

void CompactDocumentTest::everyEncodingContainsTheWholeDocument()
{
    const TunerProperties original = compactDocument();
    QVERIFY(original.GetProblems().isEmpty());
    QString lines = listing(original);
    QVERIFY(!lines.contains(QLatin1String("(not set)")));
    lines.replace(QStringLiteral("version loaded = null"), QStringLiteral("version loaded = \"1.1\""));

    TunerProperties fromRecord;
    readRecord(fromRecord, recordOf(original));
    QCOMPARE(listing(fromRecord), lines);
    QVERIFY(fromRecord == original);

    TunerProperties fromSnapshot;
    QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(original)), 0);
    QCOMPARE(listing(fromSnapshot), lines);
    QVERIFY(fromSnapshot == original);

    TunerProperties fromXml;
    QVERIFY(fromXml.SetXmlString(QString::fromUtf8(compactXml()), true));
    QCOMPARE(listing(fromXml), lines);
    QVERIFY(fromXml == original);

    // The expected states of these tests are the same.
    Expected expected(QStringLiteral("TunerProperties"));
    const Outcome record = readRecord(expected, recordOf(original));
    QCOMPARE(record.thrown, QString());
    QCOMPARE(record.read, recordOf(original).size());
    QCOMPARE(expected.listing(), lines);

    Expected ofSnapshot(QStringLiteral("TunerProperties"));
    QCOMPARE(readSnapshot(ofSnapshot, snapshotOf(original)).read, snapshotOf(original).size());
    QCOMPARE(ofSnapshot.listing(), lines);

    Expected ofXml(QStringLiteral("TunerProperties"));
    QVERIFY(readXml(ofXml, XmlTokens::ofBytes(compactXml())).taken);
    QCOMPARE(ofXml.listing(), lines);
}

void CompactDocumentTest::everyTagIsInTheRecord()
{
    const QByteArray record = recordOf(compactDocument());
    for (const ClassRule &rule : classRules()) {
        for (const MemberRule &member : rule.members) {
            QByteArray tag;
            QDataStream(&tag, QIODevice::WriteOnly) << member.tag;
            QVERIFY2(record.contains(tag), member.name.constData());
        }
    }
}

void CompactDocumentTest::documentIsSmallEnoughForExhaustiveTests()
{
    const auto isAtMost = [](int size, int most) {
        QVERIFY2(size <= most, qPrintable(QStringLiteral("%1 bytes").arg(size)));
    };
    isAtMost(recordOf(compactDocument()).size(), 1250);
    isAtMost(snapshotOf(compactDocument()).size(), 1000);
    isAtMost(compactXml().size(), 2000);
}

void CompactDocumentTest::heapIsCounted()
{
    {
        const HeapPeak peak;
        QByteArray some(1000000, 'x');
        QVERIFY(peak.bytes() >= 1000000);
        QVERIFY(peak.inUse() >= 1000000);
        some.clear();
        QVERIFY(peak.bytes() >= 1000000); // the peak remains
        QVERIFY(peak.inUse() < 500000);
    }
    const HeapPeak another;
    QVERIFY(another.bytes() < 100000);
}

TEST_SUITE(CompactDocumentTest)
#include "tst_CompactDocument.moc"

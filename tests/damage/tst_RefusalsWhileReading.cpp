// SPDX-License-Identifier: MIT
#include <functional>

#include "Damaging.h"
#include "RefusalCases.h"
#include "every_class/Suite.h"

using namespace JobXml;
using namespace Damage;

namespace {

using Read = std::function<void(DataObject &)>;

Read reading(const RefusalCase &refusal)
{
    switch (refusal.encoding) {
    case Encoding::Record:
        return [=](DataObject &object) { readRecord(object, refusal.input); };
    case Encoding::Snapshot:
        return [=](DataObject &object) { readSnapshot(object, refusal.input); };
    default:
        return [=](DataObject &object) { readXml(object, QString::fromUtf8(refusal.input)); };
    }
}

QString readExpected(Expected &state, const RefusalCase &refusal)
{
    switch (refusal.encoding) {
    case Encoding::Record:
        return readRecord(state, refusal.input).thrown;
    case Encoding::Snapshot:
        return readSnapshot(state, refusal.input).thrown;
    default:
        return readXml(state, XmlTokens::ofBytes(refusal.input)).thrown;
    }
}

} // namespace

/// Each exception that reading can throw, in each class and, except in snapshots, inside a whole document: values read
/// before it are kept, and the object is usable afterwards.
class RefusalsWhileReadingTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyRefusalLeavesAUsableObject_data() { validatingRows(); }
    void everyRefusalLeavesAUsableObject();
    void everyRefusalLeavesAFilledObjectUsable_data() { validatingRows(); }
    void everyRefusalLeavesAFilledObjectUsable();
    void everyRefusalLeavesTheDocumentAroundItUsable_data() { validatingRows(); }
    void everyRefusalLeavesTheDocumentAroundItUsable();

private:
    static QString textOf(const RefusalCase &refusal, bool validate)
    {
        return validate || refusal.always ? refusal.thrown : QString();
    }

    // Reads the refused input into the object, whose state before is `state`.
    static void tryOne(const ClassUnderTest &readType, const DataObject &good, DataObject &object, Expected state,
                       const RefusalCase &refusal, bool validate)
    {
        const QString thrown = textOf(refusal, validate);
        QCOMPARE(readExpected(state, refusal), thrown);
        const HeapPeak peak;
        QCOMPARE(thrownBy([&] { reading(refusal)(object); }), thrown);
        QVERIFY(peak.bytes() <= HeapPeak::bound(refusal.input.size()));
        QCOMPARE(difference(listing(object), state.listing()), QString());
        QCOMPARE(Aftermath(readType, good).wrongWith(object, &state, refusal.encoding), QString());
    }
};

void RefusalsWhileReadingTest::everyRefusalLeavesAUsableObject()
{
    QFETCH(bool, validate);
    for (const RefusalCase &refusal : refusalsOf(type().staticName())) {
        const auto object = type().make();
        object->SetValidate(validate);
        tryOne(type(), *type().full(), *object, Expected(type().staticName(), validate), refusal, validate);
        QVERIFY2(!QTest::currentTestFailed(), refusal.name);

        const auto destroyedAtOnce = type().make();
        destroyedAtOnce->SetValidate(validate);
        QCOMPARE(thrownBy([&] { reading(refusal)(*destroyedAtOnce); }), textOf(refusal, validate));
    }
}

void RefusalsWhileReadingTest::everyRefusalLeavesAFilledObjectUsable()
{
    QFETCH(bool, validate);
    const QByteArray before = recordOf(*type().full());
    for (const RefusalCase &refusal : refusalsOf(type().staticName())) {
        const auto object = type().make();
        object->SetValidate(validate);
        readRecord(*object, before);
        Expected state(type().staticName(), validate);
        QCOMPARE(readRecord(state, before).thrown, QString());
        tryOne(type(), *type().full(), *object, state, refusal, validate);
        QVERIFY2(!QTest::currentTestFailed(), refusal.name);
    }
}

void RefusalsWhileReadingTest::everyRefusalLeavesTheDocumentAroundItUsable()
{
    QFETCH(bool, validate);
    for (const RefusalCase &refusal : refusalsOf(type().staticName())) {
        if (refusal.encoding == Encoding::Snapshot || refusal.thrown.isNull())
            continue;
        RefusalCase inside = refusal;
        inside.input = inDocument(type().staticName(), refusal);
        TunerProperties document = emptyDocument(validate);
        tryOne(documents(), compactDocument(), document, expectedDocument(validate), inside, validate);
        QVERIFY2(!QTest::currentTestFailed(), refusal.name);
        if (refusal.encoding == Encoding::Xml) {
            bool taken = true;
            const QString thrown =
                thrownBy([&] { taken = document.SetXmlString(QString::fromUtf8(inside.input), validate); });
            QCOMPARE(thrown, textOf(inside, validate));
            QCOMPARE(document.GetErrorString(), QString());
            QVERIFY(taken || !thrown.isNull());
            QCOMPARE(document.GetValidate(), validate);
        }
    }
}

TEST_SUITE(RefusalsWhileReadingTest)
#include "tst_RefusalsWhileReading.moc"

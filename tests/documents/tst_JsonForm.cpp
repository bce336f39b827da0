// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstring>

#include <QtTest>

#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// JSON stores everything in a document, whatever its state is.
class JsonFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsReadBackUnchanged();
    void documentsInUnusualStatesReadBackUnchanged();
    void documentsOfDamagedSnapshotsReadBackUnchanged();
    void damagedJsonFailsOrReadsBackUnchanged();
    void everyFloatReadsBackExactly();
    void everyTextReadsBackUnchanged();
    void unpairedSurrogateFailsWithItsPath();
    void writingChangesNothing();
    void failedReadingKeepsTheDocument();
    void readingKeepsTheValidateFlag();
};

namespace {

/// The document in all encodings, as one text.
QString encoded(const TunerProperties &document, bool withSnapshot = true)
{
    TunerProperties own = document;
    own.SetValidate(false);
    return own.GetXmlString() + QLatin1Char('\n') + hex(recordOf(own)) + QLatin1Char('\n')
        + (withSnapshot ? hex(snapshotOf(own)) : QString());
}

TunerProperties read(const QByteArray &json)
{
    TunerProperties document;
    document.SetValidate(false);
    JsonForm::read(document, json);
    return document;
}

bool hasTextsForJson(const JobXml::DataObject &object)
{
    bool result = true;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        result = result && member.GetValue().toString().isValidUtf16();
        for (int i = 0; i < member.GetSize(); ++i)
            result = result && hasTextsForJson(member.GetChild(i));
    });
    return result;
}

/// The JSON of a document that follows the rules of the setters, and whose texts JSON can represent.
QByteArray someJson(int seed)
{
    const TunerProperties document = randomDocument(3 * seed);
    return hasTextsForJson(document) ? JsonForm::compose(document) : someJson(seed + 1);
}

QString failure(const QByteArray &json)
{
    try {
        read(json);
    } catch (const JsonFailure &refused) {
        return refused.text(QStringLiteral("f"));
    }
    return QString();
}

/// Whether the document reads back unchanged. Counts the documents that JSON can represent.
bool survivesRoundTrip(const TunerProperties &document, int &carried, bool withSnapshot = true)
{
    try {
        const QByteArray json = JsonForm::compose(document);
        const TunerProperties again = read(json);
        ++carried;
        return hasTextsForJson(document) && encoded(again, withSnapshot) == encoded(document, withSnapshot)
            && JsonForm::compose(again) == json;
    } catch (const JsonFailure &) {
        return !hasTextsForJson(document);
    }
}

} // namespace

void JsonFormTest::documentsReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 250; ++seed)
        QVERIFY2(survivesRoundTrip(randomDocument(seed), carried), qPrintable(QString::number(seed)));
    QVERIFY(carried > 200);
}

void JsonFormTest::documentsInUnusualStatesReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 500; ++seed)
        QVERIFY2(survivesRoundTrip(randomDocument(seed, 1 + seed % 60), carried), qPrintable(QString::number(seed)));
    QVERIFY(carried > 400);
}

void JsonFormTest::documentsOfDamagedSnapshotsReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 400; ++seed) {
        RandomChanges random{quint32(seed)};
        QByteArray snapshot = snapshotOf(randomDocument(seed));
        for (int i = 0; i < 3; ++i) {
            const int at = random.below(snapshot.size());
            snapshot[at] = char(snapshot[at] ^ (1 << random.below(8)));
        }
        TunerProperties document;
        document.SetValidate(false);
        readSnapshot(document, snapshot);
        // In JSON there is only one NaN.
        const bool isExact = hasTextsForJson(document) && !JsonForm::compose(document).contains("\"NaN\"");
        QVERIFY2(survivesRoundTrip(document, carried, isExact), qPrintable(QString::number(seed)));
    }
    QVERIFY(carried > 200);
}

void JsonFormTest::damagedJsonFailsOrReadsBackUnchanged()
{
    int refused = 0;
    int carried = 0;
    for (int seed = 0; seed < 900; ++seed) {
        RandomChanges random{quint32(seed)};
        QByteArray json = someJson(seed % 10);
        const int at = random.below(json.size());
        switch (random.below(3)) {
        case 0:
            json[at] = char(random.below(4) == 0 ? random.below(256) : 32 + random.below(95));
            break;
        case 1:
            json.truncate(at);
            break;
        case 2:
            json.insert(random.below(json.size()), json.mid(at, random.below(40)));
            break;
        }
        try {
            QVERIFY2(survivesRoundTrip(read(json), carried), qPrintable(QString::number(seed)));
        } catch (const JsonFailure &failure) {
            QVERIFY(failure.text(QStringLiteral("f")).startsWith(QStringLiteral("f:")));
            ++refused;
        }
    }
    QVERIFY(carried > 20);
    QVERIFY(refused > 300);
}

void JsonFormTest::everyFloatReadsBackExactly()
{
    RandomChanges random(7);
    for (int i = 0; i < 3000; ++i) {
        const quint32 bits = quint32(random.below(0x10000)) << 16 | quint32(random.below(0x10000));
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (std::isnan(number))
            continue;
        JobXml::ValueItem item;
        item.GetValueFloat().Setvalue(number);
        JobXml::Node node;
        node.SetValidate(false);
        node.AppendValueItem(item);
        JobXml::Component component;
        component.SetValidate(false);
        component.AppendNode(node);
        TunerProperties document;
        document.SetValidate(false);
        document.AppendComponent(component);
        QCOMPARE(snapshotOf(read(JsonForm::compose(document))), snapshotOf(document));
    }
}

void JsonFormTest::everyTextReadsBackUnchanged()
{
    TunerProperties document;
    document.SetValidate(false);
    for (uint code = 0; code <= 0x10FFFF; code += code < 0x300 ? 1 : 37) {
        if (code >= 0xD800 && code < 0xE000)
            continue;
        const QString text = QString::fromUcs4(&code, 1);
        document.Setname(text);
        QCOMPARE(read(JsonForm::compose(document)).Getname(), text);
    }
    for (const QString &text : {QString(), QStringLiteral(""), QStringLiteral("\uFEFF\uFEFFx\uFEFF"),
                                QString::fromLatin1("a\0b\0", 4), QString::fromLatin1("\0", 1)}) {
        document.Setname(text);
        const QString again = read(JsonForm::compose(document)).Getname();
        QCOMPARE(again, text);
        QCOMPARE(again.isNull(), text.isNull());
    }
}

void JsonFormTest::unpairedSurrogateFailsWithItsPath()
{
    TunerProperties document = randomDocument(3);
    JobXml::ValueString value;
    value.Setid(QStringLiteral("half"));
    value.Setvalue(QString(QChar(0xD800)));
    JobXml::ValueItem item;
    item.SetValueString(value);
    JobXml::Node node;
    node.Setid(QStringLiteral("n"));
    node.AppendValueItem(item);
    JobXml::Component component;
    component.Settype(QStringLiteral("t"));
    component.Setname(QStringLiteral("c"));
    component.AppendNode(node);
    document.AppendComponent(component);
    try {
        JsonForm::compose(document);
        QFAIL("it was written");
    } catch (const JsonFailure &refused) {
        QCOMPARE(refused.text(QStringLiteral("f")),
                 QStringLiteral("f: Component[type=t,name=c]/Node[id=n]/ValueItem[id=half]/ValueString/value: the text "
                                "contains an unpaired surrogate, which JSON cannot represent"));
    }
}

void JsonFormTest::writingChangesNothing()
{
    const TunerProperties document = randomDocument(5, 20);
    const QByteArray before = snapshotOf(document);
    JsonForm::compose(document);
    QCOMPARE(snapshotOf(document), before);

    const JobXml::ValueItem unused;
    QCOMPARE(JsonText::compact(JsonForm::ofObject(unused)), QByteArray("{}"));
    QVERIFY(!unused.IsInitialized());
}

void JsonFormTest::failedReadingKeepsTheDocument()
{
    TunerProperties document = randomDocument(6);
    const QString before = encoded(document);
    const QByteArray json = JsonForm::compose(randomDocument(9));
    const QByteArray damaged = json.left(json.lastIndexOf("true")) + "7" + json.mid(json.lastIndexOf("true") + 4);
    QVERIFY(!failure(damaged).isNull());
    try {
        JsonForm::read(document, damaged);
        QFAIL("it was read");
    } catch (const JsonFailure &) {
        QCOMPARE(encoded(document), before);
    }
}

void JsonFormTest::readingKeepsTheValidateFlag()
{
    const QByteArray json = JsonForm::compose(randomDocument(0));
    for (const bool validate : {true, false}) {
        TunerProperties document;
        document.SetValidate(validate);
        JsonForm::read(document, json);
        QCOMPARE(document.GetValidate(), validate);
        QCOMPARE(std::as_const(document).GetComponent().first().GetValidate(), validate);
    }
}

TEST_SUITE(JsonFormTest)
#include "tst_JsonForm.moc"

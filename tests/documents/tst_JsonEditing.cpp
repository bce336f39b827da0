// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>

#include "documents/RandomChanges.h"
#include "documents/RandomEdits.h"
#include "documents/json/JsonForm.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Editing JSON in place changes only the values concerned.
class JsonEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyTheValueChanges_data();
    void onlyTheValueChanges();
    void unsetMemberDisappears_data();
    void unsetMemberDisappears();
    void otherKindOfValueReplacesTheMember();
    void randomEditsReadAsTheDescription();
};

namespace {

const QString name = QStringLiteral("d.json");

QByteArray edited(const QByteArray &json, const QString &path, const QString &value)
{
    try {
        Editor editor(Document::fromBytes(json, name), json, name);
        if (value.isNull())
            editor.unset(path);
        else
            editor.set(path, value);
        return editor.toBytes();
    } catch (const std::exception &exception) {
        return exception.what();
    }
}

QByteArray document(const char *members)
{
    return QByteArray("{\n \"$schema\": \"s\",\n \"TunerProperties\" : {\"Version\":\"1.1\"") + members + "}\n}";
}

} // namespace

void JsonEditingTest::onlyTheValueChanges_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *title, const char *before, const char *path, const char *value, const char *after) {
        QTest::newRow(title) << document(before) << QString::fromUtf8(path) << QString::fromUtf8(value)
                             << document(after);
    };
    row("number", ",  \"quantity\" :\t2 ", "quantity", "3", ",  \"quantity\" :\t3 ");
    row("number that is not one in JSON", ",\"quantity\":2", "quantity", "007", ",\"quantity\":7");
    row("number as it was typed", ",\"BandwidthSelection\":[{\"MaxBandwidth\":1e3}]", "BandwidthSelection/MaxBandwidth",
        "12.50", ",\"BandwidthSelection\":[{\"MaxBandwidth\":12.50}]");
    row("text", ",\"name\":\"\\u0041\"", "name", "\xC3\xA4\"", ",\"name\":\"\xC3\xA4\\\"\"");
    row("equal text", ",\"name\":\"\\u0041\"", "name", "A", ",\"name\":\"\\u0041\"");
    row("null", ",\"name\":null", "name", "", ",\"name\":\"\"");
    row("list of names", ",\"StartupModes\":{\"StartupMode\":[ \"DF\" ]}", "StartupModes/StartupMode", "Scan,Stop",
        ",\"StartupModes\":{\"StartupMode\":[\"Scan\",\"Stop\"]}");
    row("new member after its neighbors", ",\n  \"name\": \"a\",\n  \"quantity\": 2", "type", "SCP",
        ",\n  \"name\": \"a\",\n  \"type\": \"SCP\",\n  \"quantity\": 2");
    row("new member of an object on one line", ",\"BandwidthSelection\":[{\"Name\": \"w\"}]",
        "BandwidthSelection/MaxBandwidth", "1", ",\"BandwidthSelection\":[{\"Name\": \"w\", \"MaxBandwidth\": 1.0}]");
    row("first member", ",\"Component\":[{}]", "Component/name", "c", ",\"Component\":[{\"name\": \"c\"}]");
    row("member before all others", ",\"Component\":[{\"optional\":true}]", "Component/type", "t",
        ",\"Component\":[{\"type\":\"t\", \"optional\":true}]");
    row("value that was not set", ",\"unset\":{\"quantity\":5,\"name\":\"n\"}", "quantity", "6",
        ",\"quantity\":6,\"unset\":{\"name\":\"n\"}");
    row("the only value that was not set", ",\"unset\":{\"quantity\":5}", "quantity", "6", ",\"quantity\":6");
}

void JsonEditingTest::onlyTheValueChanges()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    QCOMPARE(edited(before, path, value), after);
}

void JsonEditingTest::unsetMemberDisappears_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *title, const char *before, const char *path, const char *after) {
        QTest::newRow(title) << document(before) << QString::fromUtf8(path) << document(after);
    };
    row("in the middle", ",\n\"name\": 0,\n\"quantity\": 2", "quantity", ",\n\"name\": 0"); // replaced below
    row("between others", ", \"quantity\": 2, \"hwProcessing\": true", "quantity", ", \"hwProcessing\": true");
    row("last", ", \"quantity\": 2 ", "quantity", " ");
    row("the only one", ", \"Component\": [{ \"name\": \"c\" }]", "Component/name", ", \"Component\": [{  }]");
    row("child object", ", \"StartupModes\": {\"StartupMode\": []}", "StartupModes", "");
    row("value that is not set", ", \"unset\": {\"name\": \"n\"}", "name", "");
}

void JsonEditingTest::unsetMemberDisappears()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QByteArray, after);
    before.replace("\"name\": 0", "\"name\": \"n\"");
    after.replace("\"name\": 0", "\"name\": \"n\"");
    QCOMPARE(edited(before, path, QString()), after);
}

void JsonEditingTest::otherKindOfValueReplacesTheMember()
{
    const QByteArray json = document(",\"Component\":[{\"Node\":[{\"ValueItem\":[{\"ValueInt\":{\"id\":\"i\"}}]}]}]");
    QCOMPARE(edited(json, QStringLiteral("Component/Node/ValueItem/ChoiceValueItem"), QStringLiteral("ValueFloat")),
             QByteArray(json).replace("{\"ValueInt\":{\"id\":\"i\"}}",
                                      "{\"ChoiceValueItem\":\"ValueFloat\", \"ValueFloat\":{}}"));
}

void JsonEditingTest::randomEditsReadAsTheDescription()
{
    int edits = 0;
    int refused = 0;
    for (int seed = 0; seed < 400; ++seed) {
        const TunerProperties description = randomDocument(seed, seed % 5);
        QByteArray json;
        try {
            json = JsonForm::compose(description);
        } catch (const JsonFailure &) {
            continue; // JSON cannot carry it
        }
        if (seed % 3 == 0)
            json = JsonText::compact(JsonText::parse(json));
        RandomChanges random{quint32(seed)};
        Editor editor(Document::fromBytes(json, name), json, name);
        try {
            for (int i = 0; i < 1 + seed % 4; ++i) {
                if (applyRandomEdit(editor, random))
                    ++edits;
            }
        } catch (const DocumentError &) {
            ++refused; // in an object that is not set
            continue;
        }
        const QByteArray result = editor.toBytes();
        const TunerProperties read = Document::fromBytes(result, name).tuner;
        QVERIFY2(JsonForm::compose(read) == JsonForm::compose(editor.document().tuner), result.constData());
    }
    QVERIFY2(edits > 500, qPrintable(QString::number(edits)));
    QVERIFY2(refused < 50, qPrintable(QString::number(refused)));
}

TEST_SUITE(JsonEditingTest)
#include "tst_JsonEditing.moc"

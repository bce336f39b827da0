// SPDX-License-Identifier: MIT
#include <QtTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Format.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Patch.h>

#include "GuardedBytes.h"
#include "damage/CompactDocument.h"

using namespace TunerDocuments;
using JobXml::Problem;

/// The bytes of a document may be raw data, which have no NUL after them: QByteArray::fromRawData().
class RawDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentIsReadAsFromACopy_data() { addForms(); }
    void documentIsReadAsFromACopy();
    void everyCutIsReadAsFromACopy_data() { addForms(); }
    void everyCutIsReadAsFromACopy();
    void documentIsEdited_data() { addForms(); }
    void documentIsEdited();
    void documentIsFormattedAndLinted_data();
    void documentIsFormattedAndLinted();
    void changesAreRead();

private:
    static void addForms();
};

namespace {

/// Everything that reading returns: the document, its problems or the failure.
QString reading(const QByteArray &bytes, const QString &name)
{
    QString result;
    const auto visit = [&](const Problem &problem) { result += problem.message + QLatin1Char('\n'); };
    try {
        const Document document = Document::fromBytes(bytes, name, {}, visit);
        return result + QString::fromUtf8(document.toBytes(Form::Json, name));
    } catch (const DocumentError &error) {
        return result + error.text();
    }
}

} // namespace

void RawDataTest::addForms()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");
    const Document document(Damage::compactDocument());
    const QByteArray xml = document.toBytes(Form::Xml, QString());
    QTest::newRow("XML") << xml << "in.xml";
    QTest::newRow("XML without a line end") << xml.trimmed() << "in.xml";
    QTest::newRow("XML for QXmlStreamReader")
        << xml.trimmed().replace("<TunerProperties", "<!DOCTYPE TunerProperties><TunerProperties") << "in.xml";
    QTest::newRow("JSON") << document.toBytes(Form::Json, QString()).trimmed() << "in.json";
    QTest::newRow("tagged records") << document.toBytes(Form::Tagged, QString()) << "in.tpb";
    QTest::newRow("compressed") << document.toBytes(Form::Compressed, QString()) << "in.tpz";
    QTest::newRow("snapshot") << document.toBytes(Form::Snapshot, QString()) << "in.tps";
}

void RawDataTest::documentIsReadAsFromACopy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    const GuardedBytes guarded(bytes);
    const QByteArray raw = guarded.last(bytes.size());
    QVERIFY(reading(raw, name).startsWith(QLatin1Char('{')));
    QCOMPARE(reading(raw, name), reading(bytes, name));
}

void RawDataTest::everyCutIsReadAsFromACopy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    for (int size = 0; size < bytes.size(); ++size) {
        const QByteArray cut = bytes.left(size);
        const GuardedBytes guarded(cut);
        const QString expected = reading(cut, name);
        if (reading(guarded.last(size), name) != expected)
            QFAIL(qPrintable(QStringLiteral("cut after %1 bytes").arg(size)));
    }
}

void RawDataTest::documentIsEdited()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    const GuardedBytes guarded(bytes);
    const auto edited = [&](const QByteArray &original) {
        Editor editor(Document::fromBytes(original, name), original, name);
        editor.set(QStringLiteral("quantity"), QStringLiteral("7"));
        return editor.toBytes();
    };
    const QByteArray expected = edited(bytes);
    QVERIFY(expected != bytes);
    QCOMPARE(edited(guarded.last(bytes.size())), expected);
}

void RawDataTest::documentIsFormattedAndLinted_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("formattedBytes");
    QTest::newRow("XML") << QByteArray("<TunerProperties  type='SCP' />")
                         << QByteArray("<TunerProperties type=\"SCP\"/>\n");
    QTest::newRow("JSON") << QByteArray("{ \"TunerProperties\":{\"type\":\"SCP\"}}")
                          << QByteArray("{\"TunerProperties\": {\"type\": \"SCP\"}}\n");
}

void RawDataTest::documentIsFormattedAndLinted()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, formattedBytes);
    const GuardedBytes guarded(bytes);
    const QByteArray raw = guarded.last(bytes.size());
    const QString name = QStringLiteral("in");
    QCOMPARE(formatted(raw, name), formattedBytes);
    const auto findings = [&](const QByteArray &text) {
        QStringList texts;
        lint(Document::fromBytes(text, name), text, [&](const Finding &finding) { texts.append(finding.text(name)); });
        return texts;
    };
    QCOMPARE(findings(raw), findings(bytes));
}

void RawDataTest::changesAreRead()
{
    const QByteArray line = R"({"change":"changed","path":"quantity","before":null,"after":2})";
    const GuardedBytes guarded(line);
    QVERIFY(!Patch::fromJson(guarded.last(line.size()), QStringLiteral("in")).isEmpty());
}

TEST_SUITE(RawDataTest)
#include "tst_RawData.moc"

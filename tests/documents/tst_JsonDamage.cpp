// SPDX-License-Identifier: MIT
#include <QFile>
#include <QtTest>

#include "damage/CompactDocument.h"
#include "documents/json/JsonForm.h"
#include "text/TextLocation.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// A damaged document in JSON is refused with its places, or read to a document that is written and read again.
class JsonDamageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCutIsRefusedAtItsEnd_data();
    void everyCutIsRefusedAtItsEnd();
    void everyFlippedBitIsRefusedOrReadsBackUnchanged();
    void everyFlippedBitOfTheTextsBetweenQuotesIsTaken();
};

namespace {

/// A document with every member of every class.
QByteArray compactJson()
{
    return JsonForm::compose(Damage::compactDocument());
}

QByteArray exampleJson()
{
    TunerProperties document;
    if (!document.LoadXml(QStringLiteral(EXAMPLES_DIR "/scp.xml")))
        qFatal("%s", qPrintable(document.GetErrorString()));
    return JsonForm::compose(document);
}

/// The results of reading damaged documents.
struct Sweep
{
    int unreadable = 0;
    int refused = 0;
    int taken = 0;
    QString wrong = {};
};

/// The error in a problem that follows another one; null if it is right.
QString wrongProblem(const JsonProblem &problem, const JsonProblem &before, TextLocation end)
{
    const auto isBefore = [](int line, int column, int otherLine, int otherColumn) {
        return line < otherLine || (line == otherLine && column < otherColumn);
    };
    const QString at = QStringLiteral("%1:%2").arg(problem.line).arg(problem.column);
    if (problem.line < 1 || problem.column < 1 || isBefore(end.line, end.column, problem.line, problem.column))
        return at + QStringLiteral(" is not in the text");
    if (isBefore(problem.line, problem.column, before.line, before.column))
        return at + QStringLiteral(" is not after the problem before");
    if (problem.message.isEmpty() || problem.message.size() > 400)
        return at + QStringLiteral(" has the message ") + problem.message;
    const bool isInDocument = !problem.path.isEmpty() || !problem.steps.isEmpty();
    return problem.isUnreadable && isInDocument ? at + QStringLiteral(" has a place in the document") : QString();
}

/// Reads the text into a document that holds something already.
void readDamaged(Sweep &sweep, const QByteArray &text, const QString &where)
{
    static const TunerProperties former = [] {
        TunerProperties document;
        document.SetValidate(false);
        document.Setname(QStringLiteral("former"));
        return document;
    }();
    static const QByteArray formerJson = JsonForm::compose(former);
    TunerProperties document(former);
    const TextLocation end = TextLocator(text).at(text.size());
    JsonProblem last;
    qint64 visited = 0;
    const qint64 count = JsonForm::read(document, text, [&](const JsonProblem &problem) {
        if (sweep.wrong.isNull())
            sweep.wrong = wrongProblem(problem, last, end);
        last = problem;
        ++visited;
    });
    const QByteArray composed = JsonForm::compose(document);
    if (visited != count || (last.isUnreadable && count != 1)) {
        sweep.wrong = QStringLiteral("%1 of %2 problems were visited").arg(visited).arg(count);
    } else if (count > 0) {
        ++(last.isUnreadable ? sweep.unreadable : sweep.refused);
        if (composed != formerJson)
            sweep.wrong = QStringLiteral("the document has changed");
    } else {
        ++sweep.taken;
        TunerProperties again;
        if (JsonForm::read(again, composed) != 0 || JsonForm::compose(again) != composed)
            sweep.wrong = QStringLiteral("it does not read back unchanged");
    }
    if (!sweep.wrong.isNull())
        sweep.wrong.prepend(where + QStringLiteral(": "));
}

QByteArray flipped(QByteArray bytes, int bit)
{
    bytes[bit / 8] = char(bytes.at(bit / 8) ^ (1 << (bit % 8)));
    return bytes;
}

} // namespace

void JsonDamageTest::everyCutIsRefusedAtItsEnd_data()
{
    QTest::addColumn<QByteArray>("whole");
    QTest::newRow("every class") << compactJson();
    QTest::newRow("an example") << exampleJson();
}

// The text is right as far as it goes, so the error is where it ends.
void JsonDamageTest::everyCutIsRefusedAtItsEnd()
{
    QFETCH(QByteArray, whole);
    QVERIFY(whole.size() > 1000);
    whole.chop(1); // without the line feed after the document, it is complete
    Sweep sweep;
    for (int size = 0; size < whole.size(); ++size) {
        const QByteArray cut = whole.left(size);
        readDamaged(sweep, cut, QStringLiteral("cut to %1 bytes").arg(size));
        QCOMPARE(sweep.wrong, QString());
        JsonProblem problem;
        TunerProperties document;
        QCOMPARE(JsonForm::read(document, cut, [&](const JsonProblem &found) { problem = found; }), qint64(1));
        QCOMPARE(problem.line, TextLocator(cut).at(size).line);
        QCOMPARE(problem.column, TextLocator(cut).at(size).column);
    }
    QCOMPARE(sweep.unreadable, whole.size());
    readDamaged(sweep, whole, QStringLiteral("the whole"));
    QCOMPARE(sweep.wrong, QString());
    QCOMPARE(sweep.taken, 1);
}

void JsonDamageTest::everyFlippedBitIsRefusedOrReadsBackUnchanged()
{
    const QByteArray whole = compactJson();
    Sweep sweep;
    for (int bit = 0; bit < 8 * whole.size(); ++bit) {
        readDamaged(sweep, flipped(whole, bit), QStringLiteral("byte %1, bit %2").arg(bit / 8).arg(bit % 8));
        QCOMPARE(sweep.wrong, QString());
    }
    QCOMPARE(sweep.unreadable + sweep.refused + sweep.taken, 8 * whole.size());
    qInfo("%d unreadable, %d refused, %d taken", sweep.unreadable, sweep.refused, sweep.taken);
    QVERIFY(sweep.unreadable > 1000 && sweep.refused > 1000 && sweep.taken > 100);
}

// A flip within a text makes another text, unless it makes a quote, a backslash, a control character or bad UTF-8.
void JsonDamageTest::everyFlippedBitOfTheTextsBetweenQuotesIsTaken()
{
    const QByteArray whole = R"({"TunerProperties": {"Version": "1.1", "name": "AB", "baseresource": "CD"}})";
    for (const QByteArray &text : {QByteArrayLiteral("AB"), QByteArrayLiteral("CD")}) {
        const int at = whole.indexOf('"' + text + '"') + 1;
        for (int bit = 8 * at; bit < 8 * (at + text.size()); ++bit) {
            const QByteArray damaged = flipped(whole, bit);
            const char changed = damaged.at(bit / 8);
            const bool isText = changed >= ' ' && changed != '"' && changed != '\\';
            TunerProperties document;
            document.SetValidate(false);
            QCOMPARE(JsonForm::read(document, damaged) == 0, isText);
            const QString value = text == "AB" ? document.Getname() : document.Getbaseresource();
            QCOMPARE(value, isText ? QString::fromLatin1(damaged.mid(at, text.size())) : QString());
        }
    }
}

TEST_SUITE(JsonDamageTest)
#include "tst_JsonDamage.moc"

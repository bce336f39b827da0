// SPDX-License-Identifier: MIT
#include "Damaging.h"
#include "Pipe.h"

using namespace JobXml;
using namespace Damage;

namespace {

/// The range of an object's members in a record.
struct ObjectRange
{
    int begin;
    int end;
    QString className;
};

QVector<ObjectRange> objectsIn(const QByteArray &record)
{
    Expected whole = expectedDocument(true);
    QVector<Word> words;
    readRecord(whole, record, &words);
    QVector<ObjectRange> ranges;
    for (const Word &word : std::as_const(words)) {
        const bool isMode = word.kind == Kind::Modes; // the entries are not objects
        const int begin = word.offset + 4;
        if (word.what == Word::RecordLength)
            ranges.append({begin, begin + word.value, word.owner});
        else if ((word.what == Word::ItemLength && !isMode) || word.what == Word::ObjectLength)
            ranges.append({begin, begin + word.value, word.member});
    }
    return ranges;
}

} // namespace

/// A record that ends early never passes, wherever it ends.
class RecordCutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCutThrowsALengthErrorAndKeepsTheCompleteMembers_data() { validatingRows(); }
    void everyCutThrowsALengthErrorAndKeepsTheCompleteMembers();
    void errorNamesTheInnermostTruncatedObject();
    void longerRecordKeepsMoreOfTheDocument();
    void everyCutOfARepresentationIsRefusedBeforeItIsRead();
    void everyCutOfARepresentationFromAPipeIsRefusedBeforeItIsRead();
};

void RecordCutsTest::everyCutThrowsALengthErrorAndKeepsTheCompleteMembers()
{
    QFETCH(bool, validate);
    constexpr int firstInTheRecord = 4; // a record truncated in its length word does not reach the object
    const Sweep sweep = cutEverywhere(Encoding::Record, validate, firstInTheRecord);
    QCOMPARE(sweep.wrong, QString());
    QCOMPARE(sweep.damaged, recordOf(compactDocument()).size() - firstInTheRecord);
    QCOMPARE(sweep.refused, sweep.damaged);
}

void RecordCutsTest::errorNamesTheInnermostTruncatedObject()
{
    const QByteArray whole = recordOf(compactDocument());
    const QVector<ObjectRange> objects = objectsIn(whole);
    // the document, its modes, a bandwidth, a component, a node, ten items with a value each, two items of those
    QCOMPARE(objects.size(), 5 + 10 + 10 + 2);
    for (int size = 4; size < whole.size(); ++size) {
        QString innermost;
        for (const ObjectRange &object : objects) { // outer ones come first
            if (object.begin <= size && size < object.end)
                innermost = object.className;
        }
        TunerProperties document;
        QCOMPARE(thrownBy([&] { readRecord(document, whole.left(size)); }), lengthErrorOf(innermost));
    }
}

void RecordCutsTest::longerRecordKeepsMoreOfTheDocument()
{
    const QByteArray whole = recordOf(compactDocument());
    const auto setMembers = [](const TunerProperties &document) {
        const QString lines = listing(document);
        return lines.count(QLatin1Char('\n')) - lines.count(QLatin1String("(not set)"));
    };
    auto before = setMembers(TunerProperties());
    for (int size = 4; size <= whole.size(); ++size) {
        TunerProperties document;
        const QString thrown = thrownBy([&] { readRecord(document, whole.left(size)); });
        const auto now = setMembers(document);
        QVERIFY(now >= before);
        before = now;
        QCOMPARE(thrown.isNull(), size == whole.size());
        QCOMPARE(document == compactDocument(), size == whole.size());
    }
}

void RecordCutsTest::everyCutOfARepresentationIsRefusedBeforeItIsRead()
{
    const QByteArray whole = TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray();
    for (int size = 0; size < whole.size(); ++size) {
        QByteArray cut = whole.left(size);
        TunerProperties document;
        QVERIFY(!document.SetBinaryRepresentation(cut));
        QCOMPARE(document.GetErrorString(),
                 size < 8 ? QStringLiteral("binary data: the leading word and the length take 8 bytes, but only %1 are "
                                           "there")
                                .arg(size)
                          : QStringLiteral("binary data: the record's length is %1, but %2 bytes follow")
                                .arg(whole.size() - 8)
                                .arg(size - 8));
        QVERIFY(!document.IsInitialized());
        QByteArray good = whole;
        QVERIFY(document.SetBinaryRepresentation(good));
        QVERIFY(document.GetErrorString().isNull());
        QVERIFY(document == compactDocument());
    }
}

void RecordCutsTest::everyCutOfARepresentationFromAPipeIsRefusedBeforeItIsRead()
{
    const QByteArray whole = TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray();
    for (int size = 0; size < whole.size(); ++size) {
        Pipe pipe(whole.left(size));
        QDataStream stream(&pipe);
        TunerProperties document;
        QVERIFY(!document.SetBinaryRepresentation(stream));
        QVERIFY(document.GetErrorString().startsWith(QStringLiteral("binary data: the ")));
        QVERIFY(!document.IsInitialized());
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    }
}

TEST_SUITE(RecordCutsTest)
#include "tst_RecordCuts.moc"

// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace JobXml;
using namespace Damage;

namespace {

constexpr qint32 most = 0x7FFFFFFF;
constexpr qint32 least = -0x7FFFFFFF - 1;

QVector<Word> wordsOf(const QByteArray &record)
{
    Expected whole = expectedDocument(true);
    QVector<Word> words;
    readRecord(whole, record, &words);
    return words;
}

// The length of an entry of the startup modes is ignored: its text has a length of its own.
bool isIgnored(const Word &word)
{
    return word.what == Word::ItemLength && word.kind == Kind::Modes;
}

/// The exception that follows from the rules of lengths; null if it also depends on the bytes after the word.
QString thrownByRule(const Word &word, qint32 value)
{
    switch (word.what) {
    case Word::RecordLength:
        // A negative length cannot be read, and the stream ends before the greatest one is reached.
        return lengthErrorOf(word.owner);
    case Word::MemberLength:
        // More than the rest of the record: the record ends after this member, and its lengths do not add up.
        return value == most ? lengthErrorOf(word.owner) : QString();
    case Word::ItemLength:
    case Word::ObjectLength:
        // An object of negative length.
        return value < 0 && !isIgnored(word) ? lengthErrorOf(word.member) : QString();
    case Word::TextLength:
        // Longer than the rest as an unsigned number, except -1, which is a null text.
        return value != -1 ? lengthErrorOf(word.owner) : QString();
    default:
        return QString();
    }
}

/// Whether reading must fail regardless of the bytes after the word.
bool mustFail(const Word &word, qint32 value)
{
    if (isIgnored(word))
        return false;
    if (word.what == Word::TextLength)
        return value != -1; // a null text, so its bytes are read as the data after it
    if (word.what == Word::Count)
        return value == most; // the stream ends before that many items; fewer are read, and the rest as members
    return true; // the lengths of some record do not add up
}

/// The number of members of these kinds in all classes; of all members if no kind is named.
int memberCount(const QVector<Kind> &kinds = {})
{
    int count = 0;
    for (const ClassRule &rule : classRules()) {
        for (const MemberRule &member : rule.members)
            count += kinds.isEmpty() || kinds.contains(member.kind) ? 1 : 0;
    }
    return count;
}

} // namespace

/// Replaces each length and each count of the record by the most harmful words.
class RecordWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLengthAndCountIsFound();
    void everyHostileWordIsReadAsTheFormatDefines_data() { validatingRows(); }
    void everyHostileWordIsReadAsTheFormatDefines();
    void noHostileWordPassesForAGoodDocument_data() { validatingRows(); }
    void noHostileWordPassesForAGoodDocument();

private:
    template <class Try>
    static void tryEach(Try &&tryOne)
    {
        const QByteArray record = recordOf(compactDocument());
        for (const Word &word : wordsOf(record)) {
            const QVector<qint32> values =
                word.what == Word::Count ? QVector<qint32>{-1, 0, most} : QVector<qint32>{-1, -8, most, least};
            for (const qint32 value : values) {
                const QString where =
                    QStringLiteral("%1 at %2 in %3.%4").arg(value).arg(word.offset).arg(word.owner, word.member);
                tryOne(word, value, replaced(record, word.offset, value), where);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }
};

void RecordWordsTest::everyLengthAndCountIsFound()
{
    const QByteArray record = recordOf(compactDocument());
    QMap<int, int> found;
    for (const Word &word : wordsOf(record)) {
        ++found[word.what];
        QCOMPARE(hex(record), hex(replaced(record, word.offset, word.value)));
    }
    // An object of each class, but a ValueItem for each alternative; two modes.
    const int modes = 2;
    const int alternatives = memberCount({Kind::Alternative});
    const int version = 1;
    QCOMPARE(found[Word::RecordLength], 1);
    QCOMPARE(found[Word::ItemLength], memberCount({Kind::List}) - 1 + alternatives + modes);
    QCOMPARE(found[Word::ObjectLength], memberCount({Kind::Child}) + alternatives);
    QCOMPARE(found[Word::MemberLength], memberCount() - memberCount({Kind::Child}) - alternatives + version);
    QCOMPARE(found[Word::Count], memberCount({Kind::List, Kind::Modes}));
    QCOMPARE(found[Word::TextLength],
             memberCount({Kind::Text, Kind::TypeName, Kind::Float, Kind::Double}) + modes + version);
}

void RecordWordsTest::everyHostileWordIsReadAsTheFormatDefines()
{
    QFETCH(bool, validate);
    int accepted = 0;
    int refused = 0;
    tryEach([&](const Word &word, qint32 value, const QByteArray &damaged, const QString &where) {
        Expected state = expectedDocument(validate);
        const Outcome outcome = readRecord(state, damaged);
        TunerProperties document = emptyDocument(validate);
        const QString wrong = wrongAfterReading(document, state, outcome.thrown, Encoding::Record, damaged.size(),
                                                [&] { readRecord(document, damaged); });
        QVERIFY2(wrong.isNull(), qPrintable(where + QStringLiteral(": ") + wrong));

        const QString byRule = thrownByRule(word, value);
        QVERIFY2(byRule.isNull() || outcome.thrown == byRule,
                 qPrintable(where + QStringLiteral(" threw ") + outcome.thrown));
        QVERIFY2(!outcome.thrown.isNull() || !mustFail(word, value), qPrintable(where + QStringLiteral(" passed")));
        if (isIgnored(word))
            QCOMPARE(outcome.thrown, QString());
        ++(outcome.thrown.isNull() ? accepted : refused);
    });
    qInfo("%d refused, %d accepted by SetBinary()", refused, accepted);
}

void RecordWordsTest::noHostileWordPassesForAGoodDocument()
{
    QFETCH(bool, validate);
    const QByteArray leadingWord = TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray().left(4);
    tryEach([&](const Word &word, qint32, const QByteArray &damaged, const QString &where) {
        QByteArray representation = leadingWord + damaged;
        TunerProperties document = emptyDocument(validate);
        bool taken = false;
        const QString thrown = thrownBy([&] { taken = document.SetBinaryRepresentation(representation); });
        QVERIFY2(taken == isIgnored(word), qPrintable(where));
        QVERIFY(!taken || document == compactDocument());
        QCOMPARE(!document.GetErrorString().isNull(), !taken && thrown.isNull());
    });
}

TEST_SUITE(RecordWordsTest)
#include "tst_RecordWords.moc"

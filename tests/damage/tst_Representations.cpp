// SPDX-License-Identifier: MIT
#include "Damaging.h"

using namespace JobXml;
using namespace Damage;

namespace {

QByteArray compressedAt(int level)
{
    return JobXml::TunerProperties(compactDocument()).GetCompressedBinaryRepresentationAsQByteArray(level);
}

/// Reads a plain representation with one flipped bit and returns the error string; null if it is accepted.
QString errorFor(int bit, const QByteArray &damaged, Expected &state, QString &thrown)
{
    QDataStream stream(damaged);
    quint32 word = 0;
    qint32 length = 0;
    stream >> word >> length;
    const int inTheRecord = damaged.size() - 8;
    if (bit < 32)
        return QStringLiteral("binary data: the leading word is 0x%1, not 0xC10CBB5F (TunerProperties)")
            .arg(QString::number(word, 16).toUpper().rightJustified(8, QLatin1Char('0')));
    if (bit < 64)
        return QStringLiteral("binary data: the record's length is %1, but %2 bytes follow")
            .arg(length)
            .arg(inTheRecord);
    const Outcome outcome = readRecord(state, damaged.mid(4));
    thrown = outcome.thrown;
    const int read = outcome.read - 4; // without the length
    if (!thrown.isNull() || read == inTheRecord)
        return QString();
    return QStringLiteral("binary data: the record's length is %1, but its members end after %2 bytes")
        .arg(inTheRecord)
        .arg(read);
}

} // namespace

/// A representation is a framed record. The framing detects damage that the record itself does not.
class RepresentationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedBitIsRefusedOrThrowsOrIsRead_data() { validatingRows(); }
    void everyFlippedBitIsRefusedOrThrowsOrIsRead();
    void everyFlippedBitOfTheCompressedFormIsRefusedOrMakesNoDifference_data() { levels(); }
    void everyFlippedBitOfTheCompressedFormIsRefusedOrMakesNoDifference();
    void everyCutOfTheCompressedFormIsRefused_data() { levels(); }
    void everyCutOfTheCompressedFormIsRefused();
    void hostileWordsAroundTheRecordAreRefusedWithoutAllocating_data();
    void hostileWordsAroundTheRecordAreRefusedWithoutAllocating();

private:
    static void levels()
    {
        QTest::addColumn<int>("level");
        for (const int level : {-1, 0, 1, 9})
            QTest::addRow("level %d", level) << level;
    }
};

void RepresentationsTest::everyFlippedBitIsRefusedOrThrowsOrIsRead()
{
    QFETCH(bool, validate);
    const QByteArray whole = TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray();
    int refused = 0;
    int exceptions = 0;
    for (int bit = 0; bit < 8 * whole.size(); ++bit) {
        QByteArray damaged = flipped(whole, bit);
        Expected state = expectedDocument(validate);
        QString thrown;
        const QString error = errorFor(bit, damaged, state, thrown);

        TunerProperties document = emptyDocument(validate);
        bool taken = false;
        const HeapPeak peak;
        QCOMPARE(thrownBy([&] { taken = document.SetBinaryRepresentation(damaged); }), thrown);
        QVERIFY(peak.bytes() <= HeapPeak::bound(whole.size()));
        QCOMPARE(document.GetErrorString(), error);
        QCOMPARE(taken, thrown.isNull() && error.isNull());
        QCOMPARE(document.IsInitialized(), bit >= 64);
        QCOMPARE(difference(listing(document), state.listing()), QString());
        refused += taken || !thrown.isNull() ? 0 : 1;
        exceptions += thrown.isNull() ? 0 : 1;

        document.Reset();
        QByteArray good = whole;
        QVERIFY(document.SetBinaryRepresentation(good));
        QVERIFY(document.GetErrorString().isNull());
        QVERIFY(document == compactDocument());
    }
    QVERIFY(refused >= 64);
    qInfo("%d flips, %d of them refused and %d thrown", 8 * int(whole.size()), refused, exceptions);
}

void RepresentationsTest::everyFlippedBitOfTheCompressedFormIsRefusedOrMakesNoDifference()
{
    QFETCH(int, level);
    const QByteArray whole = compressedAt(level);
    int same = 0;
    for (int bit = 0; bit < 8 * whole.size(); ++bit) {
        QByteArray damaged = flipped(whole, bit);
        TunerProperties document;
        const HeapPeak peak;
        const bool taken = document.SetBinaryRepresentation(damaged); // throws nothing
        QVERIFY(peak.bytes() <= HeapPeak::bound(whole.size()));
        same += taken ? 1 : 0;
        QCOMPARE(document.IsInitialized(), taken);
        QVERIFY(!taken || document == compactDocument());
        const QString why = document.GetErrorString();
        if (bit < 32)
            QVERIFY(why.startsWith(QStringLiteral("binary data: the leading word is 0x")));
        else if (bit < 64)
            QVERIFY(why.startsWith(QStringLiteral("binary data: the record's length is ")));
        else
            QVERIFY2(taken ? why.isNull()
                           : why == QLatin1String("binary data: the compressed bytes are damaged")
                             || why.startsWith(
                                 QStringLiteral("binary data: %1 compressed bytes declare ").arg(whole.size() - 8)),
                     qPrintable(why));
    }
    // At level 0, five bits have no meaning. At other levels, some changed repetitions and unused code lengths expand
    // to the same bytes.
    QVERIFY(level != 0 || same == 5);
    qInfo("%d flips, %d of them without a difference", 8 * int(whole.size()), same);
}

void RepresentationsTest::everyCutOfTheCompressedFormIsRefused()
{
    QFETCH(int, level);
    const QByteArray whole = compressedAt(level);
    for (int size = 0; size < whole.size(); ++size) {
        QByteArray cut = whole.left(size);
        TunerProperties document;
        QVERIFY(!document.SetBinaryRepresentation(cut));
        QVERIFY(!document.IsInitialized());

        // Truncated as well, but framed with the matching length.
        if (size < 8)
            continue;
        QByteArray framed = replaced(cut, 4, size - 8);
        QVERIFY(!document.SetBinaryRepresentation(framed));
        QVERIFY(!document.IsInitialized());
        QVERIFY(document.GetErrorString().startsWith(QStringLiteral("binary data: ")));
    }
    QByteArray good = whole;
    TunerProperties document;
    QVERIFY(document.SetBinaryRepresentation(good));
    QVERIFY(document == compactDocument());
}

void RepresentationsTest::hostileWordsAroundTheRecordAreRefusedWithoutAllocating_data()
{
    QTest::addColumn<bool>("isCompressed");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("word");
    QTest::addColumn<QString>("error");
    const int plain = TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray().size() - 8;
    const int compressed = compressedAt(9).size() - 8;
    const auto wrongLength = QStringLiteral("binary data: the record's length is %1, but %2 bytes follow");
    for (const int word : {-1, -8, 0, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        QTest::addRow("length %d", word) << false << 4 << word << wrongLength.arg(word).arg(plain);
        QTest::addRow("compressed length %d", word) << true << 4 << word << wrongLength.arg(word).arg(compressed);
    }
    const auto tooMuch = QStringLiteral("binary data: %1 compressed bytes declare %2 bytes, but no more than %3 are "
                                        "accepted");
    for (const int word : {-1, -8, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        QTest::addRow("declared size %u", unsigned(word))
            << true << 8 << word << tooMuch.arg(compressed).arg(quint32(word)).arg(1100 * compressed);
    }
    for (const int word : {0, 1, plain + 7, plain + 9, 1100 * compressed}) {
        QTest::addRow("declared size %d", word)
            << true << 8 << word << QStringLiteral("binary data: the compressed bytes are damaged");
    }
}

void RepresentationsTest::hostileWordsAroundTheRecordAreRefusedWithoutAllocating()
{
    QFETCH(bool, isCompressed);
    QFETCH(int, offset);
    QFETCH(int, word);
    QFETCH(QString, error);
    const QByteArray whole =
        isCompressed ? compressedAt(9) : TunerProperties(compactDocument()).GetBinaryRepresentationAsQByteArray();
    QByteArray damaged = replaced(whole, offset, word);
    TunerProperties document;
    const HeapPeak peak;
    QVERIFY(!document.SetBinaryRepresentation(damaged));
    QVERIFY(peak.bytes() <= 2000 * whole.size()); // not as much as the word declares
    QCOMPARE(document.GetErrorString(), error);
    QVERIFY(!document.IsInitialized());
}

TEST_SUITE(RepresentationsTest)
#include "tst_Representations.moc"

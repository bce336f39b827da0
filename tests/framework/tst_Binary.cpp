// SPDX-License-Identifier: MIT
#include <random>

#include <QtTest>

#include "StreamComparison.h"
#include "StreamDevices.h"
#include "framework/Numbers.h"
#include "text/Ascii.h"
#include "text/SameText.h"

using namespace Comparison;
namespace Numbers = JobXml::Numbers;

Q_DECLARE_METATYPE(Prepare)
Q_DECLARE_METATYPE(QIODevice::OpenMode)

/// Compares composing in memory and reading from memory with QDataStream.
class BinaryTest : public QObject
{
    Q_OBJECT

private:
    template <class Number>
    static QString differenceInNumbers()
    {
        QString difference;
        for (const StreamForm &form : everyForm()) {
            for (const Number number : oddNumbers<Number>())
                difference += differenceInWriting(form, number);
        }
        return difference;
    }

private Q_SLOTS:
    void numbersAreComposedAsAStreamWritesThem()
    {
        QCOMPARE(differenceInNumbers<quint8>(), QString());
        QCOMPARE(differenceInNumbers<qint8>(), QString());
        QCOMPARE(differenceInNumbers<bool>(), QString());
        QCOMPARE(differenceInNumbers<quint32>(), QString());
        QCOMPARE(differenceInNumbers<qint32>(), QString());
        QCOMPARE(differenceInNumbers<quint64>(), QString());
        QCOMPARE(differenceInNumbers<qint64>(), QString());
        QCOMPARE(differenceInNumbers<float>(), QString());
        QCOMPARE(differenceInNumbers<double>(), QString());
    }

    void textsAreComposedAsAStreamWritesThem()
    {
        for (const StreamForm &form : everyForm()) {
            for (const QString &text : oddTexts()) {
                QCOMPARE(differenceInWriting(form, text), QString());
                QCOMPARE(differenceInUtf8(form, text), QString());
            }
        }
    }

    // Other threads may read the same text, and QString::utf16() moves it.
    void textsStayWhereTheyAre()
    {
        static constexpr QChar characters[] = {QLatin1Char('1'), QLatin1Char('2'), QLatin1Char('3')};
        const QString literal = QStringLiteral("12");
        const QString part = QString::fromRawData(characters, 2); // no NUL follows
        for (const QString *text : {&literal, &part}) {
            const QChar *const begin = text->constData();
            for (const StreamForm &form : everyForm()) {
                QCOMPARE(differenceInWriting(form, *text), QString());
                QCOMPARE(differenceInUtf8(form, *text), QString());
            }
            QVERIFY(REPORTGENERATOR::isAscii(*text));
            QVERIFY(REPORTGENERATOR::isPrintableAscii(*text));
            QVERIFY(REPORTGENERATOR::isSameText(*text, literal));
            QCOMPARE(Numbers::toInt(*text), 12);
            QCOMPARE(Numbers::toDouble(*text), 12.0);
            QCOMPARE(text->constData(), begin);
        }
    }

    void longTextsAreComposedAsAStreamWritesThem()
    {
        const QString text = longText(1100000);
        for (const StreamForm &form : formsOfVersions({1, 2, 5, 6, QDataStream::Qt_DefaultCompiledVersion})) {
            QCOMPARE(differenceInWriting(form, text), QString());
            QCOMPARE(differenceInUtf8(form, text), QString());
        }
    }

    void oneCharacterMakesTheDifferenceInUtf8()
    {
        const StreamForm form = everyForm().last();
        for (int length = 0; length < 20; ++length) {
            QCOMPARE(differenceInUtf8(form, QString(length, QLatin1Char('x'))), QString());
            for (int at = 0; at < length; ++at) {
                for (const int odd : {0x7F, 0x80, 0xFF, 0x100, 0x4178, 0xD800}) {
                    QString text(length, QLatin1Char('x'));
                    text[at] = QChar(ushort(odd));
                    QCOMPARE(differenceInUtf8(form, text), QString());
                }
            }
        }
    }

    void asciiIsComposedAsAStreamWritesAByteArray()
    {
        for (const StreamForm &form : everyForm()) {
            for (const char *const ascii : {"", "0.00", "-123456789012345678901234567890.12"}) {
                const auto compose = [&](BinaryWriter &writer) { writer.putUtf8(QLatin1String(ascii)); };
                const auto write = [&](QDataStream &stream) { stream << QByteArray(ascii); };
                QCOMPARE(differenceInWriting(form, compose, write), QString());
            }
        }
    }

    void theBytesAreThoseOfEachVersion_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<bool>("isLittle");
        QTest::addColumn<bool>("isSingle");
        QTest::addColumn<QString>("written");
        // A word of 64 bits, a null text as UTF-16 and as UTF-8, "z" with a ring as both, 1.5 as float and as double.
        const auto row = [](const char *name, int version, bool isLittle, bool isSingle, const char *written) {
            QTest::newRow(name) << version << isLittle << isSingle << hex(written);
        };
        row("1", 1, false, false,
            "01020304 05060708  00000000 00000000  00000001 E5  00000002 C3A5  3FC00000 3FF8000000000000");
        row("2", 2, true, true,
            "04030201 08070605  00000000 00000000  02000000 E500  02000000 C3A5  0000C03F 000000000000F83F");
        row("5", 5, false, false,
            "01020304 05060708  FFFFFFFF 00000000  00000002 00E5  00000002 C3A5  3FC00000 3FF8000000000000");
        row("5, little endian", 5, true, false,
            "04030201 08070605  FFFFFFFF 00000000  02000000 E500  02000000 C3A5  0000C03F 000000000000F83F");
        row("6, little endian", 6, true, true,
            "0807060504030201  FFFFFFFF FFFFFFFF  02000000 E500  02000000 C3A5  0000C03F 000000000000F83F");
        row("11", 11, false, true,
            "0102030405060708  FFFFFFFF FFFFFFFF  00000002 00E5  00000002 C3A5  3FC00000 3FF8000000000000");
        row("12, single", 12, false, true,
            "0102030405060708  FFFFFFFF FFFFFFFF  00000002 00E5  00000002 C3A5  3FC00000 3FC00000");
        row("12, double", 12, false, false,
            "0102030405060708  FFFFFFFF FFFFFFFF  00000002 00E5  00000002 C3A5  3FF8000000000000 3FF8000000000000");
        row("19, little endian, single", 19, true, true,
            "0807060504030201  FFFFFFFF FFFFFFFF  02000000 E500  02000000 C3A5  0000C03F 0000C03F");
    }
    void theBytesAreThoseOfEachVersion()
    {
        QFETCH(int, version);
        QFETCH(bool, isLittle);
        QFETCH(bool, isSingle);
        QFETCH(QString, written);
        const StreamForm form{version, isLittle ? QDataStream::LittleEndian : QDataStream::BigEndian,
                              isSingle ? QDataStream::SinglePrecision : QDataStream::DoublePrecision};
        const QByteArray actual = composed(form, [](BinaryWriter &writer) {
            writer.put(quint64(0x0102030405060708));
            writer.put(QString());
            writer.putUtf8(QString());
            writer.put(QStringLiteral("\u00E5"));
            writer.putUtf8(QStringLiteral("\u00E5"));
            writer.put(1.5F);
            writer.put(1.5);
        });
        QCOMPARE(hex(actual), written);
    }

    void lengthsMatchTheirPayloads()
    {
        const QString text = longText(200);
        for (const StreamForm &form : everyForm()) {
            const auto compose = [&](BinaryWriter &writer) {
                const auto outer = writer.begin(0x89537E94);
                writer.put(text);
                const auto inner = writer.beginUntagged();
                writer.put(qint64(-2));
                writer.end(inner);
                writer.end(outer);
            };
            // Writes each length afterwards by going back to its position.
            const auto write = [&](QDataStream &stream) {
                QIODevice &device = *stream.device();
                const auto patch = [&](qint64 start) {
                    const qint64 end = device.pos();
                    device.seek(start - 4);
                    stream << qint32(end - start);
                    device.seek(end);
                };
                stream << quint32(0x89537E94) << qint32(0);
                const qint64 outer = device.pos();
                stream << text << qint32(0);
                const qint64 inner = device.pos();
                stream << qint64(-2);
                patch(inner);
                patch(outer);
            };
            QCOMPARE(differenceInWriting(form, compose, write), QString());
        }
    }

    void everythingIsWrittenInOnePiece()
    {
        Drain drain;
        QDataStream stream(&drain);
        BinaryWriter writer(stream);
        QByteArray expected;
        QDataStream expectedStream(&expected, QIODevice::WriteOnly);
        for (int i = 0; i < 2000; ++i) {
            writer.put(qint32(i));
            expectedStream << qint32(i);
        }
        QCOMPARE(drain.writes, 0);
        writer.flushTo(stream);
        QCOMPARE(drain.writes, 1);
        QCOMPARE(drain.taken, expected);
        QCOMPARE(stream.status(), QDataStream::Ok);
    }

    void aStreamThatFailedIsNotWrittenTo()
    {
        for (const auto status : {QDataStream::ReadPastEnd, QDataStream::ReadCorruptData, QDataStream::WriteFailed}) {
            Drain drain;
            QDataStream stream(&drain);
            stream.setStatus(status);
            BinaryWriter writer(stream);
            writer.put(qint32(1));
            writer.flushTo(stream);
            QCOMPARE(drain.taken, QByteArray());
            QCOMPARE(stream.status(), status);
        }
    }

    void writtenValuesAreReadAsAStreamReadsThem()
    {
        for (const StreamForm &form : everyForm()) {
            const auto check = [&](const auto &values) {
                using T = std::decay_t<decltype(values.first())>;
                for (const T &value : values) {
                    const Operation operation = take<T>("value", T{}, value);
                    QCOMPARE(differenceInReading(form, sampleFor(operation, form), {operation}), QString());
                }
            };
            check(oddNumbers<quint8>());
            check(oddNumbers<qint8>());
            check(oddNumbers<quint32>());
            check(oddNumbers<qint32>());
            check(oddNumbers<quint64>());
            check(oddNumbers<qint64>());
            check(oddNumbers<float>());
            check(oddNumbers<double>());
            check(oddTexts());
            for (const char byte : {'\0', '\1', '\2', '\x80', '\xFF'}) {
                for (const bool before : {true, false})
                    QCOMPARE(differenceInReading(form, QByteArray(1, byte), {take("bool", before, true)}), QString());
            }
            if (QTest::currentTestFailed())
                return;
        }
    }

    void truncatedValuesFailAsInAStream()
    {
        for (const StreamForm &form : everyForm()) {
            for (const Operation &operation : everyOperation()) {
                const QByteArray whole = sampleFor(operation, form) + "\x07\xFE";
                for (int size = 0; size <= whole.size(); ++size)
                    QCOMPARE(differenceInReading(form, whole.left(size), {operation}), QString());
            }
        }
    }

    void wrongLengthsFailAsInAStream()
    {
        for (const StreamForm &form : everyForm()) {
            for (const quint32 size : {0U, 1U, 2U, 3U, 5U, 6U, 7U, 8U, 9U, 0x7FFFFFFEU, 0x7FFFFFFFU, 0x80000000U,
                                       0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
                const QByteArray length = writtenByStream(form, [=](QDataStream &stream) { stream << size; });
                const QVector<Operation> sized = {take("QString", QStringLiteral("before"), QString()),
                                                  read("read QString", QString()), readBytes(), readText("")};
                for (const Operation &operation : sized) {
                    QCOMPARE(differenceInReading(form, length, {operation}), QString());
                    QCOMPARE(differenceInReading(form, length + "RX123456", {operation}), QString());
                }
            }
            for (const qint32 length : {1, 8, 9, 10, INT_MAX, -1, INT_MIN})
                QCOMPARE(differenceInReading(form, QByteArray(9, 's'), {skip(length)}), QString());
        }
    }

    void reasonsOfStreamFailuresAreDistinguished()
    {
        const StreamForm form = everyForm().last(); // little endian
        const auto statusAfter = [&](const char *hexText, auto &&read) {
            QDataStream stream(bytes(hexText));
            form.applyTo(stream);
            {
                BinaryReader reader(stream);
                read(reader);
            }
            return qMakePair(stream.status(), stream.device()->pos());
        };
        const auto after = [](QDataStream::Status status, qint64 position) { return qMakePair(status, position); };
        const auto takeText = [](BinaryReader &reader) {
            QString text = QStringLiteral("before");
            reader.take(text);
        };
        QCOMPARE(statusAfter("02000000 4100 FF", takeText), after(QDataStream::Ok, 6));
        QCOMPARE(statusAfter("FFFFFFFF 4100", takeText), after(QDataStream::Ok, 4));
        QCOMPARE(statusAfter("03000000 410042", takeText), after(QDataStream::ReadCorruptData, 4));
        QCOMPARE(statusAfter("04000000 410042", takeText), after(QDataStream::ReadPastEnd, 7));
        QCOMPARE(statusAfter("020000", takeText), after(QDataStream::ReadPastEnd, 3));
        const auto skipThree = [](BinaryReader &reader) { thrownBy([&] { reader.skip(owner, 3, 1); }); };
        QCOMPARE(statusAfter("01020304", skipThree), after(QDataStream::Ok, 3));
        QCOMPARE(statusAfter("0102", skipThree), after(QDataStream::ReadPastEnd, 2));
    }

    void longTextsAreReadAsAStreamReadsThem()
    {
        const QString text = longText(1100000); // so long that a stream reads it in two pieces
        const QString ascii(1100000, QLatin1Char('x'));
        for (const StreamForm &form : formsOfVersions({5, 6, QDataStream::Qt_DefaultCompiledVersion})) {
            const auto check = [&](const QByteArray &whole, const Operation &operation) {
                for (const int cut : {0, 1, 150001})
                    QCOMPARE(differenceInReading(form, whole.left(whole.size() - cut), {operation}), QString());
            };
            const auto inUtf16 = take("QString", QStringLiteral("before"), text);
            check(sampleFor(inUtf16, form), inUtf16);
            for (const QString &inUtf8 : {text, ascii}) {
                const QByteArray whole = writtenByStream(form, [&](QDataStream &s) { s << inUtf8.toUtf8(); });
                check(whole, readText(""));
                check(whole, readBytes());
            }
            if (QTest::currentTestFailed())
                return;
        }
    }

    void invalidUtf8IsReadAsQtReadsIt()
    {
        const StreamForm form = everyForm().last();
        for (int length = 0; length < 20; ++length) {
            for (int at = 0; at < length; ++at) {
                for (const char *const odd : {"\x7F", "\x80", "\xC3\xA9", "\xC3", "\xED\xA0\x80", "\xF0\x9F\x93\xA1",
                                              "\xF5", "\xEF\xBF\xBE", "\xE2\x84"}) {
                    const QByteArray utf8 = QByteArray(length, 'x').replace(at, 1, odd);
                    const Operation operation = readText(utf8);
                    QCOMPARE(differenceInReading(form, sampleFor(operation, form), {operation}), QString());
                }
            }
        }
    }

    // QString::fromUtf8() alone would drop the first one.
    void byteOrderMarksBelongToTheText()
    {
        const QString mark(QChar(0xFEFF));
        for (const StreamForm &form : everyForm()) {
            for (const QString &text : {mark, mark + mark, mark + QStringLiteral("a"), QStringLiteral("a") + mark}) {
                QDataStream stream(writtenByStream(form, [&](QDataStream &s) { s << text.toUtf8(); }));
                form.applyTo(stream);
                QCOMPARE(BinaryReader(stream).readText(owner), text);
            }
        }
    }

    void aTextReadFromARecordIsNeverNull()
    {
        for (const StreamForm &form : everyForm()) {
            for (const QByteArray &utf8 : {QByteArray(), QByteArray("")}) {
                QDataStream stream(writtenByStream(form, [&](QDataStream &s) { s << utf8; }));
                form.applyTo(stream);
                const QString text = BinaryReader(stream).readText(owner);
                QVERIFY(text.isEmpty() && !text.isNull());
            }
        }
    }

    void consecutiveValuesAreReadAsAStreamReadsThem()
    {
        std::mt19937 random(4);
        const auto below = [&](int end) { return int(random() % quint32(end)); };
        const QVector<Operation> operations = everyOperation();
        const QVector<StreamForm> forms = everyForm();
        for (int round = 0; round < 4000; ++round) {
            const StreamForm form = forms.at(below(forms.size()));
            QVector<Operation> series;
            QByteArray content;
            for (int i = 1 + below(12); i > 0; --i) {
                series += operations.at(below(operations.size()));
                content += sampleFor(series.last(), form);
            }
            if (below(3) == 0)
                content[below(content.size())] = char(random());
            if (below(3) == 0)
                content.chop(below(9));
            QCOMPARE(differenceInReading(form, content, series), QString());
        }
    }

    void bytesInMemoryAreReadAsAStreamReadsThem()
    {
        std::mt19937 random(5); // NOLINT(bugprone-random-generator-seed): the same in each run
        const auto below = [&](int end) { return int(random() % quint32(end)); };
        const QVector<Operation> operations = everyOperation();
        const QVector<StreamForm> forms = everyForm();
        for (int round = 0; round < 4000; ++round) {
            const StreamForm form = forms.at(below(forms.size()));
            QVector<Operation> series;
            QByteArray content;
            for (int i = 1 + below(12); i > 0; --i) {
                series += operations.at(below(operations.size()));
                content += sampleFor(series.last(), form);
            }
            if (below(3) == 0)
                content[below(content.size())] = char(random());
            if (below(3) == 0)
                content.chop(below(9));

            QDataStream stream(content);
            form.applyTo(stream);
            QCOMPARE(BinaryReader::isReadDirectly(stream), form.version >= 6);
            if (form.version < 6)
                continue;
            BinaryReader reader(stream, content.constData(), content.size());
            QVERIFY(!reader.runsForeignCode());
            for (const Operation &operation : series) {
                QCOMPARE(operation.byReader(reader), operation.byStream(stream));
                if (stream.status() != QDataStream::Ok)
                    break;
                QCOMPARE(qint64(reader.bytesRead()), stream.device()->pos());
                QCOMPARE(reader.atEnd(), stream.atEnd());
            }
        }
    }

    void aStreamThatFailedStaysFailed()
    {
        for (const StreamForm &form : everyForm()) {
            for (const auto status :
                 {QDataStream::ReadPastEnd, QDataStream::ReadCorruptData, QDataStream::WriteFailed}) {
                const auto fail = [=](QDataStream &stream, QBuffer &) { stream.setStatus(status); };
                for (const Operation &operation : everyOperation()) {
                    const QByteArray sample = sampleFor(operation, form);
                    QCOMPARE(differenceInReading(form, sample, {operation}, fail), QString());
                }
            }
        }
    }

    void buffersInUseAreReadAsAStreamReadsThem_data()
    {
        QTest::addColumn<Prepare>("prepare");
        QTest::newRow("text mode") << Prepare([](QDataStream &, QBuffer &b) { b.setTextModeEnabled(true); });
        QTest::newRow("transaction of the stream") << Prepare([](QDataStream &s, QBuffer &) { s.startTransaction(); });
        QTest::newRow("transaction of the buffer") << Prepare([](QDataStream &, QBuffer &b) { b.startTransaction(); });
        QTest::newRow("peeked into") << Prepare([](QDataStream &, QBuffer &b) { b.peek(3); });
        QTest::newRow("a byte put back") << Prepare([](QDataStream &, QBuffer &b) {
            char byte = 0;
            b.getChar(&byte);
            b.ungetChar(byte);
        });
        QTest::newRow("another byte put back") << Prepare([](QDataStream &, QBuffer &b) {
            b.getChar(nullptr);
            b.ungetChar('X');
        });
        QTest::newRow("other bytes put back") << Prepare([](QDataStream &, QBuffer &b) {
            b.skip(2);
            b.ungetChar('Y');
            b.ungetChar('X');
        });
        QTest::newRow("a byte put back before the first") << Prepare([](QDataStream &, QBuffer &b) {
            b.seek(0);
            b.ungetChar('Y'); // the position becomes -1
        });
        QTest::newRow("at the start") << Prepare([](QDataStream &, QBuffer &b) { b.seek(0); });
        QTest::newRow("at the end") << Prepare([](QDataStream &, QBuffer &b) { b.seek(b.size()); });
        QTest::newRow("truncated after the position")
            << Prepare([](QDataStream &, QBuffer &b) { b.buffer().resize(leading - 2); });
        QTest::newRow("to write to as well") << Prepare([](QDataStream &, QBuffer &b) {
            b.close();
            b.open(QIODevice::ReadWrite);
            b.seek(leading);
        });
    }
    void buffersInUseAreReadAsAStreamReadsThem()
    {
        QFETCH(Prepare, prepare);
        for (const StreamForm &form : everyForm()) {
            for (const Operation &operation : everyOperation()) {
                const QByteArray sample = sampleFor(operation, form);
                for (const QByteArray &content : {sample, sample.left(3), sample + "\r\n\r", QByteArray(12, '\r')})
                    QCOMPARE(differenceInReading(form, content, {operation, skip(1)}, prepare), QString());
            }
        }
    }

    void readingInATransactionCanBeRolledBack()
    {
        for (const StreamForm &form : everyForm()) {
            for (const Operation &operation : everyOperation()) {
                const auto thereAndBack = [&](QDataStream &stream, auto &&use) {
                    stream.startTransaction();
                    const QString first = use(stream);
                    stream.rollbackTransaction();
                    const qint64 back = stream.device()->pos();
                    stream.resetStatus();
                    return QStringLiteral("%1, back at %2, %3").arg(first).arg(back).arg(use(stream));
                };
                const auto reader = [&](QDataStream &stream) { return byReader({operation, operation}, stream); };
                const auto plain = [&](QDataStream &stream) { return byStream({operation, operation}, stream); };
                const QByteArray whole = sampleFor(operation, form) + sampleFor(operation, form);
                for (const QByteArray &content : {whole, whole.left(whole.size() - 1)})
                    QCOMPARE(useBuffer(form, content, {}, [&](QDataStream &s) { return thereAndBack(s, reader); }),
                             useBuffer(form, content, {}, [&](QDataStream &s) { return thereAndBack(s, plain); }));
            }
        }
    }

    void unreadableBufferIsNotRead_data()
    {
        QTest::addColumn<QIODevice::OpenMode>("mode");
        QTest::addColumn<QByteArray>("warning");
        QTest::newRow("closed") << QIODevice::OpenMode(QIODevice::NotOpen)
                                << QByteArray("QIODevice::read (QBuffer): device not open");
        QTest::newRow("only to write") << QIODevice::OpenMode(QIODevice::WriteOnly | QIODevice::Append)
                                       << QByteArray("QIODevice::read (QBuffer): WriteOnly device");
    }
    void unreadableBufferIsNotRead()
    {
        QFETCH(QIODevice::OpenMode, mode);
        QFETCH(QByteArray, warning);
        QBuffer buffer;
        buffer.setData("\1\2\3\4");
        if (mode != QIODevice::NotOpen)
            QVERIFY(buffer.open(mode));
        QDataStream stream(&buffer);
        quint32 value = 77;
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
        QCOMPARE(BinaryReader(stream).take(value), false);
        QCOMPARE(value, 77U);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    }

    void otherDevicesAreReadByTheStream()
    {
        for (const StreamForm &form : everyForm()) {
            for (const Operation &operation : everyOperation()) {
                const QVector<Operation> series = {operation, operation};
                const QByteArray whole = sampleFor(operation, form) + sampleFor(operation, form) + "\x07";
                for (const int cut : {0, 1, 2, 6}) {
                    const QByteArray content = whole.left(whole.size() - cut);
                    const auto actual = [&](QDataStream &stream) { return byReader(series, stream); };
                    const auto expected = [&](QDataStream &stream) { return byStream(series, stream); };
                    for (const auto reads : {SlowPipe::Complete, SlowPipe::Short})
                        QCOMPARE(useDevice<SlowPipe>(form, content, actual, reads),
                                 useDevice<SlowPipe>(form, content, expected, reads));
                }
            }
        }
    }

    void endIsTheSameAsTheStreams()
    {
        for (const StreamForm &form : everyForm()) {
            QDataStream stream(QByteArray(2, 'x'));
            form.applyTo(stream);
            BinaryReader reader(stream);
            for (const bool isAtEnd : {false, false, true}) {
                QCOMPARE(reader.atEnd(), isAtEnd);
                quint8 byte = 0;
                QCOMPARE(reader.take(byte), !isAtEnd);
            }
        }
    }

    void memoryIsReservedForThePossibleItemsOnly()
    {
        const auto room = [](int version, int bytesLeft, qint32 count) {
            QDataStream stream(QByteArray(1 + bytesLeft, 'x'));
            stream.setVersion(version);
            BinaryReader reader(stream);
            quint8 first = 0;
            reader.take(first);
            return reader.itemsWithin(count);
        };
        for (const int version : {5, 6, int(QDataStream::Qt_DefaultCompiledVersion)}) {
            QCOMPARE(room(version, 0, 5), 0);
            QCOMPARE(room(version, 19, 5), 4);
            QCOMPARE(room(version, 20, 5), 5);
            QCOMPARE(room(version, 24, 5), 5);
            QCOMPARE(room(version, 24, -1), 0);
            QCOMPARE(room(version, 24, INT_MIN), 0);
            QCOMPARE(room(version, 1000000, INT_MAX), 4096);
        }
    }
};

TEST_SUITE_WITHOUT_APPLICATION(BinaryTest)
#include "tst_Binary.moc"

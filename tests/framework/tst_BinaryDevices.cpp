// SPDX-License-Identifier: MIT
#include <random>

#include <QTemporaryFile>

#include "ExceptionText.h"
#include "StreamDevices.h"
#include "StreamForms.h"
#include "WholeTree.h"
#include "damage/CompactDocument.h"
#include "damage/Expected.h"
#include "every_class/Suite.h"
#include "interop/Generator.h"

using JobXml::DataObject;
using REPORTGENERATOR::Logger;

namespace {

class SilentLogger : public Logger
{
public:
    void Log(Severity, const QString &) override { }
};

const std::shared_ptr<Logger> logger = std::make_shared<SilentLogger>();

/// Random numbers, the same in each run.
class Draw
{
public:
    explicit Draw(quint32 seed) : m_numbers(seed) { }

    int below(int end) { return int(m_numbers() % quint32(end)); }

private:
    std::mt19937 m_numbers;
};

enum Encoding { Record, Snapshot };

const StreamForm stock{QDataStream::Qt_DefaultCompiledVersion, QDataStream::BigEndian, QDataStream::DoublePrecision};

QVector<StreamForm> someForms()
{
    return formsOfVersions({5, QDataStream::Qt_4_6, QDataStream::Qt_5_15});
}

void write(const DataObject &object, QDataStream &stream, Encoding encoding)
{
    if (encoding == Record)
        QVERIFY(object.GetBinary(stream, 0, false));
    else
        object.GetVersionSpecificBinaryWithoutValidation(stream);
}

QByteArray written(const DataObject &object, Encoding encoding, const StreamForm &form = stock)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    form.applyTo(stream);
    write(object, stream, encoding);
    return bytes;
}

/// The content to read, and the way to read it.
struct Reading
{
    Encoding encoding;
    StreamForm form;
    bool validate;
    QByteArray content;
    bool intoFullObject = false; ///< otherwise into a new one
    qint32 further = 0; ///< the error in the length of the record

    QString text() const
    {
        return QStringLiteral("%1 with %2, %3validating: %4")
            .arg(encoding == Record ? QStringLiteral("record") : QStringLiteral("snapshot"), form.text(),
                 validate ? QString() : QStringLiteral("not "), hex(content));
    }
};

/// The result of reading.
struct Outcome
{
    ClassUnderTest::Pointer object;
    QString thrown;
    QString stream; ///< the status and the bytes that are left
    qint64 position = 0;
    QString environments; ///< flag, logger and presence of data of each object of the tree
    QString listing; ///< every value and flag, including hidden ones
    QByteArray snapshot;
    QByteArray record;
};

/// The difference between two results; null if there is none.
QString difference(const ClassUnderTest &type, const Outcome &left, const Outcome &right)
{
    if (left.thrown != right.thrown)
        return QStringLiteral("it threw '%1' and '%2'").arg(left.thrown, right.thrown);
    if (left.stream != right.stream)
        return QStringLiteral("%1 and %2").arg(left.stream, right.stream);
    if (left.position != right.position)
        return QStringLiteral("the position is %1 and %2").arg(left.position).arg(right.position);
    if (left.environments != right.environments)
        return QStringLiteral("the environments are %1 and %2").arg(left.environments, right.environments);
    if (left.listing != right.listing)
        return Damage::difference(left.listing, right.listing);
    if (left.snapshot != right.snapshot)
        return QStringLiteral("the snapshots are %1 and %2").arg(hex(left.snapshot), hex(right.snapshot));
    if (left.record != right.record)
        return QStringLiteral("the records are %1 and %2").arg(hex(left.record), hex(right.record));
    const bool isEqualToItself = type.equal(*left.object, *left.object); // false if it contains a NaN
    return type.equal(*left.object, *right.object) == isEqualToItself ? QString() : QStringLiteral("they differ");
}

} // namespace

/// Reading directly from a buffer has the same result as reading by the stream, which is used for all other devices.
/// Writing is the same for all devices.
class BinaryDevicesTest : public Suite
{
    Q_OBJECT

private:
    static constexpr int leading = 3; // the bytes in a device before the content

    /// Objects of the current class: full, random ones that may be incomplete, and new.
    static std::vector<ClassUnderTest::Pointer> samples(int drawn)
    {
        std::vector<ClassUnderTest::Pointer> samples;
        samples.push_back(type().full());
        for (int i = 0; i < drawn; ++i) {
            samples.push_back(type().make());
            samples.back()->SetValidate(i % 2 == 0);
            build(*samples.back(), QByteArray::number(i));
        }
        samples.push_back(type().make());
        if (isDocument())
            samples.push_back(std::make_unique<JobXml::TunerProperties>(Damage::compactDocument()));
        for (const auto &sample : samples)
            sample->SetValidate(false); // so that incomplete ones are written, too
        return samples;
    }

    static Outcome read(const Reading &reading, QIODevice &device)
    {
        Outcome outcome;
        outcome.object = reading.intoFullObject ? type().full() : type().make();
        DataObject &object = *outcome.object;
        object.SetValidate(reading.validate);
        object.SetLogger(logger);
        QDataStream stream(&device);
        reading.form.applyTo(stream);
        outcome.thrown = thrownBy([&] {
            if (reading.encoding == Snapshot) {
                object.SetVersionSpecificBinaryWithoutValidation(stream);
                return;
            }
            qint32 length = 0;
            stream >> length;
            object.SetBinary(stream, length + reading.further);
        });
        outcome.position = device.pos();
        outcome.stream = QStringLiteral("status %1, at end: %2, ").arg(stream.status()).arg(stream.atEnd());
        outcome.stream += hex(device.readAll());
        outcome.listing = Damage::listing(object);
        WholeTree::visit(object, [&](const DataObject &each) {
            outcome.environments += each.GetValidate() ? QLatin1Char('V') : QLatin1Char('v');
            outcome.environments += each.GetLogger() == logger ? QLatin1Char('L') : QLatin1Char('l');
            outcome.environments += each.IsInitialized() ? QLatin1Char('D') : QLatin1Char('d');
        });
        object.SetValidate(false);
        outcome.snapshot = written(object, Snapshot);
        outcome.record = written(object, Record);
        return outcome;
    }

    template <class Buffer>
    static Outcome readFromBuffer(const Reading &reading)
    {
        Buffer buffer;
        buffer.setData(QByteArray(leading, 'L') + reading.content);
        buffer.open(QIODevice::ReadOnly);
        buffer.seek(leading);
        return read(reading, buffer);
    }

    void fillFile(const QByteArray &content)
    {
        m_file.seek(0);
        m_file.write(content);
        m_file.resize(content.size());
        m_file.seek(leading);
    }

    Outcome readFromFile(const Reading &reading)
    {
        fillFile(QByteArray(leading, 'L') + reading.content);
        return read(reading, m_file);
    }

    static Outcome readFromPipe(const Reading &reading, qint64 position)
    {
        SlowPipe pipe(reading.content);
        Outcome outcome = read(reading, pipe);
        outcome.position = position; // a pipe has no position
        return outcome;
    }

    enum Devices { BufferOnly, EveryDevice };

    /// The difference between reading from a QBuffer and from other devices; null if there is none.
    QString differenceBetweenDevices(const Reading &reading, Devices devices = EveryDevice)
    {
        const Outcome fast = readFromBuffer<QBuffer>(reading);
        m_refused += fast.thrown.isNull() ? 0 : 1;
        QString wrong = difference(type(), fast, readFromBuffer<OtherBuffer>(reading));
        if (wrong.isNull() && devices == EveryDevice) {
            wrong = difference(type(), fast, readFromPipe(reading, fast.position));
            constexpr int some = 7; // one in seven of thousands, because the disk may be busy
            if (wrong.isNull() && ++m_readings % some == 0)
                wrong = difference(type(), fast, readFromFile(reading));
        }
        return wrong.isNull() ? QString() : wrong + QStringLiteral(" of ") + reading.text();
    }

    QTemporaryFile m_file;
    int m_refused = 0;
    int m_readings = 0;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_file.open()); }
    void init() { m_refused = 0; }

    void writtenObjectsAreReadFromEveryDevice()
    {
        const auto objects = samples(6);
        for (const StreamForm &form : someForms()) {
            for (const Encoding encoding : {Record, Snapshot}) {
                for (const auto &object : objects) {
                    Reading reading{encoding, form, false, written(*object, encoding, form) + "tail"};
                    QCOMPARE(differenceBetweenDevices(reading), QString());
                    reading.validate = true;
                    QCOMPARE(differenceBetweenDevices(reading), QString());
                    reading.intoFullObject = true;
                    QCOMPARE(differenceBetweenDevices(reading, BufferOnly), QString());
                }
            }
        }
    }

    void truncatedObjectsFailOnEveryDevice()
    {
        const auto object = type().full();
        for (const Encoding encoding : {Record, Snapshot}) {
            const QByteArray whole = written(*object, encoding);
            for (int size = 0; size < whole.size(); ++size) {
                const Reading reading{encoding, stock, size % 2 == 0, whole.left(size)};
                QCOMPARE(differenceBetweenDevices(reading, size % 3 == 0 ? EveryDevice : BufferOnly), QString());
            }
            if (encoding == Record) // a record contains its length
                QCOMPARE(m_refused, whole.size() - 4); // a truncated length is not read
        }
    }

    void truncatedRandomObjectsFailOnEveryDevice()
    {
        Draw draw(1);
        for (const auto &object : samples(8)) {
            for (const StreamForm &form : someForms()) {
                const auto encoding = Encoding(draw.below(2));
                const QByteArray whole = written(*object, encoding, form);
                const Reading reading{encoding, form, draw.below(2) == 0, whole.left(draw.below(whole.size()))};
                QCOMPARE(differenceBetweenDevices(reading), QString());
            }
        }
    }

    void oneDamagedByteHasTheSameEffectOnEveryDevice()
    {
        Draw draw(2);
        const auto objects = samples(2);
        const QVector<StreamForm> forms = someForms();
        for (int round = 0; round < 400; ++round) {
            const auto encoding = Encoding(round % 2);
            const StreamForm &form = forms.at(draw.below(forms.size()));
            QByteArray content = written(*objects.at(std::size_t(draw.below(int(objects.size())))), encoding, form);
            char &byte = content.data()[draw.below(content.size())];
            const char damaged[] = {char(draw.below(256)), char(byte ^ (1 << draw.below(8))), '\0', '\xFF'};
            byte = damaged[draw.below(4)];
            const Reading reading{encoding, form, draw.below(2) == 0, content, draw.below(4) == 0};
            QCOMPARE(differenceBetweenDevices(reading, round % 5 == 0 ? EveryDevice : BufferOnly), QString());
        }
        QVERIFY(m_refused > 20);
        QVERIFY(m_refused < 400);
    }

    void wrongLengthsAreDetectedOnEveryDevice()
    {
        const auto object = type().full();
        for (const StreamForm &form : someForms()) {
            const QByteArray record = written(*object, Record, form);
            const qint32 size = record.size() - 4;
            for (const qint32 further : {1, 4, 8, 9, INT_MAX - size, -1, -8, -size, -size - 1, INT_MIN + 4}) {
                for (const char *const rest : {"", "62 65 68 69 6E 64", "12345678 00000000", "FFFFFFFF FFFFFFFF"}) {
                    const Reading reading{Record, form, false, record + bytes(rest), false, further};
                    QCOMPARE(differenceBetweenDevices(reading), QString());
                }
            }
        }
        QVERIFY(m_refused > 0);
    }

    void unknownRecordsAreSkippedOnEveryDevice()
    {
        for (const StreamForm &form : someForms()) {
            for (const qint32 length : {0, 1, 9, 10, 11, INT_MAX, -1, -9, INT_MIN}) {
                for (const qint32 recordLength : {18, 17, 8 + length % 1000, 1}) {
                    QByteArray content;
                    QDataStream stream(&content, QIODevice::WriteOnly);
                    form.applyTo(stream);
                    stream << recordLength << quint32(0x12345678) << length;
                    stream.writeRawData("0123456789", 10);
                    QCOMPARE(differenceBetweenDevices({Record, form, true, content}), QString());
                }
            }
        }
        QVERIFY(m_refused > 0);
    }

    void consecutiveObjectsAreReadFromEveryDevice()
    {
        const auto object = type().full();
        const auto check = [&](QIODevice &device, Encoding encoding) {
            QDataStream stream(&device);
            for (int i = 0; i < 3; ++i) {
                const auto read = type().make();
                qint32 length = 0;
                if (encoding == Snapshot) {
                    read->SetVersionSpecificBinaryWithoutValidation(stream);
                } else {
                    stream >> length;
                    read->SetBinary(stream, length);
                }
                QVERIFY(type().equal(*read, *object));
                QCOMPARE(stream.status(), QDataStream::Ok);
                QCOMPARE(stream.atEnd(), i == 2);
            }
        };
        for (const Encoding encoding : {Record, Snapshot}) {
            QByteArray content = written(*object, encoding).repeated(3);
            QBuffer buffer(&content);
            buffer.open(QIODevice::ReadWrite);
            check(buffer, encoding);
            QCOMPARE(buffer.pos(), content.size());
            SlowPipe pipe(content);
            check(pipe, encoding);
        }
    }

    void eachByteOfADerivedBufferIsReadFromIt()
    {
        const auto object = type().full();
        for (const Encoding encoding : {Record, Snapshot}) {
            QByteArray content = written(*object, encoding);
            for (char &byte : content)
                byte = char(~byte);
            InvertingBuffer buffer;
            buffer.setData(content);
            buffer.open(QIODevice::ReadOnly);
            const Outcome outcome = read({encoding, stock, true, content}, buffer);
            QCOMPARE(outcome.thrown, QString());
            QVERIFY(type().equal(*outcome.object, *object));
        }
    }

    // If a device returns fewer bytes than requested, a stream assumes its end.
    void pipeThatReturnsFewerBytesThanRequestedIsAtItsEnd()
    {
        const QByteArray record = written(*type().full(), Record);
        SlowPipe pipe(record.mid(4), SlowPipe::Short);
        QDataStream stream(&pipe);
        const auto object = type().make();
        QCOMPARE(
            thrownBy([&] { object->SetBinary(stream, record.size() - 4); }),
            QStringLiteral("BinaryParsingException: ") + type().staticName()
                + QStringLiteral("::SetBinary(...): Length error occurred during processing of binary representation"));
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
        QCOMPARE(object->AnyData(), false);
        QCOMPARE(pipe.readAll(), record.mid(5)); // one byte had arrived
    }

    void everyDeviceReceivesTheSameBytes()
    {
        for (const auto &object : samples(4)) {
            for (const StreamForm &form : someForms()) {
                for (const Encoding encoding : {Record, Snapshot}) {
                    const QByteArray expected = written(*object, encoding, form);
                    const auto status = [&](QIODevice &device) {
                        QDataStream stream(&device);
                        form.applyTo(stream);
                        write(*object, stream, encoding);
                        return stream.status();
                    };
                    // Overwrites the middle of existing bytes; the bytes after it stay.
                    const QByteArray before(leading + expected.size() + 2, 'b');
                    const QByteArray after = before.left(leading) + expected + before.left(2);
                    const qint64 end = leading + expected.size();

                    Drain drain;
                    QCOMPARE(status(drain), QDataStream::Ok);
                    QCOMPARE(drain.taken, expected);
                    QCOMPARE(drain.writes, 1);

                    OtherBuffer buffer;
                    buffer.setData(before);
                    buffer.open(QIODevice::ReadWrite);
                    buffer.seek(leading);
                    QCOMPARE(status(buffer), QDataStream::Ok);
                    QCOMPARE(buffer.data(), after);
                    QCOMPARE(buffer.pos(), end);

                    fillFile(before);
                    QCOMPARE(status(m_file), QDataStream::Ok);
                    QCOMPARE(m_file.pos(), end);
                    m_file.seek(0);
                    QCOMPARE(m_file.readAll(), after);
                }
            }
        }
    }

    void rejectedObjectsAreWrittenToNoDevice()
    {
        const auto object = type().make();
        Drain drain;
        QDataStream stream(&drain);
        QCOMPARE(thrownBy([&] { return object->GetBinary(stream, 7, true); }), text("firstMissing"));
        QCOMPARE(drain.writes, 0);
        QCOMPARE(stream.status(), QDataStream::Ok);
    }

    void deviceThatAcceptsOnlyPartFailsTheStream()
    {
        const auto object = type().full();
        for (const Encoding encoding : {Record, Snapshot}) {
            const QByteArray expected = written(*object, encoding);
            for (const qint64 room : {qint64(0), qint64(1), qint64(expected.size() / 2), qint64(expected.size() - 1)}) {
                Drain drain(room);
                QDataStream stream(&drain);
                write(*object, stream, encoding);
                QCOMPARE(stream.status(), QDataStream::WriteFailed);
                QCOMPARE(drain.taken, expected.left(int(room)));
                const int writes = drain.writes;
                write(*object, stream, encoding); // the failed stream is not used again
                QCOMPARE(drain.writes, writes);
            }
            Drain drain(expected.size());
            QDataStream stream(&drain);
            write(*object, stream, encoding);
            QCOMPARE(stream.status(), QDataStream::Ok);
        }
    }

    void leadingWordsAreWrittenToEveryDevice()
    {
        const auto object = type().full();
        Drain drain;
        QDataStream stream(&drain);
        QVERIFY(object->GetBinary(stream, 0x12345678, true));
        QCOMPARE(hex(drain.taken), hex(bytes("12345678") + written(*object, Record)));
    }
};

TEST_SUITE(BinaryDevicesTest)
#include "tst_BinaryDevices.moc"

// SPDX-License-Identifier: MIT
#include "Encodings.h"
#include "ExceptionText.h"
#include "Suite.h"

using REPORTGENERATOR::Logger;

namespace {

class CountingLogger : public Logger
{
public:
    void Log(Severity, const QString &) override { ++messages; }

    int messages = 0;
};

const char lengthError[] = "::SetBinary(...): Length error occurred during processing of binary representation";

} // namespace

/// Writing and reading in the three encodings, the same for every class.
class EveryClassEncodingsTest : public Suite
{
    Q_OBJECT

private:
    static QString ownLengthError()
    {
        return QStringLiteral("BinaryParsingException: ") + type().staticName() + QLatin1String(lengthError);
    }

private Q_SLOTS:
    void xmlReadBackIsTheSameObjectAndText()
    {
        for (const bool validate : {true, false}) {
            const auto original = type().full();
            original->SetValidate(validate);
            const auto read = type().make();
            read->SetValidate(validate);
            readXml(*read, xmlOf(*original));
            QVERIFY(type().equal(*read, *original));
            QCOMPARE(xmlOf(*read), xmlOf(*original));
        }
    }

    void aRecordReadBackIsTheSameObjectAndWritesTheSameBytes()
    {
        for (const bool validate : {true, false}) {
            const auto original = type().full();
            original->SetValidate(validate);
            const auto read = type().make();
            read->SetValidate(validate);
            readRecord(*read, recordOf(*original));
            QVERIFY(type().equal(*read, *original));
            QCOMPARE(hex(recordOf(*read)), hex(recordOf(*original)));
        }
    }

    void aSnapshotReadBackIsTheSameObjectAndWritesTheSameBytes()
    {
        for (const bool validate : {true, false}) {
            const auto original = type().full();
            const auto read = type().make();
            read->SetValidate(validate);
            QCOMPARE(readSnapshot(*read, snapshotOf(*original)), 0);
            QVERIFY(type().equal(*read, *original));
            QCOMPARE(hex(snapshotOf(*read)), hex(snapshotOf(*original)));
        }
    }

    void littleEndianStreamsOfAnOlderVersionAreReadBack()
    {
        const auto original = type().full();
        for (const bool snapshot : {false, true}) {
            QByteArray written;
            QDataStream out(&written, QIODevice::WriteOnly);
            out.setByteOrder(QDataStream::LittleEndian);
            out.setVersion(QDataStream::Qt_4_0);
            if (snapshot)
                original->GetVersionSpecificBinaryWithoutValidation(out);
            else
                QVERIFY(original->GetBinary(out, 0x11223344, true));

            QDataStream in(written);
            in.setByteOrder(QDataStream::LittleEndian);
            in.setVersion(QDataStream::Qt_4_0);
            const auto read = type().make();
            if (snapshot) {
                read->SetVersionSpecificBinaryWithoutValidation(in);
            } else {
                qint32 tag = 0;
                qint32 length = 0;
                in >> tag >> length;
                QCOMPARE(tag, 0x11223344);
                QCOMPARE(length, written.size() - 8);
                read->SetBinary(in, length);
            }
            QVERIFY(type().equal(*read, *original));
            QVERIFY(in.atEnd());
        }
    }

    void newObjectIsReadFromXmlAndBinary()
    {
        const auto original = type().full();
        const QString xml = std::as_const(*original).GetXmlString();
        const QByteArray plain = std::as_const(*original).GetBinaryRepresentationAsQByteArray();
        const QByteArray compressed = std::as_const(*original).GetCompressedBinaryRepresentationAsQByteArray(9);
        QString error = QStringLiteral("left over");
        for (const auto &read : {type().fromXml(xml, &error).release(), type().fromBinary(plain, &error).release(),
                                 type().fromBinary(compressed, &error).release()}) {
            const ClassUnderTest::Pointer object(read);
            QVERIFY2(object, qPrintable(error));
            QVERIFY(error.isNull());
            QVERIFY(type().equal(*object, *original));
            QVERIFY(object->GetValidate());
        }
        QVERIFY(type().fromXml(xml, nullptr));
        QVERIFY(type().fromBinary(plain, nullptr));
    }

    void noNewObjectIsReturnedForDamagedData()
    {
        const auto original = type().full();
        const QString xml = original->GetXmlString();
        const QByteArray plain = original->GetBinaryRepresentationAsQByteArray();
        QString error;
        QVERIFY(!type().fromXml(xml.chopped(2), &error));
        QVERIFY2(error.startsWith(QStringLiteral("XML text:")), qPrintable(error));
        QVERIFY(!type().fromXml(QStringLiteral("<Other/>"), &error));
        QCOMPARE(error,
                 QStringLiteral("XML text:1:8: the root element is 'Other', not '") + text("name") + QLatin1Char('\''));
        QVERIFY(!type().fromBinary(plain.chopped(1), &error));
        QCOMPARE(error,
                 QStringLiteral("binary data: the record's length is %1, but %2 bytes follow")
                     .arg(plain.size() - 8)
                     .arg(plain.size() - 9));
        REPORTGENERATOR::ReadLimits limits;
        limits.setLargestSize(plain.size() - 1);
        QVERIFY(!type().fromBinary(plain, &error, limits));
        QCOMPARE(error,
                 QStringLiteral("binary data: the representation takes %1 bytes, but no more than %2 are accepted")
                     .arg(plain.size())
                     .arg(plain.size() - 1));
        QVERIFY(!type().fromXml(xml.chopped(2), nullptr));
        QVERIFY(!type().fromBinary(plain.chopped(1), nullptr));
    }

    void exceptionOfTheModelIsTheErrorOfANewObject()
    {
        // One member record of a known tag whose length is wrong: the object's own length error.
        QByteArray damaged;
        QDataStream stream(&damaged, QIODevice::WriteOnly);
        stream << quint32(type().id()) << qint32(8) << quint32(0x11111111) << qint32(-4);
        QString error;
        ClassUnderTest::Pointer object;
        QCOMPARE(thrownBy([&] { object = type().fromBinary(damaged, &error); }), QString());
        QVERIFY(!object);
        QCOMPARE(error, text("name") + QLatin1String(lengthError));
    }

    void everyRepresentationReadsBack()
    {
        const auto original = type().full();
        QByteArray plain = original->GetBinaryRepresentationAsQByteArray();
        QByteArray compressed = original->GetCompressedBinaryRepresentationAsQByteArray(9);
        QByteArray leadingWord;
        QDataStream(&leadingWord, QIODevice::WriteOnly) << quint32(type().id());
        QCOMPARE(hex(plain.left(4)), hex(leadingWord));
        QCOMPARE(hex(compressed.left(4)), QStringLiteral("52 47 5A 31")); // no class's identifier
        QVERIFY(compressed.left(4) != leadingWord);
        for (QByteArray *representation : {&plain, &compressed}) {
            const auto read = type().make();
            QVERIFY2(read->SetBinaryRepresentation(*representation), qPrintable(read->GetErrorString()));
            QVERIFY(type().equal(*read, *original));
        }
        const auto read = type().make();
        QVERIFY2(read->SetXmlString(original->GetXmlString(), true), qPrintable(read->GetErrorString()));
        QVERIFY(type().equal(*read, *original));
    }

    void incompleteObjectIsRefusedBeforeAnythingIsWritten()
    {
        const auto object = type().make();
        QString xml;
        QXmlStreamWriter writer(&xml);
        QCOMPARE(thrownBy([&] { object->GetXml(writer); }), text("firstMissing"));
        QCOMPARE(xml, QString());

        QByteArray record;
        QDataStream stream(&record, QIODevice::WriteOnly);
        QCOMPARE(thrownBy([&] { return object->GetBinary(stream, 1, true); }), text("firstMissing"));
        QCOMPARE(hex(record), QString());
    }

    void incompleteObjectIsWrittenWithoutValidation()
    {
        const auto object = type().make();
        object->SetValidate(false);
        QCOMPARE(xmlOf(*object), text("newXml"));

        QByteArray record;
        QDataStream stream(&record, QIODevice::WriteOnly);
        QVERIFY(object->GetBinary(stream, 1, true));
        const auto read = type().make();
        read->SetValidate(false);
        readRecord(*read, record.mid(4));
        QVERIFY(read->IsInitialized());
    }

    void unknownAttributesAreIgnored()
    {
        const auto object = type().make();
        readXml(*object, QStringLiteral("<%1 Version=\"1.1\" nobody=\"knows\"/>").arg(type().staticName()));
        QVERIFY(!object->AnyData());
    }

    void unknownElementsAreSkippedExceptInTheDocument()
    {
        const auto object = type().full();
        const QString before = xmlOf(*object);
        const QString unknown = QStringLiteral("<%1 Version=\"1.1\"><nobody><id>x</id><value>y</value></nobody></%1>")
                                    .arg(type().staticName());
        const QString thrown = thrownBy([&] { readXml(*object, unknown); });
        QCOMPARE(thrown,
                 isDocument() ? QStringLiteral("InvalidXmlException: Unknown Tag 'nobody' in 'TunerProperties'.")
                              : QString());
        QCOMPARE(xmlOf(*object), before);
    }

    void unknownRecordsAreSkipped()
    {
        const auto original = type().full();
        const QByteArray record = recordOf(*original);
        QByteArray length;
        QDataStream(&length, QIODevice::WriteOnly) << qint32(record.size() - 4 + 11);
        const auto read = type().make();
        readRecord(*read, length + bytes("0A 0B 0C 0D 00 00 00 03 FF FF FF") + record.mid(4));
        QVERIFY(type().equal(*read, *original));
    }

    void aRecordOfNoLengthReadsNothing()
    {
        const auto object = type().full();
        QByteArray more("more");
        QDataStream stream(&more, QIODevice::ReadOnly);
        object->SetBinary(stream, 0);
        QCOMPARE(stream.device()->pos(), 0);
        QVERIFY(type().equal(*object, *type().full()));
    }

    void aNegativeLengthIsALengthError()
    {
        const auto object = type().make();
        QDataStream stream(QByteArray("1234567890"));
        QCOMPARE(thrownBy([&] { object->SetBinary(stream, -1); }), ownLengthError());
        QCOMPARE(stream.device()->pos(), 0);
    }

    void excessiveLengthThrowsALengthErrorAndKeepsTheMembersRead()
    {
        const auto original = type().full();
        const QByteArray record = recordOf(*original);
        QDataStream stream(record.mid(4));
        const auto read = type().make();
        QCOMPARE(thrownBy([&] { read->SetBinary(stream, record.size() - 4 + 4); }), ownLengthError());
        QVERIFY(type().equal(*read, *original));
    }

    void truncatedRecordThrowsALengthErrorAndLeavesAUsableObject()
    {
        const QByteArray record = recordOf(*type().full());
        for (int size = 4; size < record.size(); ++size) {
            const auto read = type().make();
            const QString thrown = thrownBy([&] { readRecord(*read, record.left(size)); });
            QVERIFY2(thrown.endsWith(QLatin1String(lengthError)), qPrintable(thrown));
            read->Reset();
            readRecord(*read, record);
            QVERIFY(type().equal(*read, *type().full()));
        }
    }

    void truncatedSnapshotIsReadUpToItsEnd()
    {
        const QByteArray snapshot = snapshotOf(*type().full());
        for (int size = 0; size < snapshot.size(); ++size) {
            const auto read = type().make();
            QCOMPARE(thrownBy([&] { readSnapshot(*read, snapshot.left(size)); }), QString());
            QVERIFY(type().different(*read, *type().full()));
        }
    }

    void flagsOfASnapshotThatNoMemberOwnsAreDropped()
    {
        const auto original = type().full();
        QByteArray snapshot = snapshotOf(*original);
        const QByteArray clean = snapshot;
        const bool twoBytes = isDocument() || type().staticName() == QLatin1String("ValueItem");
        snapshot[twoBytes ? 1 : 0] = char(snapshot.at(twoBytes ? 1 : 0) | char(0x80));
        const auto read = type().make();
        QCOMPARE(readSnapshot(*read, snapshot), 0);
        QCOMPARE(hex(snapshotOf(*read)), hex(clean));
    }

    void theModelNeverLogs()
    {
        const auto logger = std::make_shared<CountingLogger>();
        const auto object = type().make();
        object->SetLogger(logger);
        QVERIFY(!thrownBy([&] { object->Check(); }).isNull());
        QVERIFY(!thrownBy([&] { xmlOf(*object); }).isNull());
        QVERIFY(!thrownBy([&] { recordOf(*object); }).isNull());
        QVERIFY(!thrownBy([&] { readRecord(*object, bytes("00 00 00 01")); }).isNull());
        readRecord(*object, recordOf(*type().full()));
        readXml(*object, xmlOf(*type().full()));
        readSnapshot(*object, bytes(""));
        QVERIFY(object->GetProblems().isEmpty());
        QVERIFY(object->MergeRGObject(*type().full()));
        QCOMPARE(logger->messages, 0);
    }

    void aFailedReadLeavesAnObjectThatCanBeUsed()
    {
        const auto object = type().full();
        QDataStream stream(QByteArray("123"));
        QCOMPARE(thrownBy([&] { object->SetBinary(stream, 10); }), ownLengthError());
        object->Reset();
        const QByteArray record = recordOf(*type().full());
        readRecord(*object, record);
        QCOMPARE(hex(recordOf(*object)), hex(record));
        const auto copy = type().copied(*object);
        QVERIFY(type().equal(*copy, *object));
    }
};

TEST_SUITE(EveryClassEncodingsTest)
#include "tst_EveryClassEncodings.moc"

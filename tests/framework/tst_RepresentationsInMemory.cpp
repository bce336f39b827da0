// SPDX-License-Identifier: MIT
#include <QBuffer>
#include <QTemporaryFile>
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "HeapPeak.h"
#include "Skip.h"
#include "StreamForms.h"

using namespace JobXml;

namespace {

/// Counts the calls of the operations that it overrides, and keeps the bytes that it has read.
class Counted : public TunerProperties
{
public:
    bool GetBinary(QDataStream &stream, int tag, bool writeTag) const override
    {
        ++written;
        return TunerProperties::GetBinary(stream, tag, writeTag);
    }
    void SetBinary(QDataStream &stream, int length) override
    {
        ++read;
        if (auto *const buffer = qobject_cast<QBuffer *>(stream.device()))
            kept = buffer->data();
        TunerProperties::SetBinary(stream, length);
    }

    mutable int written = 0;
    int read = 0;
    QByteArray kept;
};

template <class Document>
Document complete()
{
    Document document;
    static_cast<TunerProperties &>(document) = aDocument();
    return document;
}

/// The representation by the operations of the contract.
QByteArray writtenByGetBinary(const TunerProperties &document, const StreamForm &form)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    form.applyTo(stream);
    if (!document.GetBinary(stream, int(quint32(TunerProperties::GetId())), true))
        qFatal("the document is not complete");
    return bytes;
}

constexpr int large = 4 << 20;

/// A representation with a large record of an unknown tag after that of the version.
QByteArray withLargeUnknownRecord()
{
    QByteArray record(8 + large, 'x');
    qToBigEndian<quint32>(0x12345678, record.data());
    qToBigEndian<qint32>(large, record.data() + 4);
    QByteArray bytes = aDocument().GetBinaryRepresentationAsQByteArray() + record;
    qToBigEndian<qint32>(bytes.size() - 8, bytes.data() + 4);
    return bytes;
}

} // namespace

/// Representations are composed and read in memory, without the streams of GetBinary() and SetBinary(), unless a class
/// derives from one of the model's.
class RepresentationsInMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesAreThoseOfGetBinaryInEveryForm()
    {
        const TunerProperties document = aDocument();
        for (const StreamForm &form : everyForm()) {
            QByteArray bytes;
            QDataStream stream(&bytes, QIODevice::WriteOnly);
            form.applyTo(stream);
            document.GetBinaryRepresentation(stream);
            QCOMPARE(hex(bytes), hex(writtenByGetBinary(document, form)));
        }
        QCOMPARE(hex(document.GetBinaryRepresentationAsQByteArray()),
                 hex(writtenByGetBinary(document,
                                        {QDataStream::Qt_5_15, QDataStream::BigEndian, QDataStream::DoublePrecision})));
    }

    void everyFormIsReadBack()
    {
        const TunerProperties document = aDocument();
        for (const StreamForm &form : everyForm()) {
            const QByteArray bytes = writtenByGetBinary(document, form);
            QDataStream stream(bytes);
            form.applyTo(stream);
            TunerProperties read;
            QVERIFY2(read.SetBinaryRepresentation(stream), qPrintable(read.GetErrorString()));
            QVERIFY2(read == document, qPrintable(form.text()));
            QCOMPARE(stream.status(), QDataStream::Ok);
        }
    }

    void flagAndLoggerArePropagatedBeforeReading()
    {
        const QByteArray bytes = aDocument().GetBinaryRepresentationAsQByteArray();
        TunerProperties document = aDocument();
        document.IRGObject::SetValidate(false); // the root alone
        QVERIFY(document.SetBinaryRepresentation(bytes));
        QCOMPARE(std::as_const(document).GetComponent().size(), 2);
        for (const Component &component : std::as_const(document).GetComponent())
            QCOMPARE(component.GetNode()[0].GetValidate(), false);
    }

    void representationInMemoryIsNotCopied()
    {
        if (!Heap::isWatched)
            SKIP("the heap is not watched");
        const QByteArray bytes = withLargeUnknownRecord();
        TunerProperties document;
        const HeapPeak peak;
        QVERIFY(document.SetBinaryRepresentation(bytes));
        QVERIFY2(peak.bytes() < 100000, QByteArray::number(peak.bytes()).constData());
    }

    void representationTakesNoMoreMemoryThanItsSize()
    {
        if (!Heap::isWatched)
            SKIP("the heap is not watched");
        TunerProperties document = aDocument();
        document.Setname(QString(large, QLatin1Char('x')));
        const HeapPeak peak;
        const QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
        QVERIFY2(peak.inUse() < bytes.size() + 10000, QByteArray::number(peak.inUse()).constData());
    }

    void operationsThatADerivedClassOverridesAreCalled()
    {
        const auto counted = complete<Counted>();
        const QByteArray bytes = aDocument().GetBinaryRepresentationAsQByteArray();
        QCOMPARE(hex(std::as_const(counted).GetBinaryRepresentationAsQByteArray()), hex(bytes));
        QCOMPARE(counted.written, 1);
        QVERIFY(!std::as_const(counted).GetCompressedBinaryRepresentationAsQByteArray(1).isEmpty());
        QCOMPARE(counted.written, 2);
        QTemporaryFile file;
        QVERIFY(file.open() && counted.SaveBinary(file.fileName()));
        QCOMPARE(counted.written, 3);

        Counted read;
        QVERIFY(read.SetBinaryRepresentation(bytes));
        QCOMPARE(read.read, 1);
        QVERIFY(static_cast<TunerProperties &>(read) == aDocument());
        QVERIFY(read.LoadBinary(file.fileName()));
        QCOMPARE(read.read, 2);
    }

    void bytesThatADerivedClassKeepsOutliveTheRepresentation()
    {
        Counted read;
        QByteArray members = aDocument().GetBinaryRepresentationAsQByteArray().mid(8);
        {
            QByteArray bytes = aDocument().GetBinaryRepresentationAsQByteArray();
            QVERIFY(read.SetBinaryRepresentation(bytes));
            bytes.fill('x');
        }
        QCOMPARE(hex(read.kept), hex(members));
    }

    // The lengths add up, but the members that are read by their types end before them.
    void membersThatEndEarlyAreRefused()
    {
        const QByteArray bytes = joined("C8 FC 26 61 00 00 00 11", // ValueBoolean
                                        "89 53 7E 94 00 00 00 09 01", // value, one byte instead of nine
                                        "00 00 00 00 00 00 00 00");
        ValueBoolean value;
        QVERIFY(!value.SetBinaryRepresentation(bytes));
        QCOMPARE(value.GetErrorString(),
                 QStringLiteral("binary data: the record's length is 17, but its members end after 9 bytes"));
        QCOMPARE(value.Getvalue(), true);
        QVERIFY(value.IsvalueSet());
    }

    void membersThatContinueAfterTheRecordAreTheLengthError()
    {
        const QByteArray bytes = joined("C8 FC 26 61 00 00 00 0C", // ValueBoolean
                                        "2B 26 2D C9 00 00 00 05 00 00 00 01"); // id, without its last byte
        ValueBoolean value;
        QCOMPARE(thrownBy([&] { static_cast<void>(value.SetBinaryRepresentation(bytes)); }),
                 QStringLiteral("BinaryParsingException: ValueBoolean::SetBinary(...): Length error occurred during "
                                "processing of binary representation"));
        QVERIFY(!value.IsidSet());
    }
};

TEST_SUITE(RepresentationsInMemoryTest)
#include "tst_RepresentationsInMemory.moc"

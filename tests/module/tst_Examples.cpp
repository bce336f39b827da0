// SPDX-License-Identifier: MIT
#include <QDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Encodings.h"

using namespace JobXml;

/// The documents in examples/ survive every encoding, validating or not.
class ExamplesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("validate");
        const QDir examples(QStringLiteral(EXAMPLES_DIR));
        const QStringList names = examples.entryList({QStringLiteral("*.xml")});
        QCOMPARE(names.size(), 5);
        for (const QString &name : names) {
            for (const bool validate : {true, false})
                QTest::addRow("%s, %s", qPrintable(name), validate ? "validating" : "not validating")
                    << examples.filePath(name) << validate;
        }
    }

    void init()
    {
        QFETCH_GLOBAL(QString, path);
        QFETCH_GLOBAL(bool, validate);
        m_document = TunerProperties();
        m_document.SetValidate(validate);
        QVERIFY2(m_document.LoadXml(path), qPrintable(m_document.GetErrorString()));
    }

    void itIsValid()
    {
        m_document.Check();
        QVERIFY(m_document.GetProblems().isEmpty());
    }

    void itGoesThroughAllThreeEncodingsAndIsTheSameDocument()
    {
        TunerProperties fromRecord = like(m_document);
        QByteArray record = m_document.GetBinaryRepresentationAsQByteArray();
        QVERIFY2(fromRecord.SetBinaryRepresentation(record), qPrintable(fromRecord.GetErrorString()));
        QVERIFY(fromRecord == m_document);

        TunerProperties fromSnapshot = like(m_document);
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(fromRecord)), 0);
        QVERIFY(fromSnapshot == m_document);
        QCOMPARE(fromSnapshot.GetXmlString(), m_document.GetXmlString());

        TunerProperties fromXml = like(m_document);
        QVERIFY(fromXml.SetXmlString(fromSnapshot.GetXmlString(), m_document.GetValidate()));
        QVERIFY(fromXml == m_document);
        QCOMPARE(hex(fromXml.GetBinaryRepresentationAsQByteArray()), hex(record));
    }

    void theCompressedFormIsTheSameDocument()
    {
        TunerProperties read = like(m_document);
        QByteArray compressed = m_document.GetCompressedBinaryRepresentationAsQByteArray(9);
        QVERIFY2(read.SetBinaryRepresentation(compressed), qPrintable(read.GetErrorString()));
        QVERIFY(read == m_document);
    }

    void togetherTheExamplesAreOneOfEachType()
    {
        QSet<int> found;
        const QDir examples(QStringLiteral(EXAMPLES_DIR));
        for (const QString &name : examples.entryList({QStringLiteral("*.xml")})) {
            TunerProperties document;
            QVERIFY(document.LoadXml(examples.filePath(name)));
            found.insert(int(document.Gettype()));
        }
        QCOMPARE(found, (QSet<int>{0, 1, 2, 3, 4}));
    }

private:
    static TunerProperties like(const TunerProperties &document)
    {
        TunerProperties other;
        other.SetValidate(document.GetValidate());
        return other;
    }

    TunerProperties m_document;
};

QTEST_GUILESS_MAIN(ExamplesTest)
#include "tst_Examples.moc"

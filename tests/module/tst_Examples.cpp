// SPDX-License-Identifier: MIT
#include <QDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Encodings.h"
#include "NewMembers.h"
#include "WholeTree.h"

using namespace JobXml;

namespace {

/// Collects "Class.member" for every member that is set and "Mode x" for every mode.
class UsedMembers
{
public:
    void addFrom(const DataObject &object)
    {
        visit(object, [&](const MemberView &member) {
            const QString name = object.GetObjectName() + QLatin1Char('.') + member.GetName();
            if (member.IsSet() && member.GetValue().isValid() && member.GetKind() != MemberKind::Choice)
                used.insert(name);
            if (member.GetKind() == MemberKind::EnumerationList) {
                const QVariantList modes = member.GetValue().toList();
                for (const QVariant &mode : modes)
                    used.insert(QStringLiteral("Mode ") + mode.toString());
            }
            WholeTree::forEachChild(member, [&](const DataObject &child, int) {
                used.insert(name);
                addFrom(child);
            });
        });
    }

    QSet<QString> used;
};

} // namespace

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

    void exampleIsValid()
    {
        m_document.Check();
        QVERIFY(m_document.GetProblems().isEmpty());
    }

    void documentIsUnchangedByAllThreeEncodings()
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

    void examplesIncludeEachTypeOnce()
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

    void examplesUseEveryReleasedMemberEveryKindAndEveryMode()
    {
        const QMap<QString, QString> members{
            {QStringLiteral("TunerProperties"),
             QStringLiteral(
                 "StartupModes BandwidthSelection MaxFFPDelay HRPANSupported Component name type baseresource "
                 "connectableResources quantity parentBaseResource hwProcessing")},
            {QStringLiteral("StartupModes"), QStringLiteral("StartupMode")},
            {QStringLiteral("BandwidthSelection"), QStringLiteral("Name MaxBandwidth")},
            {QStringLiteral("Component"), QStringLiteral("Node type name displayName optional")},
            {QStringLiteral("Node"), QStringLiteral("ValueItem id")},
            {QStringLiteral("ValueItem"),
             QStringLiteral("ValueBoolean ValueFloat ValueInt ValueInt64 ValueNumericFloat ValueNumericInt "
                            "ValueNumericInt64 ValueSelection ValueString ValueStringList")},
            {QStringLiteral("ValueBoolean"), QStringLiteral("id value")},
            {QStringLiteral("ValueFloat"), QStringLiteral("id value")},
            {QStringLiteral("ValueInt"), QStringLiteral("id value")},
            {QStringLiteral("ValueInt64"), QStringLiteral("id value")},
            {QStringLiteral("ValueNumericFloat"), QStringLiteral("id value min max step")},
            {QStringLiteral("ValueNumericInt"), QStringLiteral("id value min max step")},
            {QStringLiteral("ValueNumericInt64"), QStringLiteral("id value min max step")},
            {QStringLiteral("ValueSelection"), QStringLiteral("SelectionItem id value text index")},
            {QStringLiteral("SelectionItem"), QStringLiteral("name value")},
            {QStringLiteral("ValueString"), QStringLiteral("id value")},
            {QStringLiteral("ValueStringList"), QStringLiteral("StringItem id value")},
            {QStringLiteral("StringItem"), QStringLiteral("value")},
        };
        QSet<QString> expected;
        for (auto it = members.begin(); it != members.end(); ++it) {
            const QStringList names = it.value().split(QLatin1Char(' '));
            for (const QString &name : names)
                expected.insert(it.key() + QLatin1Char('.') + name);
        }
        QCOMPARE(expected, Model::releasedMembers());
        for (const char *mode :
             {"Scan", "FastScan", "MScan", "FFM", "WFFM", "Step", "DF", "MSearch", "Polar", "Search", "Stop"})
            expected.insert(QStringLiteral("Mode ") + QLatin1String(mode));

        UsedMembers inUse;
        const QDir examples(QStringLiteral(EXAMPLES_DIR));
        for (const QString &name : examples.entryList({QStringLiteral("*.xml")})) {
            TunerProperties document;
            QVERIFY(document.LoadXml(examples.filePath(name)));
            inUse.addFrom(document);
        }
        QCOMPARE(inUse.used, expected);
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

TEST_SUITE(ExamplesTest)
#include "tst_Examples.moc"

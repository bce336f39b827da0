// SPDX-License-Identifier: MIT
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <jobxml/ValueBoolean.h>

#include "Encodings.h"

using JobXml::ValueBoolean;

/// The object that the README shows in the three encodings is written so, and read from what is shown.
class ReadmeEncodingsTest : public QObject
{
    Q_OBJECT

private:
    /// The blocks of the README in this language, without their fences.
    static QStringList blocks(const QString &language)
    {
        QFile file(QStringLiteral(README_FILE));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString readme = QString::fromUtf8(file.readAll());
        const QRegularExpression block(QStringLiteral("^```%1\\n(.*?)^```$").arg(language),
                                       QRegularExpression::MultilineOption
                                           | QRegularExpression::DotMatchesEverythingOption);
        QStringList found;
        for (auto match = block.globalMatch(readme); match.hasNext();)
            found.append(match.next().captured(1));
        return found;
    }

    /// The bytes at the start of each line; two blanks end them.
    static QByteArray bytesOf(const QString &block)
    {
        QByteArray result;
        for (const QString &line : block.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            result += bytes(line.section(QStringLiteral("  "), 0, 0).toLatin1().constData());
        return result;
    }

    static ValueBoolean shown()
    {
        ValueBoolean object;
        object.Setid(QStringLiteral("x"));
        object.Setvalue(true);
        return object;
    }

private Q_SLOTS:
    void theXmlIsThatOfTheObject()
    {
        const QStringList xml = blocks(QStringLiteral("xml"));
        QCOMPARE(xml.size(), 1);
        QCOMPARE(xml.first(), xmlOf(shown()) + QLatin1Char('\n'));
        ValueBoolean read;
        readXml(read, xml.first());
        QVERIFY(read == shown());
    }

    void theTaggedRecordIsThatOfTheObject()
    {
        const QStringList encodings = blocks(QStringLiteral("hex"));
        QCOMPARE(encodings.size(), 2);
        QByteArray record = bytesOf(encodings.first());
        QCOMPARE(hex(shown().GetBinaryRepresentationAsQByteArray()), hex(record));
        ValueBoolean read;
        QVERIFY2(read.SetBinaryRepresentation(record), qPrintable(read.GetErrorString()));
        QVERIFY(read == shown());
    }

    void theSnapshotIsThatOfTheObject()
    {
        const QStringList encodings = blocks(QStringLiteral("hex"));
        QCOMPARE(encodings.size(), 2);
        const QByteArray snapshot = bytesOf(encodings.last());
        QCOMPARE(hex(snapshotOf(shown())), hex(snapshot));
        ValueBoolean read;
        QCOMPARE(readSnapshot(read, snapshot), 0);
        QVERIFY(read == shown());
    }
};

TEST_SUITE_WITHOUT_APPLICATION(ReadmeEncodingsTest)
#include "tst_ReadmeEncodings.moc"

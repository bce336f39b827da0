// SPDX-License-Identifier: MIT
#include "Checker.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

void Checker::check(const QStringList &documents)
{
    QTemporaryDir folder;
    QHash<QString, QString> documentOf; // by file name
    QStringList arguments{QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--schema"), m_schema};
    const int options = arguments.size();
    for (const QString &document : documents) {
        if (m_verdicts.contains(document))
            continue;
        const QString name = QStringLiteral("%1.xml").arg(arguments.size());
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(document.toUtf8()) > 0);
        documentOf.insert(name, document);
        arguments.append(name);
    }

    if (arguments.size() == options)
        return;

    QProcess checker;
    checker.setWorkingDirectory(folder.path());
    checker.start(QStringLiteral(XMLLINT_PROGRAM), arguments);
    QVERIFY2(checker.waitForFinished(-1), qPrintable(checker.errorString()));
    QCOMPARE(checker.exitStatus(), QProcess::NormalExit);

    static const QRegularExpression complaint(
        QStringLiteral("^([0-9]+\\.xml):[0-9]+: .*Schemas validity error : (.*)$"));
    static const QRegularExpression verdict(QStringLiteral("^([0-9]+\\.xml) (validates|fails to validate)$"));
    const QString said = QString::fromUtf8(checker.readAllStandardError());
    for (const QString &line : said.split(QLatin1Char('\n'))) {
        if (const auto match = complaint.match(line); match.hasMatch()) {
            m_verdicts[documentOf.value(match.captured(1))].complaints.append(match.captured(2));
        } else if (const auto end = verdict.match(line); end.hasMatch()) {
            Verdict &ofDocument = m_verdicts[documentOf.value(end.captured(1))];
            (end.captured(2) == QLatin1String("validates") ? ofDocument.accepted : ofDocument.refused) = true;
        }
    }
    for (const QString &document : documents) {
        const Verdict &ofDocument = m_verdicts.value(document);
        QVERIFY2(ofDocument.accepted != ofDocument.refused, qPrintable(document + QLatin1Char('\n') + said));
    }
}

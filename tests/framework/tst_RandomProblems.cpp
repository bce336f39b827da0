// SPDX-License-Identifier: MIT
#include <optional>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "framework/Random.h"
#include "framework/XmlSpellings.h"

using namespace JobXml;

namespace {

using Problems = QVector<Problem>;

/// The outcome of an operation that throws for content.
struct Outcome
{
    bool isRead = false;
    QString error;
    std::optional<ReportException> exception;
};

template <class Read>
Outcome outcomeOf(TunerProperties &document, const Read &read)
{
    Outcome outcome;
    try {
        outcome.isRead = read(document);
        outcome.error = document.GetErrorString();
    } catch (const ReportException &e) {
        outcome.exception = e;
    }
    return outcome;
}

bool isSame(const Problem &left, const Problem &right)
{
    return left.message == right.message && left.member == right.member && left.path == right.path
        && left.xmlOnly == right.xmlOnly && left.line == right.line && left.column == right.column
        && left.offset == right.offset && left.isUnreadable == right.isUnreadable
        && std::equal(left.steps.begin(), left.steps.end(), right.steps.begin(), right.steps.end(),
                      [](const Step &one, const Step &other) {
                          return one.member == other.member && one.index == other.index;
                      });
}

/// How the problems of a document disagree with the other readers; null if they agree.
template <class Read, class ReadStrictly>
QString mistake(const Read &readAll, const ReadStrictly &read)
{
    TunerProperties all;
    Problems problems;
    const bool isGood = readAll(all, problems);
    if (isGood != problems.isEmpty())
        return QStringLiteral("the result does not agree with the problems");

    TunerProperties lenient;
    lenient.SetValidate(false);
    const Outcome unvalidated = outcomeOf(lenient, read);
    if (hex(snapshotOf(all)) != hex(snapshotOf(lenient)))
        return QStringLiteral("the object is not that of reading without validation");
    if (!unvalidated.exception && all.GetErrorString() != unvalidated.error)
        return QStringLiteral("the error string is another one");

    TunerProperties strict;
    const Outcome validated = outcomeOf(strict, read);
    if (validated.exception) {
        if (problems.isEmpty())
            return QStringLiteral("an exception is not among the problems");
        const Problem &first = problems.first();
        const REPORTGENERATOR::ErrorLocation place = validated.exception->GetLocation();
        if (first.message != validated.exception->GetMessageText())
            return QStringLiteral("the first problem is not the exception");
        if (first.line != place.line || first.column != place.column || first.offset != place.offset
            || first.path != place.path)
            return QStringLiteral("the exception has another place");
        if (first.line == 0 && first.offset < 0)
            return QStringLiteral("the first problem has no place");
        return QString();
    }
    if (!validated.isRead)
        return problems.size() == 1 ? QString() : QStringLiteral("there are more problems than the failure");
    const Problems found = strict.GetProblems();
    if (!std::equal(problems.begin(), problems.end(), found.begin(), found.end(), isSame))
        return QStringLiteral("the problems are not those of GetProblems()");
    return QString();
}

QString mistakeOfXml(const QByteArray &document)
{
    const QString xml = QString::fromUtf8(document);
    return mistake([&](auto &object, Problems &problems) { return object.SetXmlString(xml, problems); },
                   [&](auto &object) { return object.SetXmlString(xml, object.GetValidate()); });
}

QString mistakeOfRecords(const QByteArray &representation)
{
    return mistake(
        [&](auto &object, Problems &problems) { return object.SetBinaryRepresentation(representation, problems); },
        [&](auto &object) { return object.SetBinaryRepresentation(representation); });
}

} // namespace

/// Reading with all problems agrees with reading with validation, which throws for the first one, and without, which
/// throws for none.
class RandomProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void problemsOfXmlAgreeWithTheOtherReaders();
    void problemsOfRecordsAgreeWithTheOtherReaders();
};

void RandomProblemsTest::problemsOfXmlAgreeWithTheOtherReaders()
{
    int withProblems = 0;
    for (quint32 seed = 0; seed < 1500; ++seed) {
        Random random(seed);
        QByteArray document = XmlSpellings::document(random);
        if (seed % 3 == 0)
            document = XmlSpellings::mutated(random, document, XmlSpellings::document(random));
        const QString found = mistakeOfXml(document);
        QVERIFY2(found.isNull(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + found));
        TunerProperties object;
        Problems problems;
        withProblems += object.SetXmlString(QString::fromUtf8(document), problems) ? 0 : 1;
    }
    QVERIFY2(withProblems > 500, QByteArray::number(withProblems).constData());
}

void RandomProblemsTest::problemsOfRecordsAgreeWithTheOtherReaders()
{
    TunerProperties source = aDocument(2);
    source.AppendBandwidthSelection(aBandwidth(5));
    source.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::Scan);
    const QByteArray good = source.GetBinaryRepresentationAsQByteArray();
    QCOMPARE(mistakeOfRecords(good), QString());
    for (int i = 8; i < good.size(); ++i) {
        for (const int bit : {0, 2, 7}) {
            QByteArray damaged = good;
            damaged.data()[i] = char(damaged.at(i) ^ (1 << bit));
            const QString found = mistakeOfRecords(damaged);
            QVERIFY2(found.isNull(), qPrintable(QStringLiteral("byte %1, bit %2: ").arg(i).arg(bit) + found));
        }
    }
}

TEST_SUITE(RandomProblemsTest)
#include "tst_RandomProblems.moc"

// SPDX-License-Identifier: MIT
#include <memory>
#include <utility>

#include <QTest>
#include <QVariant>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Merge.h>
#include <tunerdocuments/Patch.h>
#include <tunerdocuments/Sarif.h>
#include <tunerdocuments/Schema.h>

using namespace TunerDocuments;
using JobXml::ReadOptions;
using REPORTGENERATOR::ReadLimits;

class PublicTypesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionsHaveTheDefaultsThatAreDocumented();
    void settersReturnTheirObject();
    void changedCopyOfOptionsLeavesTheOriginal();
    void changedCopyOfFindingsLeavesTheOriginal();
    void changedCopyOfAPartLeavesTheOriginal();
    void copiesOfAnnotationsShareThem();
    void copyOfAnExceptionHasItsTexts();
    void resultOfMergingHasTheDocumentAsItIs();
    void resultsAreValuesOfVariants();
};

namespace {

Finding warning(const QString &message)
{
    Finding finding;
    finding.kind = Finding::Kind::Warning;
    finding.message = message;
    return finding;
}

} // namespace

void PublicTypesTest::optionsHaveTheDefaultsThatAreDocumented()
{
    const ReadOptions reading;
    QCOMPARE(reading.maxBytes(), Q_INT64_C(9223372036854775807));
    QVERIFY(reading.allowCompressed());
    QVERIFY(reading.validate());
    const LoadOptions loading;
    QVERIFY(!loading.form());
    QCOMPARE(loading.maxExpansion(), 50);
    QCOMPARE(loading.maxProblems(), 100);
    const LintOptions linting;
    QCOMPARE(linting.disabled(), QStringList());
    QCOMPARE(linting.errors(), QStringList());
    QCOMPARE(linting.most(), Q_INT64_C(9223372036854775807));
}

void PublicTypesTest::settersReturnTheirObject()
{
    ReadLimits limits;
    QCOMPARE(&limits.setLargestSize(1), &limits);
    QCOMPARE(&limits.setLargestExpandedSize(2), &limits);
    QCOMPARE(&limits.setAcceptCompressed(false), &limits);
    QCOMPARE(limits.largestSize(), Q_INT64_C(1));
    QCOMPARE(limits.largestExpandedSize(), Q_INT64_C(2));
    QVERIFY(!limits.acceptCompressed());
    ReadOptions reading;
    QCOMPARE(&reading.setMaxBytes(3), &reading);
    QCOMPARE(&reading.setAllowCompressed(false), &reading);
    QCOMPARE(&reading.setValidate(false), &reading);
    QCOMPARE(reading.maxBytes(), Q_INT64_C(3));
    QVERIFY(!reading.allowCompressed());
    QVERIFY(!reading.validate());
    LoadOptions loading;
    QCOMPARE(&loading.setForm(Form::Json), &loading);
    QCOMPARE(&loading.setMaxExpansion(4), &loading);
    QCOMPARE(&loading.setMaxProblems(5), &loading);
    QVERIFY(loading.form() == Form::Json);
    QCOMPARE(loading.maxExpansion(), 4);
    QCOMPARE(loading.maxProblems(), 5);
    LintOptions linting;
    QCOMPARE(&linting.setDisabled({QStringLiteral("a")}), &linting);
    QCOMPARE(&linting.setErrors({QStringLiteral("b")}), &linting);
    QCOMPARE(&linting.setMost(6), &linting);
    QCOMPARE(linting.disabled(), QStringList{QStringLiteral("a")});
    QCOMPARE(linting.errors(), QStringList{QStringLiteral("b")});
    QCOMPARE(linting.most(), Q_INT64_C(6));
}

void PublicTypesTest::changedCopyOfOptionsLeavesTheOriginal()
{
    const ReadLimits limits = ReadLimits().setLargestSize(1);
    ReadLimits otherLimits = limits;
    otherLimits.setLargestSize(2);
    QCOMPARE(limits.largestSize(), Q_INT64_C(1));
    const ReadOptions reading = ReadOptions().setMaxBytes(1);
    ReadOptions otherReading = reading;
    otherReading.setMaxBytes(2);
    QCOMPARE(reading.maxBytes(), Q_INT64_C(1));
    const LoadOptions loading = LoadOptions().setMaxProblems(1);
    LoadOptions otherLoading = loading;
    otherLoading.setMaxProblems(2);
    QCOMPARE(loading.maxProblems(), 1);
    const LintOptions linting = LintOptions().setMost(1);
    LintOptions otherLinting = linting;
    otherLinting.setMost(2);
    QCOMPARE(linting.most(), Q_INT64_C(1));
}

void PublicTypesTest::changedCopyOfFindingsLeavesTheOriginal()
{
    Findings findings(7);
    findings.add(warning(QStringLiteral("a")));
    Findings copy = findings;
    copy.add(warning(QStringLiteral("b")));
    QCOMPARE(findings.count(), Q_INT64_C(1));
    QCOMPARE(copy.count(), Q_INT64_C(2));
    QCOMPARE(copy.most(), 7);
    findings = std::move(copy);
    QCOMPARE(findings.count(), Q_INT64_C(2));
}

void PublicTypesTest::changedCopyOfAPartLeavesTheOriginal()
{
    Sarif::Part part("a.xml");
    part.add(warning(QStringLiteral("a")));
    const qint64 size = part.size();
    Sarif::Part copy = part;
    copy.add(warning(QStringLiteral("b")));
    QVERIFY(copy.size() > size);
    QCOMPARE(part.size(), size);
    part = std::move(copy);
    QVERIFY(part.size() > size);
}

void PublicTypesTest::copiesOfAnnotationsShareThem()
{
    const auto annotations = std::make_unique<Schema::Annotations>();
    const QString text = annotations->ofClass(QStringLiteral("Node"));
    QVERIFY(!text.isEmpty());
    const Schema::Annotations copy = *annotations;
    QCOMPARE(copy.ofClass(QStringLiteral("Node")), text);
}

void PublicTypesTest::copyOfAnExceptionHasItsTexts()
{
    const InvalidContent invalid(QStringLiteral("n"), Findings());
    const InvalidContent copy = invalid;
    QCOMPARE(copy.name(), QStringLiteral("n"));
    QVERIFY(copy.problems().isEmpty());
    const DocumentError error(QStringLiteral("a\nb"));
    const DocumentError sameError = error;
    QCOMPARE(sameError.text(), QStringLiteral("a\nb"));
    const PatchFailure failure(QStringLiteral("p"), QStringLiteral("r"));
    const PatchFailure sameFailure = failure;
    QCOMPARE(sameFailure.path(), QStringLiteral("p"));
    QCOMPARE(sameFailure.text(), QStringLiteral("p: r"));
}

void PublicTypesTest::resultOfMergingHasTheDocumentAsItIs()
{
    JobXml::TunerProperties document;
    document.Setquantity(3);
    document.SetValidate(false);
    const MergeResult result(document);
    QVERIFY(result.document == document);
    QVERIFY(!result.document.GetValidate());
    QVERIFY(result.conflicts.isEmpty());
}

void PublicTypesTest::resultsAreValuesOfVariants()
{
    QCOMPARE(QVariant::fromValue(warning(QStringLiteral("a"))).value<Finding>().message, QStringLiteral("a"));
    JobXml::Problem problem({}, QStringLiteral("b"));
    QCOMPARE(QVariant::fromValue(problem).value<JobXml::Problem>().message, QStringLiteral("b"));
    QCOMPARE(QVariant::fromValue(Findings(3)).value<Findings>().most(), 3);
    QVERIFY(QVariant::fromValue(Document({}, Form::Json)).value<Document>().form == Form::Json);
    QVERIFY(QVariant::fromValue(Patch()).value<Patch>().isEmpty());
}

TEST_SUITE(PublicTypesTest)
#include "tst_PublicTypes.moc"

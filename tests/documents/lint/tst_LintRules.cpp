// SPDX-License-Identifier: MIT
#include <QSet>

#include <tunerdocuments/Lint.h>

#include "Suites.h"
#include "documents/lint/Cases.h"

using namespace TunerDocuments;

class LintRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ruleFindsWhatItIsFor_data();
    void ruleFindsWhatItIsFor();
    void ruleIsSilentOtherwise_data();
    void ruleIsSilentOtherwise();
    void disabledRuleFindsNothing_data();
    void disabledRuleFindsNothing();
    void commentDisablesTheRule_data();
    void commentDisablesTheRule();
    void everyRuleHasCases();
    void everyRuleIsDescribed();
};

namespace {

/// The findings of a rule, as the tool writes them.
QStringList findings(const QByteArray &xml, const QString &rule, const LintOptions &options = {})
{
    QStringList result;
    const Document document = Document::fromBytes(xml, QStringLiteral("a.xml"));
    lint(
        document, xml,
        [&](const Finding &finding) {
            if (finding.rule == rule)
                result.append(finding.text(QStringLiteral("a.xml")));
        },
        options);
    return result;
}

void addCases()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QByteArray>("found");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QByteArray>("silent");
    int number = 0;
    for (const LintCase &one : lintCases())
        QTest::addRow("%d %s", ++number, one.rule)
            << QString::fromLatin1(one.rule) << one.found << one.expected << one.silent;
}

} // namespace

void LintRulesTest::ruleFindsWhatItIsFor_data()
{
    addCases();
}

void LintRulesTest::ruleFindsWhatItIsFor()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, found);
    QFETCH(QStringList, expected);
    QVERIFY(!expected.isEmpty());
    QCOMPARE(findings(found, rule).join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

void LintRulesTest::ruleIsSilentOtherwise_data()
{
    addCases();
}

void LintRulesTest::ruleIsSilentOtherwise()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, silent);
    QCOMPARE(findings(silent, rule), QStringList());
}

void LintRulesTest::disabledRuleFindsNothing_data()
{
    addCases();
}

void LintRulesTest::disabledRuleFindsNothing()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, found);
    LintOptions options;
    options.disabled = QStringList{rule};
    QCOMPARE(findings(found, rule, options), QStringList());
}

void LintRulesTest::commentDisablesTheRule_data()
{
    addCases();
}

void LintRulesTest::commentDisablesTheRule()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, found);
    const QByteArray comment = "<!-- tunerproperties-lint-disable " + rule.toUtf8() + " -->\n";
    QCOMPARE(findings(comment + found, rule), QStringList());
}

void LintRulesTest::everyRuleHasCases()
{
    QStringList withCases;
    for (const LintCase &one : lintCases()) {
        const QString rule = QString::fromLatin1(one.rule);
        if (!withCases.contains(rule))
            withCases.append(rule);
    }
    QStringList rules;
    for (const LintRule &rule : lintRules())
        rules.append(rule.name);
    QCOMPARE(withCases, rules);
}

void LintRulesTest::everyRuleIsDescribed()
{
    QSet<QString> names;
    for (const LintRule &rule : lintRules()) {
        QVERIFY2(rule.finds.endsWith(QLatin1Char('.')) && rule.why.endsWith(QLatin1Char('.')), qPrintable(rule.name));
        names.insert(rule.name);
    }
    QCOMPARE(names.size(), lintRules().size());
}

TEST_SUITE(LintRulesTest)
#include "tst_LintRules.moc"

// SPDX-License-Identifier: MIT
#include <QRegularExpression>
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
    void disabledRuleIsTheOnlyOneThatFindsNothing_data();
    void disabledRuleIsTheOnlyOneThatFindsNothing();
    void commentDisablesTheRuleAndNoOther_data();
    void commentDisablesTheRuleAndNoOther();
    void everyRuleHasCases();
    void everyRuleIsDescribed();
};

namespace {

/// All findings, as the tool writes them.
QStringList findings(const QByteArray &xml, const LintOptions &options = {})
{
    QStringList result;
    const Document document = Document::fromBytes(xml, QStringLiteral("a.xml"));
    lint(
        document, xml, [&](const Finding &finding) { result.append(finding.text(QStringLiteral("a.xml"))); }, options);
    return result;
}

/// Those of a rule.
QStringList ofRule(const QStringList &findings, const QString &rule)
{
    return findings.filter(QStringLiteral(" [%1]").arg(rule));
}

/// The document with findings of two other rules than that one, at its end: of one about the text and one about
/// objects.
QByteArray withOtherFindings(const QByteArray &xml, const QString &rule)
{
    const QByteArray text = rule == QLatin1String("unknown-attribute") ? "<Component type=\"o\" optional=\"maybe\"/>"
                                                                       : "<Component type=\"o\" other=\"\"/>";
    const QByteArray objects = rule == QLatin1String("duplicate-bandwidth")
        ? "<BandwidthSelection><Name>o</Name><MaxBandwidth>-1</MaxBandwidth></BandwidthSelection>"
        : "<BandwidthSelection><Name>o</Name></BandwidthSelection><BandwidthSelection><Name>o</Name></"
          "BandwidthSelection>";
    return QByteArray(xml).replace("</TunerProperties>", text + objects + "</TunerProperties>");
}

/// Without the lines and columns, which comments move.
QStringList withoutPlaces(QStringList findings)
{
    return findings.replaceInStrings(QRegularExpression(QStringLiteral("^a\\.xml:\\d+:\\d+: ")), QString());
}

/// The findings of all other rules, of which there are two more than those of the document.
void checkThatOthersStay(const QByteArray &xml, const QByteArray &changedXml, const QString &rule,
                         const LintOptions &options = {})
{
    const QByteArray marked = withOtherFindings(changedXml, rule);
    QStringList others = withoutPlaces(findings(withOtherFindings(xml, rule)));
    for (const QString &finding : ofRule(others, rule))
        others.removeOne(finding);
    QVERIFY2(others.size() >= 2, qPrintable(others.join(QLatin1Char('\n'))));
    QCOMPARE(withoutPlaces(findings(marked, options)).join(QLatin1Char('\n')), others.join(QLatin1Char('\n')));
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
    QCOMPARE(ofRule(findings(found), rule).join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

void LintRulesTest::ruleIsSilentOtherwise_data()
{
    addCases();
}

void LintRulesTest::ruleIsSilentOtherwise()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, silent);
    QCOMPARE(ofRule(findings(silent), rule), QStringList());
}

void LintRulesTest::disabledRuleIsTheOnlyOneThatFindsNothing_data()
{
    addCases();
}

void LintRulesTest::disabledRuleIsTheOnlyOneThatFindsNothing()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, found);
    LintOptions options;
    options.setDisabled({rule});
    checkThatOthersStay(found, found, rule, options);
}

void LintRulesTest::commentDisablesTheRuleAndNoOther_data()
{
    addCases();
}

void LintRulesTest::commentDisablesTheRuleAndNoOther()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, found);
    checkThatOthersStay(found, "<!-- tunerproperties-lint-disable " + rule.toUtf8() + " -->\n" + found, rule);
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

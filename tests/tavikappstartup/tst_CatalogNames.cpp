// SPDX-License-Identifier: MIT
#include <QtTest>

#include "CatalogNames.h"

/// The names of catalogs for what the versions of Qt list as the languages of the same locale.
class CatalogNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreTriedInTheSameOrderWithEachQt_data();
    void namesAreTriedInTheSameOrderWithEachQt();
    void languagesOfTheUserStayInTheirOrder();
    void languagesThatQtDoesNotKnowStayInTheirOrder();
    void localeOfTheProgramIsNamedWithEachQt();
};

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

void CatalogNamesTest::namesAreTriedInTheSameOrderWithEachQt_data()
{
    QTest::addColumn<QString>("languages");
    QTest::addColumn<QString>("names");
    const auto add = [](const char *name, const char *languages, const char *names) {
        QTest::newRow(name) << QString::fromLatin1(languages) << QString::fromLatin1(names);
    };
    const char *const german = "M_de M_de_DE M_de_de M_de_Latn_DE M_de_Latn M_de_latn_de M_de_latn";
    add("de_DE, Qt 5", "de de-DE de-Latn-DE", german);
    add("de_DE, Qt 6", "de-Latn-DE de-DE de", german);
    add("de_DE of the system, Qt 5", "de de-DE de-Latn-DE", german);
    add("de_DE of the system, Qt 6", "de de-Latn-DE de-DE", german);
    const char *const austrian = "M_de_AT M_de M_de_at M_de_Latn_AT M_de_Latn M_de_latn_at M_de_latn";
    add("de_AT, Qt 5", "de-AT de-Latn-AT", austrian);
    add("de_AT, Qt 6", "de-Latn-AT de-AT", austrian);
    const char *const serbian = "M_sr_RS M_sr M_sr_rs M_sr_Cyrl_RS M_sr_Cyrl M_sr_cyrl_rs M_sr_cyrl";
    add("sr_RS of the system, Qt 5", "sr-RS sr sr-Cyrl-RS", serbian);
    add("sr_RS of the system, Qt 6", "sr-RS sr-Cyrl-RS sr", serbian);
    add("C", "C", "M_C M_c");
}

void CatalogNamesTest::namesAreTriedInTheSameOrderWithEachQt()
{
    QFETCH(QString, languages);
    QFETCH(QString, names);
    QCOMPARE(CatalogNames::of(QStringLiteral("M"), words(qPrintable(languages))).join(QLatin1Char(' ')), names);
}

void CatalogNamesTest::languagesOfTheUserStayInTheirOrder()
{
    const QStringList expected = words("de-AT de-Latn-AT de de-DE de-Latn-DE fr fr-FR fr-Latn-FR");
    QCOMPARE(CatalogNames::sorted(words("de-AT de-Latn-AT de de-DE de-Latn-DE fr fr-FR fr-Latn-FR")), expected);
    QCOMPARE(CatalogNames::sorted(words("de-AT de-Latn-AT de de-Latn-DE de-DE fr fr-Latn-FR fr-FR")), expected);
}

void CatalogNamesTest::languagesThatQtDoesNotKnowStayInTheirOrder()
{
    QCOMPARE(CatalogNames::sorted(words("xx-YY qqq zz C")), words("xx-YY qqq zz C"));
}

void CatalogNamesTest::localeOfTheProgramIsNamedWithEachQt()
{
    const auto first = [](const char *locale) {
        return CatalogNames::of(QStringLiteral("M"), QLocale(QString::fromLatin1(locale)).uiLanguages()).value(0);
    };
    QCOMPARE(first("de_AT"), QStringLiteral("M_de_AT"));
    QCOMPARE(first("de_DE"), QStringLiteral("M_de"));
    QCOMPARE(first("zh_TW"), QStringLiteral("M_zh_TW"));
    QCOMPARE(first("sr_Latn_RS"), QStringLiteral("M_sr_Latn"));
}

TEST_SUITE(CatalogNamesTest)
#include "tst_CatalogNames.moc"

// SPDX-License-Identifier: MIT
#include <QTest>

#include "Rows.h"
#include "documents/values/ExactNotation.h"

using namespace TunerDocuments;
using JobXml::MemberKind;

/// Which texts of documents denote exactly what a user has typed.
class ExactNotationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notationsAreCompared_data();
    void notationsAreCompared();
};

void ExactNotationTest::notationsAreCompared_data()
{
    const Rows<int, QString, QString, bool> rows("kind", "written", "typed", "isExact");
    const auto row = [&](MemberKind kind, const char *written, const char *typed, bool isExact) {
        const QByteArray title =
            QByteArray(written) + (isExact ? " is " : " is not ") + typed + " as kind " + QByteArray::number(int(kind));
        QTest::newRow(title.constData()) << int(kind) << QString::fromUtf8(written) << QString::fromUtf8(typed)
                                         << isExact;
    };
    for (const MemberKind kind : {MemberKind::Int, MemberKind::Int64, MemberKind::UInt64}) {
        row(kind, "1", "1", true);
        row(kind, "01", "1", true);
        row(kind, " +1\n", "001", true);
        row(kind, "10", "1", false);
        row(kind, "\u00A01", "1", false);
        row(kind, "0", "-0", true);
        row(kind, "abc", "0", false);
        row(kind, "", "0", false);
        row(kind, "-", "0", false);
        row(kind, "1.0", "1", false);
        row(kind, "1e0", "1", false);
        row(kind, "99999999999999999999999999", "0", false);
        row(kind, "9007199254740993", "9007199254740992", false);
    }
    for (const MemberKind kind : {MemberKind::Float, MemberKind::Double}) {
        row(kind, "0.50", "0.5", true);
        row(kind, "500e-3", "0.5", true);
        row(kind, ".5", "0.5", true);
        row(kind, "05E-1", "0.5", true);
        row(kind, " 12. ", "1.2e1", true);
        row(kind, "0.1000000000000000055511151231257827", "0.1", false);
        row(kind, "0.1000000001", "0.10", false);
        row(kind, "-0.5", "0.5", false);
        row(kind, "0.000e7", "0", true);
        row(kind, "-0", "0", false);
        row(kind, "-0.0", "-0", true);
        row(kind, "abc", "0", false);
        row(kind, ".", "0", false);
        row(kind, "e5", "0", false);
        row(kind, "1e-99999999999", "0", false);
        row(kind, "NaN", "nan", true);
        row(kind, "inf", "Infinity", true);
        row(kind, "-inf", "Infinity", false);
        row(kind, "nan", "0", false);
    }
    row(MemberKind::Boolean, "true", "1", true);
    row(MemberKind::Boolean, "1", "true", true);
    row(MemberKind::Boolean, "False", "0", true);
    row(MemberKind::Boolean, "0", "false", true);
    row(MemberKind::Boolean, "false", "true", false);
    row(MemberKind::Boolean, "maybe", "true", false);
    row(MemberKind::Boolean, "yes", "true", false);
    row(MemberKind::Boolean, " false", "true", false);
    row(MemberKind::Boolean, "", "false", false);
    row(MemberKind::Text, "a", "a", true);
}

void ExactNotationTest::notationsAreCompared()
{
    QFETCH(int, kind);
    QFETCH(QString, written);
    QFETCH(QString, typed);
    QFETCH(bool, isExact);
    QCOMPARE(isExactNotation(MemberKind(kind), written, typed), isExact);
}

TEST_SUITE(ExactNotationTest)
#include "tst_ExactNotation.moc"

// SPDX-License-Identifier: MIT
#include <QtTest>

#include <type_traits>

#include <ExceptionText.h>
#include <reportbase/ReportException.h>

class ReportExceptionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageIsKeptUnchanged();
    void whatIsTheUtf8OfTheMessage();
    void whatStaysValidWhileACopyLives();
    void assignmentCopiesTheMessage();
    void everyTypeIsCopiedWithItsMessage();
    void copyingNeverThrows();
    void theFamilyIsAsItsUsersCatchIt();
    void everyExceptionIsCaughtByItsOwnType_data();
    void everyExceptionIsCaughtByItsOwnType();
};

void ReportExceptionTest::messageIsKeptUnchanged()
{
    const QString message = QStringLiteral("Gerät %1: ") + QChar(0) + QStringLiteral("kaputt");
    QCOMPARE(OutOfRangeException(message).GetMessageText(), message);
    QVERIFY(RGException(QString()).GetMessageText().isNull());
}

void ReportExceptionTest::whatIsTheUtf8OfTheMessage()
{
    QCOMPARE(QByteArray(ReportException(QStringLiteral("Gerät €")).what()), QByteArray("Ger\xc3\xa4t \xe2\x82\xac"));
    QCOMPARE(QByteArray(ReportException(QString()).what()), QByteArray(""));
}

void ReportExceptionTest::whatStaysValidWhileACopyLives()
{
    auto first = std::make_unique<RGException>(QStringLiteral("gone"));
    const RGException copy(*first);
    const char *text = first->what();
    first.reset();
    QCOMPARE(text, "gone");
    QCOMPARE(static_cast<const void *>(copy.what()), static_cast<const void *>(text));
}

void ReportExceptionTest::assignmentCopiesTheMessage()
{
    InvalidXmlException to(QStringLiteral("old"));
    to = InvalidXmlException(QStringLiteral("new"));
    QCOMPARE(to.what(), "new");
    QCOMPARE(to.GetMessageText(), QStringLiteral("new"));
}

template <typename Exception>
constexpr bool copiesWithoutThrowing = std::is_nothrow_copy_constructible_v<Exception>
    &&std::is_nothrow_copy_assignable_v<Exception> &&std::is_nothrow_move_constructible_v<Exception>
        &&std::is_nothrow_move_assignable_v<Exception> &&std::has_virtual_destructor_v<Exception>;

template <typename Exception>
QByteArray textOfACopyOfACopy(const QString &message)
{
    const Exception original(message);
    const Exception copy(original);
    Exception assigned(QStringLiteral("another"));
    assigned = copy;
    return assigned.what();
}

void ReportExceptionTest::everyTypeIsCopiedWithItsMessage()
{
    const QString message = QStringLiteral("the message");
    QCOMPARE(textOfACopyOfACopy<ReportException>(message), QByteArray("the message"));
    QCOMPARE(textOfACopyOfACopy<RGException>(message), QByteArray("the message"));
    QCOMPARE(textOfACopyOfACopy<OutOfRangeException>(message), QByteArray("the message"));
    QCOMPARE(textOfACopyOfACopy<InvalidXmlException>(message), QByteArray("the message"));
    QCOMPARE(textOfACopyOfACopy<BinaryParsingException>(message), QByteArray("the message"));
    QCOMPARE(textOfACopyOfACopy<IncompleteDefinitionException>(message), QByteArray("the message"));
}

void ReportExceptionTest::copyingNeverThrows()
{
    static_assert(copiesWithoutThrowing<ReportException>);
    static_assert(copiesWithoutThrowing<RGException>);
    static_assert(copiesWithoutThrowing<OutOfRangeException>);
    static_assert(copiesWithoutThrowing<InvalidXmlException>);
    static_assert(copiesWithoutThrowing<BinaryParsingException>);
    static_assert(copiesWithoutThrowing<IncompleteDefinitionException>);
}

void ReportExceptionTest::theFamilyIsAsItsUsersCatchIt()
{
    static_assert(std::is_base_of_v<std::exception, ReportException>);
    static_assert(std::is_base_of_v<ReportException, RGException>);
    static_assert(std::is_base_of_v<RGException, OutOfRangeException>);
    static_assert(std::is_base_of_v<RGException, InvalidXmlException>);
    static_assert(std::is_base_of_v<RGException, BinaryParsingException>);
    static_assert(std::is_base_of_v<RGException, IncompleteDefinitionException>);
    static_assert(!std::is_base_of_v<OutOfRangeException, InvalidXmlException>);
    static_assert(!std::is_convertible_v<QString, ReportException>); // explicit
}

void ReportExceptionTest::everyExceptionIsCaughtByItsOwnType_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ReportException") << 0 << QStringLiteral("ReportException: m");
    QTest::newRow("RGException") << 1 << QStringLiteral("RGException: m");
    QTest::newRow("OutOfRangeException") << 2 << QStringLiteral("OutOfRangeException: m");
    QTest::newRow("InvalidXmlException") << 3 << QStringLiteral("InvalidXmlException: m");
    QTest::newRow("BinaryParsingException") << 4 << QStringLiteral("BinaryParsingException: m");
    QTest::newRow("IncompleteDefinitionException") << 5 << QStringLiteral("IncompleteDefinitionException: m");
}

void ReportExceptionTest::everyExceptionIsCaughtByItsOwnType()
{
    QFETCH(int, number);
    QFETCH(QString, expected);
    const QString m = QStringLiteral("m");
    const auto throwIt = [&] {
        switch (number) {
        case 0:
            throw ReportException(m);
        case 1:
            throw RGException(m);
        case 2:
            throw OutOfRangeException(m);
        case 3:
            throw InvalidXmlException(m);
        case 4:
            throw BinaryParsingException(m);
        default:
            throw IncompleteDefinitionException(m);
        }
    };
    QCOMPARE(thrownBy(throwIt), expected);

    QByteArray caughtAsStandardException;
    try {
        throwIt();
    } catch (const std::exception &e) {
        caughtAsStandardException = e.what();
    }
    QCOMPARE(caughtAsStandardException, QByteArray("m"));
}

TEST_SUITE_WITHOUT_APPLICATION(ReportExceptionTest)
#include "tst_ReportException.moc"

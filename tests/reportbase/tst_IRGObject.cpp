// SPDX-License-Identifier: MIT
#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

#include "Note.h"
#include "PipedFile.h"

using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::ObjectTypes;

class IRGObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewObjectValidatesAndHasNeitherTypeNorErrorNorVersion();
    void typeIsThatOfTheConstructor();
    void theFlagAndTheNameAreKept();
    void onlyADerivedObjectCanBeMadeAndNoneIsCopied();
    void theBaseMergesNothing();
    void oneFloatingPointValueIsInvalid();
    void oneIntegerIsInvalid();
    void nullTextIsInvalid();
    void invalidDateTimeIsInvalid();
    void everyBoolIsValid();
    void exactlyTheLengthIsSkipped();
    void noMoreBytesThanAreLeftAreSkipped();
    void negativeLengthSkipsNothing();
    void bytesOfASequentialDeviceAreSkipped();
    void skippingWithoutADeviceIsHarmless();
};

void IRGObjectTest::aNewObjectValidatesAndHasNeitherTypeNorErrorNorVersion()
{
    Note note;
    QVERIFY(note.GetValidate());
    QVERIFY(note.GetObjectType() == ObjectTypes::Undefined);
    QVERIFY(note.GetErrorString().isNull());
    QVERIFY(note.GetVersion().isNull());
    QCOMPARE(&note.GetVersion(), &Note().GetVersion());
}

void IRGObjectTest::typeIsThatOfTheConstructor()
{
    static_assert(!std::is_convertible_v<ObjectTypes, int>); // scoped
    const auto another = static_cast<ObjectTypes>(7);
    Note note(another);
    QVERIFY(note.GetObjectType() == another);
    note.SetObjectType(ObjectTypes::Undefined);
    QVERIFY(note.GetObjectType() == ObjectTypes::Undefined);
}

void IRGObjectTest::theFlagAndTheNameAreKept()
{
    Note note;
    const Note &constant = note;
    constant.SetValidate(false);
    QVERIFY(!constant.GetValidate());
    constant.SetValidate(true);
    QVERIFY(constant.GetValidate());

    QCOMPARE(constant.GetObjectName(), QStringLiteral("Note"));
    note.SetObjectName(QStringLiteral("Remark"));
    QCOMPARE(constant.GetObjectName(), QStringLiteral("Remark"));
}

void IRGObjectTest::onlyADerivedObjectCanBeMadeAndNoneIsCopied()
{
    static_assert(std::is_abstract_v<IRGObject> && std::has_virtual_destructor_v<IRGObject>);
    static_assert(!std::is_copy_constructible_v<Note> && !std::is_copy_assignable_v<Note>);
}

void IRGObjectTest::theBaseMergesNothing()
{
    Note to(QStringLiteral("to"));
    QVERIFY(!to.MergeRGObject(Note(QStringLiteral("from"))));
    QVERIFY(!to.MergeRGObject(to));
    QCOMPARE(to.text, QStringLiteral("to"));
}

void IRGObjectTest::oneFloatingPointValueIsInvalid()
{
    const Note note;
    float single = 1;
    note.SetInvalid(single);
    QVERIFY(std::isnan(single));
    QVERIFY(!note.IsValid(single));
    QVERIFY(note.IsValid(0.0F));
    QVERIFY(note.IsValid(std::numeric_limits<float>::lowest()));
    QVERIFY(note.IsValid(std::numeric_limits<float>::infinity()));

    double twice = 1;
    note.SetInvalid(twice);
    QVERIFY(std::isnan(twice));
    QVERIFY(!note.IsValid(twice));
    QVERIFY(note.IsValid(-1.0));
    QVERIFY(note.IsValid(-std::numeric_limits<double>::infinity()));
}

void IRGObjectTest::oneIntegerIsInvalid()
{
    const Note note;
    int number = 1;
    note.SetInvalid(number);
    QCOMPARE(number, -2147483647 - 1);
    QVERIFY(!note.IsValid(number));
    QVERIFY(note.IsValid(-2147483647));
    QVERIFY(note.IsValid(2147483647));
    QVERIFY(note.IsValid(0));

    long long big = 1;
    note.SetInvalid(big);
    QCOMPARE(big, -9223372036854775807LL - 1);
    QVERIFY(!note.IsValid(big));
    QVERIFY(note.IsValid(-2147483648LL));
    QVERIFY(note.IsValid(9223372036854775807LL));

    unsigned int natural = 1;
    note.SetInvalid(natural);
    QCOMPARE(natural, 4294967295U);
    QVERIFY(!note.IsValid(natural));
    QVERIFY(note.IsValid(4294967294U));
    QVERIFY(note.IsValid(0U));
}

void IRGObjectTest::nullTextIsInvalid()
{
    const Note note;
    QString text = QStringLiteral("a");
    note.SetInvalid(text);
    QVERIFY(text.isNull());
    QVERIFY(!note.IsValid(text));
    QVERIFY(note.IsValid(QStringLiteral("")));
    QVERIFY(note.IsValid(QStringLiteral("a")));
}

void IRGObjectTest::invalidDateTimeIsInvalid()
{
    const Note note;
    QVERIFY(!note.IsValid(QDateTime()));
    QVERIFY(!note.IsValid(QDateTime(QDate(2021, 2, 30), QTime(1, 2, 3))));
    QVERIFY(note.IsValid(QDateTime(QDate(2021, 2, 28), QTime(1, 2, 3))));
}

void IRGObjectTest::everyBoolIsValid()
{
    const Note note;
    QVERIFY(note.IsValid(true));
    QVERIFY(note.IsValid(false));
}

void IRGObjectTest::exactlyTheLengthIsSkipped()
{
    const QByteArray data("abcdefgh");
    QDataStream stream(data);
    const Note note;
    QCOMPARE(note.skipCurrentElement(stream, 3, 0x1234), 3);
    QCOMPARE(stream.device()->pos(), qint64(3));
    QCOMPARE(note.skipCurrentElement(stream, 0, 0x1234), 0);
    QCOMPARE(note.skipCurrentElement(stream, 5, 0x1234), 5);
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.status(), QDataStream::Ok);
}

void IRGObjectTest::noMoreBytesThanAreLeftAreSkipped()
{
    const QByteArray data("abcdefgh");
    QDataStream stream(data);
    const Note note;
    QCOMPARE(note.skipCurrentElement(stream, 2147483647, 0), 8);
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd); // by which a reader detects it
    QCOMPARE(note.skipCurrentElement(stream, 1, 0), 0);
}

void IRGObjectTest::negativeLengthSkipsNothing()
{
    const QByteArray data("abc");
    QDataStream stream(data);
    const Note note;
    QCOMPARE(note.skipCurrentElement(stream, -1, 0), 0);
    QCOMPARE(note.skipCurrentElement(stream, std::numeric_limits<int>::lowest(), 0), 0);
    QCOMPARE(stream.device()->pos(), qint64(0));
    QCOMPARE(stream.status(), QDataStream::Ok);
}

void IRGObjectTest::bytesOfASequentialDeviceAreSkipped()
{
    QFile file;
    QVERIFY(openOnPipe(file, "abcdefgh"));
    QDataStream stream(&file);
    const Note note;
    QCOMPARE(note.skipCurrentElement(stream, 6, 0), 6);
    quint8 next = 0;
    stream >> next;
    QCOMPARE(int(next), int('g'));
    QCOMPARE(note.skipCurrentElement(stream, 6, 0), 1);
}

void IRGObjectTest::skippingWithoutADeviceIsHarmless()
{
    QDataStream stream;
    QCOMPARE(Note().skipCurrentElement(stream, 3, 0), 0);

    const QByteArray data("abc");
    QDataStream broken(data);
    broken.setStatus(QDataStream::ReadCorruptData);
    QCOMPARE(Note().skipCurrentElement(broken, 2, 0), 2);
    QCOMPARE(broken.status(), QDataStream::ReadCorruptData);
}

TEST_SUITE(IRGObjectTest)
#include "tst_IRGObject.moc"

// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Damaging.h"
#include "every_class/Suite.h"

using namespace Damage;

namespace {

constexpr int inputSize = 1 << 20;

QByteArray word(qint64 value)
{
    QByteArray four;
    QDataStream(&four, QIODevice::WriteOnly) << qint32(value);
    return four;
}

QByteArray recordWith(const QByteArray &members)
{
    return word(members.size()) + members;
}

QByteArray memberRecord(quint32 tag, const QByteArray &payload)
{
    return word(qint32(tag)) + word(payload.size()) + payload;
}

QByteArray repeated(const QByteArray &one)
{
    return one.repeated(inputSize / one.size());
}

QByteArray counted(const QByteArray &item)
{
    return word(inputSize / item.size()) + repeated(item);
}

} // namespace

/// The input that uses the most memory for its size: lists of empty items, texts, and unknown members.
class DensestInputTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void recordsOfEmptyItemsStayWithinTheBound();
    void recordsOfLongTextsStayWithinTheBound();
    void recordsOfManySmallMembersStayWithinTheBound();
    void snapshotsOfEmptyItemsStayWithinTheBound();
    void cleanupTestCase();

private:
    static double densest;
    static QString densestIsIn;

    template <class Read>
    static void measure(const QByteArray &input, const char *what, Read &&read)
    {
        const auto object = type().make();
        object->SetValidate(false); // an item without data would be refused
        const HeapPeak peak;
        const QString thrown = thrownBy([&] { read(*object, input); });
        const long long used = peak.bytes();
        QCOMPARE(thrown, QString());
        QVERIFY(object->IsInitialized());
        QVERIFY2(used <= HeapPeak::bound(input.size()), qPrintable(QString::number(used)));
        // The fixed part of the bound is for memory allocated before the input is read, which does not happen here.
        QVERIFY2(used <= 200LL * input.size(), qPrintable(QString::number(used)));
        if (double(used) / input.size() > densest) {
            densest = double(used) / input.size();
            densestIsIn = type().staticName() + QLatin1Char('.') + QLatin1String(what);
        }
    }
};

void DensestInputTest::recordsOfEmptyItemsStayWithinTheBound()
{
    for (const MemberRule &member : ruleOf(type().staticName()).members) {
        QByteArray payload;
        if (member.kind == Kind::List)
            payload = counted(word(0));
        else if (member.kind == Kind::Modes)
            payload = counted(word(0) + word(0));
        else
            continue;
        measure(recordWith(memberRecord(member.tag, payload)), member.name.constData(),
                [](JobXml::DataObject &object, const QByteArray &input) { readRecord(object, input); });
    }
}

void DensestInputTest::recordsOfLongTextsStayWithinTheBound()
{
    for (const MemberRule &member : ruleOf(type().staticName()).members) {
        if (member.kind != Kind::Text && member.kind != Kind::Float && member.kind != Kind::Double)
            continue;
        measure(recordWith(memberRecord(member.tag, word(inputSize) + QByteArray(inputSize, 'x'))),
                member.name.constData(),
                [](JobXml::DataObject &object, const QByteArray &input) { readRecord(object, input); });
    }
}

void DensestInputTest::recordsOfManySmallMembersStayWithinTheBound()
{
    const auto read = [](JobXml::DataObject &object, const QByteArray &input) { readRecord(object, input); };
    measure(recordWith(repeated(memberRecord(0x11111111, {}))), "unknown members", read);
    for (const MemberRule &member : ruleOf(type().staticName()).members) {
        if (member.kind == Kind::List)
            measure(recordWith(repeated(memberRecord(member.tag, word(1) + word(0)))), member.name.constData(), read);
    }
}

void DensestInputTest::snapshotsOfEmptyItemsStayWithinTheBound()
{
    const QHash<QString, QByteArray> emptyItems{
        {QStringLiteral("ValueItem"), bytes("00 00 FF")},
        {QStringLiteral("Node"), bytes("00 00 00 00 00 FF FF FF FF")},
        {QStringLiteral("SelectionItem"), bytes("00 FF FF FF FF 00 00 00 00 00 00 00 00")},
        {QStringLiteral("StringItem"), bytes("00 FF FF FF FF")},
        {QStringLiteral("StartupMode"), bytes("00")},
    };
    const MemberRule first = ruleOf(type().staticName()).inBitOrder().first();
    if (!emptyItems.contains(QLatin1String(first.name)))
        return; // only a list that is the first member can be read from so few bytes
    measure(bytes("01") + counted(emptyItems.value(QLatin1String(first.name))), first.name.constData(),
            [](JobXml::DataObject &object, const QByteArray &input) { readSnapshot(object, input); });
}

void DensestInputTest::cleanupTestCase()
{
    QVERIFY(densest > 10); // it was measured
    qInfo("at most %.1f bytes of memory for each of the input, in %s", densest, qPrintable(densestIsIn));
}

double DensestInputTest::densest = 0;
QString DensestInputTest::densestIsIn;

TEST_SUITE(DensestInputTest)
#include "tst_DensestInput.moc"

// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include <reportbase/Logger.h>

#include "Documents.h"
#include "Encodings.h"
#include "QtFigures.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;
using Read = std::function<bool(TunerProperties &)>;

Q_DECLARE_METATYPE(Read)

namespace {

/// More items than a reader reserves memory for at once, and a number that no list reaches by its own growth.
constexpr int many = 37;

template <class Item>
QVector<Item> copiesOf(const Item &item)
{
    return QVector<Item>(many, item);
}

/// A document with many items in every list of objects.
TunerProperties largeDocument()
{
    StringItem text;
    text.Setvalue(QStringLiteral("x"));
    ValueStringList texts;
    texts.Setid(QStringLiteral("i"));
    texts.Setvalue(QStringLiteral("x"));
    texts.SetStringItem(copiesOf(text));
    SelectionItem option;
    option.Setname(QStringLiteral("x"));
    option.Setvalue(1);
    ValueSelection selection;
    selection.Setid(QStringLiteral("i"));
    selection.Setvalue(1);
    selection.Settext(QStringLiteral("x"));
    selection.Setindex(0);
    selection.SetSelectionItem(copiesOf(option));
    QVector<ValueItem> items = copiesOf(anIntItem());
    items[0].SetValueStringList(texts);
    items[1].SetValueSelection(selection);
    QVector<Node> nodes = copiesOf(aNode());
    nodes[0].SetValueItem(items);
    QVector<Component> components = copiesOf(aComponent());
    components[0].SetNode(nodes);
    TunerProperties document = aDocument();
    document.SetComponent(components);
    document.SetBandwidthSelection(copiesOf(aBandwidth()));
    return document;
}

/// The unused capacity of every list of objects of such a document.
QVector<int> spareRoom(const TunerProperties &document)
{
    const auto spare = [](const auto &list) { return list.size() == many ? int(list.capacity()) - many : -1; };
    const Component component = document.GetComponent().at(0);
    const Node node = std::as_const(component).GetNode().at(0);
    const ValueItem texts = std::as_const(node).GetValueItem().at(0);
    const ValueItem selection = std::as_const(node).GetValueItem().at(1);
    return {spare(document.GetComponent()),
            spare(document.GetComponent().at(0).GetNode()),
            spare(document.GetComponent().at(0).GetNode().at(0).GetValueItem()),
            spare(document.GetBandwidthSelection()),
            spare(texts.GetValueStringList().GetStringItem()),
            spare(selection.GetValueSelection().GetSelectionItem())};
}

} // namespace

/// The memory that lists reserve for further items.
class RoomOfListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsThatWereReadHaveNoSpareRoom_data();
    void listsThatWereReadHaveNoSpareRoom();
    void roomThatACallerReservedIsKept_data();
    void roomThatACallerReservedIsKept();
    void longListsHaveNoSpareRoomEither();
    void itemsKeepTheirLoggersWhileTheirListIsRead_data();
    void itemsKeepTheirLoggersWhileTheirListIsRead();
    void itemsKeepTheirLoggersWhenAProgramAppends();
    void reservingRoomMovesItemsWithQt6();
};

void RoomOfListsTest::listsThatWereReadHaveNoSpareRoom_data()
{
    QTest::addColumn<Read>("read");
    const TunerProperties document = largeDocument();
    const QString xml = document.GetXmlString();
    QVERIFY(!xml.isEmpty());
    const QByteArray representation = document.GetBinaryRepresentationAsQByteArray();
    QTest::newRow("XML") << Read([=](TunerProperties &object) { return object.SetXmlString(xml, true); });
    QTest::newRow("XML, not validating") << Read(
        [=](TunerProperties &object) { return object.SetXmlString(xml, false); });
    QTest::newRow("records") << Read(
        [=](TunerProperties &object) { return object.SetBinaryRepresentation(representation); });
    QTest::newRow("snapshot") << Read([=](TunerProperties &object) {
        QByteArray snapshot = snapshotOf(document);
        QDataStream stream(snapshot);
        object.SetVersionSpecificBinaryWithoutValidation(stream);
        return stream.status() == QDataStream::Ok;
    });
}

void RoomOfListsTest::listsThatWereReadHaveNoSpareRoom()
{
    QFETCH(Read, read);
    TunerProperties object;
    QVERIFY(read(object));
    QCOMPARE(spareRoom(std::as_const(object)), QVector<int>(6, 0));
}

void RoomOfListsTest::roomThatACallerReservedIsKept_data()
{
    listsThatWereReadHaveNoSpareRoom_data();
}

void RoomOfListsTest::roomThatACallerReservedIsKept()
{
    QFETCH(Read, read);
    TunerProperties object;
    object.GetComponent().reserve(100);
    QVERIFY(read(object));
    QCOMPARE(spareRoom(std::as_const(object)), (QVector<int>{63, 0, 0, 0, 0, 0}));
}

void RoomOfListsTest::itemsKeepTheirLoggersWhileTheirListIsRead_data()
{
    QTest::addColumn<Read>("read");
    const TunerProperties document = largeDocument();
    const QString xml = document.GetXmlString();
    const QByteArray representation = document.GetBinaryRepresentationAsQByteArray();
    QTest::newRow("XML") << Read([=](TunerProperties &object) { return object.SetXmlString(xml, true); });
    QTest::newRow("records") << Read(
        [=](TunerProperties &object) { return object.SetBinaryRepresentation(representation); });
}

/// Also those that were in the list before, when it grows, and when the spare room is released.
void RoomOfListsTest::itemsKeepTheirLoggersWhileTheirListIsRead()
{
    QFETCH(Read, read);
    TunerProperties object;
    const auto logger = std::make_shared<Logger>();
    object.SetLogger(logger);
    for (int times = 1; times <= 2; ++times) {
        QVERIFY(read(object));
        const QVector<Component> &components = std::as_const(object).GetComponent();
        QCOMPARE(components.size(), many * times);
        for (const Component &component : components) {
            QCOMPARE(component.GetLogger(), logger);
            for (const Node &node : component.GetNode()) {
                QCOMPARE(node.GetLogger(), logger);
                for (const ValueItem &item : node.GetValueItem())
                    QCOMPARE(item.GetLogger(), logger);
            }
        }
        for (const BandwidthSelection &bandwidth : std::as_const(object).GetBandwidthSelection())
            QCOMPARE(bandwidth.GetLogger(), logger);
    }
}

void RoomOfListsTest::itemsKeepTheirLoggersWhenAProgramAppends()
{
    TunerProperties object;
    const auto logger = std::make_shared<Logger>();
    object.AppendComponent(aComponent());
    object.GetComponent().first().SetLogger(logger);
    for (int i = 0; i < many; ++i)
        object.AppendComponent(aComponent());
    for (int i = 0; i < many; ++i)
        object.GetComponent().append(aComponent());
    object.GetComponent().removeLast();
    QCOMPARE(object.GetComponent().first().GetLogger(), logger);
}

void RoomOfListsTest::reservingRoomMovesItemsWithQt6()
{
    TunerProperties object;
    const auto logger = std::make_shared<Logger>();
    object.AppendComponent(aComponent());
    object.GetComponent().first().SetLogger(logger);
    object.GetComponent().reserve(many);
    QCOMPARE(object.GetComponent().first().GetLogger() == logger, QtFigures::isQt5);
    QCOMPARE(object.GetComponent().first().Getname(), QStringLiteral("Preselector"));
}

/// A reader never reserves memory for more than 4,096 items; with more items the list grows by itself.
void RoomOfListsTest::longListsHaveNoSpareRoomEither()
{
    constexpr int veryMany = 4999;
    StringItem text;
    text.Setvalue(QStringLiteral("x"));
    ValueStringList list;
    list.Setid(QStringLiteral("i"));
    list.Setvalue(QStringLiteral("x"));
    list.SetStringItem(QVector<StringItem>(veryMany, text));

    ValueStringList fromRecord;
    QVERIFY(fromRecord.SetBinaryRepresentation(list.GetBinaryRepresentationAsQByteArray()));
    QCOMPARE(std::as_const(fromRecord).GetStringItem().size(), veryMany);
    QCOMPARE(std::as_const(fromRecord).GetStringItem().capacity(), veryMany);

    ValueStringList fromSnapshot;
    QByteArray snapshot = snapshotOf(list);
    QDataStream stream(snapshot);
    fromSnapshot.SetVersionSpecificBinaryWithoutValidation(stream);
    QCOMPARE(std::as_const(fromSnapshot).GetStringItem().size(), veryMany);
    QCOMPARE(std::as_const(fromSnapshot).GetStringItem().capacity(), veryMany);
}

TEST_SUITE(RoomOfListsTest)
#include "tst_RoomOfLists.moc"

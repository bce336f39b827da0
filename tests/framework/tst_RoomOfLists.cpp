// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;
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
    const auto spare = [](const auto &list) { return list.size() == many ? list.capacity() - many : -1; };
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

// SPDX-License-Identifier: MIT
#include "Suite.h"

#include "Documents.h"

using namespace JobXml;

namespace {

template <class Value>
void fillScalar(Value &object)
{
    object.Setid(QStringLiteral("id"));
    object.Setvalue(true);
}

template <class Value>
void fillNumeric(Value &object)
{
    object.Setid(QStringLiteral("id"));
    object.Setvalue(5);
    object.Setmin(-1);
    object.Setmax(10);
    object.Setstep(2);
}

void fillSelectionItem(SelectionItem &object)
{
    object.Setname(QStringLiteral("one"));
    object.Setvalue(1.5);
}

void fillStringItem(StringItem &object)
{
    object.Setvalue(QStringLiteral("x"));
}

void fillSelection(ValueSelection &object)
{
    SelectionItem item;
    fillSelectionItem(item);
    object.AppendSelectionItem(item);
    object.Setid(QStringLiteral("id"));
    object.Setvalue(1.5);
    object.Settext(QStringLiteral("one"));
    object.Setindex(2);
}

void fillStringList(ValueStringList &object)
{
    StringItem item;
    fillStringItem(item);
    object.AppendStringItem(item);
    object.Setid(QStringLiteral("id"));
    object.Setvalue(QStringLiteral("x"));
}

void fillDocument(TunerProperties &object)
{
    object = aDocument();
    object.Setname(QStringLiteral("name"));
    object.SetconnectableResources(QStringLiteral("ANT1"));
    object.Setquantity(3);
    object.SetparentBaseResource(QStringLiteral("RX"));
    object.SethwProcessing(true);
    object.SetMaxFFPDelay(7);
    object.SetHRPANSupported(true);
}

QStringList names;

template <class T>
void add(const char *name, void (*fill)(T &), qint64 id, const char *newXml, const char *firstMissing)
{
    names += QString::fromLatin1(name);
    QTest::newRow(name) << QString::fromLatin1(name) << ClassPointer(std::make_shared<ClassUnderTestOf<T>>(fill)) << id
                        << QString::fromLatin1(newXml) << QString::fromLatin1(firstMissing);
}

} // namespace

const QStringList &everyClassName()
{
    return names;
}

void addEveryClass()
{
    names.clear();
    QTest::addColumn<QString>("name");
    QTest::addColumn<ClassPointer>("type");
    QTest::addColumn<qint64>("id");
    QTest::addColumn<QString>("newXml"); // what a new object writes while not validating
    QTest::addColumn<QString>("firstMissing"); // what Check() says to a new object

    add<TunerProperties>("TunerProperties", fillDocument, 0xC10CBB5F,
                         R"(<TunerProperties Version="1.1" type="" baseresource=""/>)",
                         "OutOfRangeException: TunerProperties: Please set Component properly.");
    add<StartupModes>(
        "StartupModes", [](StartupModes &o) { o.AppendStartupMode(StartupModes::StartupMode::DF); }, 0xA7563754,
        "<StartupModes/>", "OutOfRangeException: StartupModes: Please set StartupMode properly.");
    add<BandwidthSelection>(
        "BandwidthSelection", [](BandwidthSelection &o) { o = aBandwidth(); }, 0x09F7EAA9,
        "<BandwidthSelection><Name></Name><MaxBandwidth>0.00</MaxBandwidth></BandwidthSelection>",
        "OutOfRangeException: BandwidthSelection: Please set Name properly.");
    add<Component>(
        "Component",
        [](Component &o) {
            o = aComponent();
            o.SetdisplayName(QStringLiteral("shown"));
            o.Setoptional(true);
        },
        0x0ADD1857, R"(<Component type="" name=""/>)", "OutOfRangeException: Component: Please set Node properly.");
    add<Node>(
        "Node", [](Node &o) { o = aNode(); }, 0xC8131DB4, R"(<Node id=""/>)",
        "OutOfRangeException: Node: Please set ValueItem properly.");
    add<ValueItem>(
        "ValueItem", [](ValueItem &o) { o = anIntItem(); }, 0xA6C468CF, "<ValueItem/>",
        "IncompleteDefinitionException: ValueItem:Check failed. The mandatory choice ChoiceValueItem is not "
        "initialized");
    add<ValueBoolean>("ValueBoolean", fillScalar, 0xC8FC2661, R"(<ValueBoolean id=""/>)",
                      "OutOfRangeException: ValueBoolean: Please set id properly.");
    add<ValueFloat>("ValueFloat", fillScalar, 0x6440D555, R"(<ValueFloat id="" value="0.00"/>)",
                    "OutOfRangeException: ValueFloat: Please set id properly.");
    add<ValueInt>("ValueInt", fillScalar, 0x278DA93B, R"(<ValueInt id="" value="0"/>)",
                  "OutOfRangeException: ValueInt: Please set id properly.");
    add<ValueInt64>("ValueInt64", fillScalar, 0x4E82A0AA, R"(<ValueInt64 id="" value="0"/>)",
                    "OutOfRangeException: ValueInt64: Please set id properly.");
    add<ValueNumericFloat>("ValueNumericFloat", fillNumeric, 0x4BA90080,
                           R"(<ValueNumericFloat id="" value="0.00" min="0.00" max="0.00" step="0.00"/>)",
                           "OutOfRangeException: ValueNumericFloat: Please set id properly.");
    add<ValueNumericInt>("ValueNumericInt", fillNumeric, 0xC55D0588,
                         R"(<ValueNumericInt id="" value="0" min="0" max="0" step="0"/>)",
                         "OutOfRangeException: ValueNumericInt: Please set id properly.");
    add<ValueNumericInt64>("ValueNumericInt64", fillNumeric, 0x044D7AEC,
                           R"(<ValueNumericInt64 id="" value="0" min="0" max="0" step="0"/>)",
                           "OutOfRangeException: ValueNumericInt64: Please set id properly.");
    add<ValueSelection>("ValueSelection", fillSelection, 0x00C375A5,
                        R"(<ValueSelection id="" value="0.00" text="" index="0"/>)",
                        "OutOfRangeException: ValueSelection: Please set SelectionItem properly.");
    add<SelectionItem>("SelectionItem", fillSelectionItem, 0x228141C0, R"(<SelectionItem name="" value="0.00"/>)",
                       "OutOfRangeException: SelectionItem: Please set name properly.");
    add<ValueString>(
        "ValueString",
        [](ValueString &o) {
            o.Setid(QStringLiteral("id"));
            o.Setvalue(QStringLiteral("x"));
        },
        0xC5ECF92B, R"(<ValueString id="" value=""/>)", "OutOfRangeException: ValueString: Please set id properly.");
    add<ValueStringList>("ValueStringList", fillStringList, 0xC290BC31, R"(<ValueStringList id="" value=""/>)",
                         "OutOfRangeException: ValueStringList: Please set StringItem properly.");
    add<StringItem>("StringItem", fillStringItem, 0xEBB03A60, R"(<StringItem value=""/>)",
                    "OutOfRangeException: StringItem: Please set value properly.");
}

#include "moc_Suite.cpp"

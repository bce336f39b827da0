// SPDX-License-Identifier: MIT
#undef QT_NO_CAST_FROM_ASCII // most programs do not define it; with it, Qt itself rejects most of the tested code

#include <cstddef>
#include <type_traits>

#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/SaveFile.h>
#include <tavikappstartup/TranslationCenter.h>

#include "../src/module/Classes.h"
#include "Documents.h"
#include "Suites.h"

using namespace JobXml;
using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::Logger;

namespace {

// clang-format off
#define TAKES_TEXTS_ONLY(Class, function) \
    template <class T, class = decltype(std::declval<Class &>().function(std::declval<T>()))> \
    std::true_type Class##_##function(int); \
    template <class> std::false_type Class##_##function(...); \
    static_assert(decltype(Class##_##function<QString>(0))::value, "takes a text"); \
    static_assert(decltype(Class##_##function<const char *>(0))::value, "takes a literal"); \
    static_assert(!decltype(Class##_##function<std::nullptr_t>(0))::value, "takes no null pointer");

#define TAKES_NAMED_ITEMS_ONLY(Class, function, Item) \
    template <class T, class = decltype(std::declval<T &>().function(Item()))> std::true_type named_##function(int); \
    template <class> std::false_type named_##function(...); \
    template <class T, class = decltype(std::declval<T &>().function({}))> std::true_type empty_##function(int); \
    template <class> std::false_type empty_##function(...); \
    template <class T, class = decltype(std::declval<T &>().function({Item()}))> std::true_type braced_##function(int); \
    template <class> std::false_type braced_##function(...); \
    static_assert(decltype(named_##function<Class>(0))::value, "takes an item"); \
    static_assert(decltype(braced_##function<Class>(0))::value, "takes an item in braces"); \
    static_assert(!decltype(empty_##function<Class>(0))::value, "takes no empty braces");

TAKES_TEXTS_ONLY(BandwidthSelection, SetName)
TAKES_TEXTS_ONLY(BandwidthSelection, IsValidName)
TAKES_TEXTS_ONLY(Component, Settype)
TAKES_TEXTS_ONLY(Component, IsValidtype)
TAKES_TEXTS_ONLY(Component, Setname)
TAKES_TEXTS_ONLY(Component, IsValidname)
TAKES_TEXTS_ONLY(Component, SetdisplayName)
TAKES_TEXTS_ONLY(Component, IsValiddisplayName)
TAKES_TEXTS_ONLY(Node, Setid)
TAKES_TEXTS_ONLY(Node, IsValidid)
TAKES_TEXTS_ONLY(SelectionItem, Setname)
TAKES_TEXTS_ONLY(SelectionItem, IsValidname)
TAKES_TEXTS_ONLY(StartupModes, NameToStartupMode)
TAKES_TEXTS_ONLY(StringItem, Setvalue)
TAKES_TEXTS_ONLY(StringItem, IsValidvalue)
TAKES_TEXTS_ONLY(TunerProperties, Setname)
TAKES_TEXTS_ONLY(TunerProperties, IsValidname)
TAKES_TEXTS_ONLY(TunerProperties, NameTotype)
TAKES_TEXTS_ONLY(TunerProperties, Setbaseresource)
TAKES_TEXTS_ONLY(TunerProperties, IsValidbaseresource)
TAKES_TEXTS_ONLY(TunerProperties, SetconnectableResources)
TAKES_TEXTS_ONLY(TunerProperties, IsValidconnectableResources)
TAKES_TEXTS_ONLY(TunerProperties, SetparentBaseResource)
TAKES_TEXTS_ONLY(TunerProperties, IsValidparentBaseResource)
TAKES_TEXTS_ONLY(ValueBoolean, Setid)
TAKES_TEXTS_ONLY(ValueBoolean, IsValidid)
TAKES_TEXTS_ONLY(ValueFloat, Setid)
TAKES_TEXTS_ONLY(ValueFloat, IsValidid)
TAKES_TEXTS_ONLY(ValueInt, Setid)
TAKES_TEXTS_ONLY(ValueInt, IsValidid)
TAKES_TEXTS_ONLY(ValueInt64, Setid)
TAKES_TEXTS_ONLY(ValueInt64, IsValidid)
TAKES_TEXTS_ONLY(ValueItem, NameToChoiceValueItem)
TAKES_TEXTS_ONLY(ValueNumericFloat, Setid)
TAKES_TEXTS_ONLY(ValueNumericFloat, IsValidid)
TAKES_TEXTS_ONLY(ValueNumericInt, Setid)
TAKES_TEXTS_ONLY(ValueNumericInt, IsValidid)
TAKES_TEXTS_ONLY(ValueNumericInt64, Setid)
TAKES_TEXTS_ONLY(ValueNumericInt64, IsValidid)
TAKES_TEXTS_ONLY(ValueSelection, Setid)
TAKES_TEXTS_ONLY(ValueSelection, IsValidid)
TAKES_TEXTS_ONLY(ValueSelection, Settext)
TAKES_TEXTS_ONLY(ValueSelection, IsValidtext)
TAKES_TEXTS_ONLY(ValueString, Setid)
TAKES_TEXTS_ONLY(ValueString, IsValidid)
TAKES_TEXTS_ONLY(ValueString, Setvalue)
TAKES_TEXTS_ONLY(ValueString, IsValidvalue)
TAKES_TEXTS_ONLY(ValueStringList, Setid)
TAKES_TEXTS_ONLY(ValueStringList, IsValidid)
TAKES_TEXTS_ONLY(ValueStringList, Setvalue)
TAKES_TEXTS_ONLY(ValueStringList, IsValidvalue)

TAKES_NAMED_ITEMS_ONLY(Component, AppendNode, Node)
TAKES_NAMED_ITEMS_ONLY(Node, AppendValueItem, ValueItem)
TAKES_NAMED_ITEMS_ONLY(StartupModes, AppendStartupMode, StartupModes::StartupMode)
TAKES_NAMED_ITEMS_ONLY(TunerProperties, AppendBandwidthSelection, BandwidthSelection)
TAKES_NAMED_ITEMS_ONLY(TunerProperties, AppendComponent, Component)
TAKES_NAMED_ITEMS_ONLY(ValueSelection, AppendSelectionItem, SelectionItem)
TAKES_NAMED_ITEMS_ONLY(ValueStringList, AppendStringItem, StringItem)

// The base libraries, whose functions have further arguments.
#undef TAKES_TEXTS_ONLY

#define TAKES_TEXTS_ONLY(name, call) \
    template <class T, class = decltype(call)> std::true_type name(int); \
    template <class> std::false_type name(...); \
    static_assert(decltype(name<QString>(0))::value, "takes a text"); \
    static_assert(!decltype(name<std::nullptr_t>(0))::value, "takes no null pointer");

TAKES_TEXTS_ONLY(isValid, std::declval<IRGObject &>().IsValid(std::declval<T>()))
TAKES_TEXTS_ONLY(setXmlString, std::declval<IRGObject &>().SetXmlString(std::declval<T>(), true))
TAKES_TEXTS_ONLY(saveXml, std::declval<IRGObject &>().SaveXml(std::declval<T>()))
TAKES_TEXTS_ONLY(saveBinary, std::declval<IRGObject &>().SaveBinary(std::declval<T>()))
TAKES_TEXTS_ONLY(saveCompressedBinary, std::declval<IRGObject &>().SaveCompressedBinary(std::declval<T>(), 9))
TAKES_TEXTS_ONLY(saveFile, REPORTGENERATOR::SaveFile(std::declval<T>(), QByteArray()))
TAKES_TEXTS_ONLY(log, std::declval<Logger &>().Log(Logger::Severity::Error, std::declval<T>()))
TAKES_TEXTS_ONLY(registerModule, TranslationCenter::Instance().Register(std::declval<T>()))
TAKES_TEXTS_ONLY(unregisterModule, TranslationCenter::Instance().Unregister(std::declval<T>()))
TAKES_TEXTS_ONLY(addSearchPath, TranslationCenter::Instance().AddSearchPath(std::declval<T>()))
TAKES_TEXTS_ONLY(reportException, ReportException(std::declval<T>()))
TAKES_TEXTS_ONLY(rgException, RGException(std::declval<T>()))
TAKES_TEXTS_ONLY(outOfRange, OutOfRangeException(std::declval<T>()))
TAKES_TEXTS_ONLY(invalidXml, InvalidXmlException(std::declval<T>()))
TAKES_TEXTS_ONLY(binaryParsing, BinaryParsingException(std::declval<T>()))
TAKES_TEXTS_ONLY(incompleteDefinition, IncompleteDefinitionException(std::declval<T>()))
TAKES_TEXTS_ONLY(pathBelow, std::declval<ObjectPath &>().below(std::declval<T>(), Step()))
// clang-format on

/// Whether SetXmlString() of a class of the model accepts a second argument of this type.
template <class T, class = decltype(std::declval<TunerProperties &>().SetXmlString(QString(), std::declval<T>()))>
std::true_type setsXmlWith(int);
template <class>
std::false_type setsXmlWith(...);
template <class T>
constexpr bool isTakenBySetXmlString = decltype(setsXmlWith<T>(0))::value;

inline void visitor(const Problem &) { }
inline void noVisitor(int) { }
const auto visitingLambda = [](const Problem &) {};
const auto otherLambda = [](Problem &) {};
static_assert(isTakenBySetXmlString<bool> && isTakenBySetXmlString<bool &> && isTakenBySetXmlString<int>);
static_assert(isTakenBySetXmlString<decltype(visitor) &> && isTakenBySetXmlString<decltype(&visitor)>);
static_assert(isTakenBySetXmlString<decltype(visitingLambda) &> && isTakenBySetXmlString<const ProblemVisitor &>);
static_assert(!isTakenBySetXmlString<decltype(noVisitor) &>, "no function counts as a flag");
static_assert(!isTakenBySetXmlString<decltype(&noVisitor)> && !isTakenBySetXmlString<decltype(otherLambda) &>);

/// What fromXml() and fromBinary() of a class accept.
template <class Class>
struct Readers
{
    template <class T, class = decltype(Class::fromXml(std::declval<T>()))>
    static std::true_type xml(int);
    template <class>
    static std::false_type xml(...);
    template <class T, class = decltype(Class::fromBinary(std::declval<T>()))>
    static std::true_type binary(int);
    template <class>
    static std::false_type binary(...);

    static_assert(decltype(xml<QString>(0))::value, "takes a text");
    static_assert(!decltype(xml<std::nullptr_t>(0))::value, "takes no null pointer");
    static_assert(decltype(binary<QByteArray>(0))::value, "takes bytes");
    static_assert(!decltype(binary<std::nullptr_t>(0))::value, "takes no null pointer");
};

template <class... T>
struct ReadersOf : Readers<T>...
{
};

[[maybe_unused]] constexpr Classes::Into<ReadersOf> readersOfEveryClass;

/// The ids of all values, through const objects alone.
QStringList idsOf(const TunerProperties &tuner)
{
    using Choice = ValueItem::ChoiceValueItem;
    QStringList ids;
    for (const Component &component : tuner.GetComponent()) {
        for (const Node &node : component.GetNode()) {
            for (const ValueItem &item : node.GetValueItem()) {
                if (item.GetChoiceValueItem() == Choice::ValueNumericFloat)
                    ids += item.GetValueNumericFloat().Getid();
                else if (item.GetChoiceValueItem() == Choice::ValueNumericInt)
                    ids += item.GetValueNumericInt().Getid();
                else if (item.GetChoiceValueItem() == Choice::ValueNumericInt64)
                    ids += item.GetValueNumericInt64().Getid();
            }
        }
    }
    return ids;
}

} // namespace

/// Code that compiles with the classes, and code that does not.
class InterfaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreNotNullPointersAndItemsHaveNames() { } // the assertions above: this file compiles

    void aConstTraversalReadsTheIdsOfRangedNumbers()
    {
        ValueNumericFloat ofFloat;
        ofFloat.Setid(QStringLiteral("a"));
        ValueNumericInt ofInt;
        ofInt.Setid(QStringLiteral("b"));
        ValueNumericInt64 ofInt64;
        ofInt64.Setid(QStringLiteral("c"));
        TunerProperties tuner = aDocument(3);
        QVector<Node> &nodes = tuner.GetComponent()[0].GetNode();
        nodes[0].GetValueItem()[0].SetValueNumericFloat(ofFloat);
        nodes[1].GetValueItem()[0].SetValueNumericInt(ofInt);
        nodes[2].GetValueItem()[0].SetValueNumericInt64(ofInt64);
        QCOMPARE(idsOf(tuner), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    }

    void nonConstGettersExist()
    {
        QString (ValueNumericFloat::*const ofFloat)() = &ValueNumericFloat::Getid;
        QString (ValueNumericInt::*const ofInt)() = &ValueNumericInt::Getid;
        QString (ValueNumericInt64::*const ofInt64)() = &ValueNumericInt64::Getid;
        ValueNumericFloat object;
        QVERIFY((object.*ofFloat)().isNull());
        QVERIFY(ofInt && ofInt64);
    }
};

TEST_SUITE_WITHOUT_APPLICATION(InterfaceTest)
#include "tst_Interface.moc"

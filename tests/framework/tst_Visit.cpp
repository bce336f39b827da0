// SPDX-License-Identifier: MIT
#include <functional>
#include <limits>
#include <optional>

#include <QtTest>

#include <jobxml/Visit.h>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "NewMembers.h"
#include "WholeTree.h"

using namespace JobXml;

namespace {

/// The text of a value.
QString textOf(const QVariant &value)
{
    QString text;
    QDebug(&text).nospace().noquote() << value.typeName() << ' ' << value.toString();
    if (value.userType() == QMetaType::QVariantList) {
        for (const QVariant &entry : value.toList())
            text += textOf(entry) + QLatin1Char(';');
    } else if (value.userType() == QMetaType::QString && value.toString().isNull()) {
        text += QLatin1String("null");
    }
    return text;
}

/// A line for each member: kind, name, value or number of children, and flag.
QStringList linesOf(const DataObject &object, const QString &indent = QString())
{
    QStringList lines;
    visit(object, [&](const MemberView &member) {
        if (!member.IsChosen())
            return;
        QString line = indent + member.GetName();
        if (member.GetValue().isValid())
            line += QLatin1String(" = ") + textOf(member.GetValue());
        else
            line += QStringLiteral(" x %1").arg(member.GetSize());
        lines += line + (member.IsSet() ? QString() : QStringLiteral(" unset"));
        WholeTree::forEachChild(
            member, [&](const DataObject &child, int) { lines += linesOf(child, indent + QLatin1String("  ")); });
    });
    return lines;
}

/// Calls the function with the editor of one member.
template <class Function>
void edit(DataObject &object, const char *name, Function &&function)
{
    bool found = false;
    visit(object, [&](MemberEditor &member) {
        if (member.GetName() != QLatin1String(name))
            return;
        found = true;
        function(member);
    });
    QVERIFY2(found, name);
}

bool setValue(DataObject &object, const char *name, const QVariant &value)
{
    bool done = false;
    edit(object, name, [&](MemberEditor &member) { done = member.SetValue(value); });
    return done;
}

/// The names of the members for which the function returns true.
template <class Question>
QString namesWhere(const DataObject &object, Question question)
{
    QStringList names;
    visit(object, [&](const MemberView &member) {
        if ((member.*question)())
            names += member.GetName();
    });
    return names.join(QLatin1Char(' '));
}

const DataObject *firstComponent(const TunerProperties &document)
{
    const DataObject *component = nullptr;
    visit(document, [&](const MemberView &member) {
        if (member.GetName() == QLatin1String("Component"))
            component = &member.GetChild(0);
    });
    return component;
}

using Change = void (*)(MemberEditor &);

struct Arrangement
{
    const char *name;
    Change change;
    const char *ids;
};

const Arrangement arrangements[] = {
    {"the first is removed", [](MemberEditor &list) { list.RemoveChild(0); }, "node1 node2 node3"},
    {"one between is removed", [](MemberEditor &list) { list.RemoveChild(2); }, "node0 node1 node3"},
    {"the last is removed", [](MemberEditor &list) { list.RemoveChild(3); }, "node0 node1 node2"},
    {"moved to the end", [](MemberEditor &list) { list.MoveChild(0, 3); }, "node1 node2 node3 node0"},
    {"moved to the beginning", [](MemberEditor &list) { list.MoveChild(3, 0); }, "node3 node0 node1 node2"},
    {"moved to its own place", [](MemberEditor &list) { list.MoveChild(1, 1); }, "node0 node1 node2 node3"},
    {"moved between", [](MemberEditor &list) { list.MoveChild(1, 2); }, "node0 node2 node1 node3"},
    {"arranged",
     [](MemberEditor &list) {
         list.ArrangeChildren({3, 0, 2});
     },
     "node3 node0 node2"},
    {"none left", [](MemberEditor &list) { list.ArrangeChildren({}); }, ""},
};

struct WrongPlace
{
    const char *name;
    const char *member;
    Change change;
};

const WrongPlace wrongPlaces[] = {
    {"removed before the first", "Component", [](MemberEditor &list) { list.RemoveChild(-1); }},
    {"removed after the last", "Component", [](MemberEditor &list) { list.RemoveChild(2); }},
    {"moved from before the first", "Component", [](MemberEditor &list) { list.MoveChild(-1, 0); }},
    {"moved from after the last", "Component", [](MemberEditor &list) { list.MoveChild(2, 0); }},
    {"moved to before the first", "Component", [](MemberEditor &list) { list.MoveChild(0, -1); }},
    {"moved to after the last", "Component", [](MemberEditor &list) { list.MoveChild(0, 2); }},
    {"arranged with too large an index", "Component",
     [](MemberEditor &list) {
         list.ArrangeChildren({0, 2});
     }},
    {"arranged with a negative index", "Component", [](MemberEditor &list) { list.ArrangeChildren({-1}); }},
    {"arranged with an index twice", "Component",
     [](MemberEditor &list) {
         list.ArrangeChildren({1, 1});
     }},
    {"removed from a value", "quantity", [](MemberEditor &member) { member.RemoveChild(0); }},
    {"moved in an object", "StartupModes", [](MemberEditor &member) { member.MoveChild(0, 0); }},
    {"arranged in an object", "StartupModes", [](MemberEditor &member) { member.ArrangeChildren({0}); }},
    {"nothing arranged in a value", "name", [](MemberEditor &member) { member.ArrangeChildren({}); }},
};

TunerProperties withComponents(int count)
{
    TunerProperties document = aDocument(1);
    QVector<Component> components;
    for (int i = 0; i < count; ++i)
        components += aComponent(QStringLiteral("component%1").arg(i), 1);
    document.SetComponent(components);
    return document;
}

template <class Row>
void addRows(const Row *begin, const Row *end)
{
    QTest::addColumn<int>("row");
    for (const Row *row = begin; row != end; ++row)
        QTest::newRow(row->name) << int(row - begin);
}

QStringList notedNames;

void note(const MemberView &member)
{
    notedNames += member.GetName();
}

} // namespace

/// Visitors see every member, in order, and can change members as documented.
class VisitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void membersAreShownInTheOrderOfWriting()
    {
        TunerProperties document = aDocument(1);
        document.Setname(QStringLiteral("R"));
        const QStringList expected{
            QStringLiteral("name = QString R"),
            QStringLiteral("type = QString Receiver"),
            QStringLiteral("baseresource = QString RX1"),
            QStringLiteral("connectableResources = QString null unset"),
            QStringLiteral("quantity = int 1 unset"),
            QStringLiteral("parentBaseResource = QString null unset"),
            QStringLiteral("hwProcessing = bool false unset"),
            QStringLiteral("StartupModes x 1"),
            QStringLiteral("  StartupMode = QVariantList QString FFM;"),
            QStringLiteral("BandwidthSelection x 1"),
            QStringLiteral("  Name = QString wide"),
            QStringLiteral("  MaxBandwidth = double 1500000"),
            QStringLiteral("MaxFFPDelay = qulonglong 0 unset"),
            QStringLiteral("HRPANSupported = bool false unset"),
            QStringLiteral("Component x 1"),
            QStringLiteral("  type = QString Filter"),
            QStringLiteral("  name = QString Preselector"),
            QStringLiteral("  displayName = QString null unset"),
            QStringLiteral("  optional = bool false"),
            QStringLiteral("  Node x 1"),
            QStringLiteral("    id = QString node0"),
            QStringLiteral("    ValueItem x 1"),
            QStringLiteral("      ChoiceValueItem = QString ValueInt"),
            QStringLiteral("      ValueInt x 1"),
            QStringLiteral("        id = QString number"),
            QStringLiteral("        value = int 0"),
        };
        const QString shown =
            Model::withoutNewMembers(linesOf(document).join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
        QCOMPARE(shown.split(QLatin1Char('\n')), expected);
    }

    void anObjectWithoutDataShowsItsDefaultsAndStaysWithoutData()
    {
        const TunerProperties document;
        const auto expected = QStringLiteral("name = QString null unset\n"
                                             "type = QString null unset\n"
                                             "baseresource = QString null unset\n"
                                             "connectableResources = QString null unset\n"
                                             "quantity = int 1 unset\n"
                                             "parentBaseResource = QString null unset\n"
                                             "hwProcessing = bool false unset\n"
                                             "StartupModes x 0 unset\n"
                                             "BandwidthSelection x 0 unset\n"
                                             "MaxFFPDelay = qulonglong 0 unset\n"
                                             "HRPANSupported = bool false unset\n"
                                             "Component x 0 unset");
        QCOMPARE(Model::withoutNewMembers(linesOf(document).join(QLatin1Char('\n')), expected), expected);
        QVERIFY(!document.IsInitialized());
    }

    void visitingSharedDataLeavesThemShared()
    {
        const TunerProperties original = aDocument();
        TunerProperties assigned;
        assigned = original;
        const QStringList lines = linesOf(original);
        QCOMPARE(linesOf(std::as_const(assigned)), lines);
        QCOMPARE(firstComponent(assigned), firstComponent(original)); // one and the same object
    }

    void visitingWithAnEditorChangesNothing()
    {
        TunerProperties document;
        int members = 0;
        visit(document, [&](const MemberView &member) { members += member.IsSet() ? 0 : 1; });
        QCOMPARE(members, 12);
        visit(document, [&](MemberEditor &member) { members += member.IsSet() ? 0 : 1; });
        QCOMPARE(members, 24);
        QVERIFY(!document.IsInitialized());
    }

    void visitingAnItemNeitherChoosesNorBuildsAnAlternative()
    {
        ValueItem item;
        item.SetValueInt(anInt());
        const QString before = hex(snapshotOf(item));
        int built = 0;
        visit(std::as_const(item), [&](const MemberView &member) { built += member.GetSize(); });
        QCOMPARE(built, 1);
        QCOMPARE(item.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueInt);
        QCOMPARE(hex(snapshotOf(item)), before);
    }

    void everyAlternativeIsShownAndOnlyOneIsChosen()
    {
        ValueItem item;
        item.GetValueFloat();
        item.SetValueInt(anInt());
        QCOMPARE(namesWhere(item, &MemberView::IsChosen), QStringLiteral("ChoiceValueItem ValueInt"));
        QCOMPARE(namesWhere(item, &MemberView::IsSet), QStringLiteral("ChoiceValueItem ValueFloat ValueInt"));
        QStringList all{QStringLiteral("ChoiceValueItem")};
        all += ValueItem::GetChoiceValueItems();
        QStringList shown;
        visit(item, [&](const MemberView &member) { shown += member.GetName(); });
        QCOMPARE(shown, all);
    }

    void membersReportWhetherTheyAreMandatoryAndIdentifying()
    {
        QCOMPARE(namesWhere(TunerProperties(), &MemberView::IsMandatory),
                 QStringLiteral("type baseresource Component"));
        QCOMPARE(namesWhere(Component(), &MemberView::IsMandatory), QStringLiteral("type name optional Node"));
        QCOMPARE(namesWhere(Component(), &MemberView::IsIdentifying), QStringLiteral("type name"));
        QCOMPARE(namesWhere(Node(), &MemberView::IsIdentifying), QStringLiteral("id"));
        QCOMPARE(namesWhere(ValueSelection(), &MemberView::IsIdentifying), QStringLiteral("id"));
        QCOMPARE(namesWhere(StringItem(), &MemberView::IsIdentifying), QStringLiteral("value"));
        QCOMPARE(namesWhere(StartupModes(), &MemberView::IsIdentifying), QString());
        QCOMPARE(namesWhere(ValueItem(), &MemberView::IsMandatory), QStringLiteral("ChoiceValueItem"));
    }

    void membersReportWhetherTheyAreAttributes()
    {
        QCOMPARE(
            namesWhere(TunerProperties(), &MemberView::IsAttribute),
            QStringLiteral("name type baseresource connectableResources quantity parentBaseResource hwProcessing"));
        QCOMPARE(namesWhere(Component(), &MemberView::IsAttribute), QStringLiteral("type name displayName optional"));
        QCOMPARE(namesWhere(BandwidthSelection(), &MemberView::IsAttribute), QString());
        QCOMPARE(namesWhere(StartupModes(), &MemberView::IsAttribute), QString());
        QCOMPARE(namesWhere(ValueItem(), &MemberView::IsAttribute), QString());
        QCOMPARE(namesWhere(ValueSelection(), &MemberView::IsAttribute), QStringLiteral("id value text index"));
    }

    void typeIdentifiesAComponentButIsNotItsName()
    {
        TunerProperties document = aDocument(1);
        document.GetComponent()[0].Resetname();
        QCOMPARE(document.GetProblems().at(0).path, QStringList{QStringLiteral("Component 1")});
    }

    void enumerationsReturnTheirNames()
    {
        QStringList names;
        visit(TunerProperties(), [&](const MemberView &member) { names += member.GetNames(); });
        QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("MCP SCP FFP Receiver DirectionFinder"));
        names.clear();
        visit(StartupModes(), [&](const MemberView &member) { names += member.GetNames(); });
        QCOMPARE(names, StartupModes::GetStartupModes());
        visit(ValueItem(), [&](const MemberView &member) {
            QCOMPARE(member.GetNames(),
                     member.GetKind() == MemberKind::Choice ? ValueItem::GetChoiceValueItems() : QStringList());
        });
    }

    void defaultsAreThoseOfANewObject()
    {
        TunerProperties document = aDocument();
        document.Setquantity(7);
        document.SetMaxFFPDelay(3);
        QStringList defaults;
        visit(document, [&](const MemberView &member) {
            if (member.GetKind() == MemberKind::Int || member.GetKind() == MemberKind::UInt64)
                defaults += textOf(member.GetDefaultValue());
        });
        QCOMPARE(defaults, (QStringList{QStringLiteral("int 1"), QStringLiteral("qulonglong 0")}));
    }

    void aValueOfAnEnumerationWithoutANameIsShownByItsNumber()
    {
        StartupModes modes;
        modes.SetValidate(false);
        modes.AppendStartupMode(StartupModes::StartupMode(77));
        modes.AppendStartupMode(StartupModes::StartupMode::Invalid);
        QCOMPARE(linesOf(modes), QStringList{QStringLiteral("StartupMode = QVariantList int 77;QString null;")});
        StartupModes other;
        visit(std::as_const(modes),
              [&](const MemberView &member) { QVERIFY(setValue(other, "StartupMode", member.GetValue())); });
        QVERIFY(other == modes);
    }

    void valuesAreStoredBySettersWhichSetTheFlag()
    {
        TunerProperties document;
        QVERIFY(setValue(document, "type", QStringLiteral("SCP")));
        QVERIFY(setValue(document, "quantity", 4));
        QVERIFY(setValue(document, "hwProcessing", true));
        QVERIFY(setValue(document, "MaxFFPDelay", std::numeric_limits<quint64>::max()));
        QCOMPARE(document.Gettype(), TunerProperties::type::SCP);
        QCOMPARE(document.Getquantity(), 4);
        QVERIFY(document.GethwProcessing());
        QCOMPARE(document.GetMaxFFPDelay(), std::numeric_limits<quint64>::max());
        QCOMPARE(namesWhere(document, &MemberView::IsSet), QStringLiteral("type quantity hwProcessing MaxFFPDelay"));
    }

    void valuesThatASetterRejectsAreRejected()
    {
        TunerProperties document;
        QCOMPARE(
            thrownBy([&] { setValue(document, "baseresource", QString()); }),
            QStringLiteral("OutOfRangeException: TunerProperties: Please set baseresource properly (origin: Setter)."));
        QCOMPARE(
            thrownBy([&] { setValue(document, "type", QString()); }),
            QStringLiteral("OutOfRangeException: enum is not valid (classname=TunerProperties,membername=m_type)"));
        QVERIFY(!document.IsbaseresourceSet());
        QVERIFY(!document.IstypeSet());
        document.SetValidate(false);
        QVERIFY(setValue(document, "baseresource", QString()));
        QVERIFY(document.IsbaseresourceSet());
    }

    void valueOfAnotherTypeIsNotAccepted_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a text for a number") << "quantity" << QVariant(QStringLiteral("4"));
        QTest::newRow("a wider number") << "quantity" << QVariant(4LL);
        QTest::newRow("a number for a boolean") << "hwProcessing" << QVariant(1);
        QTest::newRow("a number for a text") << "name" << QVariant(1);
        QTest::newRow("nothing") << "name" << QVariant();
        QTest::newRow("an unknown name") << "type" << QVariant(QStringLiteral("receiver"));
        QTest::newRow("an empty name, which is not null") << "type" << QVariant(QStringLiteral(""));
        QTest::newRow("a number too large for an enumeration") << "type" << QVariant(259);
        QTest::newRow("a boolean for an enumeration") << "type" << QVariant(true);
        QTest::newRow("a value for a child") << "StartupModes" << QVariant(1);
        QTest::newRow("a value for a list") << "Component" << QVariant(QVariantList());
    }

    void valueOfAnotherTypeIsNotAccepted()
    {
        QFETCH(QString, member);
        QFETCH(QVariant, value);
        TunerProperties document;
        QVERIFY(!setValue(document, member.toLatin1().constData(), value));
        QVERIFY(!document.IsInitialized() || namesWhere(document, &MemberView::IsSet).isEmpty());
    }

    void modesAreNotAcceptedIfOneOfThemIsUnknown()
    {
        StartupModes modes;
        modes.AppendStartupMode(StartupModes::StartupMode::DF);
        QVERIFY(!setValue(modes, "StartupMode", QVariantList{QStringLiteral("Scan"), QStringLiteral("Sacn")}));
        QVERIFY(!setValue(modes, "StartupMode", QVariantList{QStringLiteral("Scan"), 128}));
        QVERIFY(!setValue(modes, "StartupMode", QStringLiteral("Scan")));
        QCOMPARE(modes.GetStartupMode(), QVector<StartupModes::StartupMode>{StartupModes::StartupMode::DF});
        QVERIFY(setValue(modes, "StartupMode", QVariantList{QStringLiteral("Scan"), QStringLiteral("FFM")}));
        QCOMPARE(modes.GetStartupMode().size(), 2);
    }

    void editingAChildSetsItsFlag()
    {
        TunerProperties document;
        edit(document, "StartupModes", [](MemberEditor &member) {
            QVERIFY(setValue(member.EditChild(), "StartupMode", QVariantList{QStringLiteral("DF")}));
        });
        QVERIFY(document.IsStartupModesSet());
        QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode().at(0), StartupModes::StartupMode::DF);
    }

    void editingAnItemOfAListSetsItsFlagInNoOtherDocument()
    {
        const TunerProperties original = aDocument(1);
        TunerProperties document;
        document = original;
        edit(document, "Component",
             [](MemberEditor &member) { QVERIFY(setValue(member.EditChild(0), "name", QStringLiteral("IF"))); });
        QCOMPARE(std::as_const(document).GetComponent().at(0).Getname(), QStringLiteral("IF"));
        QCOMPARE(original.GetComponent().at(0).Getname(), QStringLiteral("Preselector"));
    }

    void editingAnAlternativeChoosesIt()
    {
        ValueItem item;
        item.SetValueInt(anInt());
        edit(item, "ValueString", [](MemberEditor &member) {
            QVERIFY(!member.IsChosen());
            setValue(member.EditChild(), "id", QStringLiteral("text"));
            QVERIFY(member.IsChosen());
            QVERIFY(member.IsSet());
        });
        QCOMPARE(item.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueString);
        QVERIFY(item.IsValueIntSet());
    }

    void aChoiceIsMadeWithoutTouchingTheAlternatives()
    {
        ValueItem item;
        item.SetValueInt(anInt());
        QVERIFY(setValue(item, "ChoiceValueItem", QStringLiteral("ValueFloat")));
        QCOMPARE(item.GetChoiceValueItem(), ValueItem::ChoiceValueItem::ValueFloat);
        QVERIFY(!item.IsValueFloatSet());
        QVERIFY(setValue(item, "ChoiceValueItem", 77)); // snapshots may contain it
        QCOMPARE(int(item.GetChoiceValueItem()), 77);
        QCOMPARE(namesWhere(item, &MemberView::IsSet), QStringLiteral("ChoiceValueItem ValueInt"));
        QVERIFY(!setValue(item, "ChoiceValueItem", QStringLiteral("Value")));
        QVERIFY(!setValue(item, "ChoiceValueItem", 256));
        edit(item, "ChoiceValueItem", [](MemberEditor &member) {
            member.SetFlag(true); // it has none
            member.Reset();
            QVERIFY(!member.IsSet());
        });
        QCOMPARE(item.GetChoiceValueItem(), ValueItem::ChoiceValueItem::None);
        QVERIFY(item.IsValueIntSet());
    }

    void newItemsAreRefusedWhileValidatingBecauseTheyHaveNoData()
    {
        Node node;
        edit(node, "ValueItem", [](MemberEditor &member) {
            QCOMPARE(thrownBy([&] { member.AppendChild(); }),
                     QStringLiteral("IncompleteDefinitionException: Node: Tried to append not completely defined or "
                                    "invalid item ValueItem."));
        });
        QVERIFY(!node.IsValueItemSet());
        node.SetValidate(false);
        edit(node, "ValueItem", [](MemberEditor &member) {
            static_cast<ValueItem &>(member.AppendChild()).SetValueInt(anInt(1));
            static_cast<ValueItem &>(member.AppendChild()).SetValueInt(anInt(2));
            QCOMPARE(member.GetSize(), 2);
        });
        QVERIFY(node.IsValueItemSet());
        QCOMPARE(std::as_const(node).GetValueItem().at(1).GetValueInt().Getvalue(), 2);
    }

    void itemsAreRemovedMovedAndArranged_data() { addRows(std::begin(arrangements), std::end(arrangements)); }

    // The list is unset first, and each item has a flag and a logger of its own.
    void itemsAreRemovedMovedAndArranged()
    {
        QFETCH(int, row);
        Component component = aComponent(QStringLiteral("c"), 4);
        QHash<QString, std::shared_ptr<REPORTGENERATOR::Logger>> loggers;
        for (int i = 0; i < 4; ++i) {
            Node &node = component.GetNode()[i];
            node.SetValidate(i % 2 == 0);
            const auto logger = std::make_shared<REPORTGENERATOR::Logger>();
            node.SetLogger(logger);
            loggers.insert(node.Getid(), logger);
        }
        const QByteArray contentOfLast = snapshotOf(std::as_const(component).GetNode().last());
        edit(component, "Node", [&](MemberEditor &list) {
            list.SetFlag(false);
            arrangements[row].change(list);
            QVERIFY(list.IsSet());
        });
        QStringList left;
        for (const Node &node : std::as_const(component).GetNode()) {
            left += node.Getid();
            QCOMPARE(node.GetValidate(),
                     node.Getid() == QLatin1String("node0") || node.Getid() == QLatin1String("node2"));
            QCOMPARE(node.GetLogger(), loggers.value(node.Getid()));
            if (node.Getid() == QLatin1String("node3"))
                QCOMPARE(hex(snapshotOf(node)), hex(contentOfLast));
        }
        QCOMPARE(left.join(QLatin1Char(' ')), QLatin1String(arrangements[row].ids));
    }

    void arrangingAListLeavesOtherDocumentsAndCopiesOfItUnchanged()
    {
        const TunerProperties original = withComponents(3);
        TunerProperties document;
        document = original;
        const QVector<Component> copied = std::as_const(document).GetComponent();
        edit(document, "Component", [](MemberEditor &list) {
            list.RemoveChild(0);
            list.MoveChild(0, 1);
        });
        QCOMPARE(std::as_const(document).GetComponent().size(), 2);
        QCOMPARE(original.GetComponent().size(), 3);
        QCOMPARE(copied.size(), 3);
        QCOMPARE(copied.first().Getname(), original.GetComponent().first().Getname());
        QVERIFY(copied.last().IsNodeSet());
    }

    void placesThatAListDoesNotHaveThrowLogicErrorAndChangeNothing_data()
    {
        addRows(std::begin(wrongPlaces), std::end(wrongPlaces));
    }

    void placesThatAListDoesNotHaveThrowLogicErrorAndChangeNothing()
    {
        QFETCH(int, row);
        TunerProperties document = withComponents(2);
        const QString before = hex(snapshotOf(document));
        QString what;
        try {
            edit(document, wrongPlaces[row].member, wrongPlaces[row].change);
        } catch (const std::logic_error &e) {
            what = QString::fromLatin1(e.what());
        }
        QCOMPARE(what, QStringLiteral("JobXml: '%1' holds no such object").arg(QLatin1String(wrongPlaces[row].member)));
        QCOMPARE(hex(snapshotOf(document)), before);
    }

    void accessToAChildThatDoesNotExistThrowsLogicError()
    {
        TunerProperties document;
        document.Setquantity(1);
        QString what;
        const auto callEditor = [&](const char *name, auto &&call) {
            try {
                edit(document, name, call);
            } catch (const std::logic_error &e) {
                what += QString::fromLatin1(e.what()) + QLatin1Char('\n');
            }
        };
        callEditor("quantity", [](MemberEditor &member) { member.EditChild(); });
        callEditor("quantity", [](MemberEditor &member) { member.AppendChild(); });
        callEditor("StartupModes", [](MemberEditor &member) { member.AppendChild(); });
        callEditor("StartupModes", [](MemberEditor &member) { member.EditChild(1); });
        callEditor("Component", [](MemberEditor &member) { member.EditChild(0); });
        callEditor("Component", [](const MemberView &member) { member.GetChild(-1); });
        callEditor("name", [](const MemberView &member) { member.GetChild(); });
        QCOMPARE(what,
                 QStringLiteral("JobXml: 'quantity' holds no such object\n"
                                "JobXml: 'quantity' holds no such object\n"
                                "JobXml: 'StartupModes' holds no such object\n"
                                "JobXml: 'StartupModes' holds no such object\n"
                                "JobXml: 'Component' holds no such object\n"
                                "JobXml: 'Component' holds no such object\n"
                                "JobXml: 'name' holds no such object\n"));
    }

    void membersAreResetAsByTheirOwnReset()
    {
        TunerProperties document = aDocument();
        document.Setquantity(9);
        visit(document, [](MemberEditor &member) { member.Reset(); });
        QCOMPARE(namesWhere(document, &MemberView::IsSet), QString());
        QCOMPARE(document.Getquantity(), 1);
        QCOMPARE(std::as_const(document).GetComponent().size(), 0);
        QVERIFY(std::as_const(document).GetStartupModes().GetStartupMode().isEmpty());
        QVERIFY(!document.AnyData());
    }

    void resettingTheMembersOfANewObjectLeavesItWithoutData()
    {
        TunerProperties document;
        visit(document, [](MemberEditor &member) { member.Reset(); });
        QVERIFY(!document.IsInitialized());
    }

    void editingAnItemOfAListSetsAFlagThatWasClear()
    {
        TunerProperties document = aDocument(1);
        edit(document, "Component", [](MemberEditor &member) {
            member.SetFlag(false);
            QVERIFY(!member.IsSet());
            QCOMPARE(member.GetSize(), 1); // exists, whether its flag is set or not
            member.EditChild(0);
            QVERIFY(member.IsSet());
        });
        QVERIFY(document.IsComponentSet());
    }

    void unsetMembersAreShown()
    {
        StartupModes modes;
        modes.AppendStartupMode(StartupModes::StartupMode::DF);
        edit(modes, "StartupMode", [](MemberEditor &member) { member.SetFlag(false); });
        QCOMPARE(linesOf(modes), QStringList{QStringLiteral("StartupMode = QVariantList QString DF; unset")});
        ValueItem item;
        item.SetValueInt(anInt());
        edit(item, "ValueInt", [](MemberEditor &member) {
            member.SetFlag(false);
            QVERIFY(member.IsChosen());
            QCOMPARE(member.GetSize(), 1);
        });
        item.ResetValueInt();
        edit(item, "ValueInt", [](MemberEditor &member) { QVERIFY(member.IsChosen() && !member.IsSet()); });
    }

    void everyItemOfALongListIsShown()
    {
        const Component component = aComponent(QStringLiteral("long"), 40);
        visit(component, [](const MemberView &member) {
            for (int i = 0; i < member.GetSize(); ++i) {
                const auto &node = static_cast<const Node &>(member.GetChild(i));
                QCOMPARE(node.Getid(), QStringLiteral("node%1").arg(i));
            }
        });
    }

    void aFunctionMayBeTheVisitor()
    {
        notedNames.clear();
        visit(Node(), note);
        visit(StringItem(), &note);
        const auto keep = [](const auto &member) { notedNames += member.GetName(); };
        visit(SelectionItem(), keep);
        visit(StartupModes(), std::function<void(const MemberView &)>(note));
        QCOMPARE(notedNames.join(QLatin1Char(' ')), QStringLiteral("id ValueItem value name value StartupMode"));
    }

    void flagCanBeChangedWithoutTheValue()
    {
        ValueInt value = anInt(5);
        edit(value, "value", [](MemberEditor &member) { member.SetFlag(false); });
        QVERIFY(!value.IsvalueSet());
        QCOMPARE(value.Getvalue(), 5);
        ValueInt fresh;
        edit(fresh, "id", [](MemberEditor &member) { member.SetFlag(true); });
        QVERIFY(fresh.IsidSet());
        QVERIFY(fresh.Getid().isNull());
    }

    void viewOfOneObjectFindsTheMemberInAnother()
    {
        std::optional<MemberView> id;
        {
            const Node gone;
            visit(gone, [&](const MemberView &member) {
                if (member.GetName() == QLatin1String("id"))
                    id.emplace(member);
            });
        }
        Node node;
        node.Setid(QStringLiteral("gain"));
        QCOMPARE(id->Of(node).GetName(), QLatin1String("id"));
        QCOMPARE(id->Of(node).GetValue(), QVariant(QStringLiteral("gain")));
        QVERIFY(id->Of(node).IsSet());
        QVERIFY(!id->Of(Node()).IsSet());
    }

    void viewReturnsThePresentState()
    {
        TunerProperties document;
        edit(document, "quantity", [&](MemberEditor &member) {
            document.Setquantity(3);
            QVERIFY(member.IsSet());
            QCOMPARE(member.GetValue(), QVariant(3));
        });
    }

    void exceptionOfAVisitorPassesThrough()
    {
        int seen = 0;
        const auto look = [&] {
            visit(aDocument(), [&](const MemberView &) {
                if (++seen == 3)
                    throw OutOfRangeException(QStringLiteral("enough"));
            });
        };
        QCOMPARE(thrownBy(look), QStringLiteral("OutOfRangeException: enough"));
        QCOMPARE(seen, 3);
    }

    void aVisitorMayKeepStateOfItsOwn()
    {
        struct Counter
        {
            void operator()(const MemberView &) { ++members; }
            int members = 0;
        };
        Counter counter;
        visit(Node(), counter);
        visit(Component(), counter);
        QCOMPARE(counter.members, 7);
    }
};

TEST_SUITE_WITHOUT_APPLICATION(VisitTest)
#include "tst_Visit.moc"

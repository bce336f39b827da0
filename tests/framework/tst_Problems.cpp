// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/Visit.h>

#include "Documents.h"

using namespace JobXml;

namespace {

QStringList textsOf(const DataObject &object)
{
    QStringList texts;
    for (const Problem &problem : object.GetProblems())
        texts.append(problem.path.join(QStringLiteral(" / ")) + QStringLiteral(" -> ") + problem.message);
    return texts;
}

} // namespace

/// GetProblems() names every problem, and where it is.
class ProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValidDocumentHasNone() { QCOMPARE(textsOf(aDocument()), QStringList()); }

    void everyProblemOfAnObjectIsNamedNotOnlyTheFirst()
    {
        QCOMPARE(textsOf(Component()),
                 (QStringList{QStringLiteral(" -> Component: Please set Node properly."),
                              QStringLiteral(" -> Component: Please set type properly."),
                              QStringLiteral(" -> Component: Please set name properly."),
                              QStringLiteral(" -> Component: Please set optional properly.")}));
    }

    void problemsAreFoundWhateverTheValidateFlag()
    {
        TunerProperties document = aDocument();
        document.SetValidate(false);
        document.GetComponent()[0].GetNode()[0].AppendValueItem(ValueItem());
        document.GetComponent()[0].GetNode()[1].GetValueItem()[0].GetValueInt().Resetvalue();
        document.GetComponent()[0].GetNode()[1].Resetid();
        document.GetBandwidthSelection()[0].ResetMaxBandwidth();
        document.Resetbaseresource();
        const QStringList expected{
            QStringLiteral("BandwidthSelection \"wide\" -> BandwidthSelection: Please set MaxBandwidth properly."),
            QStringLiteral("Component \"Preselector\" / Node \"node0\" / ValueItem 2 -> ValueItem:Check failed. The "
                           "mandatory choice ChoiceValueItem is not initialized"),
            QStringLiteral(
                "Component \"Preselector\" / Node 2 / ValueItem 1 -> ValueItem:Check failed. Mandatory data of "
                "the member (choice element) m_valueInt is not set."),
            QStringLiteral("Component \"Preselector\" / Node 2 / ValueItem 1 / ValueInt \"number\" -> ValueInt: Please "
                           "set value properly."),
            QStringLiteral("Component \"Preselector\" / Node 2 -> Node: Please set id properly."),
            QStringLiteral(" -> TunerProperties: Please set baseresource properly."),
        };
        QCOMPARE(textsOf(document), expected);
        document.SetValidate(true);
        QCOMPARE(textsOf(document), expected);
        QVERIFY(document.GetValidate());
    }

    void aChildThatPassesItsCheckButHasNoDataIsAProblemOfItsParent()
    {
        Component component = aComponent();
        component.GetNode()[0].SetValueItem({});
        QCOMPARE(textsOf(component),
                 QStringList{QStringLiteral(" -> Parameters for Node are not set properly in 'Component'.")});
    }

    void aChildIsToldByItsName_data()
    {
        addColumns();
        addCase<ValueBoolean>("ValueBoolean \"a\" -> ValueBoolean: Please set value properly.", named<ValueBoolean>());
        addCase<ValueFloat>("ValueFloat \"a\" -> ValueFloat: Please set value properly.", named<ValueFloat>());
        addCase<ValueInt>("ValueInt \"a\" -> ValueInt: Please set value properly.", named<ValueInt>());
        addCase<ValueInt64>("ValueInt64 \"a\" -> ValueInt64: Please set value properly.", named<ValueInt64>());
        addCase<ValueString>("ValueString \"a\" -> ValueString: Please set value properly.", named<ValueString>());
        addCase<ValueNumericFloat>("ValueNumericFloat \"a\" -> ValueNumericFloat: Please set step properly.",
                                   namedRange<ValueNumericFloat>());
        addCase<ValueNumericInt>("ValueNumericInt \"a\" -> ValueNumericInt: Please set step properly.",
                                 namedRange<ValueNumericInt>());
        addCase<ValueNumericInt64>("ValueNumericInt64 \"a\" -> ValueNumericInt64: Please set step properly.",
                                   namedRange<ValueNumericInt64>());
        addCase<ValueStringList>("ValueStringList \"a\" -> ValueStringList: Please set value properly.", [] {
            auto list = named<ValueStringList>();
            list.GetStringItem();
            return list;
        }());
        addCase<ValueSelection>("ValueSelection \"a\" -> ValueSelection: Please set index properly.", [] {
            auto selection = named<ValueSelection>();
            selection.GetSelectionItem();
            selection.Setvalue(1.0);
            selection.Settext(QStringLiteral("one"));
            return selection;
        }());
    }

    void aChildIsToldByItsName() { lastProblemIsAsExpected(); }

    void aChildWithoutNameIsNotToldByItsOtherTexts_data()
    {
        addColumns();
        addCase<ValueString>("ValueString -> ValueString: Please set id properly.", [] {
            ValueString string;
            string.Setvalue(QStringLiteral("text"));
            return string;
        }());
        addCase<ValueStringList>("ValueStringList -> ValueStringList: Please set id properly.", [] {
            ValueStringList list;
            list.GetStringItem();
            list.Setvalue(QStringLiteral("text"));
            return list;
        }());
        addCase<ValueSelection>("ValueSelection -> ValueSelection: Please set id properly.", [] {
            ValueSelection selection;
            selection.GetSelectionItem();
            selection.Setvalue(1.0);
            selection.Settext(QStringLiteral("text"));
            selection.Setindex(0);
            return selection;
        }());
    }

    void aChildWithoutNameIsNotToldByItsOtherTexts() { lastProblemIsAsExpected(); }

    void anItemWithoutNameIsToldByItsPlaceAlone()
    {
        TunerProperties document = aDocument();
        document.GetComponent()[0].Resetname();
        document.GetComponent()[0].SetdisplayName(QStringLiteral("shown"));
        document.GetBandwidthSelection()[0].ResetName();
        QCOMPARE(textsOf(document),
                 (QStringList{QStringLiteral("BandwidthSelection 1 -> BandwidthSelection: Please set Name properly."),
                              QStringLiteral("Component 1 -> Component: Please set name properly.")}));
    }

    void optionsAreToldByTheirNamesAndTextsOfAListByTheirPlaces()
    {
        ValueSelection selection;
        SelectionItem option;
        option.Setname(QStringLiteral("one"));
        selection.SetSelectionItem({option});
        QCOMPARE(textsOf(selection).constFirst(),
                 QStringLiteral("SelectionItem \"one\" -> SelectionItem: Please set value properly."));

        ValueStringList list;
        list.SetStringItem({StringItem()});
        QCOMPARE(textsOf(list).constFirst(), QStringLiteral("StringItem 1 -> StringItem: Please set value properly."));
    }

    void theStartupModesHaveNeitherNameNorPlace()
    {
        TunerProperties document = aDocument();
        document.SetStartupModes(StartupModes());
        QCOMPARE(textsOf(document),
                 QStringList{QStringLiteral("StartupModes -> StartupModes: Please set StartupMode properly.")});
    }

    void alternativesThatAreNotChosenAreNoProblem()
    {
        ValueItem item;
        item.GetValueString();
        item.SetValueInt(anInt());
        QCOMPARE(textsOf(item), QStringList());
    }

    void theStepsOfAProblemLeadToItsObject()
    {
        TunerProperties document = aDocument(2);
        document.AppendComponent(aComponent(QStringLiteral("IF"), 3));
        Node &node = document.GetComponent()[1].GetNode()[2];
        node.GetValueItem()[0].GetValueInt().Resetid();
        const QVector<Problem> problems = document.GetProblems();
        QCOMPARE(problems.size(), 2); // of the item, and of its value
        QCOMPARE(problems.at(0).steps.size(), 3);
        QCOMPARE(problems.at(1).path.join(QLatin1Char('/')),
                 QStringLiteral("Component \"IF\"/Node \"node2\"/ValueItem 1/ValueInt"));
        const DataObject *object = &document;
        for (const Step &step : problems.at(1).steps) {
            visit(*object, [&](const MemberView &member) {
                if (member.GetName() == step.member)
                    object = &member.GetChild(qMax(step.index, 0));
            });
        }
        QCOMPARE(object, &std::as_const(node).GetValueItem().at(0).GetValueInt());
        QCOMPARE(problems.at(1).steps.last().index, -1);
    }

private:
    template <class T>
    static T named()
    {
        T object;
        object.Setid(QStringLiteral("a"));
        return object;
    }

    template <class T>
    static T namedRange()
    {
        T object = named<T>();
        object.Setvalue(1);
        object.Setmin(0);
        object.Setmax(2);
        return object;
    }

    static void choose(ValueItem &item, const ValueBoolean &value) { item.SetValueBoolean(value); }
    static void choose(ValueItem &item, const ValueFloat &value) { item.SetValueFloat(value); }
    static void choose(ValueItem &item, const ValueInt &value) { item.SetValueInt(value); }
    static void choose(ValueItem &item, const ValueInt64 &value) { item.SetValueInt64(value); }
    static void choose(ValueItem &item, const ValueNumericFloat &value) { item.SetValueNumericFloat(value); }
    static void choose(ValueItem &item, const ValueNumericInt &value) { item.SetValueNumericInt(value); }
    static void choose(ValueItem &item, const ValueNumericInt64 &value) { item.SetValueNumericInt64(value); }
    static void choose(ValueItem &item, const ValueSelection &value) { item.SetValueSelection(value); }
    static void choose(ValueItem &item, const ValueString &value) { item.SetValueString(value); }
    static void choose(ValueItem &item, const ValueStringList &value) { item.SetValueStringList(value); }

    static void addColumns()
    {
        QTest::addColumn<ValueItem>("item");
        QTest::addColumn<QString>("expected");
    }

    /// A row for an item that has chosen the value, and for what is said about that value.
    template <class T>
    static void addCase(const char *expected, const T &value)
    {
        ValueItem item;
        choose(item, value);
        QTest::newRow(qPrintable(T::GetStaticObjectName())) << item << QString::fromLatin1(expected);
    }

    static void lastProblemIsAsExpected()
    {
        QFETCH(ValueItem, item);
        QFETCH(QString, expected);
        QCOMPARE(textsOf(item).constLast(), expected);
    }
};

QTEST_GUILESS_MAIN(ProblemsTest)
#include "tst_Problems.moc"

// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/Visitor.h>

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

/// Writes down what it is shown.
class Notes : public Visitor
{
public:
    void VisitValue(QLatin1String name, const QVariant &value, bool set) override
    {
        lines.append(m_indent + name + QLatin1Char('=') + value.toString()
                     + (set ? QString() : QStringLiteral(" unset")));
    }
    void VisitList(QLatin1String name, int size, bool set) override
    {
        lines.append(m_indent + name + QStringLiteral("[%1]").arg(size) + (set ? QString() : QStringLiteral(" unset")));
    }
    void VisitChild(QLatin1String name, const DataObject &child, int index) override
    {
        lines.append(m_indent + name + QStringLiteral(" #%1").arg(index));
        m_indent.append(QLatin1Char(' '));
        child.Accept(*this);
        m_indent.chop(1);
    }

    QStringList lines;

private:
    QString m_indent;
};

} // namespace

/// GetProblems() names every problem, and Accept() shows every member.
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

    void alternativesThatAreNotChosenAreNoProblem()
    {
        ValueItem item;
        item.GetValueString();
        item.SetValueInt(anInt());
        QCOMPARE(textsOf(item), QStringList());
    }

    void membersAreShownInTheOrderOfWriting()
    {
        TunerProperties document = aDocument(1);
        document.Setname(QStringLiteral("R"));
        Notes notes;
        document.Accept(notes);
        const QStringList expected{
            QStringLiteral("name=R"),
            QStringLiteral("type=Receiver"),
            QStringLiteral("baseresource=RX1"),
            QStringLiteral("connectableResources= unset"),
            QStringLiteral("quantity=1 unset"),
            QStringLiteral("parentBaseResource= unset"),
            QStringLiteral("hwProcessing=false unset"),
            QStringLiteral("StartupModes #-1"),
            QStringLiteral(" StartupMode[1]"),
            QStringLiteral(" StartupMode=FFM"),
            QStringLiteral("BandwidthSelection[1]"),
            QStringLiteral("BandwidthSelection #0"),
            QStringLiteral(" Name=wide"),
            QStringLiteral(" MaxBandwidth=1500000"),
            QStringLiteral("MaxFFPDelay=0 unset"),
            QStringLiteral("HRPANSupported=false unset"),
            QStringLiteral("Component[1]"),
            QStringLiteral("Component #0"),
            QStringLiteral(" type=Filter"),
            QStringLiteral(" name=Preselector"),
            QStringLiteral(" displayName= unset"),
            QStringLiteral(" optional=false"),
            QStringLiteral(" Node[1]"),
            QStringLiteral(" Node #0"),
            QStringLiteral("  id=node0"),
            QStringLiteral("  ValueItem[1]"),
            QStringLiteral("  ValueItem #0"),
            QStringLiteral("   ValueInt #-1"),
            QStringLiteral("    id=number"),
            QStringLiteral("    value=0"),
        };
        QCOMPARE(notes.lines, expected);
    }

    void showingChangesNothing()
    {
        const TunerProperties empty;
        Notes notes;
        empty.Accept(notes);
        QVERIFY(notes.lines.isEmpty());
        QVERIFY(!empty.IsInitialized());
    }
};

QTEST_GUILESS_MAIN(ProblemsTest)
#include "tst_Problems.moc"

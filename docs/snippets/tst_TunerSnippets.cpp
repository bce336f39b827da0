// SPDX-License-Identifier: MIT
//
// The examples that the manual shows for the document and its parts. Each result is checked after the part that is
// shown.

#include <utility>

#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Elements.h"

namespace {

JobXml::Node nodeWithSwitch(const QString &id)
{
    JobXml::ValueBoolean engaged;
    engaged.Setid(QStringLiteral("engaged"));
    engaged.Setvalue(true);
    JobXml::ValueItem item;
    item.SetValueBoolean(engaged);
    JobXml::Node node;
    node.Setid(id);
    node.AppendValueItem(item);
    return node;
}

JobXml::Component componentWithSwitch()
{
    JobXml::Component component;
    component.Settype(QStringLiteral("Squelch"));
    component.Setname(QStringLiteral("squelch"));
    component.Setoptional(true);
    component.AppendNode(nodeWithSwitch(QStringLiteral("level")));
    return component;
}

} // namespace

class TunerSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsBuiltFromItsParts();
    void modesAreAppended();
    void aBandwidthHasANameAndANumber();
    void aComponentHoldsNodes();
    void aNodeHoldsValues();
    void anItemHoldsOneValue();
    void membersHaveValuesAndFlags();
    void aCopyConstructedObjectIsIndependentOfHeldReferences();
    void visitorsSeeEveryMember();
    void visitorsMayChangeMembers();
};

void TunerSnippets::aDocumentIsBuiltFromItsParts()
{
    const JobXml::Component squelch = componentWithSwitch();
    //! [TunerProperties]
    JobXml::TunerProperties tuner;
    tuner.Settype(JobXml::TunerProperties::type::Receiver);
    tuner.Setbaseresource(QStringLiteral("RX-8G"));
    tuner.Setquantity(2);
    tuner.AppendComponent(squelch); // complete, or it would be refused
    tuner.Check(); // passes: only type, baseresource and a component are mandatory

    // Through a const object: the other getter would mark the list as set.
    const JobXml::TunerProperties &document = tuner;
    const bool mayBeMissing = document.GetComponent().constFirst().Getoptional();
    //! [TunerProperties]
    QVERIFY(mayBeMissing);
    QCOMPARE(
        elementOf(tuner),
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX-8G\" quantity=\"2\">\n"
                       "  <Component type=\"Squelch\" name=\"squelch\" optional=\"true\">\n"
                       "    <Node id=\"level\">\n"
                       "      <ValueItem>\n"
                       "        <ValueBoolean id=\"engaged\" value=\"true\"/>\n"
                       "      </ValueItem>\n"
                       "    </Node>\n"
                       "  </Component>\n"
                       "</TunerProperties>\n"));
}

void TunerSnippets::modesAreAppended()
{
    //! [StartupModes]
    using Mode = JobXml::StartupModes::StartupMode;
    JobXml::StartupModes modes;
    modes.AppendStartupMode(Mode::FFM);
    modes.AppendStartupMode(modes.NameToStartupMode(QStringLiteral("Scan")));

    QStringList names;
    for (const Mode mode : std::as_const(modes).GetStartupMode())
        names.append(modes.StartupModeToName(mode)); // "FFM", "Scan"
    //! [StartupModes]
    QCOMPARE(names, (QStringList{QStringLiteral("FFM"), QStringLiteral("Scan")}));
    QCOMPARE(elementOf(modes),
             QStringLiteral("<StartupModes>\n"
                            "  <StartupMode>FFM</StartupMode>\n"
                            "  <StartupMode>Scan</StartupMode>\n"
                            "</StartupModes>\n"));
}

void TunerSnippets::aBandwidthHasANameAndANumber()
{
    //! [BandwidthSelection]
    JobXml::BandwidthSelection narrow;
    narrow.SetName(QStringLiteral("Narrow FM"));
    narrow.SetMaxBandwidth(8333.333); // here in Hz; XML and tagged records carry 8333.33
    //! [BandwidthSelection]
    QCOMPARE(elementOf(narrow),
             QStringLiteral("<BandwidthSelection>\n"
                            "  <Name>Narrow FM</Name>\n"
                            "  <MaxBandwidth>8333.33</MaxBandwidth>\n"
                            "</BandwidthSelection>\n"));
}

void TunerSnippets::aComponentHoldsNodes()
{
    const JobXml::Node level = nodeWithSwitch(QStringLiteral("level"));
    //! [Component]
    JobXml::Component squelch;
    squelch.Settype(QStringLiteral("Squelch"));
    squelch.Setname(QStringLiteral("squelch"));
    squelch.AppendNode(level);
    QString missing;
    try {
        squelch.Check();
    } catch (const OutOfRangeException &e) {
        missing = e.GetMessageText(); // "Component: Please set optional properly."
    }
    squelch.Setoptional(true);
    squelch.Check();
    //! [Component]
    QCOMPARE(missing, QStringLiteral("Component: Please set optional properly."));
    QCOMPARE(elementOf(squelch),
             QStringLiteral("<Component type=\"Squelch\" name=\"squelch\" optional=\"true\">\n"
                            "  <Node id=\"level\">\n"
                            "    <ValueItem>\n"
                            "      <ValueBoolean id=\"engaged\" value=\"true\"/>\n"
                            "    </ValueItem>\n"
                            "  </Node>\n"
                            "</Component>\n"));
}

void TunerSnippets::aNodeHoldsValues()
{
    //! [Node]
    JobXml::ValueInt port;
    port.Setid(QStringLiteral("port"));
    port.Setvalue(9250);
    JobXml::ValueItem item;
    item.SetValueInt(port);

    JobXml::Node destination;
    destination.Setid(QStringLiteral("destination"));
    destination.AppendValueItem(item);
    //! [Node]
    QCOMPARE(elementOf(destination),
             QStringLiteral("<Node id=\"destination\">\n"
                            "  <ValueItem>\n"
                            "    <ValueInt id=\"port\" value=\"9250\"/>\n"
                            "  </ValueItem>\n"
                            "</Node>\n"));
}

void TunerSnippets::anItemHoldsOneValue()
{
    //! [ValueItem]
    using Choice = JobXml::ValueItem::ChoiceValueItem;
    JobXml::ValueItem item; // nothing is chosen
    item.GetValueInt().Setid(QStringLiteral("port")); // the non-const getter chooses
    item.GetValueInt().Setvalue(9250);

    int port = 0;
    const JobXml::ValueItem &read = item; // a const getter neither chooses nor refuses, so check the choice first
    if (read.GetChoiceValueItem() == Choice::ValueInt)
        port = read.GetValueInt().Getvalue();
    //! [ValueItem]
    QCOMPARE(port, 9250);
    QCOMPARE(elementOf(item),
             QStringLiteral("<ValueItem>\n"
                            "  <ValueInt id=\"port\" value=\"9250\"/>\n"
                            "</ValueItem>\n"));
}

void TunerSnippets::membersHaveValuesAndFlags()
{
    //! [DataObject]
    JobXml::ValueInt port;
    const int byDefault = port.Getvalue(); // 0: a member always has a value
    const bool before = port.IsvalueSet(); // false: nothing has been stored
    port.Setvalue(0);
    const bool after = port.IsvalueSet(); // true, although it is the same number
    port.Resetvalue();
    const bool atTheEnd = port.IsvalueSet(); // false again
    //! [DataObject]
    QCOMPARE(byDefault, 0);
    QVERIFY(!before && after && !atTheEnd);
}

void TunerSnippets::aCopyConstructedObjectIsIndependentOfHeldReferences()
{
    JobXml::TunerProperties original;
    original.AppendComponent(componentWithSwitch());

    //! [held]
    JobXml::Component &held = original.GetComponent()[0];
    JobXml::TunerProperties copy(original); // its own data at once; `copy = original` would share those of `held`
    held.Setname(QStringLiteral("changed")); // changes the original alone
    //! [held]

    QCOMPARE(std::as_const(original).GetComponent().at(0).Getname(), QStringLiteral("changed"));
    QCOMPARE(std::as_const(copy).GetComponent().at(0).Getname(), QStringLiteral("squelch"));
}

void TunerSnippets::visitorsSeeEveryMember()
{
    const JobXml::Component component;
    //! [visit]
    QStringList missing;
    JobXml::visit(component, [&](const JobXml::MemberView &member) {
        if (member.IsMandatory() && !member.IsSet())
            missing.append(member.GetName());
    });
    //! [visit]
    QCOMPARE(missing,
             (QStringList{QStringLiteral("type"), QStringLiteral("name"), QStringLiteral("optional"),
                          QStringLiteral("Node")}));
    QVERIFY(!component.IsInitialized());
}

void TunerSnippets::visitorsMayChangeMembers()
{
    JobXml::Component component = componentWithSwitch();
    component.SetdisplayName(QStringLiteral("Squelch"));
    bool isRenamed = false;
    //! [MemberEditor]
    JobXml::visit(component, [&](JobXml::MemberEditor &member) {
        if (!member.IsMandatory())
            member.Reset(); // removes optional members
        else if (member.GetName() == QLatin1String("name"))
            isRenamed = member.SetValue(QStringLiteral("squelch 2")); // as Setname() would
    });
    //! [MemberEditor]
    QVERIFY(isRenamed);
    JobXml::Component expected = componentWithSwitch();
    expected.Setname(QStringLiteral("squelch 2"));
    QVERIFY(component == expected);
}

TEST_SUITE(TunerSnippets)
#include "tst_TunerSnippets.moc"

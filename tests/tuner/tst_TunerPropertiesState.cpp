// SPDX-License-Identifier: MIT
#include <functional>

#include <QtTest>

#include "ExceptionText.h"
#include "WholeDocument.h"

using namespace JobXml;
using namespace TunerDocuments;

using Type = TunerProperties::type;

namespace {

QString missing(const char *member)
{
    return QStringLiteral("OutOfRangeException: TunerProperties: Please set %1 properly.").arg(QLatin1String(member));
}

QString refusedBySetter(const char *member)
{
    return QStringLiteral("OutOfRangeException: TunerProperties: Please set %1 properly (origin: Setter).")
        .arg(QLatin1String(member));
}

const char invalidType[] = "OutOfRangeException: enum is not valid (classname=TunerProperties,membername=m_type)";

/// The functions of one member, for rules that are checked for each of the twelve.
struct MemberOfDocument
{
    const char *name;
    std::function<void(TunerProperties &)> set; ///< to a value that is present
    std::function<void(TunerProperties &)> setAbsent; ///< sets the flag to a value that is not present, if there is one
    std::function<bool(const TunerProperties &)> isSet;
    std::function<void(TunerProperties &)> reset;
};

const QVector<MemberOfDocument> &membersInBitOrder()
{
    using D = TunerProperties;
    const QString x = QStringLiteral("x");
    // clang-format off
    static const QVector<MemberOfDocument> all = {
        {"StartupModes", [](D &d) { d.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::DF); }, [](D &d) { d.GetStartupModes(); }, &D::IsStartupModesSet, &D::ResetStartupModes},
        {"BandwidthSelection", [](D &d) { d.AppendBandwidthSelection(aBandwidth()); }, [](D &d) { d.SetBandwidthSelection({}); }, &D::IsBandwidthSelectionSet, &D::ResetBandwidthSelection},
        {"MaxFFPDelay", [](D &d) { d.SetMaxFFPDelay(0); }, nullptr, &D::IsMaxFFPDelaySet, &D::ResetMaxFFPDelay},
        {"HRPANSupported", [](D &d) { d.SetHRPANSupported(false); }, nullptr, &D::IsHRPANSupportedSet, &D::ResetHRPANSupported},
        {"Component", [](D &d) { d.AppendComponent(aComponent()); }, [](D &d) { d.GetComponent(); }, &D::IsComponentSet, &D::ResetComponent},
        {"name", [=](D &d) { d.Setname(x); }, [](D &d) { d.Setname(QString()); }, &D::IsnameSet, &D::Resetname},
        {"type", [](D &d) { d.Settype(Type::MCP); }, nullptr, &D::IstypeSet, &D::Resettype},
        {"baseresource", [=](D &d) { d.Setbaseresource(x); }, [](D &d) { d.Setbaseresource(QString()); }, &D::IsbaseresourceSet, &D::Resetbaseresource},
        {"connectableResources", [=](D &d) { d.SetconnectableResources(x); }, [](D &d) { d.SetconnectableResources(QString()); }, &D::IsconnectableResourcesSet, &D::ResetconnectableResources},
        {"quantity", [](D &d) { d.Setquantity(1); }, nullptr, &D::IsquantitySet, &D::Resetquantity},
        {"parentBaseResource", [=](D &d) { d.SetparentBaseResource(x); }, [](D &d) { d.SetparentBaseResource(QString()); }, &D::IsparentBaseResourceSet, &D::ResetparentBaseResource},
        {"hwProcessing", [](D &d) { d.SethwProcessing(false); }, nullptr, &D::IshwProcessingSet, &D::ResethwProcessing},
    };
    // clang-format on
    return all;
}

/// The names of the members that are set.
QStringList setMembers(const TunerProperties &document)
{
    QStringList set;
    for (const MemberOfDocument &member : membersInBitOrder()) {
        if (member.isSet(document))
            set.append(QLatin1String(member.name));
    }
    return set;
}

void memberRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < membersInBitOrder().size(); ++i)
        QTest::newRow(membersInBitOrder().at(i).name) << i;
}

} // namespace

/// The flags, presence, validity and equality of a document's members.
class TunerPropertiesStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasItsNameIdentifierAndVersion();
    void theFiveTypesHaveTheirNamesInThisOrder();
    void typeNameMustMatchExactly();
    void invalidTypeHasNoName();

    void aNewDocumentHasNoData();
    void theDefaultsAreThese();
    void resetToDefaultMarksTheQuantityAsSet();
    void resetClearsEveryFlagAndRestoresTheDefaults();
    void settingAndResettingAMemberChangesNoOther_data() { memberRows(); }
    void settingAndResettingAMemberChangesNoOther();
    void aMemberThatIsPresentIsAnyData_data() { memberRows(); }
    void aMemberThatIsPresentIsAnyData();
    void dataNeedsComponentsTypeAndBaseResource();

    void anInvalidTypeIsRefusedOnlyWhileValidating();
    void anInvalidTypeThatWasStoredFailsTheCheck();
    void aNullTextIsRefusedOnlyWhileValidating();
    void onlyNullTextsAndUnknownTypesAreInvalid();
    void nonConstGetterOfAChildSetsItsFlag();
    void childrenAreStoredUnchecked();
    void incompleteItemsAreNotAppendedWhileValidating();

    void theMembersAreCheckedInThisOrder();
    void childrenAreCheckedInThisOrderWithTheirOwnMessages();
    void onlyListsThatAreSetAreChecked();
    void valuesWithoutRuleAreNotChecked();

    void everyMemberAffectsEquality_data() { memberRows(); }
    void everyMemberAffectsEquality();
    void theListsAndTheModesAreComparedByTheirItems();
    void comparingLeavesBothDocumentsInitialized();
};

void TunerPropertiesStateTest::itHasItsNameIdentifierAndVersion()
{
    QCOMPARE(TunerProperties::GetStaticObjectName(), QStringLiteral("TunerProperties"));
    const TunerProperties document;
    QCOMPARE(document.GetObjectName(), QStringLiteral("TunerProperties"));
    QCOMPARE(TunerProperties::GetId(), Q_INT64_C(0xC10CBB5F));
    QVERIFY(!document.IsInitialized());
    QCOMPARE(document.GetVersion(), QStringLiteral("1.1"));
    QVERIFY(document.IsInitialized());
    QVERIFY(document.GetInitialVersionLoaded().isNull());
}

void TunerPropertiesStateTest::theFiveTypesHaveTheirNamesInThisOrder()
{
    const QStringList names = {QStringLiteral("MCP"), QStringLiteral("SCP"), QStringLiteral("FFP"),
                               QStringLiteral("Receiver"), QStringLiteral("DirectionFinder")};
    QCOMPARE(TunerProperties::Gettypes(), names);
    const TunerProperties document;
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(document.typeToName(Type(i)), names.at(i));
        QCOMPARE(document.NameTotype(names.at(i)), Type(i));
        QVERIFY(document.IsValidtype(Type(i)));
    }
    QCOMPARE(document.GetInvalidtype(), Type(-1));
    QCOMPARE(document.GetDefaulttype(), Type(-1));
}

void TunerPropertiesStateTest::typeNameMustMatchExactly()
{
    const TunerProperties document;
    QCOMPARE(document.NameTotype(QStringLiteral("Receiver")), Type(3));
    QCOMPARE(document.NameTotype(QStringLiteral("receiver")), Type(-1));
    QCOMPARE(document.NameTotype(QStringLiteral(" Receiver")), Type(-1));
    QCOMPARE(document.NameTotype(QString()), Type(-1));
}

void TunerPropertiesStateTest::invalidTypeHasNoName()
{
    const TunerProperties document;
    QVERIFY(document.typeToName(Type(5)).isNull());
    QVERIFY(document.typeToName(Type(-1)).isNull());
    QVERIFY(document.GettypeAsString().isNull());
    QVERIFY(!document.IsValidtype(Type(5)));
    QVERIFY(!document.IsValidtype(Type(-1)));
}

void TunerPropertiesStateTest::aNewDocumentHasNoData()
{
    const TunerProperties document;
    QVERIFY(!document.HasData());
    QVERIFY(!document.AnyData());
    QCOMPARE(setMembers(document), QStringList());
    QVERIFY(!document.IsInitialized());
}

void TunerPropertiesStateTest::theDefaultsAreThese()
{
    const TunerProperties document;
    QVERIFY(document.Getname().isNull() && document.GetDefaultname().isNull());
    QVERIFY(document.Getbaseresource().isNull() && document.GetDefaultbaseresource().isNull());
    QVERIFY(document.GetconnectableResources().isNull() && document.GetDefaultconnectableResources().isNull());
    QVERIFY(document.GetparentBaseResource().isNull() && document.GetDefaultparentBaseResource().isNull());
    QCOMPARE(document.Gettype(), Type(-1));
    QCOMPARE(document.Getquantity(), 1);
    QCOMPARE(document.GetDefaultquantity(), 1);
    QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(0));
    QCOMPARE(document.GetDefaultMaxFFPDelay(), Q_UINT64_C(0));
    QVERIFY(!document.GethwProcessing() && !document.GetDefaulthwProcessing());
    QVERIFY(!document.GetHRPANSupported() && !document.GetDefaultHRPANSupported());
    QVERIFY(!document.GetStartupModes().AnyData());
    QVERIFY(document.GetBandwidthSelection().isEmpty());
    QVERIFY(document.GetComponent().isEmpty());
    QCOMPARE(setMembers(document), QStringList());
}

void TunerPropertiesStateTest::resetToDefaultMarksTheQuantityAsSet()
{
    for (TunerProperties document : {TunerProperties(), wholeDocument()}) {
        document.ResetToDefault();
        QCOMPARE(setMembers(document), QStringList{QStringLiteral("quantity")});
        QCOMPARE(document.Getquantity(), 1);
        QVERIFY(document.AnyData());
        QVERIFY(!document.HasData());
        QVERIFY(document.Getname().isNull());
        QVERIFY(std::as_const(document).GetComponent().isEmpty());
    }
}

void TunerPropertiesStateTest::resetClearsEveryFlagAndRestoresTheDefaults()
{
    TunerProperties document = wholeDocument();
    QCOMPARE(setMembers(document).size(), 12);
    document.Reset();
    QCOMPARE(setMembers(document), QStringList());
    QCOMPARE(document.Getquantity(), 1);
    QCOMPARE(document.Gettype(), Type(-1));
    QVERIFY(!document.AnyData());
    QVERIFY(document.IsInitialized());
    TunerProperties untouched;
    untouched.Reset();
    QVERIFY(!untouched.IsInitialized());
}

void TunerPropertiesStateTest::settingAndResettingAMemberChangesNoOther()
{
    QFETCH(int, index);
    const MemberOfDocument &member = membersInBitOrder().at(index);
    TunerProperties document;
    member.reset(document);
    QVERIFY(!document.IsInitialized());
    member.set(document);
    QCOMPARE(setMembers(document), QStringList{QLatin1String(member.name)});
    // The snapshot's first two bytes are the flags, bit after bit.
    QCOMPARE(hex(snapshotOf(document).left(2)),
             hex(QByteArray(1, char((1 << index) & 0xFF)) + QByteArray(1, char(1 << index >> 8))));
    member.reset(document);
    QCOMPARE(setMembers(document), QStringList());
    QVERIFY(!document.AnyData());
    QCOMPARE(document.Getquantity(), 1);
}

void TunerPropertiesStateTest::aMemberThatIsPresentIsAnyData()
{
    QFETCH(int, index);
    const MemberOfDocument &member = membersInBitOrder().at(index);
    TunerProperties document = withoutValidation();
    if (member.setAbsent) {
        member.setAbsent(document);
        QVERIFY(member.isSet(document));
        QVERIFY(!document.AnyData());
    }
    member.set(document);
    QVERIFY(document.AnyData());
    QVERIFY(!document.HasData());
}

void TunerPropertiesStateTest::dataNeedsComponentsTypeAndBaseResource()
{
    TunerProperties document = minimalDocument();
    QVERIFY(document.HasData());
    document.Resettype();
    QVERIFY(!document.HasData());
    document.SetValidate(false);
    document.Settype(Type(7));
    QVERIFY(document.HasData()); // a type is set, even if it is invalid
    document.Setbaseresource(QString());
    QVERIFY(!document.HasData());
    document.Setbaseresource(QStringLiteral(""));
    QVERIFY(document.HasData());
    document.SetComponent({});
    QVERIFY(!document.HasData());
    QVERIFY(withUnsetComponents().HasData()); // there is one, which is enough
}

void TunerPropertiesStateTest::anInvalidTypeIsRefusedOnlyWhileValidating()
{
    TunerProperties document;
    document.Settype(Type::FFP);
    QCOMPARE(thrownBy([&] { document.Settype(Type(5)); }), QString::fromLatin1(invalidType));
    QCOMPARE(thrownBy([&] { document.Settype(Type(-1)); }), QString::fromLatin1(invalidType));
    QCOMPARE(document.Gettype(), Type::FFP);
    QCOMPARE(document.GettypeAsString(), QStringLiteral("FFP"));
    TunerProperties lenient = withoutValidation();
    lenient.Settype(Type(-1));
    QVERIFY(lenient.IstypeSet());
}

void TunerPropertiesStateTest::anInvalidTypeThatWasStoredFailsTheCheck()
{
    TunerProperties document = minimalDocument();
    document.SetValidate(false);
    document.Settype(Type(7));
    QCOMPARE(document.Gettype(), Type(7));
    QVERIFY(document.GettypeAsString().isNull());
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("type"));
}

void TunerPropertiesStateTest::aNullTextIsRefusedOnlyWhileValidating()
{
    TunerProperties document;
    QCOMPARE(thrownBy([&] { document.Setname(QString()); }), refusedBySetter("name"));
    QCOMPARE(thrownBy([&] { document.Setbaseresource(QString()); }), refusedBySetter("baseresource"));
    QCOMPARE(thrownBy([&] { document.SetconnectableResources(QString()); }), refusedBySetter("connectableResources"));
    QCOMPARE(thrownBy([&] { document.SetparentBaseResource(QString()); }), refusedBySetter("parentBaseResource"));
    QCOMPARE(setMembers(document), QStringList());
    document.Setname(QStringLiteral(""));
    QVERIFY(document.IsnameSet());

    TunerProperties lenient = withoutValidation();
    lenient.SetconnectableResources(QString());
    QVERIFY(lenient.IsconnectableResourcesSet());
}

void TunerPropertiesStateTest::onlyNullTextsAndUnknownTypesAreInvalid()
{
    const TunerProperties document;
    const QString null;
    QVERIFY(!document.IsValidname(null));
    QVERIFY(!document.IsValidbaseresource(null));
    QVERIFY(!document.IsValidconnectableResources(null));
    QVERIFY(!document.IsValidparentBaseResource(null));
    const QString empty = QStringLiteral("");
    QVERIFY(document.IsValidname(empty));
    QVERIFY(document.IsValidbaseresource(empty));
    QVERIFY(document.IsValidconnectableResources(empty));
    QVERIFY(document.IsValidparentBaseResource(empty));
    QVERIFY(document.IsValidquantity(-1));
    QVERIFY(document.IsValidMaxFFPDelay(~Q_UINT64_C(0)));
    QVERIFY(document.IsValidStartupModes(StartupModes()));
    QVERIFY(document.IsValidBandwidthSelection(BandwidthSelection()));
    QVERIFY(document.IsValidBandwidthSelection(QVector<BandwidthSelection>{BandwidthSelection()}));
    QVERIFY(document.IsValidComponent(Component()));
    QVERIFY(document.IsValidComponent(QVector<Component>{Component()}));
}

void TunerPropertiesStateTest::nonConstGetterOfAChildSetsItsFlag()
{
    TunerProperties document;
    QVERIFY(!std::as_const(document).GetStartupModes().HasData());
    QVERIFY(std::as_const(document).GetBandwidthSelection().isEmpty());
    QVERIFY(std::as_const(document).GetComponent().isEmpty());
    QCOMPARE(setMembers(document), QStringList());
    document.GetStartupModes();
    QCOMPARE(setMembers(document), QStringList{QStringLiteral("StartupModes")});
    document.GetBandwidthSelection().append(aBandwidth());
    document.GetComponent().append(aComponent());
    QVERIFY(document.IsBandwidthSelectionSet() && document.IsComponentSet());
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 1);
    QCOMPARE(std::as_const(document).GetComponent().size(), 1);
}

void TunerPropertiesStateTest::childrenAreStoredUnchecked()
{
    TunerProperties document;
    QCOMPARE(thrownBy([&] {
                 document.SetStartupModes(StartupModes());
                 document.SetBandwidthSelection({BandwidthSelection()});
                 document.SetComponent({Component(), Component()});
             }),
             QString());
    QVERIFY(document.IsStartupModesSet() && document.IsBandwidthSelectionSet() && document.IsComponentSet());
    QCOMPARE(std::as_const(document).GetComponent().size(), 2);
}

void TunerPropertiesStateTest::incompleteItemsAreNotAppendedWhileValidating()
{
    BandwidthSelection nameOnly;
    nameOnly.SetName(QStringLiteral("wide"));
    TunerProperties document;
    QCOMPARE(thrownBy([&] { document.AppendBandwidthSelection(nameOnly); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item BandwidthSelection."));
    QCOMPARE(thrownBy([&] { document.AppendComponent(componentWithEmptyList()); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item Component."));
    QCOMPARE(setMembers(document), QStringList());
    QVERIFY(std::as_const(document).GetBandwidthSelection().isEmpty());
    QVERIFY(std::as_const(document).GetComponent().isEmpty());

    document.SetValidate(false);
    document.AppendBandwidthSelection(nameOnly);
    document.AppendComponent(Component());
    QCOMPARE(setMembers(document), (QStringList{QStringLiteral("BandwidthSelection"), QStringLiteral("Component")}));
}

void TunerPropertiesStateTest::theMembersAreCheckedInThisOrder()
{
    // Corrects all errors one after the other. The argument makes no difference.
    TunerProperties document = withoutValidation();
    document.Setname(QString());
    document.SetconnectableResources(QString());
    document.SetparentBaseResource(QString());
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("Component"));
    document.SetComponent({});
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("name"));
    document.Setname(QStringLiteral(""));
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("type"));
    document.Settype(Type(-1));
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("type"));
    document.Settype(Type::MCP);
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("baseresource"));
    document.Setbaseresource(QString());
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("baseresource"));
    document.Setbaseresource(QStringLiteral(""));
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("connectableResources"));
    document.ResetconnectableResources();
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("parentBaseResource"));
    document.ResetparentBaseResource();
    QCOMPARE(thrownBy([&] { document.Check(); }), QString());
    QCOMPARE(thrownBy([&] { TunerProperties().Check(); }), missing("Component"));
}

void TunerPropertiesStateTest::childrenAreCheckedInThisOrderWithTheirOwnMessages()
{
    TunerProperties document;
    document.SetStartupModes(StartupModes());
    document.SetBandwidthSelection({aBandwidth(), BandwidthSelection()});
    document.SetComponent({aComponent(), Component()});
    QCOMPARE(thrownBy([&] { document.Check(); }),
             QStringLiteral("OutOfRangeException: StartupModes: Please set StartupMode properly."));
    document.ResetStartupModes();
    QCOMPARE(thrownBy([&] { document.Check(); }),
             QStringLiteral("OutOfRangeException: BandwidthSelection: Please set Name properly."));
    document.GetBandwidthSelection().removeLast();
    QCOMPARE(thrownBy([&] { document.Check(); }),
             QStringLiteral("OutOfRangeException: Component: Please set Node properly."));
    document.GetComponent().removeLast();
    QCOMPARE(thrownBy([&] { document.Check(); }), missing("type"));
}

void TunerPropertiesStateTest::onlyListsThatAreSetAreChecked()
{
    const TunerProperties bandwidths = withUnsetBandwidths(BandwidthSelection());
    QVERIFY(!bandwidths.IsBandwidthSelectionSet());
    QCOMPARE(bandwidths.GetBandwidthSelection().size(), 1);
    QVERIFY(bandwidths.AnyData());
    QCOMPARE(thrownBy([&] { bandwidths.Check(); }), QString());
    QCOMPARE(thrownBy([&] { withUnsetComponents().Check(); }), missing("Component"));
}

void TunerPropertiesStateTest::valuesWithoutRuleAreNotChecked()
{
    TunerProperties document = minimalDocument();
    document.Setquantity(-100);
    document.SetMaxFFPDelay(~Q_UINT64_C(0));
    document.GetStartupModes().SetStartupMode({}); // a list that is set may be empty
    document.SetBandwidthSelection({});
    QCOMPARE(thrownBy([&] { document.Check(); }), QString());
}

void TunerPropertiesStateTest::everyMemberAffectsEquality()
{
    QFETCH(int, index);
    const MemberOfDocument &member = membersInBitOrder().at(index);
    TunerProperties left;
    TunerProperties right;
    member.set(left); // some of them to their default, which differs from not set
    QVERIFY(left != right);
    QVERIFY(right != left);
    member.set(right);
    QVERIFY(left == right);
    QVERIFY(!(left != right));
    member.reset(left);
    QVERIFY(!(left == right));

    TunerProperties whole = wholeDocument();
    QVERIFY(whole == wholeDocument());
    member.set(whole); // another value, or one item more
    const bool sameValue = member.name == QByteArray("HRPANSupported");
    QCOMPARE(whole == wholeDocument(), sameValue);
}

void TunerPropertiesStateTest::theListsAndTheModesAreComparedByTheirItems()
{
    TunerProperties left = wholeDocument();
    left.GetBandwidthSelection()[0].SetMaxBandwidth(1);
    QVERIFY(left != wholeDocument());
    left = wholeDocument();
    left.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueInt().Setvalue(9);
    QVERIFY(left != wholeDocument());
    left = wholeDocument();
    left.GetStartupModes().GetStartupMode().removeFirst();
    QVERIFY(left != wholeDocument());

    TunerProperties empty; // an empty list that is set differs from one that is not
    empty.SetBandwidthSelection({});
    QVERIFY(empty != TunerProperties());
    QVERIFY(TunerProperties() != empty);
    QVERIFY(withUnsetBandwidths() == minimalDocument()); // items of a list whose flag is clear are ignored
}

void TunerPropertiesStateTest::comparingLeavesBothDocumentsInitialized()
{
    const TunerProperties left;
    const TunerProperties right;
    QVERIFY(left == right);
    QVERIFY(!left.IsInitialized() && !right.IsInitialized());

    QCOMPARE(left.GetVersion(), QStringLiteral("1.1"));
    QVERIFY(left == right);
    QVERIFY(right.IsInitialized());
    const TunerProperties other;
    QVERIFY(other == left);
    QVERIFY(other.IsInitialized());

    // The versions are compared first, which initializes both even if a member differs.
    const TunerProperties untouched;
    QVERIFY(wholeDocument() != untouched);
    QVERIFY(untouched.IsInitialized());
}

TEST_SUITE(TunerPropertiesStateTest)
#include "tst_TunerPropertiesState.moc"

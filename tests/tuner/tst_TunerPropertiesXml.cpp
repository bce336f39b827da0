// SPDX-License-Identifier: MIT
#include <QtTest>

#include "ExceptionText.h"
#include "WholeDocument.h"

using namespace JobXml;
using namespace TunerDocuments;

using Type = TunerProperties::type;

namespace {

const char wholeElement[] =
    "<TunerProperties Version=\"1.1\" name=\"T\" type=\"Receiver\" baseresource=\"RX\" connectableResources=\"A;B\""
    " quantity=\"-2\" parentBaseResource=\"P\" hwProcessing=\"true\">"
    "<StartupModes><StartupMode>Scan</StartupMode><StartupMode>Stop</StartupMode></StartupModes>"
    "<BandwidthSelection><Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth></BandwidthSelection>"
    "<MaxFFPDelay>250</MaxFFPDelay><HRPANSupported>false</HRPANSupported>"
    "<Component type=\"Filter\" name=\"Pre\" optional=\"false\"><Node id=\"node0\">"
    "<ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node></Component>"
    "</TunerProperties>";

const char component[] = "<Component type=\"Filter\" name=\"Pre\" optional=\"false\"><Node id=\"node0\">"
                         "<ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node></Component>";

const char bandwidth[] =
    "<BandwidthSelection><Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth></BandwidthSelection>";

/// The minimal document with this text between its attributes and its component.
QString minimalWith(const QString &content)
{
    return QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX\">") + content
        + QLatin1String(component) + QStringLiteral("</TunerProperties>");
}

/// A document of version 1.1 with this content.
QString documentWith(const QString &content)
{
    return QStringLiteral("<TunerProperties Version=\"1.1\">%1</TunerProperties>").arg(content);
}

QString emptyBoolean(const QString &member)
{
    return QStringLiteral("InvalidXmlException: Please set a value or a default for the boolean '%1' in "
                          "'TunerProperties'.")
        .arg(member);
}

} // namespace

/// A document as XML.
class TunerPropertiesXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeDocumentHasThisElement();
    void theQuantityIsWrittenOnlyWhenItIsSet();
    void withoutValidationAnEmptyDocumentIsWritten();
    void aDocumentWithoutComponentsWritesNothingWhileValidating();
    void aMissingMemberIsReportedBeforeAnythingIsWritten();
    void anInvalidTypeIsWrittenAsAnEmptyAttribute();
    void bandwidthsAreWrittenThoughTheListIsNotSet();
    void aBandwidthThatNoCheckCoveredFailsWhenItIsWritten();
    void startupModesWithoutModeAreWrittenOnlyWithoutValidation();
    void aComponentWithoutDataStopsTheElement();
    void componentsOfAListThatIsNotSetAreNotWritten();

    void elementsAreReadAfterTheAttributes();
    void onlySevenMembersAreReadFromAttributes();
    void emptyTextElementsAreEmptyTexts();
    void emptyTextAttributesAreEmptyTexts();
    void quantityThatIsNotANumberIsZeroAndSet();
    void anUnknownTypeIsRefusedOnlyWhileValidating();
    void booleansAreReadFromTheirTexts_data();
    void booleansAreReadFromTheirTexts();
    void anEmptyBooleanIsRefusedOnlyWhileValidating_data();
    void anEmptyBooleanIsRefusedOnlyWhileValidating();
    void theDelayIsWrittenUnsignedAndReadSigned_data();
    void theDelayIsWrittenUnsignedAndReadSigned();
    void itemsAndModesJoinThosePresent();
    void incompleteItemsAreRefusedOnlyWhileValidating();
    void valuesReadBeforeAFailureStay();

    void anUnknownElementThrowsWhileValidating_data();
    void anUnknownElementThrowsWhileValidating();
    void contentOfAnUnknownElementIsReadAsContentOfTheDocument();
    void anUnknownElementOfAnOlderDocumentIsSkipped();
    void skippingEndsAtTheNextTokenOfTheSameName();
    void nestedUnknownElementsAreAlwaysSkipped();
};

void TunerPropertiesXmlTest::aWholeDocumentHasThisElement()
{
    QCOMPARE(xmlOf(wholeDocument()), QString::fromLatin1(wholeElement));
    TunerProperties read;
    readXml(read, QString::fromLatin1(wholeElement));
    QVERIFY(read == wholeDocument());
    QCOMPARE(xmlOf(read), QString::fromLatin1(wholeElement));
}

void TunerPropertiesXmlTest::theQuantityIsWrittenOnlyWhenItIsSet()
{
    TunerProperties document = minimalDocument();
    QCOMPARE(document.Getquantity(), 1);
    QCOMPARE(xmlOf(document), minimalWith(QString()));
    document.Setquantity(1);
    QVERIFY(xmlOf(document).startsWith(
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX\" quantity=\"1\">")));
}

void TunerPropertiesXmlTest::withoutValidationAnEmptyDocumentIsWritten()
{
    QCOMPARE(xmlOf(withoutValidation()),
             QStringLiteral("<TunerProperties Version=\"1.1\" type=\"\" baseresource=\"\"/>"));
}

void TunerPropertiesXmlTest::aDocumentWithoutComponentsWritesNothingWhileValidating()
{
    TunerProperties document = minimalDocument();
    document.SetComponent({});
    QCOMPARE(thrownBy([&] { document.Check(); }), QString());
    QCOMPARE(xmlOf(document), QString());
}

void TunerPropertiesXmlTest::aMissingMemberIsReportedBeforeAnythingIsWritten()
{
    TunerProperties document = minimalDocument();
    document.Resetbaseresource();
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { document.GetXml(writer); }),
             QStringLiteral("OutOfRangeException: TunerProperties: Please set baseresource properly."));
    QCOMPARE(xml, QString());
}

void TunerPropertiesXmlTest::anInvalidTypeIsWrittenAsAnEmptyAttribute()
{
    TunerProperties document = withoutValidation();
    document.Settype(Type(7));
    QCOMPARE(xmlOf(document), QStringLiteral("<TunerProperties Version=\"1.1\" type=\"\" baseresource=\"\"/>"));
}

void TunerPropertiesXmlTest::bandwidthsAreWrittenThoughTheListIsNotSet()
{
    for (const bool validate : {true, false}) {
        TunerProperties document = withUnsetBandwidths();
        document.SetValidate(validate);
        QVERIFY(!document.IsBandwidthSelectionSet());
        QCOMPARE(xmlOf(document), minimalWith(QLatin1String(bandwidth)));
    }
    TunerProperties set = minimalDocument();
    set.SetBandwidthSelection({});
    QCOMPARE(xmlOf(set), minimalWith(QString()));
}

void TunerPropertiesXmlTest::aBandwidthThatNoCheckCoveredFailsWhenItIsWritten()
{
    const TunerProperties document = withUnsetBandwidths(BandwidthSelection());
    QCOMPARE(thrownBy([&] { document.Check(); }), QString());
    QCOMPARE(thrownBy([&] { xmlOf(document); }),
             QStringLiteral("OutOfRangeException: BandwidthSelection: Please set Name properly."));
}

void TunerPropertiesXmlTest::startupModesWithoutModeAreWrittenOnlyWithoutValidation()
{
    TunerProperties document = minimalDocument();
    document.GetStartupModes().SetStartupMode({});
    QCOMPARE(xmlOf(document), minimalWith(QString()));
    document.SetValidate(false);
    QCOMPARE(xmlOf(document), minimalWith(QStringLiteral("<StartupModes/>")));
}

void TunerPropertiesXmlTest::aComponentWithoutDataStopsTheElement()
{
    TunerProperties document = minimalDocument();
    document.GetComponent().append(componentWithEmptyList());
    QCOMPARE(thrownBy([&] { document.Check(); }), QString());
    QString xml;
    QXmlStreamWriter writer(&xml);
    QCOMPARE(thrownBy([&] { document.GetXml(writer); }),
             QStringLiteral("IncompleteDefinitionException: Parameters for Component are not set properly in "
                            "'TunerProperties'."));
    QVERIFY(xml.endsWith(QLatin1String(component))); // everything before it is written
    document.SetValidate(false);
    QVERIFY(xmlOf(document).endsWith(
        QStringLiteral("<Component type=\"Filter\" name=\"Preselector\" optional=\"false\"/></TunerProperties>")));
}

void TunerPropertiesXmlTest::componentsOfAListThatIsNotSetAreNotWritten()
{
    TunerProperties document = withUnsetComponents();
    QCOMPARE(thrownBy([&] { xmlOf(document); }),
             QStringLiteral("OutOfRangeException: TunerProperties: Please set Component properly."));
    document.SetValidate(false);
    QCOMPARE(xmlOf(document),
             QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX\"/>"));
}

void TunerPropertiesXmlTest::elementsAreReadAfterTheAttributes()
{
    TunerProperties document;
    readXml(document,
            QStringLiteral("<TunerProperties Version=\"1.1\" name=\"a\" type=\"MCP\" baseresource=\"b\""
                           " connectableResources=\"c\" quantity=\"1\" parentBaseResource=\"d\" hwProcessing=\"true\">"
                           "<name>A</name><type>SCP</type><baseresource>B</baseresource>"
                           "<connectableResources>C</connectableResources><quantity>2</quantity>"
                           "<parentBaseResource>D</parentBaseResource><hwProcessing>false</hwProcessing>"
                           "</TunerProperties>"));
    document.SetValidate(false);
    QCOMPARE(xmlOf(document),
             QStringLiteral("<TunerProperties Version=\"1.1\" name=\"A\" type=\"SCP\" baseresource=\"B\""
                            " connectableResources=\"C\" quantity=\"2\" parentBaseResource=\"D\""
                            " hwProcessing=\"false\"/>"));
}

void TunerPropertiesXmlTest::onlySevenMembersAreReadFromAttributes()
{
    TunerProperties document;
    readXml(document,
            QStringLiteral("<TunerProperties Version=\"1.1\" MaxFFPDelay=\"5\" HRPANSupported=\"\" Component=\"x\""
                           " StartupModes=\"Scan\" BandwidthSelection=\"x\" version=\"0\" other=\"x\"/>"));
    QVERIFY(!document.AnyData());
    QCOMPARE(document.GetInitialVersionLoaded(), QStringLiteral("1.1"));
}

void TunerPropertiesXmlTest::emptyTextElementsAreEmptyTexts()
{
    TunerProperties document;
    readXml(document,
            documentWith(QStringLiteral("<name/><baseresource></baseresource><connectableResources/>"
                                        "<parentBaseResource/>")));
    for (const QString &text : {document.Getname(), document.Getbaseresource(), document.GetconnectableResources(),
                                document.GetparentBaseResource()})
        QVERIFY(text.isEmpty() && !text.isNull());
    QVERIFY(document.IsparentBaseResourceSet());
}

void TunerPropertiesXmlTest::emptyTextAttributesAreEmptyTexts()
{
    TunerProperties document;
    QCOMPARE(thrownBy([&] {
                 readXml(document, QStringLiteral("<TunerProperties Version=\"1.1\" name=\"\" baseresource=\"\"/>"));
             }),
             QString());
    QVERIFY(document.IsnameSet() && !document.Getname().isNull());
    QVERIFY(document.IsbaseresourceSet() && !document.Getbaseresource().isNull());
}

void TunerPropertiesXmlTest::quantityThatIsNotANumberIsZeroAndSet()
{
    for (const QString &xml : {QStringLiteral("<TunerProperties Version=\"1.1\" quantity=\"12abc\"/>"),
                               documentWith(QStringLiteral("<quantity>0x10</quantity>")),
                               documentWith(QStringLiteral("<quantity>99999999999</quantity>"))}) {
        TunerProperties document;
        readXml(document, xml);
        QVERIFY(document.IsquantitySet());
        QCOMPARE(document.Getquantity(), 0);
    }
}

void TunerPropertiesXmlTest::anUnknownTypeIsRefusedOnlyWhileValidating()
{
    for (const QString &xml : {QStringLiteral("<TunerProperties Version=\"1.1\" type=\"receiver\"/>"),
                               QStringLiteral("<TunerProperties Version=\"1.1\" type=\"\"/>"),
                               documentWith(QStringLiteral("<type>receiver</type>"))}) {
        TunerProperties document;
        QCOMPARE(thrownBy([&] { readXml(document, xml); }),
                 QStringLiteral("OutOfRangeException: enum is not valid (classname=TunerProperties,membername="
                                "m_type)"));
        QVERIFY(!document.IstypeSet());
        TunerProperties lenient = withoutValidation();
        readXml(lenient, xml);
        QVERIFY(lenient.IstypeSet());
        QCOMPARE(lenient.Gettype(), Type(-1));
    }
}

void TunerPropertiesXmlTest::booleansAreReadFromTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("value");
    QTest::newRow("true") << QStringLiteral("true") << true;
    QTest::newRow("False") << QStringLiteral("False") << false;
    QTest::newRow("0") << QStringLiteral("0") << false;
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("no") << QStringLiteral("no") << true;
}

void TunerPropertiesXmlTest::booleansAreReadFromTheirTexts()
{
    QFETCH(QString, text);
    QFETCH(bool, value);
    TunerProperties attribute;
    readXml(attribute, QStringLiteral("<TunerProperties Version=\"1.1\" hwProcessing=\"%1\"/>").arg(text));
    QVERIFY(attribute.IshwProcessingSet());
    QCOMPARE(attribute.GethwProcessing(), value);

    TunerProperties elements;
    readXml(
        elements,
        documentWith(QStringLiteral("<hwProcessing>%1</hwProcessing><HRPANSupported>%1</HRPANSupported>").arg(text)));
    QVERIFY(elements.IshwProcessingSet() && elements.IsHRPANSupportedSet());
    QCOMPARE(elements.GethwProcessing(), value);
    QCOMPARE(elements.GetHRPANSupported(), value);
}

void TunerPropertiesXmlTest::anEmptyBooleanIsRefusedOnlyWhileValidating_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("member");
    QTest::newRow("attribute") << QStringLiteral("<TunerProperties Version=\"1.1\" hwProcessing=\"\"/>")
                               << QStringLiteral("hwProcessing");
    QTest::newRow("hwProcessing") << documentWith(QStringLiteral("<hwProcessing/>")) << QStringLiteral("hwProcessing");
    QTest::newRow("HRPANSupported") << documentWith(QStringLiteral("<HRPANSupported></HRPANSupported>"))
                                    << QStringLiteral("HRPANSupported");
}

void TunerPropertiesXmlTest::anEmptyBooleanIsRefusedOnlyWhileValidating()
{
    QFETCH(QString, xml);
    QFETCH(QString, member);
    TunerProperties document;
    QCOMPARE(thrownBy([&] { readXml(document, xml); }), emptyBoolean(member));
    QVERIFY(!document.IshwProcessingSet() && !document.IsHRPANSupportedSet());
    TunerProperties lenient = withoutValidation();
    lenient.SethwProcessing(true);
    lenient.SetHRPANSupported(true);
    readXml(lenient, xml);
    QCOMPARE(lenient.GethwProcessing(), member != QStringLiteral("hwProcessing"));
    QCOMPARE(lenient.GetHRPANSupported(), member != QStringLiteral("HRPANSupported"));
}

void TunerPropertiesXmlTest::theDelayIsWrittenUnsignedAndReadSigned_data()
{
    QTest::addColumn<quint64>("written");
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint64>("read");
    QTest::newRow("2^63 - 1") << Q_UINT64_C(9223372036854775807) << QStringLiteral("9223372036854775807")
                              << Q_UINT64_C(9223372036854775807);
    QTest::newRow("2^63") << Q_UINT64_C(9223372036854775808) << QStringLiteral("9223372036854775808") << Q_UINT64_C(0);
    QTest::newRow("2^64 - 1") << Q_UINT64_C(18446744073709551615) << QStringLiteral("18446744073709551615")
                              << Q_UINT64_C(0);
}

void TunerPropertiesXmlTest::theDelayIsWrittenUnsignedAndReadSigned()
{
    QFETCH(quint64, written);
    QFETCH(QString, text);
    QFETCH(quint64, read);
    TunerProperties document = minimalDocument();
    document.SetMaxFFPDelay(written);
    const QString xml = minimalWith(QStringLiteral("<MaxFFPDelay>%1</MaxFFPDelay>").arg(text));
    QCOMPARE(xmlOf(document), xml);
    TunerProperties back;
    readXml(back, xml);
    QVERIFY(back.IsMaxFFPDelaySet());
    QCOMPARE(back.GetMaxFFPDelay(), read);

    readXml(back, documentWith(QStringLiteral("<MaxFFPDelay>-1</MaxFFPDelay>")));
    QCOMPARE(back.GetMaxFFPDelay(), Q_UINT64_C(18446744073709551615));
    readXml(back, documentWith(QStringLiteral("<MaxFFPDelay>12 ms</MaxFFPDelay>")));
    QCOMPARE(back.GetMaxFFPDelay(), Q_UINT64_C(0));
}

void TunerPropertiesXmlTest::itemsAndModesJoinThosePresent()
{
    TunerProperties document = wholeDocument();
    readXml(document, QString::fromLatin1(wholeElement));
    QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode().size(), 4);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 2);
    QCOMPARE(std::as_const(document).GetComponent().size(), 2);

    TunerProperties untouched;
    readXml(untouched, documentWith(QStringLiteral("<StartupModes/>")));
    QVERIFY(untouched.IsStartupModesSet());
}

void TunerPropertiesXmlTest::incompleteItemsAreRefusedOnlyWhileValidating()
{
    const QString nameOnly = documentWith(QStringLiteral("<BandwidthSelection><Name>a</Name></BandwidthSelection>"));
    const QString noNode = documentWith(QStringLiteral("<Component type=\"t\" name=\"n\" optional=\"true\"/>"));
    TunerProperties document;
    QCOMPARE(thrownBy([&] { readXml(document, nameOnly); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item BandwidthSelection."));
    QCOMPARE(thrownBy([&] { readXml(document, noNode); }),
             QStringLiteral("IncompleteDefinitionException: TunerProperties: Tried to append not completely defined "
                            "or invalid item Component."));
    QVERIFY(!document.AnyData());
    document.SetValidate(false);
    readXml(document, nameOnly);
    readXml(document, noNode);
    QCOMPARE(std::as_const(document).GetBandwidthSelection().size(), 1);
    QCOMPARE(std::as_const(document).GetComponent().size(), 1);
}

void TunerPropertiesXmlTest::valuesReadBeforeAFailureStay()
{
    TunerProperties document;
    QVERIFY(!thrownBy([&] {
                 readXml(document,
                         QStringLiteral("<TunerProperties Version=\"1.1\" hwProcessing=\"\" baseresource=\"b\" "
                                        "name=\"a\"><quantity>5</quantity></TunerProperties>"));
             }).isNull());
    QCOMPARE(document.Getname(), QStringLiteral("a"));
    QCOMPARE(document.Getbaseresource(), QStringLiteral("b")); // attributes are read in the order of the members
    QVERIFY(!document.IsquantitySet());
}

void TunerPropertiesXmlTest::anUnknownElementThrowsWhileValidating_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("1.1") << QStringLiteral("1.1");
    QTest::newRow("2.0") << QStringLiteral("2.0");
}

void TunerPropertiesXmlTest::anUnknownElementThrowsWhileValidating()
{
    QFETCH(QString, version);
    TunerProperties document;
    QCOMPARE(thrownBy([&] {
                 readXml(document,
                         QStringLiteral("<TunerProperties Version=\"%1\"><MaxFFPDelay>5</MaxFFPDelay><Colour>"
                                        "<HRPANSupported>true</HRPANSupported></Colour></TunerProperties>")
                             .arg(version));
             }),
             QStringLiteral("InvalidXmlException: Unknown Tag 'Colour' in 'TunerProperties'."));
    QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(5));
    QVERIFY(!document.IsHRPANSupportedSet());
    // An element's name is compared exactly.
    QCOMPARE(thrownBy([&] { readXml(document, documentWith(QStringLiteral("<maxFFPDelay>5</maxFFPDelay>"))); }),
             QStringLiteral("InvalidXmlException: Unknown Tag 'maxFFPDelay' in 'TunerProperties'."));
}

void TunerPropertiesXmlTest::contentOfAnUnknownElementIsReadAsContentOfTheDocument()
{
    for (const QString &version : {QStringLiteral("1.1"), QStringLiteral("2.0")}) {
        TunerProperties document = withoutValidation();
        readXml(document,
                QStringLiteral("<TunerProperties Version=\"%1\"><Colour>red<Shade><HRPANSupported>true"
                               "</HRPANSupported></Shade>%2</Colour><Empty/><MaxFFPDelay>5</MaxFFPDelay>"
                               "</TunerProperties>")
                    .arg(version, QLatin1String(bandwidth)));
        QVERIFY(document.GetHRPANSupported());
        QCOMPARE(std::as_const(document).GetBandwidthSelection(), QVector<BandwidthSelection>{aBandwidth()});
        QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(5));
    }
}

void TunerPropertiesXmlTest::anUnknownElementOfAnOlderDocumentIsSkipped()
{
    for (const QString &start :
         {QStringLiteral("<TunerProperties Version=\"1.0\">"), QStringLiteral("<TunerProperties>")}) {
        for (const bool validate : {true, false}) {
            TunerProperties document;
            document.SetValidate(validate);
            readXml(document,
                    start
                        + QStringLiteral("<Colour>red<HRPANSupported>true</HRPANSupported></Colour>"
                                         "<MaxFFPDelay>5</MaxFFPDelay></TunerProperties>"));
            QVERIFY(!document.IsHRPANSupportedSet());
            QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(5));
        }
    }
}

void TunerPropertiesXmlTest::skippingEndsAtTheNextTokenOfTheSameName()
{
    // The start of the inner element ends the skipping, so its content and everything after it are read.
    TunerProperties document;
    readXml(document,
            QStringLiteral("<TunerProperties Version=\"1.0\"><Colour><HRPANSupported>true</HRPANSupported>"
                           "<Colour><MaxFFPDelay>5</MaxFFPDelay></Colour><hwProcessing>true</hwProcessing></Colour>"
                           "<quantity>7</quantity></TunerProperties>"));
    QVERIFY(!document.IsHRPANSupportedSet());
    QCOMPARE(document.GetMaxFFPDelay(), Q_UINT64_C(5));
    QVERIFY(document.GethwProcessing());
    QCOMPARE(document.Getquantity(), 7);
}

void TunerPropertiesXmlTest::nestedUnknownElementsAreAlwaysSkipped()
{
    TunerProperties document;
    QCOMPARE(thrownBy([&] {
                 readXml(document,
                         minimalWith(QStringLiteral("<StartupModes><Colour/><StartupMode>DF</StartupMode>"
                                                    "</StartupModes>")));
             }),
             QString());
    QVERIFY(std::as_const(document).GetStartupModes().HasData());
}

TEST_SUITE(TunerPropertiesXmlTest)
#include "tst_TunerPropertiesXml.moc"

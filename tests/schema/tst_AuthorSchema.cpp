// SPDX-License-Identifier: MIT
#include <limits>
#include <memory>
#include <vector>

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Cases.h"
#include "Checker.h"
#include "ElementRules.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "Model.h"
#include "interop/Generator.h"

using namespace JobXml;
using Schema::text;

namespace {

using Object = std::unique_ptr<DataObject>;

const QMap<QString, Object (*)()> &newObject()
{
    static const auto byName = [] {
        QMap<QString, Object (*)()> found;
        Classes::forEach([&](auto tag) {
            using Class = typename decltype(tag)::Class;
            found.insert(Class::GetStaticObjectName(), []() -> Object { return std::make_unique<Class>(); });
        });
        return found;
    }();
    return byName;
}

/// The element that the library writes after reading a document, without validating; as XML without indentation.
QString readAndWritten(const QString &document)
{
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    const Object object = newObject().value(reader.name().toString())();
    object->SetValidate(false);
    object->ProcessXml(reader);
    return xmlOf(*object);
}

/// What a validating reader throws for a document; null if it accepts all of it.
QString refusal(const QString &document)
{
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    const Object object = newObject().value(reader.name().toString())();
    return thrownBy([&] {
        object->ProcessXml(reader);
        object->Check();
    });
}

/// Readers take a delay of more than 63 bits for 0, see refusedTexts.
bool hasLongDelay(const QString &document)
{
    static const QRegularExpression delay(QStringLiteral("<MaxFFPDelay>([0-9]+)</MaxFFPDelay>"));
    return delay.match(document).captured(1).toULongLong() > quint64(std::numeric_limits<qint64>::max());
}

// --- Documents in other layouts --------------------------------------------------------------------------------------

struct Part
{
    QString name;
    std::vector<std::pair<QString, QString>> attributes;
    std::vector<Part> children;
    QString content;
};

Part parsed(QXmlStreamReader &reader)
{
    Part part;
    part.name = reader.name().toString();
    for (const QXmlStreamAttribute &attribute : reader.attributes())
        part.attributes.emplace_back(attribute.name().toString(), attribute.value().toString());
    for (reader.readNext(); !reader.isEndElement() && !reader.atEnd(); reader.readNext()) {
        if (reader.isStartElement())
            part.children.push_back(parsed(reader));
        else if (reader.isCharacters())
            part.content += reader.text();
    }
    return part;
}

Part parsed(const QString &document)
{
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    return parsed(reader);
}

QString attributesOf(const Part &part)
{
    QString attributes;
    for (const auto &[name, value] : part.attributes) {
        // As references, since an attribute turns TAB and LF into blanks.
        QString escaped = value.toHtmlEscaped();
        escaped.replace(QLatin1Char('\t'), text("&#9;")).replace(QLatin1Char('\n'), text("&#10;"));
        attributes += QStringLiteral(" %1=\"").arg(name) + escaped + QLatin1Char('"');
    }
    return attributes;
}

QString written(const Part &part)
{
    QString content = part.content.toHtmlEscaped();
    for (const Part &child : part.children)
        content += written(child);
    return QStringLiteral("<%1").arg(part.name) + attributesOf(part) + QLatin1Char('>') + content
        + QStringLiteral("</%1>").arg(part.name);
}

/// With comments, instructions for other programs and line breaks wherever they are allowed.
QString writtenLoosely(const Part &part, const QString &indent = QStringLiteral("\n  "))
{
    const QString comment =
        indent + text("<!-- <Node> & <nobody/> are words here -->") + indent + text("<?editor fold?>");
    QString content = part.content.toHtmlEscaped();
    for (const Part &child : part.children)
        content += comment + indent + writtenLoosely(child, indent + text("  "));
    const bool isValue = part.attributes.empty() && part.children.empty(); // whose blanks would belong to it
    if (!isValue)
        content += comment + indent;
    return QStringLiteral("<%1").arg(part.name) + attributesOf(part).replace(text("\" "), text("\"\n\t")) + indent
        + QLatin1Char('>') + content + QStringLiteral("</%1\n>").arg(part.name);
}

/// With its attributes as child elements, apart from the version, which is not a member.
Part withElements(Part part)
{
    for (Part &child : part.children)
        child = withElements(child);
    std::vector<std::pair<QString, QString>> kept;
    for (const auto &[name, value] : part.attributes) {
        if (name == QLatin1String("Version"))
            kept.emplace_back(name, value);
        else
            part.children.push_back({name, {}, {}, value});
    }
    part.attributes = kept;
    return part;
}

/// With its children in turn: one of each name, the last name first, and so on. Those of one name keep their order.
Part withChildrenInTurn(Part part)
{
    QMap<QString, std::vector<Part>> byName;
    for (Part &child : part.children)
        byName[child.name].push_back(withChildrenInTurn(child));
    const std::size_t count = part.children.size();
    part.children.clear();
    for (std::size_t round = 0; part.children.size() < count; ++round) {
        for (auto group = byName.end(); group != byName.begin();) {
            --group;
            if (round < group->size())
                part.children.push_back(group->at(round));
        }
    }
    return part;
}

// --- Texts of values -------------------------------------------------------------------------------------------------

struct Sample
{
    const char *document; ///< with % for the text
    const char *text;
    const char *read; ///< as the library writes it after reading
};

const char *const intValue = "<ValueInt id=\"i\" value=\"%\"/>";
const char *const int64Value = "<ValueInt64 id=\"i\" value=\"%\"/>";
const char *const floatValue = "<ValueFloat id=\"i\" value=\"%\"/>";
const char *const doubleValue = "<SelectionItem name=\"n\" value=\"%\"/>";
const char *const booleanValue = "<ValueBoolean id=\"i\" value=\"%\"/>";
const char *const intElement = "<ValueInt id=\"i\"><value>%</value></ValueInt>";
const char *const doubleElement =
    "<BandwidthSelection><Name>n</Name><MaxBandwidth>%</MaxBandwidth></BandwidthSelection>";
const char *const delay =
    "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\"><MaxFFPDelay>%</MaxFFPDelay>"
    "<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"><ValueItem>"
    "<ValueString id=\"i\" value=\"v\"/></ValueItem></Node></Component></TunerProperties>";

/// Texts that mean what they look like.
const std::vector<Sample> acceptedTexts = {
    {intValue, "5", "5"},
    {intValue, "+5", "5"},
    {intValue, "-0", "0"},
    {intValue, "007", "7"},
    {intValue, " 5 ", "5"},
    {intValue, "2147483647", "2147483647"},
    {intValue, "-2147483648", "-2147483648"},
    {intElement, "\n    5\t", "5"},
    {intElement, "1<!-- and -->2", "12"},
    {intElement, "<![CDATA[12]]>", "12"},
    {intElement, "&#49;2", "12"},
    {int64Value, "9223372036854775807", "9223372036854775807"},
    {int64Value, "-9223372036854775808", "-9223372036854775808"},
    {delay, "0", "0"},
    {delay, " 5000000000 ", "5000000000"},
    {delay, "9223372036854775807", "9223372036854775807"},
    {floatValue, "12", "12.00"},
    {floatValue, "-.5", "-0.50"},
    {floatValue, "5.", "5.00"},
    {floatValue, "+1.5e3", "1500.00"},
    {floatValue, "25E-1", "2.50"},
    {floatValue, "007.25", "7.25"},
    {floatValue, " 2.5 ", "2.50"},
    {floatValue, "340282346638528859811704183484516925440", "340282346638528859811704183484516925440.00"},
    {floatValue, "-3.4e38", "-339999995214436424907732413799364296704.00"},
    {floatValue, "inf", "inf"},
    {floatValue, "+INF", "inf"},
    {floatValue, "-Inf", "-inf"},
    {floatValue, " -inf ", "-inf"},
    {floatValue, "NaN", "nan"},
    {doubleValue, "8333.333", "8333.33"},
    {doubleValue, "1e22", "10000000000000000000000.00"},
    {doubleValue, "nan", "nan"},
    {doubleElement, "\n1500000\n", "1500000.00"},
    {booleanValue, "true", "true"},
    {booleanValue, "TRUE", "true"},
    {booleanValue, "Yes", "true"},
    {booleanValue, "1", "true"},
    {booleanValue, "false", "false"},
    {booleanValue, "False", "false"},
    {booleanValue, "0", "false"},
};

/// Texts that readers take for something else, or for nothing.
const std::vector<Sample> refusedTexts = {
    {intValue, "abc", "0"},
    {intValue, "", "0"},
    {intValue, "1.0", "0"},
    {intValue, "1e3", "0"},
    {intValue, "1,000", "0"},
    {intValue, "0x10", "0"},
    {intValue, "1 2", "0"},
    {intValue, "2147483648", "0"},
    {intValue, "-2147483649", "0"},
    {intElement, "five", "0"},
    {int64Value, "9223372036854775808", "0"},
    {int64Value, "1.5", "0"},
    {delay, "-1", "18446744073709551615"},
    {delay, "9223372036854775808", "0"},
    {delay, "soon", "0"},
    {floatValue, "abc", "0.00"},
    {floatValue, "", "0.00"},
    {floatValue, "1,5", "0.00"},
    {floatValue, "1e", "0.00"},
    {floatValue, ".", "0.00"},
    {floatValue, "12 dB", "0.00"},
    {floatValue, "infinity", "0.00"},
    {floatValue, "-nan", "0.00"},
    {floatValue, "1e39", "inf"},
    {floatValue, "-1e39", "-inf"},
    {doubleValue, "1e309", "inf"},
    {doubleValue, "-1e309", "-inf"},
    {doubleValue, "one", "0.00"},
    {doubleElement, "1 500 000", "0.00"},
    {booleanValue, "no", "true"},
    {booleanValue, "n", "true"},
    {booleanValue, " false ", "true"},
    {booleanValue, "off", "true"},
    {booleanValue, "2", "true"},
    {booleanValue, "", "false"},
};

QString documentWith(const Sample &sample, const char *value)
{
    return text(sample.document).replace(QLatin1Char('%'), text(value));
}

void addSamples(const std::vector<Sample> &samples)
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("read");
    for (const Sample &sample : samples)
        QTest::addRow("%s in %.20s", qPrintable(text(sample.text).simplified()), sample.document)
            << documentWith(sample, sample.text) << text(sample.read);
}

/// Whether the library takes the value of the document for this one.
bool isReadAs(const QString &document, const QString &value)
{
    const QString again = readAndWritten(document);
    return again.contains(QLatin1Char('"') + value + QLatin1Char('"'))
        || again.contains(QLatin1Char('>') + value + QLatin1Char('<'));
}

// --- Mistakes --------------------------------------------------------------------------------------------------------

QString inDocument(const char *attributes, const char *content)
{
    return QStringLiteral(
               "<TunerProperties %1>%2<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\">"
               "<ValueItem><ValueInt id=\"i\" value=\"1\"/></ValueItem></Node></Component></TunerProperties>")
        .arg(text(attributes), text(content));
}

QVector<Case> mistakes()
{
    QVector<Case> cases;
    const auto add = [&](const char *name, const QString &document, const char *complaint) {
        cases.append({text(name), document, text(complaint)});
    };
    const char *const good = R"(Version="1.1" type="SCP" baseresource="b")";

    add("name of the document in lower case", text("<tunerproperties/>"),
        "Element 'tunerproperties': No matching global declaration");
    add("document in a namespace", text("<TunerProperties xmlns=\"urn:other\"/>"),
        "Element '{urn:other}TunerProperties': No matching global declaration");
    add("misspelt element", inDocument(good, "<Bandwidthselection/>"),
        "Element 'Bandwidthselection': This element is not expected");
    add("misspelt mode", inDocument(good, "<StartupModes><StartupMode>Skan</StartupMode></StartupModes>"),
        "Element 'StartupMode': [facet 'enumeration'] The value 'Skan' is not an element of the set {'Scan',");
    add("blanks around a mode", inDocument(good, "<StartupModes><StartupMode> Scan </StartupMode></StartupModes>"),
        "Element 'StartupMode': [facet 'enumeration'] The value ' Scan ' is not an element of the set");
    add("type in lower case", inDocument(R"(Version="1.1" type="receiver" baseresource="b")", ""),
        "Element 'TunerProperties', attribute 'type': [facet 'enumeration'] The value 'receiver' is not an element");
    add("misspelt type as an element", inDocument(R"(Version="1.1" baseresource="b")", "<type>Direction finder</type>"),
        "Element 'type': [facet 'enumeration'] The value 'Direction finder' is not an element of the set");
    add("no version", inDocument(R"(type="SCP" baseresource="b")", ""),
        "Element 'TunerProperties': The attribute 'Version' is required but missing");
    add("version as an element", inDocument(R"(type="SCP" baseresource="b")", "<Version>1.1</Version>"),
        "Element 'TunerProperties': The attribute 'Version' is required but missing");
    add("older version", inDocument(R"(Version="1.0" type="SCP" baseresource="b")", ""),
        "Element 'TunerProperties', attribute 'Version': '1.0' is not a valid value of the union type 'Version'");
    add("version that is not a number", inDocument(R"(Version="1.1.0" type="SCP" baseresource="b")", ""),
        "Element 'TunerProperties', attribute 'Version': '1.1.0' is not a valid value of the union type 'Version'");
    add("attribute of another namespace",
        inDocument(R"(Version="1.1" type="SCP" baseresource="b" xmlns:o="urn:other" o:note="")", ""),
        "Element 'TunerProperties', attribute '{urn:other}note': The attribute '{urn:other}note' is not allowed");
    add("text between elements", inDocument(good, "quantity=2"),
        "Element 'TunerProperties': Character content other than whitespace is not allowed");
    add("comment that was not closed properly", inDocument(good, "-->"),
        "Element 'TunerProperties': Character content other than whitespace is not allowed");
    add("value as an attribute and as an element",
        inDocument(R"(Version="1.1" type="SCP" baseresource="b" quantity="1")", "<quantity>2</quantity>"),
        "Element 'quantity': The XPath '@quantity|quantity' of a field of unique identity-constraint");
    add("delay twice", inDocument(good, "<MaxFFPDelay>1</MaxFFPDelay><MaxFFPDelay>1</MaxFFPDelay>"),
        "Element 'MaxFFPDelay': The XPath 'MaxFFPDelay' of a field of unique identity-constraint");
    add("value twice", text("<ValueInt id=\"i\"><value>1</value><value>2</value></ValueInt>"),
        "Element 'value': This element is not expected");
    add("mode without a mode", inDocument(good, "<StartupModes/>"),
        "Element 'StartupModes': Missing child element(s). Expected is ( StartupMode )");
    add("no component", text("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\"/>"),
        "Element 'TunerProperties': Missing child element(s)");
    add("no value", text("<Node id=\"n\"><ValueItem/></Node>"), "Element 'ValueItem': Missing child element(s)");
    add("two values in one item",
        text("<ValueItem><ValueInt id=\"i\" value=\"1\"/><ValueInt id=\"i\" value=\"1\"/></ValueItem>"),
        "Element 'ValueInt': This element is not expected");
    add("kind of value that does not exist", text("<ValueItem><ValueDecimal id=\"i\" value=\"1\"/></ValueItem>"),
        "Element 'ValueDecimal': This element is not expected");
    add("element within a value", text("<ValueInt id=\"i\"><value><b>1</b></value></ValueInt>"),
        "Element 'value': Element content is not allowed");
    return cases;
}

/// A document in another layout than that of the library.
struct Layout
{
    QString name;
    QString document;
    QString original;
};

std::vector<Layout> layouts()
{
    std::vector<Layout> all;
    for (const Schema::Element &element : Schema::rules().elements) {
        const QString original = text(element.document);
        const Part whole = parsed(original);
        const auto add = [&](const char *layout, const QString &document) {
            all.push_back({text(element.name + ", " + layout), document, original});
        };
        add("as written", original);
        add("values as elements", written(withElements(whole)));
        add("children in turn", written(withChildrenInTurn(whole)));
        add("values as elements, in turn", written(withChildrenInTurn(withElements(whole))));
        add("with comments", writtenLoosely(whole));
        add("values as elements, in turn, with comments", writtenLoosely(withChildrenInTurn(withElements(whole))));
    }
    return all;
}

/// A class, the name of a member, and a document of the class that has it in one of the two forms.
struct Form
{
    QString className;
    QString member;
    bool isAttribute = false;
    QString document;
    QString original;
};

/// Each value of each class, once as an attribute and once as an element.
std::vector<Form> forms()
{
    std::vector<Form> all;
    for (const Schema::Element &element : Schema::rules().elements) {
        const Object object = newObject().value(text(element.name))();
        const QString original = text(element.document);
        const Part whole = parsed(original);
        visit(std::as_const(*object), [&](const MemberView &member) {
            if (Model::holdsObjects(member.GetKind()) || member.GetKind() == MemberKind::Choice
                || member.GetKind() == MemberKind::EnumerationList)
                return;
            const QString name = member.GetName();
            Part asAttribute = whole;
            Part asElement = whole;
            asElement.attributes.clear();
            for (const auto &attribute : whole.attributes) {
                if (attribute.first == name)
                    asElement.children.push_back({name, {}, {}, attribute.second});
                else
                    asElement.attributes.push_back(attribute);
            }
            asAttribute.children.clear();
            for (const Part &child : whole.children) {
                if (child.name == name)
                    asAttribute.attributes.emplace_back(name, child.content);
                else
                    asAttribute.children.push_back(child);
            }
            all.push_back({whole.name, name, true, written(asAttribute), original});
            all.push_back({whole.name, name, false, written(asElement), original});
        });
    }
    return all;
}

} // namespace

/// The schema for authors accepts whatever readers take for what it looks like, and refuses mistakes.
class AuthorSchemaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void everyLayoutOfADocumentIsAccepted_data();
    void everyLayoutOfADocumentIsAccepted();
    void everyValueIsAcceptedInTheFormsThatReadersAccept();
    void everyValueIsRefusedUnderAnotherName();
    void everyValueIsRefusedAsAttributeAndElement();
    void everyMandatoryMemberIsRequired();

    void textsThatMeanWhatTheyLookLikeAreAccepted_data() { addSamples(acceptedTexts); }
    void textsThatMeanWhatTheyLookLikeAreAccepted();
    void textsThatReadersTakeForSomethingElseAreRefused_data() { addSamples(refusedTexts); }
    void textsThatReadersTakeForSomethingElseAreRefused();

    void mistakesAreRefused_data();
    void mistakesAreRefused();
    void newerVersionsAreAccepted();
    void attributesForOtherProgramsAreAccepted();

    void examplesAreAcceptedAsTheyAre();
    void whatTheLibraryWritesIsAccepted();
    void randomObjectsOfEveryClassAreAccepted();

private:
    void checkWritten(const QStringList &documents, int fewestAccepted, int fewestRefused);

    Verdict verdictOn(const QString &document)
    {
        m_checker.check({document});
        return m_checker.verdict(document);
    }

    Checker m_checker{QStringLiteral(AUTHOR_SCHEMA_FILE)};
};

/// One run for the documents of all rows.
void AuthorSchemaTest::initTestCase()
{
    QStringList documents;
    for (const Layout &layout : layouts())
        documents.append(layout.document);
    for (const auto *samples : {&acceptedTexts, &refusedTexts}) {
        for (const Sample &sample : *samples)
            documents.append(documentWith(sample, sample.text));
    }
    for (const Case &mistake : mistakes())
        documents.append(mistake.document);
    documents.removeDuplicates();
    m_checker.check(documents);
}

void AuthorSchemaTest::everyLayoutOfADocumentIsAccepted_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("original");
    for (const Layout &layout : layouts())
        QTest::newRow(qPrintable(layout.name)) << layout.document << layout.original;
}

void AuthorSchemaTest::everyLayoutOfADocumentIsAccepted()
{
    QFETCH(QString, document);
    QFETCH(QString, original);
    const Verdict verdict = verdictOn(document);
    QCOMPARE(verdict.complaints.join(QLatin1Char('\n')), QString());
    QVERIFY(verdict.accepted);
    QCOMPARE(readAndWritten(document), readAndWritten(original));
    QCOMPARE(refusal(document), QString());
}

void AuthorSchemaTest::everyValueIsAcceptedInTheFormsThatReadersAccept()
{
    const std::vector<Form> all = forms();
    QStringList documents;
    for (const Form &form : all)
        documents.append(form.document);
    documents.removeDuplicates();
    m_checker.check(documents);
    int accepted = 0;
    int refused = 0;
    for (const Form &form : all) {
        const bool readersAccept = readAndWritten(form.document) == readAndWritten(form.original);
        const Verdict verdict = m_checker.verdict(form.document);
        QVERIFY2(verdict.accepted == readersAccept,
                 qPrintable(form.document + QLatin1Char('\n') + verdict.complaints.join(QLatin1Char('\n'))));
        ++(readersAccept ? accepted : refused);
    }
    QVERIFY2(accepted >= 96, qPrintable(QString::number(accepted)));
    QVERIFY2(refused >= 4, qPrintable(QString::number(refused))); // Name, MaxBandwidth, MaxFFPDelay, HRPANSupported
}

void AuthorSchemaTest::everyValueIsRefusedUnderAnotherName()
{
    const std::vector<Form> all = forms();
    const auto misspelt = [](const Form &form) {
        const QString wrong = form.member + QLatin1Char('x');
        QString document = form.document;
        if (form.isAttribute)
            return document.replace(QStringLiteral(" %1=\"").arg(form.member), QStringLiteral(" %1=\"").arg(wrong));
        return document.replace(QStringLiteral("<%1>").arg(form.member), QStringLiteral("<%1>").arg(wrong))
            .replace(QStringLiteral("</%1>").arg(form.member), QStringLiteral("</%1>").arg(wrong));
    };
    QStringList documents;
    for (const Form &form : all) {
        QVERIFY(misspelt(form) != form.document);
        documents.append(misspelt(form));
    }
    documents.removeDuplicates();
    m_checker.check(documents);
    for (const Form &form : all) {
        const QString wrong = form.member + QLatin1Char('x');
        const QString expected = form.isAttribute
            ? QStringLiteral("attribute '%1': The attribute '%1' is not allowed").arg(wrong)
            : QStringLiteral("Element '%1': This element is not expected").arg(wrong);
        const Verdict verdict = m_checker.verdict(misspelt(form));
        QVERIFY(verdict.refused);
        QVERIFY2(verdict.complaints.filter(expected).size() > 0,
                 qPrintable(misspelt(form) + QLatin1Char('\n') + verdict.complaints.join(QLatin1Char('\n'))));
    }
}

void AuthorSchemaTest::everyValueIsRefusedAsAttributeAndElement()
{
    QHash<QString, QString> expected; // the complaint, by the document
    for (const Schema::Element &element : Schema::rules().elements) {
        const Part whole = parsed(text(element.document));
        for (const auto &[name, value] : whole.attributes) {
            if (name == QLatin1String("Version"))
                continue;
            Part twice = whole;
            twice.children.push_back({name, {}, {}, value});
            expected.insert(written(twice), QStringLiteral("Element '%1': The XPath '@%1|%1' of a field of").arg(name));
        }
    }
    QVERIFY2(expected.size() >= 46, qPrintable(QString::number(expected.size())));
    m_checker.check(expected.keys());
    for (auto each = expected.cbegin(); each != expected.cend(); ++each)
        QCOMPARE(m_checker.verdict(each.key()).complaints.value(0).left(each->size()), each.value());
}

void AuthorSchemaTest::everyMandatoryMemberIsRequired()
{
    QHash<QString, QString> missing; // the member, by the document
    for (const Schema::Element &element : Schema::rules().elements) {
        const Object object = newObject().value(text(element.name))();
        visit(std::as_const(*object), [&](const MemberView &member) {
            if (!member.IsMandatory() || member.GetKind() == MemberKind::Choice)
                return;
            Part part = parsed(text(element.document));
            const QString name = member.GetName();
            std::vector<std::pair<QString, QString>> attributes;
            for (const auto &attribute : part.attributes) {
                if (attribute.first != name)
                    attributes.push_back(attribute);
            }
            part.attributes = attributes;
            std::vector<Part> children;
            for (const Part &child : part.children) {
                if (child.name != name)
                    children.push_back(child);
            }
            part.children = children;
            missing.insert(written(part), text(element.name) + QLatin1Char('.') + name);
        });
    }
    QVERIFY2(missing.size() >= 46, qPrintable(QString::number(missing.size())));
    m_checker.check(missing.keys());
    for (auto each = missing.cbegin(); each != missing.cend(); ++each) {
        QVERIFY2(m_checker.verdict(each.key()).refused, qPrintable(each.value()));
        QVERIFY2(!refusal(each.key()).isEmpty(), qPrintable(each.value())); // validating requires it, too
    }
}

void AuthorSchemaTest::textsThatMeanWhatTheyLookLikeAreAccepted()
{
    QFETCH(QString, document);
    QFETCH(QString, read);
    const Verdict verdict = verdictOn(document);
    QCOMPARE(verdict.complaints.join(QLatin1Char('\n')), QString());
    QVERIFY(verdict.accepted);
    QVERIFY2(isReadAs(document, read), qPrintable(readAndWritten(document)));
}

void AuthorSchemaTest::textsThatReadersTakeForSomethingElseAreRefused()
{
    QFETCH(QString, document);
    QFETCH(QString, read);
    QVERIFY(verdictOn(document).refused);
    QVERIFY2(isReadAs(document, read), qPrintable(readAndWritten(document)));
}

void AuthorSchemaTest::mistakesAreRefused_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("complaint");
    for (const Case &each : mistakes())
        QTest::newRow(qPrintable(each.name)) << each.document << each.complaint;
}

void AuthorSchemaTest::mistakesAreRefused()
{
    QFETCH(QString, document);
    QFETCH(QString, complaint);
    const Verdict verdict = verdictOn(document);
    QVERIFY(verdict.refused);
    QCOMPARE(verdict.complaints.value(0).left(complaint.size()), complaint);
}

void AuthorSchemaTest::newerVersionsAreAccepted()
{
    for (const char *version : {"1.1", "1.10", "1.2", "2", "10.0", " 1.1 "}) {
        const QString document = inDocument(
            qPrintable(QStringLiteral("Version=\"%1\" type=\"SCP\" baseresource=\"b\"").arg(text(version))), "");
        QVERIFY2(verdictOn(document).accepted, version);
        QVERIFY2(!readAndWritten(document).contains(QLatin1String("quantity")), version); // which a reset sets
    }
}

void AuthorSchemaTest::attributesForOtherProgramsAreAccepted()
{
    QHash<QString, QString> originals; // by document
    for (const Schema::Element &element : Schema::rules().elements) {
        QString document = text(element.document);
        document.insert(element.name.size() + 1,
                        text(" xml:lang=\"de\" xml:space=\"preserve\" xml:base=\"urn:x\""
                             " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                             " xsi:noNamespaceSchemaLocation=\"tuner-properties-author.xsd\""));
        originals.insert(document, text(element.document));
    }
    m_checker.check(originals.keys());
    for (auto each = originals.cbegin(); each != originals.cend(); ++each) {
        const Verdict verdict = m_checker.verdict(each.key());
        QCOMPARE(verdict.complaints.join(QLatin1Char('\n')), QString());
        QVERIFY(verdict.accepted);
        QCOMPARE(readAndWritten(each.key()), readAndWritten(each.value()));
    }
}

void AuthorSchemaTest::examplesAreAcceptedAsTheyAre()
{
    const QDir folder(QStringLiteral(EXAMPLES_DIR));
    const QStringList names = folder.entryList({QStringLiteral("*.xml")});
    QCOMPARE(names,
             QStringList({text("directionfinder.xml"), text("ffp.xml"), text("mcp.xml"), text("receiver.xml"),
                          text("scp.xml")}));
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const Verdict verdict = verdictOn(QString::fromUtf8(file.readAll()));
        QVERIFY2(verdict.accepted, qPrintable(name + verdict.complaints.join(QLatin1Char('\n'))));
    }
}

void AuthorSchemaTest::whatTheLibraryWritesIsAccepted()
{
    QStringList documents;
    for (const Case &each : acceptedCases())
        documents.append(each.document);
    checkWritten(documents, 290, 30);
}

void AuthorSchemaTest::randomObjectsOfEveryClassAreAccepted()
{
    QStringList documents;
    for (const auto make : newObject()) {
        for (int seed = 0; seed < 50; ++seed) {
            const Object object = make();
            build(*object, QByteArray::number(seed));
            if (!object->GetXmlString().isNull()) // no text holds a character that XML cannot carry
                documents.append(xmlOf(*object));
        }
    }
    checkWritten(documents, 700, 0);
}

/// The schema accepts the documents, apart from long delays.
void AuthorSchemaTest::checkWritten(const QStringList &documents, int fewestAccepted, int fewestRefused)
{
    m_checker.check(documents);
    int accepted = 0;
    int refused = 0;
    for (const QString &document : documents) {
        const bool isExpected = !hasLongDelay(document);
        const Verdict verdict = m_checker.verdict(document);
        QVERIFY2(verdict.accepted == isExpected,
                 qPrintable(document + QLatin1Char('\n') + verdict.complaints.join(QLatin1Char('\n'))));
        ++(isExpected ? accepted : refused);
    }
    QVERIFY2(accepted >= fewestAccepted, qPrintable(QString::number(accepted)));
    QVERIFY2(refused >= fewestRefused, qPrintable(QString::number(refused)));
}

TEST_SUITE(AuthorSchemaTest)
#include "tst_AuthorSchema.moc"

// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <vector>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QStringList>
#include <QTest>

#include "Encodings.h"
#include "Model.h"

namespace {

QString text(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList texts(const QByteArray &separatedByBars)
{
    return text(separatedByBars).split(QLatin1Char('|'));
}

// --- The good documents, from which all cases are made --------------------------------------------------------------

struct Element
{
    QByteArray name;
    QByteArray document;
    bool isLeaf; ///< has no child elements
};

const std::vector<Element> statedElements = {
    {"ValueBoolean", R"(<ValueBoolean id="i" value="true"/>)", true},
    {"ValueFloat", R"(<ValueFloat id="i" value="1.50"/>)", true},
    {"ValueInt", R"(<ValueInt id="i" value="15"/>)", true},
    {"ValueInt64", R"(<ValueInt64 id="i" value="-15"/>)", true},
    {"ValueString", R"(<ValueString id="i" value="v"/>)", true},
    {"ValueNumericFloat", R"(<ValueNumericFloat id="i" value="1.00" min="-2.00" max="30.00" step="0.25"/>)", true},
    {"ValueNumericInt", R"(<ValueNumericInt id="i" value="1" min="-2" max="30" step="5"/>)", true},
    {"ValueNumericInt64", R"(<ValueNumericInt64 id="i" value="1" min="-2" max="30" step="5"/>)", true},
    {"SelectionItem", R"(<SelectionItem name="n" value="0.00"/>)", true},
    {"ValueSelection",
     R"(<ValueSelection id="i" value="2.00" text="t" index="1">)"
     R"(<SelectionItem name="m" value="1.00"/><SelectionItem name="n" value="2.00"/></ValueSelection>)",
     false},
    {"StringItem", R"(<StringItem value="v"/>)", true},
    {"ValueStringList",
     R"(<ValueStringList id="i" value="v"><StringItem value="v"/><StringItem value="w"/></ValueStringList>)", false},
    {"ValueItem", R"(<ValueItem><ValueInt id="i" value="1"/></ValueItem>)", false},
    {"Node",
     R"(<Node id="n"><ValueItem><ValueInt id="i" value="1"/></ValueItem>)"
     R"(<ValueItem><ValueString id="unit" value="Hz"/></ValueItem></Node>)",
     false},
    {"Component",
     R"(<Component type="t" name="c" displayName="d" optional="false"><Node id="n"><ValueItem>)"
     R"(<ValueInt id="i" value="1"/></ValueItem></Node><Node id="n"><ValueItem><ValueInt id="i" value="1"/>)"
     R"(</ValueItem></Node></Component>)",
     false},
    {"StartupModes", R"(<StartupModes><StartupMode>DF</StartupMode><StartupMode>Scan</StartupMode></StartupModes>)",
     false},
    {"BandwidthSelection",
     R"(<BandwidthSelection><Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth></BandwidthSelection>)", false},
    {"TunerProperties",
     R"(<TunerProperties Version="1.1" name="n" type="Receiver" baseresource="b" connectableResources="c" )"
     R"(quantity="2" parentBaseResource="p" hwProcessing="true"><StartupModes><StartupMode>FFM</StartupMode>)"
     R"(</StartupModes><BandwidthSelection><Name>w</Name><MaxBandwidth>2.50</MaxBandwidth></BandwidthSelection>)"
     R"(<BandwidthSelection><Name></Name><MaxBandwidth>0.00</MaxBandwidth></BandwidthSelection>)"
     R"(<MaxFFPDelay>5</MaxFFPDelay><HRPANSupported>false</HRPANSupported>)"
     R"(<Component type="t" name="c" optional="true"><Node id="n"><ValueItem><ValueInt id="i" value="1"/>)"
     R"(</ValueItem></Node></Component><Component type="t" name="c" optional="true"><Node id="n"><ValueItem>)"
     R"(<ValueInt id="i" value="1"/></ValueItem></Node></Component></TunerProperties>)",
     false},
};

// --- Members and the texts that they take ---------------------------------------------------------------------------

/// The texts that a kind of member accepts and refuses. The next narrower or wider kind treats the first text of each
/// list differently, so that this text detects a member of the wrong kind.
struct Kind
{
    QStringList accepted;
    QStringList refused;
    const char *facet; ///< the rule of the schema that refuses
};

/// Adds numbers that equal the greatest number up to a digit, for each of its digits. With a smaller digit there, the
/// least and the greatest of these numbers are accepted, and the latter with a further digit is refused. With a greater
/// digit, the least of them is refused.
void addNumbersAround(const QString &greatest, const QString &sign, Kind &kind)
{
    const QChar zero = QLatin1Char('0');
    const QChar nine = QLatin1Char('9');
    for (int i = 0; i < greatest.size(); ++i) {
        const QString same = sign + greatest.left(i);
        const int digit = greatest.at(i).digitValue();
        const int rest = greatest.size() - i - 1;
        const int leastDigit = i == 0 ? 1 : 0; // a number does not begin with a zero
        if (digit > leastDigit) {
            kind.accepted << same + QString::number(leastDigit) + QString(rest, zero)
                          << same + QString::number(digit - 1) + QString(rest, nine);
            kind.refused << same + QString::number(digit - 1) + QString(rest + 1, nine);
        }
        if (digit < 9)
            kind.refused << same + QString::number(digit + 1) + QString(rest, zero);
    }
    kind.accepted << sign + greatest << sign + QString(greatest.size() - 1, nine);
    kind.refused << sign + greatest + zero << sign + QLatin1Char('1') + QString(greatest.size(), zero);
}

Kind wholeNumber(const QByteArray &greatest, const QByteArray &least, const QByteArray &aboveGreatest,
                 const QByteArray &belowLeast)
{
    Kind kind{QStringList{text(greatest), text(least)} + texts("0|1|9|10|42"),
              QStringList{text(aboveGreatest), text(belowLeast)}
                  + texts("-0|00|01|-01|1.0|1e1|0x1|1,000|one|- 1| 1|1 |1&#10;|٣|"),
              "pattern"};
    addNumbersAround(text(greatest), QString(), kind);
    if (least.startsWith('-')) {
        kind.accepted += texts("-1|-9|-10");
        addNumbersAround(text(greatest), text("-"), kind);
        kind.refused.removeAll(text(least)); // accepted: it is farther from zero than the greatest number
    }
    kind.accepted.removeDuplicates();
    for (const QString &number : std::as_const(kind.accepted)) {
        const bool negative = number.startsWith(QLatin1Char('-'));
        kind.refused << QLatin1Char('+') + number
                     << QLatin1Char(negative || !least.startsWith('-') ? '-' : '0') + number;
    }
    kind.refused.removeDuplicates();
    return kind;
}

Kind floatingPoint(const QByteArray &greatest, int digits)
{
    const QString tooLong = QLatin1Char('1') + QString(digits, QLatin1Char('0')) + text(".00");
    return {QStringList{text(greatest), QLatin1Char('-') + text(greatest)}
                + texts("0.00|1.00|0.09|9.99|10.00|-1.50|4096.75|nan|inf|-inf"),
            QStringList{tooLong, QLatin1Char('-') + tooLong}
                + texts("1|150|1.0|1.000|1.|.50|1,00|1_00|01.00|00.00|+1.00|--1.00|1.00e1|1.5E3|NaN|-nan|INF|+inf|"
                        "infinity|one| 1.00|1.00 |- 1.00|1.0٠|"),
            "pattern"};
}

/// Accepts only these names, with these upper and lower case letters.
Kind oneOf(const QByteArray &names, const QByteArray &refused)
{
    Kind kind{texts(names), texts(refused), "enumeration"};
    for (const QString &name : std::as_const(kind.accepted)) {
        kind.refused << name.toLower() << name.toUpper() << QLatin1Char(' ') + name << name + QLatin1Char(' ')
                     << name + name;
    }
    kind.refused << QString();
    for (const QString &name : std::as_const(kind.accepted))
        kind.refused.removeAll(name);
    kind.refused.removeDuplicates();
    return kind;
}

const Kind anyText{texts("| |  blanks  around  |&lt;&gt;&amp;'|µ – 8⅓ 帯 𝄞|null"), {}, nullptr};
const Kind boolean = oneOf("true|false", "1|0|yes|no|t");
const Kind version = oneOf("1.1", "1.2|1.0|1.10|01.1|1|2.0");
const Kind tunerType = oneOf("MCP|SCP|FFP|Receiver|DirectionFinder", "3|Direction Finder|Scan");
const Kind startupMode = oneOf("Scan|FastScan|MScan|FFM|WFFM|Step|DF|MSearch|Polar|Search|Stop", "0|SCP|Scanning");
const Kind int32 = wholeNumber("2147483647", "-2147483648", "2147483648", "-2147483649");
const Kind int64 =
    wholeNumber("9223372036854775807", "-9223372036854775808", "9223372036854775808", "-9223372036854775809");
const Kind unsignedInt64 = wholeNumber("18446744073709551615", "0", "18446744073709551616", "-1");

// The greatest numbers that 32 and 64 bits hold: 2^128 - 2^104 and 2^1024 - 2^971.
const Kind float32 = floatingPoint("340282346638528859811704183484516925440.00", 39);
const Kind float64 = floatingPoint(
    "179769313486231570814527423731704356798070567525844996598917476803157260780028538760589558632766878171540458953"
    "514382464234321326889464182768467546703537516986049910576551282076245490090389328944075868508455133942304583236"
    "903222948165808559332123348274797826204144723168738177180919299881250404026184124858368.00",
    309);

enum Presence { Mandatory, Optional };

struct Attribute
{
    QByteArray element;
    QByteArray name;
    const Kind &kind;
    Presence presence;
};

const std::vector<Attribute> statedAttributes = {
    {"ValueBoolean", "id", anyText, Mandatory},
    {"ValueBoolean", "value", boolean, Mandatory},
    {"ValueFloat", "id", anyText, Mandatory},
    {"ValueFloat", "value", float32, Mandatory},
    {"ValueInt", "id", anyText, Mandatory},
    {"ValueInt", "value", int32, Mandatory},
    {"ValueInt64", "id", anyText, Mandatory},
    {"ValueInt64", "value", int64, Mandatory},
    {"ValueString", "id", anyText, Mandatory},
    {"ValueString", "value", anyText, Mandatory},
    {"ValueNumericFloat", "id", anyText, Mandatory},
    {"ValueNumericFloat", "value", float32, Mandatory},
    {"ValueNumericFloat", "min", float32, Mandatory},
    {"ValueNumericFloat", "max", float32, Mandatory},
    {"ValueNumericFloat", "step", float32, Mandatory},
    {"ValueNumericInt", "id", anyText, Mandatory},
    {"ValueNumericInt", "value", int32, Mandatory},
    {"ValueNumericInt", "min", int32, Mandatory},
    {"ValueNumericInt", "max", int32, Mandatory},
    {"ValueNumericInt", "step", int32, Mandatory},
    {"ValueNumericInt64", "id", anyText, Mandatory},
    {"ValueNumericInt64", "value", int64, Mandatory},
    {"ValueNumericInt64", "min", int64, Mandatory},
    {"ValueNumericInt64", "max", int64, Mandatory},
    {"ValueNumericInt64", "step", int64, Mandatory},
    {"SelectionItem", "name", anyText, Mandatory},
    {"SelectionItem", "value", float64, Mandatory},
    {"ValueSelection", "id", anyText, Mandatory},
    {"ValueSelection", "value", float64, Mandatory},
    {"ValueSelection", "text", anyText, Mandatory},
    {"ValueSelection", "index", int32, Mandatory},
    {"StringItem", "value", anyText, Mandatory},
    {"ValueStringList", "id", anyText, Mandatory},
    {"ValueStringList", "value", anyText, Mandatory},
    {"Node", "id", anyText, Mandatory},
    {"Component", "type", anyText, Mandatory},
    {"Component", "name", anyText, Mandatory},
    {"Component", "displayName", anyText, Optional},
    {"Component", "optional", boolean, Mandatory},
    {"TunerProperties", "Version", version, Mandatory},
    {"TunerProperties", "name", anyText, Optional},
    {"TunerProperties", "type", tunerType, Mandatory},
    {"TunerProperties", "baseresource", anyText, Mandatory},
    {"TunerProperties", "connectableResources", anyText, Optional},
    {"TunerProperties", "quantity", int32, Optional},
    {"TunerProperties", "parentBaseResource", anyText, Optional},
    {"TunerProperties", "hwProcessing", boolean, Optional},
};

/// The members whose text is in an element of its own.
struct TextElement
{
    QByteArray element;
    QByteArray name;
    const Kind &kind;
};

const std::vector<TextElement> statedTextElements = {
    {"StartupModes", "StartupMode", startupMode},    {"BandwidthSelection", "Name", anyText},
    {"BandwidthSelection", "MaxBandwidth", float64}, {"TunerProperties", "MaxFFPDelay", unsignedInt64},
    {"TunerProperties", "HRPANSupported", boolean},
};

// --- Later classes and members --------------------------------------------------------------------------------------

/// What is stated above, and the same for each other class, attribute and text element of the model. Of these,
/// share/model.json states the kind and whether it is mandatory.
struct Rules
{
    Rules();

    std::vector<Element> elements = statedElements;
    std::vector<Attribute> attributes = statedAttributes;
    std::vector<TextElement> textElements = statedTextElements;

private:
    void addMember(const QByteArray &element, const QJsonObject &member);
    const Kind &kindOf(const QJsonObject &member);
    const Element *find(const QString &name) const;
    QString additions(const QString &element) const;

    std::deque<Kind> m_enumerations; // a deque, so that references stay valid
    QMap<QString, QJsonArray> m_members; // by class
    QMap<QString, QString> m_texts; // accepted by each member that is not stated, by "Class.member"
};

QJsonArray classesOfTheModel()
{
    QFile file(QStringLiteral(MODEL_FILE));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", MODEL_FILE, qUtf8Printable(file.errorString()));
    return QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("classes")).toArray();
}

QByteArray nameOf(const QJsonValue &classOrMember)
{
    return classOrMember.toObject().value(QLatin1String("name")).toString().toUtf8();
}

bool holdsElements(const QJsonObject &member)
{
    return member.value(QLatin1String("xml")) == QLatin1String("element");
}

const Kind &Rules::kindOf(const QJsonObject &member)
{
    static const QMap<QString, const Kind *> kinds{{text("text"), &anyText},         {text("boolean"), &boolean},
                                                   {text("int32"), &int32},          {text("int64"), &int64},
                                                   {text("uint64"), &unsignedInt64}, {text("float"), &float32},
                                                   {text("double"), &float64}};
    const QString kind = member.value(QLatin1String("kind")).toString();
    if (const Kind *known = kinds.value(kind))
        return *known;
    QStringList names;
    for (const QJsonValue &name : member.value(QLatin1String("names")).toArray())
        names += name.toString();
    if (names.isEmpty())
        qFatal("%s: no case lists the texts that a member of the kind %s takes", nameOf(member).constData(),
               qUtf8Printable(kind));
    return m_enumerations.emplace_back(oneOf(qUtf8Printable(names.join(QLatin1Char('|'))), "0"));
}

void Rules::addMember(const QByteArray &element, const QJsonObject &member)
{
    if (member.contains(QLatin1String("class")))
        return; // its element is one of a class
    const QByteArray name = nameOf(member);
    const auto isThis = [&](const auto &each) { return each.element == element && each.name == name; };
    if (std::any_of(attributes.begin(), attributes.end(), isThis)
        || std::any_of(textElements.begin(), textElements.end(), isThis))
        return;
    const Kind &kind = kindOf(member);
    const bool isMandatory = member.value(QLatin1String("mandatory")).toBool();
    if (holdsElements(member))
        textElements.push_back({element, name, kind});
    else
        attributes.push_back({element, name, kind, isMandatory ? Mandatory : Optional});
    m_texts.insert(text(element + '.' + name), kind.accepted.first());
}

const Element *Rules::find(const QString &name) const
{
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const Element &each) { return text(each.name) == name; });
    return found == elements.end() ? nullptr : &*found;
}

/// An element with the members that are not stated; of a class that is not stated, with its children, too. Null if
/// there are none.
QString Rules::additions(const QString &element) const
{
    QString attributesInTag;
    QString content;
    for (const QJsonValue &listed : m_members.value(element)) {
        const QJsonObject member = listed.toObject();
        const QString name = text(nameOf(member));
        const auto accepted = m_texts.constFind(element + QLatin1Char('.') + name);
        if (accepted != m_texts.constEnd() && holdsElements(member)) {
            content += QStringLiteral("<%1>").arg(name) + *accepted + QStringLiteral("</%1>").arg(name);
        } else if (accepted != m_texts.constEnd()) {
            attributesInTag += QStringLiteral(" %1=\"").arg(name) + *accepted + QLatin1Char('"');
        } else if (member.contains(QLatin1String("class")) && !find(element)) {
            const QString child = member.value(QLatin1String("class")).toString();
            const Element *stated = find(child);
            content += stated ? text(stated->document) : additions(child);
        }
    }
    if (attributesInTag.isEmpty() && content.isEmpty())
        return QString();
    return QStringLiteral("<%1 Version=\"1.1\"").arg(element) + attributesInTag + QLatin1Char('>') + content
        + QStringLiteral("</%1>").arg(element);
}

Rules::Rules()
{
    for (const QJsonValue &listed : classesOfTheModel()) {
        const QJsonArray members = listed.toObject().value(QLatin1String("members")).toArray();
        for (const QJsonValue &member : members)
            addMember(nameOf(listed), member.toObject());
        m_members.insert(text(nameOf(listed)), members);
    }
    std::vector<Element> all;
    JobXml::Classes::forEach([&](auto tag) {
        using Class = typename decltype(tag)::Class;
        const QString name = Class::GetStaticObjectName();
        const Element *const stated = find(name);
        const QString further = additions(name);
        if (further.isNull()) {
            if (!stated)
                qFatal("no case has an element %s", qUtf8Printable(name));
            all.push_back(*stated);
            return;
        }
        Class object;
        if (stated)
            readXml(object, text(stated->document));
        readXml(object, further);
        const QJsonArray &members = m_members[name];
        all.push_back({name.toUtf8(), xmlOf(object).toUtf8(),
                       std::none_of(members.begin(), members.end(),
                                    [](const QJsonValue &member) { return holdsElements(member.toObject()); })});
    });
    elements = all;
}

const Rules &rules()
{
    static const Rules complete;
    return complete;
}

// --- Changing a good document ---------------------------------------------------------------------------------------

QString documentOf(const QByteArray &element, const std::vector<Element> &among)
{
    for (const Element &each : among) {
        if (each.name == element)
            return text(each.document);
    }
    qFatal("there is no element %s", element.constData());
}

/// The document as stated, for cases that state their changes.
QString good(const QByteArray &element)
{
    return documentOf(element, statedElements);
}

/// The document with later members.
QString complete(const QByteArray &element)
{
    return documentOf(element, rules().elements);
}

/// The document, which must contain `from`, with its first occurrence replaced.
QString with(QString document, const QString &from, const QString &to)
{
    const int place = document.indexOf(from);
    if (place < 0)
        qFatal("there is no %s in %s", qPrintable(from), qPrintable(document));
    return document.replace(place, from.size(), to);
}

QString goodWith(const QByteArray &element, const QByteArray &from, const QByteArray &to)
{
    return with(good(element), text(from), text(to));
}

QString part(const QString &document, const QString &pattern)
{
    const QRegularExpressionMatch match = QRegularExpression(pattern).match(document);
    if (!match.hasMatch())
        qFatal("there is no %s in %s", qPrintable(pattern), qPrintable(document));
    return match.captured();
}

QString withAttribute(const Attribute &attribute, const QString &value)
{
    const QString document = complete(attribute.element);
    const QString present = part(document, QStringLiteral(" %1=\"[^\"]*\"").arg(text(attribute.name)));
    return with(document, present, QStringLiteral(" %1=\"").arg(text(attribute.name)) + value + QLatin1Char('"'));
}

QString withoutAttribute(const Attribute &attribute)
{
    const QString document = complete(attribute.element);
    return with(document, part(document, QStringLiteral(" %1=\"[^\"]*\"").arg(text(attribute.name))), QString());
}

QString withText(const TextElement &member, const QString &value)
{
    const QString document = complete(member.element);
    const QString start = QStringLiteral("<%1>").arg(text(member.name));
    const QString end = QStringLiteral("</%1>").arg(text(member.name));
    return with(document, part(document, start + text("[^<]*") + end), start + value + end);
}

QString shown(const QString &value)
{
    return value.size() <= 40 ? QLatin1Char('"') + value + QLatin1Char('"')
                              : QStringLiteral("\"%1...\", %2 characters").arg(value.left(8)).arg(value.size());
}

// --- The beginnings of the checker's complaints ---------------------------------------------------------------------

QString missingAttribute(const QByteArray &element, const QByteArray &name)
{
    return QStringLiteral("Element '%1': The attribute '%2' is required but missing").arg(text(element), text(name));
}

QString wrongValue(const Attribute &attribute)
{
    return QStringLiteral("Element '%1', attribute '%2': [facet '%3']")
        .arg(text(attribute.element), text(attribute.name), text(attribute.kind.facet));
}

QString wrongText(const TextElement &member)
{
    return QStringLiteral("Element '%1': [facet '%2']").arg(text(member.name), text(member.kind.facet));
}

QString notExpected(const QByteArray &element)
{
    return QStringLiteral("Element '%1': This element is not expected").arg(text(element));
}

QString missingChild(const QByteArray &element, const QByteArray &children)
{
    return QStringLiteral("Element '%1': Missing child element(s). Expected is %2").arg(text(element), text(children));
}

/// Calls the function for each member with the texts to try: all texts for the first member of a kind, and only the
/// first text for the others.
template <class Member, class Function>
void forEachMember(const std::vector<Member> &members, QStringList Kind::*texts, Function function)
{
    QVector<const Kind *> seen;
    for (const Member &member : members) {
        QStringList toTry = member.kind.*texts;
        if (seen.contains(&member.kind))
            toTry = toTry.mid(0, 1);
        seen.append(&member.kind);
        function(member, toTry);
    }
}

QString named(const QByteArray &element, const QByteArray &what, const QString &value = {})
{
    return text(element) + QLatin1Char(' ') + text(what) + (value.isNull() ? QString() : QLatin1Char(' ') + value);
}

} // namespace

QVector<Case> acceptedCases()
{
    QVector<Case> cases;
    const auto add = [&](const QString &name, const QString &document) { cases.append({name, document, QString()}); };

    for (const Element &element : rules().elements)
        add(named(element.name, "with everything"), text(element.document));

    forEachMember(rules().attributes, &Kind::accepted, [&](const Attribute &attribute, const QStringList &values) {
        if (attribute.presence == Optional)
            add(named(attribute.element, "without", text(attribute.name)), withoutAttribute(attribute));
        for (const QString &value : values)
            add(named(attribute.element, attribute.name, shown(value)), withAttribute(attribute, value));
    });
    forEachMember(rules().textElements, &Kind::accepted, [&](const TextElement &member, const QStringList &values) {
        for (const QString &value : values)
            add(named(member.element, member.name, shown(value)), withText(member, value));
    });

    const QString modes = good("TunerProperties");
    add(text("TunerProperties without optional elements"),
        with(modes, part(modes, text("<StartupModes>.*</HRPANSupported>")), QString()));
    add(text("TunerProperties with a delay alone"),
        text("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"\"><MaxFFPDelay>0</MaxFFPDelay>"
             "<Component type=\"\" name=\"\" optional=\"true\"><Node id=\"\"><ValueItem><ValueInt id=\"\" value=\"0\"/>"
             "</ValueItem></Node></Component></TunerProperties>"));
    add(text("StartupModes with one mode"), text("<StartupModes><StartupMode>DF</StartupMode></StartupModes>"));
    add(text("StartupModes with one mode twice"),
        text("<StartupModes><StartupMode>DF</StartupMode><StartupMode>DF</StartupMode></StartupModes>"));
    add(text("ValueStringList with one item"), goodWith("ValueStringList", "<StringItem value=\"w\"/>", ""));
    add(text("ValueSelection with one item"),
        goodWith("ValueSelection", "<SelectionItem name=\"m\" value=\"1.00\"/>", ""));
    add(text("Node with one value"),
        goodWith("Node", "<ValueItem><ValueString id=\"unit\" value=\"Hz\"/></ValueItem>", ""));
    add(text("ValueNumericInt with its range upside down"),
        goodWith("ValueNumericInt", "min=\"-2\" max=\"30\" step=\"5\"", "min=\"3\" max=\"-3\" step=\"-1\""));
    add(text("ValueSelection with a missing option"), goodWith("ValueSelection", "index=\"1\"", "index=\"-7\""));

    for (const QString &kind : Model::namesIn<JobXml::Kinds>())
        add(named("ValueItem", "with a", kind), text("<ValueItem>") + complete(kind.toUtf8()) + text("</ValueItem>"));
    return cases;
}

QVector<Case> refusedCases()
{
    QVector<Case> cases;
    const auto add = [&](const QString &name, const QString &document, const QString &complaint) {
        cases.append({name, document, complaint});
    };

    forEachMember(rules().attributes, &Kind::refused, [&](const Attribute &attribute, const QStringList &values) {
        if (attribute.presence == Mandatory)
            add(named(attribute.element, "without", text(attribute.name)), withoutAttribute(attribute),
                missingAttribute(attribute.element, attribute.name));
        for (const QString &value : values)
            add(named(attribute.element, attribute.name, shown(value)), withAttribute(attribute, value),
                wrongValue(attribute));
    });
    forEachMember(rules().textElements, &Kind::refused, [&](const TextElement &member, const QStringList &values) {
        for (const QString &value : values)
            add(named(member.element, member.name, shown(value)), withText(member, value), wrongText(member));
    });

    for (const Element &element : rules().elements) {
        const QString document = text(element.document);
        const QString name = text(element.name);
        const QString start = part(document, text("^<[^/>]*"));
        const QString toEnd = element.isLeaf ? text("/>") : QStringLiteral("</%1>").arg(name);
        const auto inside = [&](const QByteArray &content) {
            return document.chopped(toEnd.size()) + text(element.isLeaf ? ">" : "") + text(content)
                + QStringLiteral("</%1>").arg(name);
        };
        add(named(element.name, "with an unknown attribute"), with(document, start, start + text(" nobody=\"x\"")),
            QStringLiteral("Element '%1', attribute 'nobody': The attribute 'nobody' is not allowed").arg(name));
        add(named(element.name, "with text"), inside("x"),
            QStringLiteral("Element '%1': Character content ").arg(name));
        add(named(element.name, "with an unknown element"), inside("<nobody/>"),
            element.isLeaf ? QStringLiteral("Element '%1': Element content is not allowed").arg(name)
                           : notExpected("nobody"));
        if (element.isLeaf)
            add(named(element.name, "with a blank"), inside(" "),
                QStringLiteral("Element '%1': Character content is not allowed").arg(name));
        add(named(element.name, "in a namespace"), with(document, start, start + text(" xmlns=\"urn:other\"")),
            QStringLiteral("Element '{urn:other}%1': No matching global declaration").arg(name));
        add(named(element.name, "in lower case"), QString(document).replace(name, name.toLower()),
            QStringLiteral("Element '%1': No matching global declaration").arg(name.toLower()));
        add(named(element.name, "that says it is nil"),
            start + text(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"true\"/>"),
            QStringLiteral("Element '%1': The element is not 'nillable'").arg(name));
    }
    for (const TextElement &member : rules().textElements)
        add(named(member.name, "as a document"),
            QStringLiteral("<%1>%2</%1>").arg(text(member.name), member.kind.accepted.at(0)),
            QStringLiteral("Element '%1': No matching global declaration").arg(text(member.name)));

    const auto broken = [&](const QByteArray &name, const QByteArray &element, const QByteArray &from,
                            const QByteArray &to,
                            const QString &complaint) { add(text(name), goodWith(element, from, to), complaint); };

    // Missing parts.
    add(text("StartupModes without modes"), text("<StartupModes/>"), missingChild("StartupModes", "( StartupMode )"));
    add(text("ValueItem without a value"), text("<ValueItem/>"), missingChild("ValueItem", "one of ("));
    add(text("Node without values"), text("<Node id=\"n\"/>"), missingChild("Node", "( ValueItem )"));
    add(text("Component without nodes"), text("<Component type=\"t\" name=\"c\" optional=\"true\"/>"),
        missingChild("Component", "( Node )"));
    add(text("ValueSelection without items"), text("<ValueSelection id=\"i\" value=\"2.00\" text=\"t\" index=\"1\"/>"),
        missingChild("ValueSelection", "( SelectionItem )"));
    add(text("ValueStringList without items"), text("<ValueStringList id=\"i\" value=\"v\"/>"),
        missingChild("ValueStringList", "( StringItem )"));
    add(text("BandwidthSelection without anything"), text("<BandwidthSelection/>"),
        missingChild("BandwidthSelection", "( Name )"));
    broken("BandwidthSelection without Name", "BandwidthSelection", "<Name>wide</Name>", "",
           notExpected("MaxBandwidth"));
    broken("BandwidthSelection without MaxBandwidth", "BandwidthSelection", "<MaxBandwidth>1500000.00</MaxBandwidth>",
           "", missingChild("BandwidthSelection", "( MaxBandwidth )"));
    add(text("TunerProperties without anything inside"),
        text("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\"/>"),
        missingChild("TunerProperties", "one of ("));
    add(text("TunerProperties without components"),
        text("<TunerProperties Version=\"1.1\" type=\"SCP\" "
             "baseresource=\"b\"><StartupModes><StartupMode>DF</StartupMode>"
             "</StartupModes></TunerProperties>"),
        missingChild("TunerProperties", "one of ("));
    broken("StartupModes without modes in a document", "TunerProperties", "<StartupMode>FFM</StartupMode>", "",
           missingChild("StartupModes", "( StartupMode )"));

    // Repeated parts.
    broken("ValueItem with two values of one kind", "ValueItem", "</ValueItem>",
           "<ValueInt id=\"i\" value=\"1\"/></ValueItem>", notExpected("ValueInt"));
    broken("ValueItem with two kinds of values", "ValueItem", "</ValueItem>",
           "<ValueString id=\"i\" value=\"1\"/></ValueItem>", notExpected("ValueString"));
    broken("BandwidthSelection with two names", "BandwidthSelection", "<Name>wide</Name>", "<Name>wide</Name><Name/>",
           notExpected("Name"));
    broken("BandwidthSelection with two bandwidths", "BandwidthSelection", "</BandwidthSelection>",
           "<MaxBandwidth>1.00</MaxBandwidth></BandwidthSelection>", notExpected("MaxBandwidth"));
    broken("BandwidthSelection with two of everything", "BandwidthSelection", "</BandwidthSelection>",
           "<Name>wide</Name><MaxBandwidth>1.00</MaxBandwidth></BandwidthSelection>", notExpected("Name"));
    broken("TunerProperties with two lists of modes", "TunerProperties", "</StartupModes>",
           "</StartupModes><StartupModes><StartupMode>DF</StartupMode></StartupModes>", notExpected("StartupModes"));
    broken("TunerProperties with two delays", "TunerProperties", "<HRPAN", "<MaxFFPDelay>5</MaxFFPDelay><HRPAN",
           notExpected("MaxFFPDelay"));
    broken("TunerProperties with two HRPANSupported", "TunerProperties", "<Component",
           "<HRPANSupported>false</HRPANSupported><Component", notExpected("HRPANSupported"));

    // The order of elements.
    broken("MaxBandwidth before Name", "BandwidthSelection", "<Name>wide</Name><MaxBandwidth>1500000.00</MaxBandwidth>",
           "<MaxBandwidth>1500000.00</MaxBandwidth><Name>wide</Name>", notExpected("MaxBandwidth"));
    broken("StartupModes after a BandwidthSelection", "TunerProperties", "<StartupModes>",
           "<BandwidthSelection><Name>w</Name><MaxBandwidth>2.50</MaxBandwidth></BandwidthSelection><StartupModes>",
           notExpected("StartupModes"));
    broken("a BandwidthSelection after MaxFFPDelay", "TunerProperties", "<HRPAN",
           "<BandwidthSelection><Name>w</Name><MaxBandwidth>2.50</MaxBandwidth></BandwidthSelection><HRPAN",
           notExpected("BandwidthSelection"));
    broken("MaxFFPDelay after HRPANSupported", "TunerProperties",
           "<MaxFFPDelay>5</MaxFFPDelay><HRPANSupported>false</HRPANSupported>",
           "<HRPANSupported>false</HRPANSupported><MaxFFPDelay>5</MaxFFPDelay>", notExpected("MaxFFPDelay"));
    broken("StartupModes between components", "TunerProperties", "</Component><Component",
           "</Component><StartupModes><StartupMode>DF</StartupMode></StartupModes><Component",
           notExpected("StartupModes"));
    broken("HRPANSupported after a Component", "TunerProperties", "</TunerProperties>",
           "<HRPANSupported>false</HRPANSupported></TunerProperties>", notExpected("HRPANSupported"));

    // Members at wrong places.
    broken("a Component in a Node", "Node", "</Node>", "<Component/></Node>", notExpected("Component"));
    broken("a Node in the document", "TunerProperties", "</TunerProperties>", "<Node id=\"n\"/></TunerProperties>",
           notExpected("Node"));
    broken("a ValueItem in a Component", "Component", "</Component>", "<ValueItem/></Component>",
           notExpected("ValueItem"));
    broken("a value in a Node", "Node", "</Node>", "<ValueInt id=\"i\" value=\"1\"/></Node>", notExpected("ValueInt"));
    for (const char *other : {"StringItem", "SelectionItem", "ValueItem", "Node", "Component", "StartupModes",
                              "BandwidthSelection", "TunerProperties"})
        add(named("ValueItem", "with a", text(other)), text("<ValueItem>") + good(other) + text("</ValueItem>"),
            notExpected(other));
    broken("a StringItem in a selection", "ValueSelection", "</ValueSelection>",
           "<StringItem value=\"v\"/></ValueSelection>", notExpected("StringItem"));
    broken("a SelectionItem in a list of texts", "ValueStringList", "</ValueStringList>",
           "<SelectionItem name=\"n\" value=\"1.00\"/></ValueStringList>", notExpected("SelectionItem"));
    broken("a member as an element instead of an attribute", "ValueInt", " value=\"15\"/>",
           "><value>15</value></ValueInt>", missingAttribute("ValueInt", "value"));
    broken("a member as an attribute instead of an element", "TunerProperties", "<TunerProperties",
           "<TunerProperties MaxFFPDelay=\"5\"",
           text("Element 'TunerProperties', attribute 'MaxFFPDelay': The attribute 'MaxFFPDelay' is not allowed"));
    broken("a version in a part", "StartupModes", "<StartupModes", "<StartupModes Version=\"1.1\"",
           text("Element 'StartupModes', attribute 'Version': The attribute 'Version' is not allowed"));
    broken("a fault deep in a document", "TunerProperties", "<ValueInt id=\"i\"", "<ValueInt",
           missingAttribute("ValueInt", "id"));
    return cases;
}

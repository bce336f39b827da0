// SPDX-License-Identifier: MIT
#include "ElementRules.h"

#include <algorithm>
#include <deque>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTest>

#include "Encodings.h"
#include "Model.h"

namespace Schema {

namespace {

// --- The good documents, from which all cases are made --------------------------------------------------------------

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

const std::vector<TextElement> statedTextElements = {
    {"StartupModes", "StartupMode", startupMode},    {"BandwidthSelection", "Name", anyText},
    {"BandwidthSelection", "MaxBandwidth", float64}, {"TunerProperties", "MaxFFPDelay", unsignedInt64},
    {"TunerProperties", "HRPANSupported", boolean},
};

// --- Later classes and members --------------------------------------------------------------------------------------

class CompleteRules : public Rules
{
public:
    CompleteRules();

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

const Kind &CompleteRules::kindOf(const QJsonObject &member)
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

void CompleteRules::addMember(const QByteArray &element, const QJsonObject &member)
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

const Element *CompleteRules::find(const QString &name) const
{
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const Element &each) { return text(each.name) == name; });
    return found == elements.end() ? nullptr : &*found;
}

/// An element with the members that are not stated; of a class that is not stated, with its children, too. Null if
/// there are none.
QString CompleteRules::additions(const QString &element) const
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

CompleteRules::CompleteRules() : Rules{statedElements, statedAttributes, statedTextElements}
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

} // namespace

const std::vector<Element> &stated()
{
    return statedElements;
}

const Rules &rules()
{
    static const CompleteRules complete;
    return complete;
}

} // namespace Schema

// SPDX-License-Identifier: MIT
#include "RefusalCases.h"

#include <QHash>

#include "Encodings.h"

namespace Damage {

namespace {

QString incomplete(const char *owner, const char *item)
{
    return QStringLiteral("IncompleteDefinitionException: %1: Tried to append not completely defined or invalid item "
                          "%2.")
        .arg(QLatin1String(owner), QLatin1String(item));
}

QString emptyBoolean(const char *member, const char *owner)
{
    return QStringLiteral("InvalidXmlException: Please set a value or a default for the boolean '%1' in '%2'.")
        .arg(QLatin1String(member), QLatin1String(owner));
}

QString unknownTag(const char *tag)
{
    return QStringLiteral("InvalidXmlException: Unknown Tag '%1' in 'TunerProperties'.").arg(QLatin1String(tag));
}

QString invalidType()
{
    return QStringLiteral("OutOfRangeException: enum is not valid (classname=TunerProperties,membername=m_type)");
}

RefusalCase xml(const char *name, const QByteArray &element, const QString &thrown = {})
{
    return {name, Encoding::Xml, element, thrown, false};
}

RefusalCase record(const char *name, const char *hexText, const QString &thrown = {})
{
    return {name, Encoding::Record, bytes(hexText), thrown, false};
}

RefusalCase snapshot(const char *name, const char *hexText, const QString &thrown = {})
{
    return {name, Encoding::Snapshot, bytes(hexText), thrown, false};
}

QByteArray word(quint32 value)
{
    QByteArray four;
    QDataStream(&four, QIODevice::WriteOnly) << value;
    return four;
}

// Data that no class reads, whether validating or not.
QVector<RefusalCase> badLengths(const QString &className)
{
    QVector<RefusalCase> cases{
        record("a record without its bytes", "00 00 00 01"),
        record("a record of negative length", "FF FF FF FF"),
        record("a record that is longer than its member", "00 00 00 09 11 11 11 11 00 00 00 00"),
        record("a record that is shorter than its member", "00 00 00 08 11 11 11 11 00 00 00 01 00"),
        record("a truncated tag", "00 00 00 08 11 11 11"),
        record("a truncated length", "00 00 00 08 11 11 11 11 00 00"),
        record("a truncated unknown member", "00 00 00 0C 11 11 11 11 00 00 00 04 00 00 00"),
    };
    for (RefusalCase &refusal : cases) {
        refusal.thrown = lengthErrorOf(className);
        refusal.always = true;
    }
    return cases;
}

QVector<RefusalCase> ofDocument()
{
    RefusalCase halfAVersion =
        record("a version that ends within a letter", "00 00 00 0F CC FE DF A1 00 00 00 07 00 00 00 03 00 31 00",
               lengthErrorOf(QStringLiteral("TunerProperties")));
    halfAVersion.always = true;
    return {
        xml("an unknown type", R"(<TunerProperties Version="1.1" name="N" type="mcp" baseresource="B"/>)",
            invalidType()),
        xml("an empty type", R"(<TunerProperties Version="1.1" type=""/>)", invalidType()),
        xml("an unknown type in an element",
            R"(<TunerProperties Version="1.1" name="N"><type>Scanner</type></TunerProperties>)", invalidType()),
        xml("an empty hwProcessing", R"(<TunerProperties Version="1.1" quantity="4" hwProcessing=""/>)",
            emptyBoolean("hwProcessing", "TunerProperties")),
        xml("an empty hwProcessing in an element",
            R"(<TunerProperties Version="1.1"><quantity>4</quantity><hwProcessing/></TunerProperties>)",
            emptyBoolean("hwProcessing", "TunerProperties")),
        xml("an empty HRPANSupported",
            R"(<TunerProperties Version="1.1"><MaxFFPDelay>9</MaxFFPDelay>)"
            "<HRPANSupported></HRPANSupported></TunerProperties>",
            emptyBoolean("HRPANSupported", "TunerProperties")),
        xml("an unknown element",
            R"(<TunerProperties Version="1.1" name="N"><nobody><knows/></nobody></TunerProperties>)",
            unknownTag("nobody")),
        xml("an unknown element of a later version",
            R"(<TunerProperties Version="2.0"><name>N</name><nobody/></TunerProperties>)", unknownTag("nobody")),
        xml("an unknown element of an earlier version, which is skipped",
            R"(<TunerProperties Version="1.0"><name>N</name><nobody/></TunerProperties>)"),
        xml("no version, which is the earliest", R"(<TunerProperties name="N"/>)"),
        xml("a version that is not a number", R"(<TunerProperties Version="one" name="N"><nobody/></TunerProperties>)"),
        xml("a bandwidth without anything",
            R"(<TunerProperties Version="1.1" name="N"><BandwidthSelection/></TunerProperties>)",
            incomplete("TunerProperties", "BandwidthSelection")),
        xml("a component without anything", R"(<TunerProperties Version="1.1" name="N"><Component/></TunerProperties>)",
            incomplete("TunerProperties", "Component")),
        xml("an unknown mode in a document with modes",
            R"(<TunerProperties Version="1.1"><StartupModes><StartupMode>DF</StartupMode>)"
            "<StartupMode>?</StartupMode></StartupModes></TunerProperties>",
            incomplete("StartupModes", "StartupMode")),
        record("an unknown type", "00 00 00 0D A1 F0 EE 2D 00 00 00 05 00 00 00 01 3F", invalidType()),
        record("no type", "00 00 00 0C A1 F0 EE 2D 00 00 00 04 FF FF FF FF", invalidType()),
        record("a bandwidth without anything", "00 00 00 10 C2 48 3B A3 00 00 00 08 00 00 00 01 00 00 00 00",
               incomplete("TunerProperties", "BandwidthSelection")),
        record("a component without anything", "00 00 00 10 66 BA 8E 61 00 00 00 08 00 00 00 01 00 00 00 00",
               incomplete("TunerProperties", "Component")),
        record("an earlier version", "00 00 00 12 CC FE DF A1 00 00 00 0A 00 00 00 06 00 31 00 2E 00 30"),
        record("no version", "00 00 00 0C CC FE DF A1 00 00 00 04 FF FF FF FF"),
        record("no texts, which are read as empty ones",
               "00 00 00 18 CB 4C F6 45 00 00 00 04 FF FF FF FF E0 CF AE 8E 00 00 00 04 FF FF FF FF"),
        halfAVersion,
        snapshot("an unknown mode", // the modes are set; version 1.1
                 "01 00 00 00 00 06 00 31 00 2E 00 31 01 00 00 00 02 06 0B", incomplete("StartupModes", "StartupMode")),
        snapshot("a bandwidth without a name", // the bandwidths are set
                 "02 00 00 00 00 06 00 31 00 2E 00 31 00 00 00 01 00 FF FF FF FF 00 00 00 00 00 00 00 00",
                 incomplete("TunerProperties", "BandwidthSelection")),
        snapshot("a component without anything", // the components are set
                 "10 00 00 00 00 06 00 31 00 2E 00 31 00 00 00 01"
                 "00 00 00 00 00 FF FF FF FF FF FF FF FF 00",
                 incomplete("TunerProperties", "Component")),
    };
}

QVector<RefusalCase> ofLists(const QString &className)
{
    if (className == QLatin1String("StartupModes"))
        return {
            xml("a mode in small letters",
                "<StartupModes><StartupMode>Step</StartupMode><StartupMode>df</StartupMode></StartupModes>",
                incomplete("StartupModes", "StartupMode")),
            xml("an empty mode", "<StartupModes><StartupMode/></StartupModes>",
                incomplete("StartupModes", "StartupMode")),
            record("an unknown mode", "00 00 00 15 62 7B 74 CE 00 00 00 0D 00 00 00 01 00 00 00 05 00 00 00 01 3F",
                   incomplete("StartupModes", "StartupMode")),
            record("no mode", "00 00 00 14 62 7B 74 CE 00 00 00 0C 00 00 00 01 00 00 00 04 FF FF FF FF",
                   incomplete("StartupModes", "StartupMode")),
            snapshot("a mode of a later version", "01 00 00 00 02 03 0B", incomplete("StartupModes", "StartupMode")),
            snapshot("the invalid mode", "01 00 00 00 01 FF", incomplete("StartupModes", "StartupMode")),
        };
    if (className == QLatin1String("Component"))
        return {
            xml("an empty optional", R"(<Component type="F" name="C" optional=""/>)",
                emptyBoolean("optional", "Component")),
            xml("an empty optional in an element", R"(<Component type="F"><optional/></Component>)",
                emptyBoolean("optional", "Component")),
            xml("a node without anything", R"(<Component type="F"><Node/></Component>)",
                incomplete("Component", "Node")),
            xml("a node without values", R"(<Component type="F"><Node id="n"/></Component>)",
                incomplete("Component", "Node")),
            record("a node without anything", "00 00 00 10 C5 E5 39 36 00 00 00 08 00 00 00 01 00 00 00 00",
                   incomplete("Component", "Node")),
            snapshot("a node without anything", "01 00 00 00 01 00 00 00 00 00 FF FF FF FF",
                     incomplete("Component", "Node")),
        };
    if (className == QLatin1String("Node"))
        return {
            xml("an item without a value", R"(<Node id="n"><ValueItem/></Node>)", incomplete("Node", "ValueItem")),
            xml("an item whose value holds nothing", R"(<Node id="n"><ValueItem><ValueInt/></ValueItem></Node>)",
                incomplete("Node", "ValueItem")),
            record("an item without a value", "00 00 00 10 4F 71 13 1F 00 00 00 08 00 00 00 01 00 00 00 00",
                   incomplete("Node", "ValueItem")),
            record("an item whose value holds nothing",
                   "00 00 00 18 4F 71 13 1F 00 00 00 10 00 00 00 01 00 00 00 08 4A CA 65 14 00 00 00 00",
                   incomplete("Node", "ValueItem")),
            snapshot("an item without a value", "01 00 00 00 01 00 00 FF", incomplete("Node", "ValueItem")),
        };
    if (className == QLatin1String("ValueSelection"))
        return {
            xml("an item without anything", R"(<ValueSelection id="h"><SelectionItem/></ValueSelection>)",
                incomplete("ValueSelection", "SelectionItem")),
            xml("an item without a value", R"(<ValueSelection id="h"><SelectionItem name="i"/></ValueSelection>)",
                incomplete("ValueSelection", "SelectionItem")),
            xml("an item without a name", R"(<ValueSelection id="h"><SelectionItem value="1"/></ValueSelection>)",
                incomplete("ValueSelection", "SelectionItem")),
            record("an item without anything", "00 00 00 10 4F B1 9F 31 00 00 00 08 00 00 00 01 00 00 00 00",
                   incomplete("ValueSelection", "SelectionItem")),
            snapshot("an item without a name", "01 00 00 00 01 02 FF FF FF FF 3F F8 00 00 00 00 00 00",
                     incomplete("ValueSelection", "SelectionItem")),
        };
    if (className == QLatin1String("ValueStringList"))
        return {
            xml("an item without a value", R"(<ValueStringList id="l"><StringItem/></ValueStringList>)",
                incomplete("ValueStringList", "StringItem")),
            record("an item without a value", "00 00 00 10 29 40 EB DD 00 00 00 08 00 00 00 01 00 00 00 00",
                   incomplete("ValueStringList", "StringItem")),
            snapshot("an item with a flag but no text", "01 00 00 00 01 01 FF FF FF FF",
                     incomplete("ValueStringList", "StringItem")),
        };
    return {};
}

QVector<RefusalCase> ofValues(const QString &className)
{
    if (className == QLatin1String("ValueBoolean"))
        return {
            xml("an empty value", R"(<ValueBoolean id="a" value=""/>)", emptyBoolean("value", "ValueBoolean")),
            xml("an empty value in an element", R"(<ValueBoolean id="a"><value/></ValueBoolean>)",
                emptyBoolean("value", "ValueBoolean")),
        };
    if (className == QLatin1String("ValueItem"))
        return {
            xml("a boolean without a text", R"(<ValueItem><ValueBoolean id="a" value=""/></ValueItem>)",
                emptyBoolean("value", "ValueBoolean")),
            xml("a second value that is refused",
                R"(<ValueItem><ValueInt id="c" value="1"/>)"
                "<ValueStringList><StringItem/></ValueStringList></ValueItem>",
                incomplete("ValueStringList", "StringItem")),
            record("a list that is refused",
                   "00 00 00 18 49 1E D6 FE 00 00 00 10 29 40 EB DD 00 00 00 08 00 00 00 01 00 00 00 00",
                   incomplete("ValueStringList", "StringItem")),
            snapshot("a list that is refused", "00 02 09 01 00 00 00 01 00 FF FF FF FF",
                     incomplete("ValueStringList", "StringItem")),
        };
    return {};
}

// Every class accepts empty and missing texts, texts that are not numbers, and each of its members in an element.
QVector<RefusalCase> takenByAll(const ClassRule &rule)
{
    QByteArray element = QByteArray("<") + rule.name + " Version=\"1.1\">";
    QByteArray members;
    for (const MemberRule &member : rule.members) {
        const bool isNumber = member.kind == Kind::Float || member.kind == Kind::Double || member.kind == Kind::Integer
            || member.kind == Kind::Integer64 || member.kind == Kind::Unsigned64;
        if (member.kind == Kind::Text || isNumber)
            element += QByteArray("<") + member.name + (isNumber ? ">12abc</" : "></") + member.name + '>';
        if (member.kind == Kind::Text || member.kind == Kind::Float || member.kind == Kind::Double)
            members += word(member.tag) + bytes("00 00 00 04 FF FF FF FF");
    }
    element += QByteArray("</") + rule.name + '>';
    return {xml("empty texts, and texts that are not numbers", element),
            {"missing texts and numbers", Encoding::Record, word(quint32(members.size())) + members, {}, false}};
}

// A class, and its member that contains objects of another class.
struct Parent
{
    const ClassRule *rule = nullptr;
    const MemberRule *member = nullptr;
};

Parent parentOf(const QString &className)
{
    for (const ClassRule &rule : classRules()) {
        for (const MemberRule &member : rule.members) {
            if (QLatin1String(member.object) == className)
                return {&rule, &member};
        }
    }
    return {};
}

// The element of a parent, which has the attributes that a document needs to be read while validating.
QByteArray inElementOf(const Parent &parent, const QByteArray &child)
{
    static const QHash<QByteArray, QByteArray> attributes{
        {"TunerProperties", R"( Version="1.1" type="MCP" baseresource="B")"},
        {"Component", R"( type="F" name="C" optional="true")"},
        {"Node", R"( id="n")"},
        {"ValueSelection", R"( id="h")"},
        {"ValueStringList", R"( id="l")"},
    };
    const QByteArray &name = parent.rule->name;
    return '<' + name + attributes.value(name) + '>' + child + "</" + name + '>';
}

// The record of a parent. The member record's length is also the length of a child or an alternative.
QByteArray inRecordOf(const Parent &parent, const QByteArray &child)
{
    QByteArray member = word(parent.member->tag);
    if (parent.member->kind == Kind::List)
        member += word(quint32(4 + child.size())) + word(1);
    member += child;
    return word(quint32(member.size())) + member;
}

} // namespace

QVector<RefusalCase> refusalsOf(const QString &className)
{
    QVector<RefusalCase> cases = badLengths(className);
    if (className == QLatin1String("TunerProperties"))
        cases += ofDocument();
    return cases + ofLists(className) + ofValues(className) + takenByAll(ruleOf(className));
}

QByteArray inDocument(const QString &className, const RefusalCase &refusal)
{
    QByteArray input = refusal.input;
    for (Parent parent = parentOf(className); parent.rule; parent = parentOf(QString::fromLatin1(parent.rule->name)))
        input = refusal.encoding == Encoding::Xml ? inElementOf(parent, input) : inRecordOf(parent, input);
    return input;
}

} // namespace Damage

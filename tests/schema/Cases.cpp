// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QRegularExpression>

#include "ElementRules.h"
#include "Model.h"

using namespace Schema;

namespace {

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
    return documentOf(element, stated());
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

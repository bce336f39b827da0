// SPDX-License-Identifier: MIT
#pragma once

#include "Encodings.h"

#include <jobxml/TunerProperties.h>

/// The document that the tests of this folder damage: as small as it can be with every member of every class and all
/// ten kinds of values in it, since each of its bytes is cut off and each of its bits flipped.
namespace Damage {

template <class Value, class Number>
Value named(const char *id, Number number)
{
    Value value;
    value.Setid(QString::fromLatin1(id));
    value.Setvalue(number);
    return value;
}

template <class Value, class Number>
Value ranged(const char *id, Number number)
{
    Value value = named<Value>(id, number);
    value.Setmin(Number(-1));
    value.Setmax(Number(9));
    value.Setstep(Number(1));
    return value;
}

inline JobXml::ValueSelection compactSelection()
{
    JobXml::SelectionItem item;
    item.Setname(QStringLiteral("i"));
    item.Setvalue(1.5);
    auto selection = named<JobXml::ValueSelection>("h", 2.5);
    selection.Settext(QStringLiteral("t"));
    selection.Setindex(3);
    selection.AppendSelectionItem(item);
    return selection;
}

inline JobXml::ValueStringList compactStringList()
{
    JobXml::StringItem item;
    item.Setvalue(QStringLiteral("y"));
    auto list = named<JobXml::ValueStringList>("l", QStringLiteral("x"));
    list.AppendStringItem(item);
    return list;
}

/// One node with a value of each kind, in the order of the kinds.
inline JobXml::Node compactNode()
{
    using namespace JobXml;
    JobXml::Node node;
    node.Setid(QStringLiteral("n"));
    const auto append = [&](auto set, const auto &value) {
        ValueItem item;
        (item.*set)(value);
        node.AppendValueItem(item);
    };
    append(&ValueItem::SetValueBoolean, named<ValueBoolean>("a", true));
    append(&ValueItem::SetValueFloat, named<ValueFloat>("b", 0.5F));
    append(&ValueItem::SetValueInt, named<ValueInt>("c", -7));
    append(&ValueItem::SetValueInt64, named<ValueInt64>("d", qint64(1) << 32));
    append(&ValueItem::SetValueNumericFloat, ranged<ValueNumericFloat>("e", 0.25F));
    append(&ValueItem::SetValueNumericInt, ranged<ValueNumericInt>("f", 5));
    append(&ValueItem::SetValueNumericInt64, ranged<ValueNumericInt64>("g", qint64(6)));
    append(&ValueItem::SetValueSelection, compactSelection());
    append(&ValueItem::SetValueString, named<ValueString>("k", QString::fromUtf8("\xF0\x9F\x93\xA1")));
    append(&ValueItem::SetValueStringList, compactStringList());
    return node;
}

inline JobXml::TunerProperties makeCompactDocument()
{
    using namespace JobXml;
    JobXml::BandwidthSelection bandwidth;
    bandwidth.SetName(QStringLiteral("W"));
    bandwidth.SetMaxBandwidth(2.5);

    JobXml::Component component;
    component.Settype(QStringLiteral("F"));
    component.Setname(QStringLiteral("C"));
    component.SetdisplayName(QStringLiteral("&"));
    component.Setoptional(true);
    component.AppendNode(compactNode());

    TunerProperties document;
    document.Setname(QStringLiteral("N"));
    document.Settype(TunerProperties::type::MCP);
    document.Setbaseresource(QStringLiteral("B"));
    document.SetconnectableResources(QString::fromUtf8("\xC3\xA4"));
    document.Setquantity(2);
    document.SetparentBaseResource(QStringLiteral("P"));
    document.SethwProcessing(true);
    document.GetStartupModes().SetStartupMode({StartupModes::StartupMode::DF, StartupModes::StartupMode::FFM});
    document.AppendBandwidthSelection(bandwidth);
    document.SetMaxFFPDelay(250);
    document.SetHRPANSupported(true);
    document.AppendComponent(component);
    return document;
}

inline const JobXml::TunerProperties &compactDocument()
{
    static const JobXml::TunerProperties document = makeCompactDocument();
    return document;
}

/// The document as a file holds it, but for the indentation, which would only make more of the same.
inline const QByteArray &compactXml()
{
    static const QByteArray xml =
        QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + xmlOf(compactDocument()).toUtf8() + '\n';
    return xml;
}

} // namespace Damage

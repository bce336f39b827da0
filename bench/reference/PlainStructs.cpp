// SPDX-License-Identifier: MIT
#include "PlainStructs.h"

#include <array>
#include <tuple>

#include <jobxml/TunerProperties.h>

#include "Model.h"

using namespace JobXml;

namespace Bench {
namespace {

template <class Value>
void takeValue(const Value &value, PlainRange<qint64> &whole)
{
    whole.value = value.Getvalue();
}

template <class Value, class Number>
void takeRange(const Value &value, PlainRange<Number> &range)
{
    range.value = Number(value.Getvalue());
    range.min = Number(value.Getmin());
    range.max = Number(value.Getmax());
    range.step = Number(value.Getstep());
}

template <class Value>
QString idOf(const Value &value)
{
    Value own = value; // the getter of some kinds is not const
    return own.Getid();
}

PlainValue plain(const ValueItem &item)
{
    PlainValue value;
    value.kind = Kind(item.GetChoiceValueItem());
    switch (value.kind) {
    case Kind::Boolean:
        value.id = idOf(item.GetValueBoolean());
        value.boolean = item.GetValueBoolean().Getvalue();
        break;
    case Kind::Float:
        value.id = idOf(item.GetValueFloat());
        value.real.value = double(item.GetValueFloat().Getvalue());
        break;
    case Kind::Int:
        value.id = idOf(item.GetValueInt());
        takeValue(item.GetValueInt(), value.whole);
        break;
    case Kind::Int64:
        value.id = idOf(item.GetValueInt64());
        takeValue(item.GetValueInt64(), value.whole);
        break;
    case Kind::NumericFloat:
        value.id = idOf(item.GetValueNumericFloat());
        takeRange(item.GetValueNumericFloat(), value.real);
        break;
    case Kind::NumericInt:
        value.id = idOf(item.GetValueNumericInt());
        takeRange(item.GetValueNumericInt(), value.whole);
        break;
    case Kind::NumericInt64:
        value.id = idOf(item.GetValueNumericInt64());
        takeRange(item.GetValueNumericInt64(), value.whole);
        break;
    case Kind::Selection: {
        const ValueSelection &selection = item.GetValueSelection();
        value.id = idOf(selection);
        value.real.value = selection.Getvalue();
        value.text = selection.Gettext();
        value.index = selection.Getindex();
        for (const SelectionItem &option : selection.GetSelectionItem())
            value.items.append({option.Getname(), option.Getvalue()});
        break;
    }
    case Kind::String:
        value.id = idOf(item.GetValueString());
        value.text = item.GetValueString().Getvalue();
        break;
    case Kind::StringList: {
        const ValueStringList &list = item.GetValueStringList();
        value.id = idOf(list);
        value.text = list.Getvalue();
        for (const StringItem &string : list.GetStringItem())
            value.items.append({string.Getvalue(), 0});
    }
    }
    return value;
}

PlainNode plain(const Node &node)
{
    PlainNode plainNode{node.Getid(), {}};
    for (const ValueItem &item : node.GetValueItem())
        plainNode.values.append(plain(item));
    return plainNode;
}

PlainComponent plain(const Component &component)
{
    PlainComponent plainComponent{
        component.Gettype(), component.Getname(), component.GetdisplayName(), component.Getoptional(), {}};
    for (const Node &node : component.GetNode())
        plainComponent.nodes.append(plain(node));
    return plainComponent;
}

template <class Struct>
bool equalLists(const QVector<Struct> &left, const QVector<Struct> &right)
{
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin());
}

// Tuples of references list the members of a struct once.
auto fields(const PlainItem &item)
{
    return std::tie(item.text, item.number);
}
auto fields(const PlainBandwidth &bandwidth)
{
    return std::tie(bandwidth.name, bandwidth.max);
}
template <class Number>
auto fields(const PlainRange<Number> &range)
{
    return std::tie(range.value, range.min, range.max, range.step);
}
auto fields(const PlainComponent &component)
{
    return std::tie(component.type, component.name, component.displayName, component.optional);
}
auto fields(const PlainDocument &document)
{
    return std::tie(document.version, document.name, document.type, document.baseresource,
                    document.connectableResources, document.quantity, document.parentBaseResource,
                    document.hwProcessing, document.startupModes, document.maxFFPDelay, document.hrpanSupported);
}

template <std::size_t Size>
QString nameOf(const std::array<const char *, Size> &names, qint8 index)
{
    return index >= 0 && std::size_t(index) < Size ? QString::fromLatin1(names[std::size_t(index)]) : QString();
}

template <std::size_t Size>
qint8 indexOf(const std::array<const char *, Size> &names, const QString &name)
{
    for (std::size_t i = 0; i < Size; ++i) {
        if (name == QLatin1String(names[i]))
            return qint8(i);
    }
    return -1;
}

} // namespace

static bool operator==(const PlainItem &left, const PlainItem &right)
{
    return fields(left) == fields(right);
}

static bool operator==(const PlainBandwidth &left, const PlainBandwidth &right)
{
    return fields(left) == fields(right);
}

static bool operator==(const PlainValue &left, const PlainValue &right)
{
    return left.kind == right.kind && left.boolean == right.boolean && left.index == right.index && left.id == right.id
        && left.text == right.text && fields(left.whole) == fields(right.whole)
        && fields(left.real) == fields(right.real) && equalLists(left.items, right.items);
}

static bool operator==(const PlainNode &left, const PlainNode &right)
{
    return left.id == right.id && equalLists(left.values, right.values);
}

static bool operator==(const PlainComponent &left, const PlainComponent &right)
{
    return fields(left) == fields(right) && equalLists(left.nodes, right.nodes);
}

bool operator==(const PlainDocument &left, const PlainDocument &right)
{
    return fields(left) == fields(right) && equalLists(left.bandwidths, right.bandwidths)
        && equalLists(left.components, right.components);
}

QString nameOfType(qint8 type)
{
    return nameOf(typeNames, type);
}

QString nameOfMode(qint8 mode)
{
    return nameOf(modeNames, mode);
}

qint8 typeOfName(const QString &name)
{
    return indexOf(typeNames, name);
}

qint8 modeOfName(const QString &name)
{
    return indexOf(modeNames, name);
}

PlainDocument plain(const TunerProperties &document)
{
    PlainDocument all;
    all.version = document.GetVersion();
    all.name = document.Getname();
    all.type = qint8(document.Gettype());
    all.baseresource = document.Getbaseresource();
    all.connectableResources = document.GetconnectableResources();
    if (document.IsquantitySet())
        all.quantity = document.Getquantity();
    all.parentBaseResource = document.GetparentBaseResource();
    if (document.IshwProcessingSet())
        all.hwProcessing = document.GethwProcessing();
    for (const StartupModes::StartupMode mode : document.GetStartupModes().GetStartupMode())
        all.startupModes.append(qint8(mode));
    for (const BandwidthSelection &bandwidth : document.GetBandwidthSelection())
        all.bandwidths.append({bandwidth.GetName(), bandwidth.GetMaxBandwidth()});
    if (document.IsMaxFFPDelaySet())
        all.maxFFPDelay = document.GetMaxFFPDelay();
    if (document.IsHRPANSupportedSet())
        all.hrpanSupported = document.GetHRPANSupported();
    for (const Component &component : document.GetComponent())
        all.components.append(plain(component));
    return all;
}

} // namespace Bench

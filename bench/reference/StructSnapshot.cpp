// SPDX-License-Identifier: MIT
#include "StructSnapshot.h"

#include <QBuffer>
#include <QDataStream>

namespace Bench {
namespace {

// In a complete document, all members but the optional ones are set, so the flags only describe the optional ones.
constexpr quint8 twoSet = 0x03;

quint8 flagsOf(Kind kind)
{
    switch (kind) {
    case Kind::NumericFloat:
    case Kind::NumericInt:
    case Kind::NumericInt64:
    case Kind::Selection:
        return 0x1F;
    case Kind::StringList:
        return 0x07;
    default:
        return twoSet;
    }
}

template <class List, class Write>
void writeList(QDataStream &stream, const List &list, const Write &write)
{
    stream << qint32(list.size());
    for (const auto &item : list)
        write(item);
}

template <class Number>
void writeRange(QDataStream &stream, const PlainRange<Number> &range)
{
    stream << range.value << range.min << range.max << range.step;
}

template <class Number>
void readRange(QDataStream &stream, PlainRange<Number> &range)
{
    stream >> range.value >> range.min >> range.max >> range.step;
}

void write(QDataStream &stream, const PlainValue &value)
{
    // The flags of the item: a single one, then the choice.
    stream << quint8(int(value.kind) < 8 ? 1 << int(value.kind) : 0)
           << quint8(int(value.kind) < 8 ? 0 : 1 << (int(value.kind) - 8)) << qint8(value.kind) << flagsOf(value.kind);
    switch (value.kind) {
    case Kind::Boolean:
        stream << value.id << value.boolean;
        break;
    case Kind::Float:
        stream << value.id << value.real.value;
        break;
    case Kind::Int:
    case Kind::Int64:
        stream << value.id << value.whole.value;
        break;
    case Kind::NumericFloat:
        stream << value.id;
        writeRange(stream, value.real);
        break;
    case Kind::NumericInt:
    case Kind::NumericInt64:
        stream << value.id;
        writeRange(stream, value.whole);
        break;
    case Kind::Selection:
        writeList(stream, value.items, [&](const PlainItem &item) { stream << twoSet << item.text << item.number; });
        stream << value.id << value.real.value << value.text << qint64(value.index);
        break;
    case Kind::String:
        stream << value.id << value.text;
        break;
    case Kind::StringList:
        writeList(stream, value.items, [&](const PlainItem &item) { stream << quint8(1) << item.text; });
        stream << value.id << value.text;
    }
}

void write(QDataStream &stream, const PlainComponent &component)
{
    stream << quint8(component.displayName.isNull() ? 0x17 : 0x1F);
    writeList(stream, component.nodes, [&](const PlainNode &node) {
        stream << twoSet;
        writeList(stream, node.values, [&](const PlainValue &value) { write(stream, value); });
        stream << node.id;
    });
    stream << component.type << component.name;
    if (!component.displayName.isNull())
        stream << component.displayName;
    stream << component.optional;
}

void write(QDataStream &stream, const PlainDocument &document)
{
    const bool flags[] = {!document.startupModes.isEmpty(),
                          !document.bandwidths.isEmpty(),
                          document.maxFFPDelay.has_value(),
                          document.hrpanSupported.has_value(),
                          true,
                          !document.name.isNull(),
                          true,
                          true,
                          !document.connectableResources.isNull(),
                          document.quantity.has_value(),
                          !document.parentBaseResource.isNull(),
                          document.hwProcessing.has_value()};
    quint32 bits = 0;
    for (int i = 0; i < 12; ++i)
        bits |= flags[i] ? 1U << i : 0;
    stream << quint8(bits & 0xFF) << quint8(bits >> 8) << document.version;
    if (flags[0]) {
        stream << quint8(1);
        writeList(stream, document.startupModes, [&](qint8 mode) { stream << mode; });
    }
    if (flags[1]) {
        writeList(stream, document.bandwidths,
                  [&](const PlainBandwidth &bandwidth) { stream << twoSet << bandwidth.name << bandwidth.max; });
    }
    if (flags[2])
        stream << *document.maxFFPDelay;
    if (flags[3])
        stream << *document.hrpanSupported;
    writeList(stream, document.components, [&](const PlainComponent &component) { write(stream, component); });
    if (flags[5])
        stream << document.name;
    stream << document.type << document.baseresource;
    if (flags[8])
        stream << document.connectableResources;
    if (flags[9])
        stream << qint64(*document.quantity);
    if (flags[10])
        stream << document.parentBaseResource;
    if (flags[11])
        stream << *document.hwProcessing;
}

template <class Value>
Value next(QDataStream &stream)
{
    Value value{};
    stream >> value;
    return value;
}

template <class List, class Read>
void readList(QDataStream &stream, List &list, const Read &read)
{
    list.resize(next<qint32>(stream));
    for (auto &item : list)
        read(item);
}

void read(QDataStream &stream, PlainValue &value)
{
    next<quint16>(stream); // the choice repeats the flags
    value.kind = Kind(next<qint8>(stream));
    next<quint8>(stream);
    switch (value.kind) {
    case Kind::Boolean:
        stream >> value.id >> value.boolean;
        break;
    case Kind::Float:
        stream >> value.id >> value.real.value;
        break;
    case Kind::Int:
    case Kind::Int64:
        stream >> value.id >> value.whole.value;
        break;
    case Kind::NumericFloat:
        stream >> value.id;
        readRange(stream, value.real);
        break;
    case Kind::NumericInt:
    case Kind::NumericInt64:
        stream >> value.id;
        readRange(stream, value.whole);
        break;
    case Kind::Selection:
        readList(stream, value.items, [&](PlainItem &item) {
            next<quint8>(stream);
            stream >> item.text >> item.number;
        });
        stream >> value.id >> value.real.value >> value.text;
        value.index = qint32(next<qint64>(stream));
        break;
    case Kind::String:
        stream >> value.id >> value.text;
        break;
    case Kind::StringList:
        readList(stream, value.items, [&](PlainItem &item) {
            next<quint8>(stream);
            stream >> item.text;
        });
        stream >> value.id >> value.text;
    }
}

void read(QDataStream &stream, PlainComponent &component)
{
    const quint8 flags = next<quint8>(stream);
    readList(stream, component.nodes, [&](PlainNode &node) {
        next<quint8>(stream);
        readList(stream, node.values, [&](PlainValue &value) { read(stream, value); });
        stream >> node.id;
    });
    stream >> component.type >> component.name;
    if (flags & 0x08)
        stream >> component.displayName;
    stream >> component.optional;
}

void read(QDataStream &stream, PlainDocument &document)
{
    const auto low = next<quint8>(stream);
    const auto high = next<quint8>(stream);
    stream >> document.version;
    if (low & 0x01) {
        next<quint8>(stream);
        readList(stream, document.startupModes, [&](qint8 &mode) { stream >> mode; });
    }
    if (low & 0x02) {
        readList(stream, document.bandwidths, [&](PlainBandwidth &bandwidth) {
            next<quint8>(stream);
            stream >> bandwidth.name >> bandwidth.max;
        });
    }
    if (low & 0x04)
        document.maxFFPDelay = next<quint64>(stream);
    if (low & 0x08)
        document.hrpanSupported = next<bool>(stream);
    readList(stream, document.components, [&](PlainComponent &component) { read(stream, component); });
    if (low & 0x20)
        stream >> document.name;
    stream >> document.type >> document.baseresource;
    if (high & 0x01)
        stream >> document.connectableResources;
    if (high & 0x02)
        document.quantity = qint32(next<qint64>(stream));
    if (high & 0x04)
        stream >> document.parentBaseResource;
    if (high & 0x08)
        document.hwProcessing = next<bool>(stream);
}

} // namespace

QByteArray writeSnapshot(const PlainDocument &document)
{
    QByteArray snapshot;
    QBuffer buffer(&snapshot);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    write(stream, document);
    return snapshot;
}

PlainDocument readSnapshot(const QByteArray &snapshot)
{
    PlainDocument document;
    QDataStream stream(snapshot);
    read(stream, document);
    return document;
}

} // namespace Bench

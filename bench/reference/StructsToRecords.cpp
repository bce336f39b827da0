// SPDX-License-Identifier: MIT
#include "StructRecords.h"

#include <QBuffer>
#include <QDataStream>

#include "Model.h"

namespace Bench {
namespace {

// Of value, min, max and step. A kind without a range has the same tag for its value.
constexpr quint32 tagsOfFloat[] = {Tag::ValueNumericFloat::value, Tag::ValueNumericFloat::min,
                                   Tag::ValueNumericFloat::max, Tag::ValueNumericFloat::step};
constexpr quint32 tagsOfInt[] = {Tag::ValueNumericInt::value, Tag::ValueNumericInt::min, Tag::ValueNumericInt::max,
                                 Tag::ValueNumericInt::step};
constexpr quint32 tagsOfInt64[] = {Tag::ValueNumericInt64::value, Tag::ValueNumericInt64::min,
                                   Tag::ValueNumericInt64::max, Tag::ValueNumericInt64::step};

class Writer
{
public:
    explicit Writer(QBuffer &buffer) : m_buffer(buffer), m_stream(&buffer) { }

    void write(const PlainDocument &document)
    {
        m_stream << Tag::document;
        lengthAnd([&] { writeMembers(document); });
    }

private:
    template <class Payload>
    void lengthAnd(const Payload &payload)
    {
        m_stream << qint32(0);
        const qint64 begin = m_buffer.pos();
        payload();
        const qint64 end = m_buffer.pos();
        m_buffer.seek(begin - 4);
        m_stream << qint32(end - begin);
        m_buffer.seek(end);
    }

    template <class Payload>
    void record(quint32 tag, const Payload &payload)
    {
        m_stream << tag;
        lengthAnd(payload);
    }

    void text(quint32 tag, const QString &text)
    {
        record(tag, [&] { m_stream << text.toUtf8(); });
    }
    void textIfAny(quint32 tag, const QString &value)
    {
        if (!value.isNull())
            text(tag, value);
    }
    void boolean(quint32 tag, bool value)
    {
        record(tag, [&] { m_stream << value; });
    }
    void whole(quint32 tag, qint64 number)
    {
        record(tag, [&] { m_stream << number; });
    }
    void real(quint32 tag, double number)
    {
        record(tag, [&] { m_stream << QByteArray::number(number, 'f', 2); });
    }

    template <class List, class Write>
    void list(quint32 tag, const List &list, const Write &write)
    {
        record(tag, [&] {
            m_stream << qint32(list.size());
            for (const auto &item : list)
                lengthAnd([&] { write(item); });
        });
    }

    void whole(const quint32 (&tags)[4], const PlainRange<qint64> &range)
    {
        whole(tags[0], range.value);
        whole(tags[1], range.min);
        whole(tags[2], range.max);
        whole(tags[3], range.step);
    }
    void real(const quint32 (&tags)[4], const PlainRange<double> &range)
    {
        real(tags[0], range.value);
        real(tags[1], range.min);
        real(tags[2], range.max);
        real(tags[3], range.step);
    }

    void writeMembers(const PlainDocument &document)
    {
        record(Tag::version, [&] { m_stream << document.version; });
        textIfAny(Tag::TunerProperties::name, document.name);
        text(Tag::TunerProperties::type, nameOfType(document.type));
        text(Tag::TunerProperties::baseresource, document.baseresource);
        textIfAny(Tag::TunerProperties::connectableResources, document.connectableResources);
        if (document.quantity)
            whole(Tag::TunerProperties::quantity, *document.quantity);
        textIfAny(Tag::TunerProperties::parentBaseResource, document.parentBaseResource);
        if (document.hwProcessing)
            boolean(Tag::TunerProperties::hwProcessing, *document.hwProcessing);
        if (!document.startupModes.isEmpty()) {
            record(Tag::TunerProperties::StartupModes, [&] {
                list(Tag::StartupModes::StartupMode, document.startupModes,
                     [&](qint8 mode) { m_stream << nameOfMode(mode).toUtf8(); });
            });
        }
        if (!document.bandwidths.isEmpty()) {
            list(Tag::TunerProperties::BandwidthSelection, document.bandwidths, [&](const PlainBandwidth &bandwidth) {
                text(Tag::BandwidthSelection::Name, bandwidth.name);
                real(Tag::BandwidthSelection::MaxBandwidth, bandwidth.max);
            });
        }
        if (document.maxFFPDelay)
            whole(Tag::TunerProperties::MaxFFPDelay, qint64(*document.maxFFPDelay));
        if (document.hrpanSupported)
            boolean(Tag::TunerProperties::HRPANSupported, *document.hrpanSupported);
        list(Tag::TunerProperties::Component, document.components,
             [&](const PlainComponent &component) { writeMembers(component); });
    }

    void writeMembers(const PlainComponent &component)
    {
        text(Tag::Component::type, component.type);
        text(Tag::Component::name, component.name);
        textIfAny(Tag::Component::displayName, component.displayName);
        boolean(Tag::Component::optional, component.optional);
        list(Tag::Component::Node, component.nodes, [&](const PlainNode &node) {
            text(Tag::Node::id, node.id);
            list(Tag::Node::ValueItem, node.values, [&](const PlainValue &value) {
                record(Tag::alternatives[int(value.kind)], [&] { writeMembers(value); });
            });
        });
    }

    void writeMembers(const PlainValue &value)
    {
        text(Tag::ValueBoolean::id, value.id);
        switch (value.kind) {
        case Kind::Boolean:
            boolean(Tag::ValueBoolean::value, value.boolean);
            break;
        case Kind::Float:
            real(Tag::ValueFloat::value, value.real.value);
            break;
        case Kind::Int:
            whole(Tag::ValueInt::value, value.whole.value);
            break;
        case Kind::Int64:
            whole(Tag::ValueInt64::value, value.whole.value);
            break;
        case Kind::NumericFloat:
            real(tagsOfFloat, value.real);
            break;
        case Kind::NumericInt:
            whole(tagsOfInt, value.whole);
            break;
        case Kind::NumericInt64:
            whole(tagsOfInt64, value.whole);
            break;
        case Kind::Selection:
            real(Tag::ValueSelection::value, value.real.value);
            text(Tag::ValueSelection::text, value.text);
            whole(Tag::ValueSelection::index, value.index);
            list(Tag::ValueSelection::SelectionItem, value.items, [&](const PlainItem &item) {
                text(Tag::SelectionItem::name, item.text);
                real(Tag::ValueSelection::value, item.number);
            });
            break;
        case Kind::String:
            text(Tag::ValueString::value, value.text);
            break;
        case Kind::StringList:
            text(Tag::ValueString::value, value.text);
            list(Tag::ValueStringList::StringItem, value.items,
                 [&](const PlainItem &item) { text(Tag::ValueString::value, item.text); });
        }
    }

    QBuffer &m_buffer;
    QDataStream m_stream;
};

} // namespace

QByteArray writeRecords(const PlainDocument &document)
{
    QByteArray representation;
    QBuffer buffer(&representation);
    buffer.open(QIODevice::WriteOnly);
    Writer(buffer).write(document);
    return representation;
}

} // namespace Bench

// SPDX-License-Identifier: MIT
#include "StructRecords.h"

#include <QBuffer>
#include <QDataStream>

#include "RecordTags.h"

namespace Bench {
namespace {

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
        textIfAny(Tag::name, document.name);
        text(Tag::documentType, nameOfType(document.type));
        text(Tag::baseresource, document.baseresource);
        textIfAny(Tag::connectableResources, document.connectableResources);
        if (document.quantity)
            whole(Tag::quantity, *document.quantity);
        textIfAny(Tag::parentBaseResource, document.parentBaseResource);
        if (document.hwProcessing)
            boolean(Tag::hwProcessing, *document.hwProcessing);
        if (!document.startupModes.isEmpty()) {
            record(Tag::startupModes, [&] {
                list(Tag::startupMode, document.startupModes,
                     [&](qint8 mode) { m_stream << nameOfMode(mode).toUtf8(); });
            });
        }
        if (!document.bandwidths.isEmpty()) {
            list(Tag::bandwidthSelection, document.bandwidths, [&](const PlainBandwidth &bandwidth) {
                text(Tag::bandwidthName, bandwidth.name);
                real(Tag::maxBandwidth, bandwidth.max);
            });
        }
        if (document.maxFFPDelay)
            whole(Tag::maxFFPDelay, qint64(*document.maxFFPDelay));
        if (document.hrpanSupported)
            boolean(Tag::hrpanSupported, *document.hrpanSupported);
        list(Tag::component, document.components, [&](const PlainComponent &component) { writeMembers(component); });
    }

    void writeMembers(const PlainComponent &component)
    {
        text(Tag::componentType, component.type);
        text(Tag::name, component.name);
        textIfAny(Tag::displayName, component.displayName);
        boolean(Tag::optional, component.optional);
        list(Tag::node, component.nodes, [&](const PlainNode &node) {
            text(Tag::id, node.id);
            list(Tag::valueItem, node.values, [&](const PlainValue &value) {
                record(Tag::alternatives[int(value.kind)], [&] { writeMembers(value); });
            });
        });
    }

    void writeMembers(const PlainValue &value)
    {
        text(Tag::id, value.id);
        switch (value.kind) {
        case Kind::Boolean:
            boolean(Tag::booleanValue, value.boolean);
            break;
        case Kind::Float:
            real(Tag::ofFloat[0], value.real.value);
            break;
        case Kind::Int:
            whole(Tag::ofInt[0], value.whole.value);
            break;
        case Kind::Int64:
            whole(Tag::ofInt64[0], value.whole.value);
            break;
        case Kind::NumericFloat:
            real(Tag::ofFloat, value.real);
            break;
        case Kind::NumericInt:
            whole(Tag::ofInt, value.whole);
            break;
        case Kind::NumericInt64:
            whole(Tag::ofInt64, value.whole);
            break;
        case Kind::Selection:
            real(Tag::doubleValue, value.real.value);
            text(Tag::text, value.text);
            whole(Tag::index, value.index);
            list(Tag::selectionItem, value.items, [&](const PlainItem &item) {
                text(Tag::name, item.text);
                real(Tag::doubleValue, item.number);
            });
            break;
        case Kind::String:
            text(Tag::textValue, value.text);
            break;
        case Kind::StringList:
            text(Tag::textValue, value.text);
            list(Tag::stringItem, value.items, [&](const PlainItem &item) { text(Tag::textValue, item.text); });
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

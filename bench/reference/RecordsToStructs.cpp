// SPDX-License-Identifier: MIT
#include "StructRecords.h"

#include <stdexcept>

#include <QDataStream>

#include "Model.h"

namespace Bench {
namespace {

class Reader
{
public:
    explicit Reader(QDataStream &stream) : m_stream(stream) { }

    PlainDocument document()
    {
        PlainDocument document;
        quint32 tag = 0;
        m_stream >> tag;
        if (tag != Tag::document)
            throw std::runtime_error("not a document");
        records(length(), [&](quint32 member, qint32 size) { return read(document, member, size); });
        return document;
    }

private:
    qint32 length()
    {
        qint32 length = 0;
        m_stream >> length;
        return length;
    }

    /// Passes each record of the next `length` bytes to a function; unknown ones are skipped.
    template <class Read>
    void records(qint32 length, const Read &read)
    {
        while (length > 0 && m_stream.status() == QDataStream::Ok) {
            quint32 tag = 0;
            qint32 size = 0;
            m_stream >> tag >> size;
            length -= 8 + size;
            if (!read(tag, size))
                m_stream.skipRawData(size);
        }
        if (length != 0 || m_stream.status() != QDataStream::Ok)
            throw std::runtime_error("the lengths do not add up");
    }

    template <class Item, class Read>
    bool list(QVector<Item> &list, const Read &read)
    {
        list.resize(length());
        for (Item &item : list)
            records(length(), [&](quint32 tag, qint32 size) { return read(item, tag, size); });
        return true;
    }

    bool text(QString &text)
    {
        m_stream >> m_bytes;
        text = QString::fromUtf8(m_bytes);
        return true;
    }
    template <class Boolean>
    bool boolean(Boolean &value)
    {
        bool read = false;
        m_stream >> read;
        value = read;
        return true;
    }
    template <class Number>
    bool whole(Number &number)
    {
        qint64 read = 0;
        m_stream >> read;
        number = Number(read);
        return true;
    }
    bool realOfFloat(double &number)
    {
        m_stream >> m_bytes;
        number = double(m_bytes.toFloat());
        return true;
    }
    bool real(double &number)
    {
        m_stream >> m_bytes;
        number = m_bytes.toDouble();
        return true;
    }

    bool read(PlainDocument &document, quint32 tag, qint32 size);
    bool read(PlainComponent &component, quint32 tag);
    bool read(PlainValue &value, quint32 tag);

    QDataStream &m_stream;
    QByteArray m_bytes;
};

bool Reader::read(PlainDocument &document, quint32 tag, qint32 size)
{
    QString name;
    switch (tag) {
    case Tag::version:
        m_stream >> document.version;
        return true;
    case Tag::TunerProperties::name:
        return text(document.name);
    case Tag::TunerProperties::type:
        text(name);
        document.type = typeOfName(name);
        return true;
    case Tag::TunerProperties::baseresource:
        return text(document.baseresource);
    case Tag::TunerProperties::connectableResources:
        return text(document.connectableResources);
    case Tag::TunerProperties::parentBaseResource:
        return text(document.parentBaseResource);
    case Tag::TunerProperties::hwProcessing:
        return boolean(document.hwProcessing);
    case Tag::TunerProperties::HRPANSupported:
        return boolean(document.hrpanSupported);
    case Tag::TunerProperties::quantity:
        document.quantity = 0;
        return whole(*document.quantity);
    case Tag::TunerProperties::MaxFFPDelay:
        document.maxFFPDelay = 0;
        return whole(*document.maxFFPDelay);
    case Tag::TunerProperties::StartupModes:
        records(size, [&](quint32 member, qint32) {
            if (member != Tag::StartupModes::StartupMode)
                return false;
            document.startupModes.resize(length());
            for (qint8 &mode : document.startupModes) {
                length();
                text(name);
                mode = modeOfName(name);
            }
            return true;
        });
        return true;
    case Tag::TunerProperties::BandwidthSelection:
        return list(document.bandwidths, [&](PlainBandwidth &bandwidth, quint32 member, qint32) {
            return member == Tag::BandwidthSelection::Name
                ? text(bandwidth.name)
                : member == Tag::BandwidthSelection::MaxBandwidth && real(bandwidth.max);
        });
    case Tag::TunerProperties::Component:
        return list(document.components,
                    [&](PlainComponent &component, quint32 member, qint32) { return read(component, member); });
    default:
        return false;
    }
}

bool Reader::read(PlainComponent &component, quint32 tag)
{
    switch (tag) {
    case Tag::Component::type:
        return text(component.type);
    case Tag::Component::name:
        return text(component.name);
    case Tag::Component::displayName:
        return text(component.displayName);
    case Tag::Component::optional:
        return boolean(component.optional);
    case Tag::Component::Node:
        return list(component.nodes, [&](PlainNode &node, quint32 member, qint32) {
            if (member == Tag::Node::id)
                return text(node.id);
            if (member != Tag::Node::ValueItem)
                return false;
            return list(node.values, [&](PlainValue &value, quint32 alternative, qint32 size) {
                for (int kind = 0; kind < 10; ++kind) {
                    if (Tag::alternatives[kind] == alternative) {
                        value.kind = Kind(kind);
                        records(size, [&](quint32 field, qint32) { return read(value, field); });
                        return true;
                    }
                }
                return false;
            });
        });
    default:
        return false;
    }
}

bool Reader::read(PlainValue &value, quint32 tag)
{
    switch (tag) {
    case Tag::ValueBoolean::id:
        return text(value.id);
    case Tag::ValueSelection::text:
    case Tag::ValueString::value:
        return text(value.text);
    case Tag::ValueSelection::index:
        return whole(value.index);
    case Tag::ValueBoolean::value:
        return boolean(value.boolean);
    case Tag::ValueSelection::value:
        return real(value.real.value);
    case Tag::ValueNumericFloat::value:
        return realOfFloat(value.real.value);
    case Tag::ValueNumericFloat::min:
        return realOfFloat(value.real.min);
    case Tag::ValueNumericFloat::max:
        return realOfFloat(value.real.max);
    case Tag::ValueNumericFloat::step:
        return realOfFloat(value.real.step);
    case Tag::ValueNumericInt::value:
    case Tag::ValueNumericInt64::value:
        return whole(value.whole.value);
    case Tag::ValueNumericInt::min:
    case Tag::ValueNumericInt64::min:
        return whole(value.whole.min);
    case Tag::ValueNumericInt::max:
    case Tag::ValueNumericInt64::max:
        return whole(value.whole.max);
    case Tag::ValueNumericInt::step:
    case Tag::ValueNumericInt64::step:
        return whole(value.whole.step);
    case Tag::ValueSelection::SelectionItem:
        return list(value.items, [&](PlainItem &item, quint32 member, qint32) {
            return member == Tag::SelectionItem::name ? text(item.text)
                                                      : member == Tag::SelectionItem::value && real(item.number);
        });
    case Tag::ValueStringList::StringItem:
        return list(value.items, [&](PlainItem &item, quint32 member, qint32) {
            return member == Tag::ValueString::value && text(item.text);
        });
    default:
        return false;
    }
}

} // namespace

PlainDocument readRecords(const QByteArray &representation)
{
    QDataStream stream(representation);
    return Reader(stream).document();
}

} // namespace Bench

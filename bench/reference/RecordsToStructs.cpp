// SPDX-License-Identifier: MIT
#include "StructRecords.h"

#include <stdexcept>

#include <QDataStream>

#include "RecordTags.h"

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
    case Tag::name:
        return text(document.name);
    case Tag::documentType:
        text(name);
        document.type = typeOfName(name);
        return true;
    case Tag::baseresource:
        return text(document.baseresource);
    case Tag::connectableResources:
        return text(document.connectableResources);
    case Tag::parentBaseResource:
        return text(document.parentBaseResource);
    case Tag::hwProcessing:
        return boolean(document.hwProcessing);
    case Tag::hrpanSupported:
        return boolean(document.hrpanSupported);
    case Tag::quantity:
        document.quantity = 0;
        return whole(*document.quantity);
    case Tag::maxFFPDelay:
        document.maxFFPDelay = 0;
        return whole(*document.maxFFPDelay);
    case Tag::startupModes:
        records(size, [&](quint32 member, qint32) {
            if (member != Tag::startupMode)
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
    case Tag::bandwidthSelection:
        return list(document.bandwidths, [&](PlainBandwidth &bandwidth, quint32 member, qint32) {
            return member == Tag::bandwidthName ? text(bandwidth.name)
                                                : member == Tag::maxBandwidth && real(bandwidth.max);
        });
    case Tag::component:
        return list(document.components,
                    [&](PlainComponent &component, quint32 member, qint32) { return read(component, member); });
    default:
        return false;
    }
}

bool Reader::read(PlainComponent &component, quint32 tag)
{
    switch (tag) {
    case Tag::componentType:
        return text(component.type);
    case Tag::name:
        return text(component.name);
    case Tag::displayName:
        return text(component.displayName);
    case Tag::optional:
        return boolean(component.optional);
    case Tag::node:
        return list(component.nodes, [&](PlainNode &node, quint32 member, qint32) {
            if (member == Tag::id)
                return text(node.id);
            if (member != Tag::valueItem)
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
    case Tag::id:
        return text(value.id);
    case Tag::text:
    case Tag::textValue:
        return text(value.text);
    case Tag::index:
        return whole(value.index);
    case Tag::booleanValue:
        return boolean(value.boolean);
    case Tag::doubleValue:
        return real(value.real.value);
    case Tag::ofFloat[0]:
        return realOfFloat(value.real.value);
    case Tag::ofFloat[1]:
        return realOfFloat(value.real.min);
    case Tag::ofFloat[2]:
        return realOfFloat(value.real.max);
    case Tag::ofFloat[3]:
        return realOfFloat(value.real.step);
    case Tag::ofInt[0]:
    case Tag::ofInt64[0]:
        return whole(value.whole.value);
    case Tag::ofInt[1]:
    case Tag::ofInt64[1]:
        return whole(value.whole.min);
    case Tag::ofInt[2]:
    case Tag::ofInt64[2]:
        return whole(value.whole.max);
    case Tag::ofInt[3]:
    case Tag::ofInt64[3]:
        return whole(value.whole.step);
    case Tag::selectionItem:
        return list(value.items, [&](PlainItem &item, quint32 member, qint32) {
            return member == Tag::name ? text(item.text) : member == Tag::doubleValue && real(item.number);
        });
    case Tag::stringItem:
        return list(value.items, [&](PlainItem &item, quint32 member, qint32) {
            return member == Tag::textValue && text(item.text);
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

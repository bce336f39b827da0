// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Member.h"
#include "framework/Table.h"
#include "framework/XmlDocument.h"
#include "framework/XmlOutput.h"

namespace JobXml {

// --- Writing ---------------------------------------------------------------------------------------------------------

/// The element of an object of a derived class, to which that class adds attributes and elements. Attributes must
/// precede content, so they are written as soon as content of the base follows, or the end of the element.
class Q_DECL_HIDDEN DataObject::OwnXml final : public XmlOutput
{
public:
    OwnXml(const DataObject &object, QXmlStreamWriter &writer)
        : m_object(object), m_writer(writer), m_output(writer) { }

    void writeStartElement(const QString &name) override
    {
        endStartTag();
        m_output.writeStartElement(name);
        ++m_depth;
    }
    void writeEndElement() override
    {
        endStartTag();
        if (m_depth == 1)
            m_object.writeOwnElements(m_writer);
        m_output.writeEndElement();
        --m_depth;
    }
    void writeAttribute(const QString &name, const QString &text) override { m_output.writeAttribute(name, text); }
    void writeAttribute(const QString &name, QLatin1String number) override { m_output.writeAttribute(name, number); }
    void writeTextElement(const QString &name, const QString &text) override
    {
        endStartTag();
        m_output.writeTextElement(name, text);
    }
    void writeTextElement(const QString &name, QLatin1String number) override
    {
        endStartTag();
        m_output.writeTextElement(name, number);
    }

private:
    void endStartTag()
    {
        if (m_depth == 1 && !std::exchange(m_hasOwnAttributes, true))
            m_object.writeOwnAttributes(m_writer);
    }

    const DataObject &m_object;
    QXmlStreamWriter &m_writer;
    XmlWriterOutput m_output;
    int m_depth = 0;
    bool m_hasOwnAttributes = false;
};

void DataObject::writeOwnAttributes(QXmlStreamWriter &) const { }

void DataObject::writeOwnElements(QXmlStreamWriter &) const { }

void DataObject::GetXml(QXmlStreamWriter &writer) const
{
    if (!mayWrite())
        return;
    if (isOfDerivedClass()) {
        OwnXml output(*this, writer);
        writeElement(output);
    } else {
        XmlWriterOutput output(writer);
        writeElement(output);
    }
}

bool DataObject::composeXml(QByteArray &utf8) const
{
    if (isOfDerivedClass())
        return false; // whose GetXml() may be another
    if (!mayWrite())
        return true;
    XmlDocument document;
    writeElement(document);
    if (document.isFaithful())
        utf8 = document.takeUtf8();
    return document.isFaithful();
}

void DataObject::writeNestedXml(XmlOutput &output, Preparation preparation) const
{
    if (mayWriteNested(preparation))
        writeElement(output);
}

void DataObject::writeElement(XmlOutput &output) const
{
    output.writeStartElement(GetObjectName());
    writeMembers(output);
    output.writeEndElement();
}

void DataObject::writeMembers(XmlOutput &output) const
{
    Block &own = Member::block(*this);
    for (const Member *member : info().writtenOrder())
        member->writeXml(*this, own, output);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

/// While the content of an object is read, exceptions or not: it is known what the object has propagated, and the
/// reader does not process namespaces. It looks each name up among all that are declared around it, and unknown
/// elements can be nested without end.
class DataObject::ReadingContent
{
public:
    ReadingContent(const DataObject &object, QXmlStreamReader &reader, bool hasPropagated)
        : m_object(object), m_reader(reader), m_outer(innermost), m_namespaces(reader.namespaceProcessing()),
          m_propagated(object.environment()), m_hasPropagated(hasPropagated)
    {
        innermost = this;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(false);
    }
    ReadingContent(const ReadingContent &) = delete;
    ReadingContent &operator=(const ReadingContent &) = delete;
    ~ReadingContent()
    {
        innermost = m_outer;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(true);
    }

    /// The object's own, if it is the one that is being read.
    static ReadingContent *of(const DataObject &object)
    {
        return innermost && &innermost->m_object == &object ? innermost : nullptr;
    }

    /// Whether the children follow the flag and the logger that the object has now; a derived class may change these
    /// from one element to the next.
    bool hasPropagated() const { return m_hasPropagated && m_propagated == m_object.environment(); }
    void notePropagation()
    {
        m_propagated = m_object.environment();
        m_hasPropagated = true;
    }

private:
    // Objects have no room for what matters only while they are read.
    static thread_local ReadingContent *innermost;

    const DataObject &m_object;
    QXmlStreamReader &m_reader;
    ReadingContent *const m_outer;
    const bool m_namespaces;
    REPORTGENERATOR::EnvironmentPointer m_propagated;
    bool m_hasPropagated;
};

thread_local DataObject::ReadingContent *DataObject::ReadingContent::innermost = nullptr;

void DataObject::handOverOnce() const
{
    ReadingContent *const reading = ReadingContent::of(*this);
    if (reading && reading->hasPropagated())
        return;
    handOver();
    if (reading)
        reading->notePropagation();
}

void DataObject::ProcessXml(QXmlStreamReader &reader)
{
    const bool isNew = !m_block;
    block();
    readAttributes(reader);
    readContent(reader, reader.name().toString(), isNew);
}

void DataObject::walkContent(QXmlStreamReader &reader, const QString &name)
{
    readStartedContent(reader, name, false);
}

// For a child, on whose start the reader stands.
void DataObject::readElement(QXmlStreamReader &reader, const QString &name)
{
    const bool isNew = !m_block;
    block();
    if (info().attributeCount != 0)
        readAttributes(reader);
    readStartedContent(reader, name, isNew);
}

// The reader's attributes are given back before it reads on: what holds on to them makes it copy them.
void DataObject::readAttributes(QXmlStreamReader &reader)
{
    const QXmlStreamAttributes attributes = reader.attributes();
    const int count = attributes.size();
    int next = 0; // where the next one is expected: objects write them in the order of the rows
    for (const Member *member : info().attributes()) {
        int at = next;
        for (int tried = 0; tried < count; ++tried, ++at) {
            if (at == count)
                at = 0;
            const QXmlStreamAttribute &attribute = attributes.at(at);
            if (member->isNamed(attribute.qualifiedName())) {
                member->readXmlAttribute(*this, attribute.value());
                next = at + 1;
                break;
            }
        }
    }
}

void DataObject::readContent(QXmlStreamReader &reader, const QString &name, bool isNew)
{
    if (!reader.atEnd() && !reader.hasError())
        readStartedContent(reader, name, isNew);
}

void DataObject::readStartedContent(QXmlStreamReader &reader, const QString &name, bool isNew)
{
    if (info().children == 0 && !reader.namespaceProcessing() && !isOfDerivedClass()) {
        processContent(reader, name); // most objects: there is nobody to hand over to
        return;
    }
    // With new data there is nobody either: what there is was handed flag and logger with the data.
    const ReadingContent reading(*this, reader, isNew && !isOfDerivedClass());
    const quint16 lists = listsToFill();
    processContent(reader, name);
    squeeze(lists);
}

// Lists to which something is added again and again keep their room, and so do those that a caller has given some.
quint16 DataObject::listsToFill() const
{
    if (!m_block) // a derived class need not have created it before the walk
        return info().lists;
    if (info().lists == 0)
        return 0;
    const Block &own = Member::block(*this);
    unsigned lists = 0;
    info().forEach(info().lists, [&](const Member &member) {
        if (!member.hasRoom(own))
            lists |= 1U << member.bit();
    });
    return quint16(lists);
}

void DataObject::squeeze(quint16 lists)
{
    if (lists == 0 || !m_block)
        return;
    Block &own = block();
    info().forEach(lists, [&](const Member &member) { member.squeeze(own); });
}

void DataObject::ProcessXmlStartElement(QXmlStreamReader &reader)
{
    handOverOnce();
    Member::block(*this);
    if (!readMemberElement(reader))
        skipElement(reader);
}

bool DataObject::readMemberElement(QXmlStreamReader &reader)
{
    const QStringView name = reader.name();
    const auto read = [&](const ClassInfo::Rows &rows) {
        for (const Member *member : rows) {
            if (member->isNamed(name)) {
                member->readXmlElement(*this, reader);
                return true;
            }
        }
        return false;
    };
    return read(info().elements()) || read(info().attributes()); // elements are what is expected
}

// By name, not by depth: an element of the same name inside ends the skipping, as readers of these documents expect.
void DataObject::skipElement(QXmlStreamReader &reader)
{
    const QString name = reader.name().toString();
    do {
        reader.readNext();
    } while (!reader.atEnd() && !reader.hasError() && reader.name() != name); // a device may claim more than it has
}

} // namespace JobXml

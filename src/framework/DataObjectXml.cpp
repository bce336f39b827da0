// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Behavior.h"
#include "framework/Child.h"
#include "framework/Member.h"
#include "framework/Propagation.h"
#include "framework/XmlDocument.h"
#include "framework/XmlOutput.h"

namespace JobXml {

// --- Writing ---------------------------------------------------------------------------------------------------------

namespace {

/// The element of an object of a derived class, to which that class adds attributes and elements. Attributes must
/// precede content, so they are written before the first content of the base, or before the end of the element.
class DerivedOutput final : public XmlOutput
{
public:
    DerivedOutput(const DataObject &object, QXmlStreamWriter &writer)
        : m_object(object), m_writer(writer), m_output(writer)
    {
    }

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
            ObjectAccess::writeOwnElements(m_object, m_writer);
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
            ObjectAccess::writeOwnAttributes(m_object, m_writer);
    }

    const DataObject &m_object;
    QXmlStreamWriter &m_writer;
    XmlWriterOutput m_output;
    int m_depth = 0;
    bool m_hasOwnAttributes = false;
};

} // namespace

void DataObject::writeOwnAttributes(QXmlStreamWriter &) const { }

void DataObject::writeOwnElements(QXmlStreamWriter &) const { }

void DataObject::GetXml(QXmlStreamWriter &writer) const
{
    if (!prepareToWrite(*this))
        return;
    const auto write = [&](XmlOutput &&output) { ObjectAccess::behavior(*this).writeElement(*this, output); };
    if (ObjectAccess::isOfDerivedClass(*this))
        write(DerivedOutput(*this, writer));
    else
        write(XmlWriterOutput(writer));
}

bool DataObject::composeXml(QByteArray &utf8) const
{
    if (ObjectAccess::isOfDerivedClass(*this))
        return false; // a derived class may override GetXml()
    XmlDocument document;
    if (!compose(*this, document, [&] { ObjectAccess::behavior(*this).writeElement(*this, document); }))
        return true;
    if (document.isExact())
        utf8 = document.takeUtf8();
    return document.isExact();
}

void Child::writeXml(const DataObject &child, const DataObject &parent, XmlOutput &output, bool isChecked)
{
    if (prepareToWrite(child, parent, output, isChecked))
        ObjectAccess::behavior(child).writeElement(child, output);
}

void Behavior::writeElement(const DataObject &object, XmlOutput &output) const
{
    output.writeStartElement(object.GetObjectName());
    writeMembers(object, output);
    output.writeEndElement();
}

void Behavior::writeMembers(const DataObject &object, XmlOutput &output)
{
    Block &own = ObjectAccess::block(object);
    for (const Member *member : ObjectAccess::info(object).writtenOrder())
        member->writeXml(object, own, output);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

namespace {

/// Exists while the content of an object is read. Stores what the object has propagated. Also turns off the reader's
/// namespace processing, which looks up each name among all enclosing declarations: unknown elements can be nested
/// without limit.
class ContentRead
{
public:
    ContentRead(const DataObject &object, QXmlStreamReader &reader, bool hasPropagated)
        : m_object(object), m_reader(reader), m_outer(innermost), m_namespaces(reader.namespaceProcessing()),
          m_propagated(ObjectAccess::environment(object)), m_hasPropagated(hasPropagated)
    {
        innermost = this;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(false);
    }
    ContentRead(const ContentRead &) = delete;
    ContentRead &operator=(const ContentRead &) = delete;
    ~ContentRead()
    {
        innermost = m_outer;
        if (m_namespaces)
            m_reader.setNamespaceProcessing(true);
    }

    /// Propagates the flag and the logger of an object before a child element is read, but only before the first one
    /// and after a derived class has changed either. Propagating before every child element would make reading
    /// quadratic.
    static void propagate(const DataObject &object)
    {
        ContentRead *const read = innermost && &innermost->m_object == &object ? innermost : nullptr;
        if (read && read->m_hasPropagated && read->m_propagated == ObjectAccess::environment(object))
            return;
        Propagation::propagate(object);
        if (read) {
            read->m_propagated = ObjectAccess::environment(object);
            read->m_hasPropagated = true;
        }
    }

private:
    // Here rather than in the objects, which need it only while they are read.
    static thread_local ContentRead *innermost;

    const DataObject &m_object;
    QXmlStreamReader &m_reader;
    ContentRead *const m_outer;
    const bool m_namespaces;
    REPORTGENERATOR::EnvironmentPointer m_propagated;
    bool m_hasPropagated;
};

thread_local ContentRead *ContentRead::innermost = nullptr;

// Lists that are read for the first time. All others, and those for which a caller reserved memory, keep their
// capacity.
quint16 listsToFill(const DataObject &object)
{
    const ClassInfo &info = ObjectAccess::info(object);
    if (!ObjectAccess::existingBlock(object)) // a derived class may not have created it yet
        return info.childLists;
    if (info.childLists == 0)
        return 0;
    const Block &own = ObjectAccess::block(object);
    unsigned lists = 0;
    info.forEach(info.childLists, [&](const Member &member) {
        if (!member.hasCapacity(own))
            lists |= 1U << member.bit();
    });
    return quint16(lists);
}

void squeeze(const DataObject &object, quint16 lists)
{
    if (lists == 0 || !ObjectAccess::existingBlock(object))
        return;
    Block &own = ObjectAccess::block(object);
    ObjectAccess::info(object).forEach(lists, [&](const Member &member) { member.squeeze(own); });
}

/// Reads the content of the element `name`, whose start tag the reader has just read, up to its end. `isNew` means that
/// the object had no data before.
void readContent(DataObject &object, QXmlStreamReader &reader, const QString &name, bool isNew)
{
    const bool isDerived = ObjectAccess::isOfDerivedClass(object);
    if (ObjectAccess::info(object).children == 0 && !reader.namespaceProcessing() && !isDerived) {
        ObjectAccess::processContent(object, reader, name); // most objects: there are no children to propagate to
        return;
    }
    // New data inherited flag and logger when they were created.
    const ContentRead read(object, reader, isNew && !isDerived);
    const quint16 lists = listsToFill(object);
    ObjectAccess::processContent(object, reader, name);
    squeeze(object, lists);
}

bool readMemberElement(DataObject &object, QXmlStreamReader &reader)
{
    const QStringView name = reader.name();
    const ClassInfo &info = ObjectAccess::info(object);
    const auto read = [&](const ClassInfo::Rows &rows) {
        for (const Member *member : rows) {
            if (member->isNamed(name)) {
                member->readXmlElement(object, reader);
                return true;
            }
        }
        return false;
    };
    return read(info.elements()) || read(info.attributes()); // elements first, because they are more likely
}

} // namespace

void DataObject::ProcessXml(QXmlStreamReader &reader)
{
    const bool isNew = !IsInitialized();
    ObjectAccess::block(*this);
    ObjectAccess::behavior(*this).readAttributes(*this, reader);
    if (!reader.atEnd() && !reader.hasError())
        readContent(*this, reader, reader.name().toString(), isNew);
}

void DataObject::walkContent(QXmlStreamReader &reader, const QString &name)
{
    readContent(*this, reader, name, false);
}

bool Child::readXml(DataObject &child, QXmlStreamReader &reader, const QString &name)
{
    const bool isNew = !child.IsInitialized();
    ObjectAccess::block(child);
    const ClassInfo &info = ObjectAccess::info(child);
    if (info.attributeCount != 0)
        info.behavior.readAttributes(child, reader);
    readContent(child, reader, name, isNew);
    return !reader.hasError();
}

// Releases the reader's attributes before it continues: the reader copies them as long as another copy exists.
void Behavior::readAttributes(DataObject &object, QXmlStreamReader &reader) const
{
    const QXmlStreamAttributes attributes = reader.attributes();
    const int count = attributes.size();
    int next = 0; // the expected index: objects write attributes in the order of the rows
    for (const Member *member : ObjectAccess::info(object).attributes()) {
        int at = next;
        for (int tried = 0; tried < count; ++tried, ++at) {
            if (at == count)
                at = 0;
            const QXmlStreamAttribute &attribute = attributes.at(at);
            if (member->isNamed(attribute.qualifiedName())) {
                member->readXmlAttribute(object, attribute.value());
                next = at + 1;
                break;
            }
        }
    }
}

void DataObject::ProcessXmlStartElement(QXmlStreamReader &reader)
{
    ContentRead::propagate(*this);
    ObjectAccess::block(*this);
    if (!readMemberElement(*this, reader))
        ObjectAccess::behavior(*this).readUnknownElement(*this, reader);
}

// Skips to the next start or end of an element with the same name, even if it is nested: the format requires this.
void Behavior::readUnknownElement(DataObject &, QXmlStreamReader &reader) const
{
    const QString name = reader.name().toString();
    do {
        reader.readNext();
    } while (!reader.atEnd() && !reader.hasError() && reader.name() != name); // a device may announce more than it has
}

} // namespace JobXml

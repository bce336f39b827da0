// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "framework/Behavior.h"
#include "framework/Child.h"
#include "framework/CollectedReading.h"
#include "framework/Member.h"
#include "framework/Propagation.h"
#include "framework/Utf8Input.h"
#include "framework/XmlDocument.h"
#include "framework/XmlOutput.h"
#include "framework/XmlReaderInput.h"
#include "framework/XmlSubset.h"

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

/// Propagates the flag and the logger of an object before a child element is read, but only before the first one and
/// after foreign code has changed either. Propagating before every child element would make reading quadratic.
class PropagatedOnce
{
public:
    PropagatedOnce(const DataObject &object, bool hasPropagated)
        : m_object(object), m_propagated(ObjectAccess::environment(object)), m_hasPropagated(hasPropagated)
    {
    }

    void operator()()
    {
        const REPORTGENERATOR::EnvironmentPointer &current = ObjectAccess::environment(m_object);
        if (m_hasPropagated
            && (m_propagated == current
                || (m_propagated->validate == current->validate && m_propagated->logger == current->logger)))
            return;
        Propagation::propagate(m_object);
        m_propagated = ObjectAccess::environment(m_object);
        m_hasPropagated = true;
    }

protected:
    const DataObject &m_object;

private:
    REPORTGENERATOR::EnvironmentPointer m_propagated;
    bool m_hasPropagated;
};

/// Exists while the content of an object of a derived class is read, since the class may override
/// ProcessXmlStartElement().
class DerivedContent : public PropagatedOnce
{
public:
    explicit DerivedContent(const DataObject &object) : PropagatedOnce(object, false), m_outer(innermost)
    {
        innermost = this;
    }
    DerivedContent(const DerivedContent &) = delete;
    DerivedContent &operator=(const DerivedContent &) = delete;
    ~DerivedContent() { innermost = m_outer; }

    static void propagate(const DataObject &object)
    {
        if (innermost && &innermost->m_object == &object)
            (*innermost)();
        else
            Propagation::propagate(object);
    }

private:
    // Here rather than in the objects, which need it only while they are read.
    static thread_local DerivedContent *innermost;

    DerivedContent *const m_outer;
};

thread_local DerivedContent *DerivedContent::innermost = nullptr;

/// Turns off the processing of namespaces, which looks up each name among all enclosing declarations: unknown elements
/// can be nested without limit.
class WithoutNamespaces
{
public:
    explicit WithoutNamespaces(XmlInput &input) : m_input(input), m_processed(input.processesNamespaces())
    {
        if (m_processed)
            m_input.processNamespaces(false);
    }
    WithoutNamespaces(const WithoutNamespaces &) = delete;
    WithoutNamespaces &operator=(const WithoutNamespaces &) = delete;
    ~WithoutNamespaces()
    {
        if (m_processed)
            m_input.processNamespaces(true);
    }

private:
    XmlInput &m_input;
    const bool m_processed;
};

/// The lists that are read for the first time: they release the capacity that is left over. All others, and those for
/// which a caller reserved memory, keep theirs.
class NewLists
{
public:
    /// `isNew`: the object had no data before it was read.
    NewLists(const DataObject &object, bool isNew)
        : m_object(object), m_lists(isNew ? ObjectAccess::info(object).childLists : listsOf(object))
    {
    }

    void squeeze() const
    {
        if (m_lists == 0 || !ObjectAccess::existingBlock(m_object))
            return;
        Block &own = ObjectAccess::block(m_object);
        ObjectAccess::info(m_object).forEach(m_lists, [&](const Member &member) { member.squeeze(own); });
    }

private:
    static quint16 listsOf(const DataObject &object)
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

    const DataObject &m_object;
    const quint16 m_lists;
};

void readMemberElement(DataObject &object, XmlInput &input)
{
    const ClassInfo &info = ObjectAccess::info(object);
    const Member *row = input.findRow(info.elements()); // first, because they are more likely
    if (!row)
        row = input.findRow(info.attributes());
    if (row)
        row->readXmlElement(object, input);
    else
        input.storeText(
            nullptr, Source::noPosition, [&] { return input.name(); },
            [&] { info.behavior.readUnknownElement(object, input); });
}

/// Returns whether the end tag of the element `name` was reached.
template <class Prepare>
bool readElements(DataObject &object, XmlInput &input, const XmlName &name, Prepare &&prepare)
{
    for (XmlInput::Tag tag = input.next(); tag != XmlInput::Tag::None; tag = input.next()) {
        if (tag == XmlInput::Tag::Start) {
            prepare();
            readMemberElement(object, input);
        } else if (input.isNamed(name)) {
            return true; // other end tags are left over from elements that were not read to their end
        }
    }
    return false;
}

/// Reads the content of the element `name` of an object of a class of the model, up to its end tag. `isNew` means that
/// the object had no data before, so that they have inherited flag and logger. Returns false if the document ends
/// prematurely.
bool readContent(DataObject &object, XmlInput &input, const XmlName &name, bool isNew)
{
    const WithoutNamespaces namespaces(input);
    const NewLists lists(object, isNew);
    const ClassInfo &info = ObjectAccess::info(object);
    bool isPropagated = isNew || (info.children | info.createdWithTheBlock) == 0;
    bool isWhole = false;
    if (input.runsForeignCode()) {
        PropagatedOnce propagate(object, isPropagated);
        isWhole = readElements(object, input, name, [&] {
            propagate();
            ObjectAccess::block(object);
        });
    } else {
        isWhole = readElements(object, input, name, [&] {
            if (!std::exchange(isPropagated, true))
                Propagation::propagate(object);
        });
    }
    lists.squeeze();
    return isWhole || !input.isBroken();
}

/// The same for the object itself, whose class may be derived.
void readContent(DataObject &object, QXmlStreamReader &reader, const QString &name, bool isNew)
{
    XmlReaderInput input(reader, CollectedReading::visitorFor(object));
    const Source::Frame frame(input, object);
    if (!ObjectAccess::isOfDerivedClass(object)) {
        readContent(object, input, {name, nullptr}, isNew);
        return;
    }
    const WithoutNamespaces namespaces(input);
    const NewLists lists(object, false); // the derived class may have used the data since they were created
    const DerivedContent content(object);
    for (XmlInput::Tag tag = input.next(); tag != XmlInput::Tag::None; tag = input.next()) {
        if (tag == XmlInput::Tag::End && input.isNamed({name, nullptr}))
            break;
        if (tag == XmlInput::Tag::Start)
            input.readDerived([&] { ObjectAccess::processStartElement(object, reader); });
    }
    lists.squeeze();
}

} // namespace

void DataObject::ProcessXml(QXmlStreamReader &reader)
{
    const bool isNew = !IsInitialized();
    ObjectAccess::block(*this);
    {
        XmlReaderInput input(reader, CollectedReading::visitorFor(*this));
        const Source::Frame frame(input, *this);
        ObjectAccess::behavior(*this).readAttributes(*this, input);
    }
    if (!reader.atEnd() && !reader.hasError())
        readContent(*this, reader, reader.name().toString(), isNew);
}

void DataObject::walkContent(QXmlStreamReader &reader, const QString &name)
{
    readContent(*this, reader, name, false);
}

void DataObject::ProcessXmlStartElement(QXmlStreamReader &reader)
{
    DerivedContent::propagate(*this);
    ObjectAccess::block(*this);
    XmlReaderInput input(reader, CollectedReading::visitorFor(*this));
    const Source::Frame frame(input, *this);
    readMemberElement(*this, input);
}

bool DataObject::readXml(const std::function<QByteArray()> &document)
{
    if (ObjectAccess::isOfDerivedClass(*this))
        return false; // a derived class may override ProcessXml() and ProcessXmlStartElement()
    const QByteArray utf8 = document();
    if (!XmlSubset::contains(utf8))
        return false;
    Utf8Input input(utf8, CollectedReading::visitorFor(*this));
    const QByteArray ascii = GetObjectName().toLatin1();
    const XmlName name{GetObjectName(), ascii.constData()};
    if (input.next() != XmlInput::Tag::Start || !input.isNamed(name))
        return false;
    Child::readXml(*this, input, name);
    return true;
}

bool Child::readXml(DataObject &child, XmlInput &input, const XmlName &name)
{
    const bool isNew = !child.IsInitialized();
    ObjectAccess::block(child);
    const Source::Frame frame(input, child);
    const ClassInfo &info = ObjectAccess::info(child);
    if (info.attributeCount != 0)
        info.behavior.readAttributes(child, input);
    return readContent(child, input, name, isNew);
}

void Behavior::readAttributes(DataObject &object, XmlInput &input) const
{
    XmlText text;
    for (const Member *member : ObjectAccess::info(object).attributes()) {
        if (input.findAttribute(member->xmlName(), text))
            member->readXmlAttribute(object, input, text);
    }
}

void Behavior::readUnknownElement(DataObject &, XmlInput &input) const
{
    input.skipToSameName();
}

} // namespace JobXml

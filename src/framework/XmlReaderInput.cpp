// SPDX-License-Identifier: MIT
#include "framework/XmlReaderInput.h"

#include <limits>

#include "framework/Member.h"
#include "text/SameText.h"

namespace JobXml {

using REPORTGENERATOR::isSameText;

namespace {

constexpr int columnBits = 32;

} // namespace

/// The reader only knows how far it has read.
Source::Position XmlReaderInput::position() const
{
    return m_reader.lineNumber() << columnBits | m_reader.columnNumber();
}

void XmlReaderInput::resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const
{
    location.line = int(position >> columnBits);
    location.column = int(position & std::numeric_limits<quint32>::max());
}

XmlInput::Tag XmlReaderInput::next()
{
    releaseAttributes();
    for (;;) {
        switch (m_reader.readNext()) {
        case QXmlStreamReader::StartElement:
            return Tag::Start;
        case QXmlStreamReader::EndElement:
            return Tag::End;
        case QXmlStreamReader::Invalid: // in error, even if a device claims to have more data
        case QXmlStreamReader::EndDocument:
            return Tag::None;
        default:
            break;
        }
    }
}

bool XmlReaderInput::isNamed(const XmlName &name) const
{
    return isSameText(m_reader.name(), name.utf16);
}

const Member *XmlReaderInput::findRow(const ClassInfo::Rows &rows) const
{
    const QStringView name = m_reader.name();
    for (const Member *row : rows) {
        if (isSameText(name, row->xmlName().utf16))
            return row;
    }
    return nullptr;
}

bool XmlReaderInput::findAttribute(const XmlName &name, XmlText &value)
{
    if (!m_hasAttributes) {
        m_attributes = m_reader.attributes();
        m_hasAttributes = true;
        m_expected = 0;
    }
    const Size count = m_attributes.size();
    Size at = m_expected;
    for (Size tried = 0; tried < count; ++tried, ++at) {
        if (at == count)
            at = 0;
        const QXmlStreamAttribute &attribute = m_attributes.at(at);
        if (isSameText(attribute.qualifiedName(), name.utf16)) {
            value = XmlText(attribute.value());
            m_expected = at + 1;
            return true;
        }
    }
    return false;
}

// Before the reader continues: it copies its attributes as long as another copy exists.
void XmlReaderInput::releaseAttributes()
{
    if (m_hasAttributes)
        m_attributes = {};
    m_hasAttributes = false;
}

bool XmlReaderInput::readText(XmlText &text)
{
    releaseAttributes();
    m_text = m_reader.readElementText(QXmlStreamReader::SkipChildElements);
    text = XmlText(m_text);
    return !m_reader.hasError();
}

void XmlReaderInput::skipToSameName()
{
    releaseAttributes();
    const QString name = m_reader.name().toString();
    do {
        m_reader.readNext();
    } while (!m_reader.atEnd() && !m_reader.hasError()
             && m_reader.name() != name); // a device may announce more than it has
}

} // namespace JobXml

// SPDX-License-Identifier: MIT
#include "framework/XmlOutput.h"

#include <algorithm>

#include <QXmlStreamWriter>

namespace JobXml {

void XmlOutput::writeStartElement(const QString &name)
{
    m_writer.writeStartElement(name);
}

void XmlOutput::writeEndElement()
{
    m_writer.writeEndElement();
}

void XmlOutput::writeAttribute(const QString &name, const QString &text)
{
    m_writer.writeAttribute(name, text);
}

void XmlOutput::writeTextElement(const QString &name, const QString &text)
{
    m_writer.writeTextElement(name, text);
}

const QString &XmlOutput::widened(QLatin1String ascii)
{
    m_widened.resize(ascii.size());
    std::transform(ascii.begin(), ascii.end(), m_widened.begin(), [](char c) { return QLatin1Char(c); });
    return m_widened;
}

} // namespace JobXml

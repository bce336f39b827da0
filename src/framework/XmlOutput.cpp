// SPDX-License-Identifier: MIT
#include "framework/XmlOutput.h"

#include <algorithm>

#include <QXmlStreamWriter>

namespace JobXml {

void XmlWriterOutput::writeStartElement(const QString &name)
{
    m_writer.writeStartElement(name);
}

void XmlWriterOutput::writeEndElement()
{
    m_writer.writeEndElement();
}

void XmlWriterOutput::writeAttribute(const QString &name, const QString &text)
{
    m_writer.writeAttribute(name, text);
}

void XmlWriterOutput::writeAttribute(const QString &name, QLatin1String number)
{
    m_writer.writeAttribute(name, widened(number));
}

void XmlWriterOutput::writeTextElement(const QString &name, const QString &text)
{
    m_writer.writeTextElement(name, text);
}

void XmlWriterOutput::writeTextElement(const QString &name, QLatin1String number)
{
    m_writer.writeTextElement(name, widened(number));
}

const QString &XmlWriterOutput::widened(QLatin1String ascii)
{
    m_widened.resize(ascii.size());
    std::transform(ascii.begin(), ascii.end(), m_widened.begin(), [](char c) { return QLatin1Char(c); });
    return m_widened;
}

} // namespace JobXml

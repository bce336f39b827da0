// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QXmlStreamWriter;

namespace JobXml {

/// What an object writes its XML to.
class XmlOutput
{
public:
    explicit XmlOutput(QXmlStreamWriter &writer) : m_writer(writer) { }
    XmlOutput(const XmlOutput &) = delete;
    XmlOutput &operator=(const XmlOutput &) = delete;

    void writeStartElement(const QString &name);
    void writeEndElement();

    /// Of the texts, those of numbers are ASCII.
    /// @{
    void writeAttribute(const QString &name, const QString &text);
    void writeAttribute(const QString &name, QLatin1String ascii) { writeAttribute(name, widened(ascii)); }
    void writeTextElement(const QString &name, const QString &text);
    void writeTextElement(const QString &name, QLatin1String ascii) { writeTextElement(name, widened(ascii)); }
    /// @}

private:
    const QString &widened(QLatin1String ascii);

    QXmlStreamWriter &m_writer;
    QString m_widened; // one for all texts: a string for each would be an allocation for each
};

} // namespace JobXml

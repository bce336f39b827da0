// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "framework/Composition.h"

class QXmlStreamWriter;

namespace JobXml {

/// The target of an object's XML. Texts of numbers are ASCII and contain nothing to escape.
class XmlOutput : public WriteTarget
{
public:
    virtual void writeStartElement(const QString &name) = 0;
    virtual void writeEndElement() = 0;
    virtual void writeAttribute(const QString &name, const QString &text) = 0;
    virtual void writeAttribute(const QString &name, QLatin1String number) = 0;
    virtual void writeTextElement(const QString &name, const QString &text) = 0;
    virtual void writeTextElement(const QString &name, QLatin1String number) = 0;

protected:
    ~XmlOutput() = default;
};

/// A QXmlStreamWriter.
class XmlWriterOutput final : public XmlOutput
{
public:
    explicit XmlWriterOutput(QXmlStreamWriter &writer) : m_writer(writer) { }

    void writeStartElement(const QString &name) override;
    void writeEndElement() override;
    void writeAttribute(const QString &name, const QString &text) override;
    void writeAttribute(const QString &name, QLatin1String number) override;
    void writeTextElement(const QString &name, const QString &text) override;
    void writeTextElement(const QString &name, QLatin1String number) override;

private:
    const QString &widened(QLatin1String ascii);

    QXmlStreamWriter &m_writer;
    QString m_widened; // one for all texts, which saves an allocation for each
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <QXmlStreamReader>

#include "framework/XmlInput.h"

namespace JobXml {

/// A QXmlStreamReader. Its device and its entity resolver may be the caller's.
class XmlReaderInput final : public XmlInput
{
public:
    explicit XmlReaderInput(QXmlStreamReader &reader, const ProblemVisitor *visitor = nullptr)
        : XmlInput(reader.device() || reader.entityResolver(), reader.namespaceProcessing(), visitor), m_reader(reader)
    {
    }

    Tag next() override;
    bool isBroken() const override { return m_reader.hasError(); }
    QString name() const override { return m_reader.name().toString(); }
    bool isNamed(const XmlName &name) const override;
    const Member *findRow(const ClassInfo::Rows &rows) const override;
    bool findAttribute(const XmlName &name, XmlText &value) override;
    Position position() const override;
    bool readText(XmlText &text) override;
    void skipToSameName() override;

private:
    void setNamespaceProcessing(bool process) override { m_reader.setNamespaceProcessing(process); }
    void resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const override;
    void releaseAttributes();

    QXmlStreamReader &m_reader;
    QXmlStreamAttributes m_attributes;
    bool m_hasAttributes = false;
    Size m_expected = 0; // the index of the next attribute to look at
    QString m_text;
};

} // namespace JobXml

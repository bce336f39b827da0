// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

#include <QByteArray>

#include "framework/XmlInput.h"
#include "framework/XmlSubset.h"

namespace JobXml {

/// A document in memory that XmlSubset contains. Reads it directly: the document is known to be well-formed, so this
/// finds the ends of tags and texts without looking at what is in them.
class Utf8Input final : public XmlInput
{
public:
    /// The document must outlive the input.
    explicit Utf8Input(const QByteArray &document)
        : XmlInput(false), m_at(document.constData()), m_end(m_at + document.size())
    {
    }

    Tag next() override;
    bool isBroken() const override { return false; }
    QString name() const override;
    bool isNamed(const XmlName &name) const override;
    const Member *findRow(const ClassInfo::Rows &rows) const override;
    bool findAttribute(const XmlName &name, XmlText &value) override;
    bool readText(XmlText &text) override;
    void skipToSameName() override;

private:
    struct Attribute
    {
        std::string_view name;
        std::string_view value;
    };

    void skipUntagged();
    void takeName(const char *begin);
    void readAttributes();
    void leaveStartTag();
    void readMixedText(XmlText &text);

    const char *m_at; // what has not been read
    const char *const m_end;
    std::string_view m_name; // of the last tag
    bool m_isInStartTag = false; // behind the name, or behind the attributes if they have been read
    bool m_isEmptyElement = false; // whose end tag is next
    bool m_hasAttributes = false;
    int m_attributeCount = 0;
    int m_expected = 0; // the index of the next attribute to look at
    std::array<Attribute, XmlSubset::MostAttributes> m_attributes;
    QString m_text;
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

#include <QByteArray>

#include "framework/Utf8Places.h"
#include "framework/XmlInput.h"
#include "framework/XmlSubset.h"

namespace JobXml {

/// A document in memory that XmlSubset contains. Reads it directly: the document is known to be well-formed, so this
/// finds the ends of tags and texts without looking at what is in them.
class Utf8Input final : public XmlInput
{
public:
    /// The document must outlive the input.
    explicit Utf8Input(const QByteArray &document, const ProblemVisitor *visitor = nullptr)
        : XmlInput(false, false, visitor), m_begin(document.constData()), m_at(m_begin),
          m_end(m_begin + document.size()), m_tag(m_begin), m_texts(document.size()), m_places(document)
    {
    }

    Tag next() override;
    bool isBroken() const override { return false; }
    QString name() const override;
    bool isNamed(const XmlName &name) const override;
    const Member *findRow(const ClassInfo::Rows &rows) const override;
    bool findAttribute(const XmlName &name, XmlText &value) override;
    Position position() const override;
    Position elementPosition() const override { return m_tag - m_begin; }
    bool readText(XmlText &text) override;
    void skipToSameName() override;

private:
    struct Attribute
    {
        std::string_view name;
        std::string_view value;
    };

    void resolve(Position position, REPORTGENERATOR::ErrorLocation &location) const override;

    void skipUntagged();
    void takeName(const char *begin);
    void readAttributes();
    void leaveStartTag();
    void readMixedText(XmlText &text);

    const char *const m_begin;
    const char *m_at; // what has not been read
    const char *const m_end;
    const char *m_tag; // the last tag
    std::string_view m_name; // of the last tag
    bool m_isInStartTag = false; // after the name, or after the attributes if they have been read
    bool m_isEmptyElement = false; // whose end tag is next
    bool m_hasAttributes = false;
    int m_attributeCount = 0;
    int m_expected = 0; // the index of the next attribute to look at
    std::array<Attribute, XmlSubset::MostAttributes> m_attributes;
    QString m_text;
    RecentTexts m_texts;
    mutable Utf8Places m_places;
};

} // namespace JobXml

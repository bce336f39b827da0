// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

#include "framework/Utf8.h"
#include "framework/XmlOutput.h"

namespace JobXml {

/// A whole document as UTF-8, byte for byte as a QXmlStreamWriter writes it with a declaration, an indentation of two
/// spaces and a final line end, and with carriage returns as references. It is faster: QXmlStreamWriter converts and
/// escapes character by character.
class XmlDocument final : public XmlOutput
{
public:
    XmlDocument();

    void writeStartElement(const QString &name) override;
    void writeEndElement() override;
    void writeAttribute(const QString &name, const QString &text) override;
    void writeAttribute(const QString &name, QLatin1String number) override;
    void writeTextElement(const QString &name, const QString &text) override;
    void writeTextElement(const QString &name, QLatin1String number) override;

    /// Discards everything.
    void restart();

    /// False if the document contains a name or a text that only QXmlStreamWriter can write correctly.
    bool isExact() const { return m_isExact; }

    /// The document, once its root element has ended.
    QByteArray takeUtf8();

private:
    enum class Context { Attribute, Element };

    void append(const char *ascii, Size size);
    void append(QLatin1String ascii) { append(ascii.data(), ascii.size()); }
    void appendName(const QString &name);
    void appendText(const QString &text, Context context);
    Size appendSpecialCharacters(const QString &text, Size at, Context context);
    void appendLineOf(Size depth);
    void beginElement(const QString &name);
    void closeStartTag();
    char *room(Size size);

    QByteArray m_utf8;
    Size m_size = 0;
    QVector<QString> m_names; // of the elements that are open
    bool m_isInStartTag = false;
    bool m_isExact = true;
};

} // namespace JobXml

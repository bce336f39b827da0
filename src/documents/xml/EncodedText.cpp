// SPDX-License-Identifier: MIT
#include "documents/xml/EncodedText.h"

#include <algorithm>

#include <QRegularExpression>

#include "text/Printable.h"

namespace TunerDocuments {

namespace {

/// The name of the encoding in the declaration; null if it names none.
QString declaredName(const QByteArray &document)
{
    // Most documents begin like this. Compiling the regular expression takes as long as reading a small one.
    if (document.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"))
        return QString();
    constexpr int longest = 200;
    static const QRegularExpression declaration(
        QStringLiteral(R"(^\s*<\?xml\s[^>]*\bencoding\s*=\s*["']([A-Za-z0-9._:-]+)["'])"));
    return declaration.match(QString::fromLatin1(document.constData(), std::min(longest, int(document.size()))))
        .captured(1);
}

} // namespace

QString textOf(uint character)
{
    if (!QChar::requiresSurrogates(character))
        return QString(QChar(ushort(character)));
    return QString(QChar(QChar::highSurrogate(character))) + QChar(QChar::lowSurrogate(character));
}

EncodedText::EncodedText(const QByteArray &document) : m_document(document), m_utf8(document)
{
    if (const auto encoding = Encodings::ofFirstBytes(document.constData(), document.size())) {
        m_encoding = *encoding;
    } else if (const QString name = declaredName(document); !name.isEmpty()) {
        const auto declared = Encodings::declared(name, std::nullopt);
        m_encoding = declared.value_or(Encoding::Utf8);
        if (!declared)
            m_otherEncoding = name;
    }
    if (m_encoding != Encoding::Utf8)
        m_utf8 = Encodings::decode(m_encoding, document.constData(), document.size()).text.toUtf8();
}

bool EncodedText::isExact() const
{
    if (!m_otherEncoding.isNull())
        return false;
    return m_encoding == Encoding::Utf8 ? Printable::isUtf8(m_document) : encode(m_utf8) == m_document;
}

QString EncodedText::encoding() const
{
    return m_otherEncoding.isNull() ? Encodings::name(m_encoding) : m_otherEncoding;
}

QByteArray EncodedText::encode(const QByteArray &utf8) const
{
    if (m_encoding == Encoding::Utf8)
        return utf8;
    return Encodings::encode(m_encoding, Encodings::decode(Encoding::Utf8, utf8.constData(), utf8.size()).text);
}

bool EncodedText::canEncode(uint character) const
{
    return Encodings::canEncode(m_encoding, character);
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "text/Encoding.h"

namespace TunerDocuments {

/// A character as a text. Unlike QString::fromUcs4(), it does not drop a byte order mark.
QString textOf(uint character);

/// The text of an XML document in its encoding, and in UTF-8 while it is edited.
class EncodedText
{
public:
    /// Determines the encoding as readers do: from the first bytes, then from the declaration.
    explicit EncodedText(const QByteArray &document);

    /// The name of the encoding: "UTF-16LE".
    QString encoding() const;

    /// Whether encode(utf8()) is the document, byte for byte. It is not if bytes encode no character, or
    /// if the encoding is not known.
    bool isExact() const;

    /// The document as UTF-8, including a byte order mark.
    const QByteArray &utf8() const { return m_utf8; }

    /// A text in the encoding of the document.
    QByteArray encode(const QByteArray &utf8) const;

    /// Whether the encoding has the character.
    bool canEncode(uint character) const;

private:
    Encoding m_encoding = Encoding::Utf8;
    QString m_otherEncoding; // that is declared, and that readers refuse
    QByteArray m_document;
    QByteArray m_utf8;
};

} // namespace TunerDocuments

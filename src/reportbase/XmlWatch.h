// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "text/Size.h"

namespace REPORTGENERATOR {

/// Checks an XML document before the reader sees it, and ends it before content that would keep the reader busy for
/// hours, or that not every version of Qt refuses or reads alike.
///
/// QXmlStreamReader compares each attribute of an element, and each that a document type declares, with each other one,
/// so that a document that is one long list of attributes takes quadratic time. No element of a model has more than a
/// dozen. Some versions read a part of a name that is too long, accept any number of document types in any place, or
/// take U+0000 for the end.
///
/// As long as a document is well-formed, the watch knows where the reader will see a tag. Content after an error does
/// not matter, since the reader stops there. But the reader accepts malformed XML declarations, for example with
/// namespaces for the whole document, so these are refused here.
class XmlWatch
{
public:
    static constexpr int MostAttributes = 1024;
    static constexpr int LongestName = 4095; ///< with its prefix, in UTF-16 units

    enum class Refused : quint8 {
        Nothing,
        XmlDeclaration,
        UnknownEncoding,
        OtherEncoding, ///< than the first bytes are in
        WrongBytes,
        CutOffBytes, ///< of the last character
        Character,
        Attributes,
        Name,
        DocumentType,
        InternalSubset
    };

    /// How many of the next characters (or bytes of UTF-8) may be read: all of them, or those before the refused
    /// content.
    template <typename Character>
    Size readable(const Character *text, Size size);

    /// The same only for the head of the document, its XML declaration. Reading stops at the end of the head.
    template <typename Character>
    Size readableHead(const Character *text, Size size);
    bool isHeadRead() const { return m_isHeadRead; }
    /// The size of a beginning that is like that of a declaration, but does not become one.
    int sizeOfBeginning() const { return m_head.endsWith(QLatin1Char('>')) ? 0 : int(m_head.size()); }

    /// The encoding that the XML declaration names; null if it names none.
    QString declaredEncoding() const { return m_encoding; }

    /// The head with UTF-8 as its encoding, in which the reader receives every document. If the encoding is refused,
    /// the head lacks its end, so that the reader does not come to an own conclusion.
    QString readableDeclaration(const QString &head) const;

    /// Ends the document here, unless it has been ended before.
    void refuse(Refused reason);

    /// Why the document was ended; null if it was not.
    QString refusal() const;
    bool isRefused() const { return m_refused != Refused::Nothing; }
    /// Whether the next bytes encode no character.
    bool isWrong() const { return m_refused == Refused::WrongBytes; }
    /// Whether the document lacks only its end.
    bool isCutOff() const { return m_refused == Refused::CutOffBytes; }

private:
    enum class State : quint8 {
        Text,
        Reference,
        TagOpened,
        InTag,
        InEndTag,
        DeclarationOpened,
        CommentOpened,
        InTarget,
        InSection,
        InDocumentType
    };

    bool takeInHead(ushort character);
    bool takeInDeclaration(ushort character);

    bool take(ushort character, int units);
    void takeInText(ushort character);
    void takeTagOpened(ushort character, int units);
    void takeInTag(ushort character, int units);
    bool takeInName(ushort character, int units);
    void beginDocumentType();
    void takeInDocumentType(ushort character, int units);
    void beginSection(char mark, int marks);
    void takeInSection(ushort character);
    bool isInQuotes(ushort character);

    bool m_isHeadRead = false;
    QString m_head;
    QString m_encoding;
    State m_state = State::Text;
    Refused m_refused = Refused::Nothing;
    bool m_mayHaveDocumentType = true;
    ushort m_quote = 0; // that has been opened
    int m_attributes = 0; // of the tag that is being read
    int m_nameSize = 0; // of the name that is being read
    bool m_isReference = false; // whether it is that of a reference in an attribute
    // A comment, CDATA section or processing instruction ends with so many marks and a '>'.
    char m_mark = 0;
    int m_marksOfEnd = 0;
    int m_marks = 0; // the last characters read
};

} // namespace REPORTGENERATOR

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "text/Size.h"

namespace REPORTGENERATOR {

/// Checks an XML document before the reader sees it, and ends it before content that would keep the reader busy for
/// hours.
///
/// QXmlStreamReader compares each attribute of an element, and each that a document type declares, with each other one,
/// so that a document that is one long list of attributes takes quadratic time. No element of a model has more than a
/// dozen.
///
/// As long as a document is well-formed, the watch knows where the reader will see a tag. Content after an error does
/// not matter, since the reader stops there. But the reader accepts malformed XML declarations, for example with
/// namespaces for the whole document, so these are refused here.
class XmlWatch
{
public:
    static constexpr int MostAttributes = 1024;

    /// How many of the next characters (or bytes, if ASCII characters are bytes and other characters contain none) may
    /// be read: all of them, or those before the refused content.
    template <typename Character>
    Size readable(const Character *text, Size size);

    /// The same only for the head of the document, its XML declaration. Reading stops at the end of the head.
    template <typename Character>
    Size readableHead(const Character *text, Size size);
    bool isHeadRead() const { return m_isHeadRead; }

    /// The encoding that the XML declaration names; empty if it names none.
    QString declaredEncoding() const { return m_encoding; }

    /// Why the document was ended; null if it was not.
    QString refusal() const;
    bool isRefused() const { return m_refused != Refused::Nothing; }

private:
    enum class State : quint8 { Text, TagOpened, InTag, DeclarationOpened, CommentOpened, InSection, InDocumentType };
    enum class Refused : quint8 { Nothing, XmlDeclaration, Attributes, InternalSubset };

    bool takeInHead(ushort character);
    bool takeInDeclaration(ushort character);
    bool readDeclaration(const QString &declaration);

    bool take(ushort character);
    void takeInTag(ushort character);
    void takeInDocumentType(ushort character);
    void beginSection(char mark, int marks);
    void takeInSection(ushort character);
    bool isInQuotes(ushort character);

    bool m_isHeadRead = false;
    QString m_head;
    QString m_encoding;
    State m_state = State::Text;
    Refused m_refused = Refused::Nothing;
    ushort m_quote = 0; // that has been opened
    int m_attributes = 0; // of the tag that is being read
    // A comment, CDATA section or processing instruction ends with so many marks and a '>'.
    char m_mark = 0;
    int m_marksOfEnd = 0;
    int m_marks = 0; // the last characters read
};

} // namespace REPORTGENERATOR

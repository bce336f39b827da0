// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace REPORTGENERATOR {

/// Watches an XML document on its way to the reader, and ends it in front of what would keep the reader busy for hours.
///
/// QXmlStreamReader compares each attribute of an element with each other one, and likewise those that a document type
/// declares, so that a document which is one long list of attributes takes time by its square. No element of a model
/// has more than a dozen.
///
/// As long as a document is well-formed, the watch knows where the reader will see a tag. What follows a fault does not
/// matter, since the reader does not come that far. But the reader takes faulty XML declarations, with namespaces for
/// the whole document for one, so these are refused here.
class XmlWatch
{
public:
    static constexpr int MostAttributes = 1024;

    /// How many of the next characters (or bytes, if ASCII characters are bytes and other characters contain none)
    /// may be read: all of them, or those in front of what is refused.
    template <typename Character>
    int readable(const Character *text, int size);

    /// The same for the head of the document alone, its XML declaration. Where the head is read to its end, the rest is
    /// left.
    template <typename Character>
    int readableHead(const Character *text, int size);
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
    int m_marks = 0; // that have come last
};

} // namespace REPORTGENERATOR

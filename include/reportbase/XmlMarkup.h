// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QLatin1String>
#include <QVector>

#include <reportbase/Export.h>

namespace REPORTGENERATOR {

/// Where the elements, attributes and comments of an XML document are in its text: for programs that change a part of a
/// document and keep the rest, or that show the place of something.
///
/// Made for documents that a reader has accepted: it finds the ends of tags and sections without looking at what is in
/// them, so it is much faster than a reader, and it expands and checks nothing. Every other input has some result as
/// well, and isComplete() is then usually false; nothing outside of the document is ever read.
///
/// Places are offsets of bytes; all are within the document. The structures for the parts of a document are as small as
/// they can be, because there are many of them: no later version adds members.
class REPORTBASE_EXPORT XmlMarkup
{
public:
    /// A part of the document, from `begin` up to `end`, which is not included.
    struct Span
    {
        int begin = 0; ///< the offset of its first byte
        int end = 0; ///< the offset after its last byte

        /// The number of its bytes.
        int size() const { return end - begin; }
    };

    /// An attribute: `name="value"`.
    struct Attribute
    {
        Span name; ///< with the prefix
        Span value; ///< between the quotes, with its references

        /// From the name to the closing quote.
        Span whole() const { return {name.begin, value.end + 1}; }
    };

    /// An element. Its index is its number in the order of start tags.
    struct Element
    {
        Span name; ///< in the start tag, with the prefix
        Span startTag; ///< with its brackets
        Span content; ///< between the tags; empty, at the end of the tag, for an empty-element tag
        int end = 0; ///< after the end tag
        int parent = -1; ///< the index of the element that contains it; -1 for the root
        int next = 0; ///< the index of the first element after its end: those in between are inside
        int firstAttribute = 0; ///< the index of its first attribute
        int attributeCount = 0; ///< how many attributes it has; they are in a row
        bool isEmptyTag = false; ///< `<a/>`
        /// Whether an element of the same name, without prefixes, is inside, at any depth.
        bool containsItsName = false;

        /// From the start tag to the end tag.
        Span whole() const { return {startTag.begin, end}; }
    };

    /// A comment, with its marks.
    struct Comment
    {
        Span whole; ///< with its marks
        int parent = -1; ///< the index of the element that contains it; -1 outside of the root
        int next = 0; ///< the index of the first element after it
    };

    /// A part of a text: of the value of an attribute, or of what is between tags.
    struct TextPart
    {
        Span span; ///< where it is; not empty
        int newSize = 0; ///< the number of bytes that replace it
    };

    /// Finds them in a document in UTF-8 or another encoding in which ASCII characters are bytes of their own.
    explicit XmlMarkup(const QByteArray &document);
    ~XmlMarkup();
    XmlMarkup(const XmlMarkup &) = delete;
    XmlMarkup &operator=(const XmlMarkup &) = delete;

    /// Exchanges the document for one in which these parts of texts were replaced, in ascending order. They contain no
    /// tags and comments, neither before nor after. The result is that of another XmlMarkup, in a small part of the
    /// time.
    void replaceTexts(const QByteArray &document, const QVector<TextPart> &parts);

    /// Whether every start tag has its end tag, and everything that was opened is closed, in at most 1,000 levels.
    bool isComplete() const { return m_isComplete; }

    /// The document.
    const QByteArray &document() const { return m_document; }
    /// All elements, in the order of their start tags; the first one is the root.
    const QVector<Element> &elements() const { return m_elements; }
    /// The attributes of all elements, in the order of the document.
    const QVector<Attribute> &attributes() const { return m_attributes; }
    /// All comments, in the order of the document.
    const QVector<Comment> &comments() const { return m_comments; }

    /// The bytes of a part, as a view of the document.
    QLatin1String bytes(const Span &span) const
    {
        return QLatin1String(m_document.constData() + span.begin, span.size());
    }

    /// The name of an element without its prefix, as a view of the document.
    QLatin1String localName(const Element &element) const;

    /// The attribute of exactly that name, prefix included, as an index into attributes(); -1 if the element has none.
    int findAttribute(const Element &element, QLatin1String name) const;

private:
    class Scanner;

    QByteArray m_document;
    QVector<Element> m_elements;
    QVector<Attribute> m_attributes;
    QVector<Comment> m_comments;
    bool m_isComplete = false;
    struct Additions;
    std::shared_ptr<Additions> m_additions; // what later versions add
};

} // namespace REPORTGENERATOR

Q_DECLARE_TYPEINFO(REPORTGENERATOR::XmlMarkup::Span, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(REPORTGENERATOR::XmlMarkup::TextPart, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(REPORTGENERATOR::XmlMarkup::Attribute, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(REPORTGENERATOR::XmlMarkup::Element, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(REPORTGENERATOR::XmlMarkup::Comment, Q_PRIMITIVE_TYPE);

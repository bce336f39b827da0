// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include <QByteArray>
#include <QString>

/// An attribute of an element. The name is a constant; the value may contain any character. An attribute without a
/// value is omitted.
struct Attribute
{
    Attribute(const char *name_, const char *value_) : name(name_), value(QString::fromUtf8(value_)) { }
    Attribute(const char *name_, QString value_) : name(name_), value(std::move(value_)) { }

    const char *name;
    QString value;
};

using Attributes = std::initializer_list<Attribute>;

/// Builds hypertext. Values may contain any character and stay text: this is the only place where texts become markup.
/// The result is also well-formed XML, once all elements are closed.
class Markup
{
public:
    /// Adds a text of the document. Characters that are invisible, or that would change the order of others, become
    /// signs: elements of the class "sign" whose title is the code, such as U+000A.
    void text(const QString &text);

    /// Adds a text without an element of its own.
    void words(const QString &text) { m_text += escaped(text); }
    void words(const char *text) { words(QString::fromUtf8(text)); }

    void element(const char *tag, Attributes attributes, const QString &text);
    void element(const char *tag, Attributes attributes, const char *text = "");
    /// Adds an element without an end tag.
    void voidElement(const char *tag, Attributes attributes);

    /// Appends the other markup, which is empty afterwards.
    void append(Markup &&other);

    /// Adds source code as the content of an element that contains no markup.
    void source(const char *tag, const QString &code);

    /// Passes the UTF-8 text to the action, piece by piece.
    void forEachPiece(const std::function<void(const QByteArray &)> &action) const;

private:
    friend class Tag;

    static QByteArray escaped(const QString &text);
    void open(const char *tag, Attributes attributes, const char *end = ">");
    void close(const char *tag);

    // A page may be much larger than its document, so it is held once, in pieces that are never copied.
    std::vector<QByteArray> m_pieces;
    QByteArray m_text; // the last piece
};

/// A length or a position in a drawing, as an attribute: a part of the whole.
QString percent(double part);

/// An element around everything that is added to the markup during its lifetime.
class Tag
{
public:
    Tag(Markup &markup, const char *tag, Attributes attributes = {}) : m_markup(markup), m_tag(tag)
    {
        m_markup.open(tag, attributes);
    }
    ~Tag() { m_markup.close(m_tag); }
    Tag(const Tag &) = delete;
    Tag &operator=(const Tag &) = delete;

private:
    Markup &m_markup;
    const char *m_tag;
};

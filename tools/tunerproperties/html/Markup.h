// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include <QByteArray>
#include <QString>

/// An attribute of an element. The name is ours; the value may hold any character. Without a value it is left out.
struct Attribute
{
    Attribute(const char *name_, const char *value_) : name(name_), value(QString::fromUtf8(value_)) { }
    Attribute(const char *name_, QString value_) : name(name_), value(std::move(value_)) { }

    const char *name;
    QString value;
};

using Attributes = std::initializer_list<Attribute>;

/// Hypertext that is made piece by piece. What it is made of may hold any character and stays text: this is the one
/// place where texts become markup. The result is well-formed XML as well, all that is opened having been closed.
class Markup
{
public:
    /// A text of the document. Characters that are not to be seen, or that would change the order in which others are
    /// seen, stand as signs: elements of the class "sign" whose title tells the code, U+000A.
    void text(const QString &text);

    /// Words of ours, or of the document, that stand in no element of their own.
    void words(const QString &text) { m_text += escaped(text); }
    void words(const char *text) { words(QString::fromUtf8(text)); }

    void element(const char *tag, Attributes attributes, const QString &text);
    void element(const char *tag, Attributes attributes, const char *text = "");
    /// Without an end tag.
    void voidElement(const char *tag, Attributes attributes);

    /// Puts in what was made apart, which is empty then.
    void append(Markup &&other);

    /// Source code, as the content of an element in which nothing is markup.
    void source(const char *tag, const QString &code);

    /// In UTF-8, piece by piece.
    void forEachPiece(const std::function<void(const QByteArray &)> &action) const;

private:
    friend class Tag;

    static QByteArray escaped(const QString &text);
    void open(const char *tag, Attributes attributes, const char *end = ">");
    void close(const char *tag);

    // A page may be much larger than its document, so it is kept once, in pieces that are never copied.
    std::vector<QByteArray> m_pieces;
    QByteArray m_text; // the last one
};

/// A length or a place in a drawing, as an attribute: a part of the whole.
QString percent(double part);

/// An element around what is put into the markup while this lives.
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

// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <functional>
#include <initializer_list>

#include <QByteArray>
#include <QString>

#include "text/Size.h"

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

namespace TunerDocuments {

/// Writes hypertext in UTF-8, piece by piece: a page may be much larger than its document, and is never in memory as a
/// whole. Values may contain any character and stay text: this is the only place where texts become markup. The result
/// is also well-formed XML, once all elements are closed.
class Markup
{
public:
    using Write = std::function<void(const QByteArray &piece)>;

    /// Without a function, everything is discarded.
    explicit Markup(Write write = {});

    bool isDiscarded() const { return !m_write; }

    /// Adds a text of the document. Characters that are invisible, or that would change the order of others, become
    /// signs: elements of the class "sign" whose title is the code, such as U+000A.
    void text(const QString &text);

    /// Adds a text without an element of its own.
    void words(const QString &text);
    void words(const char *text) { words(QString::fromUtf8(text)); }

    void element(const char *tag, Attributes attributes, const QString &text);
    void element(const char *tag, Attributes attributes, const char *text = "");
    /// Adds an element without an end tag.
    void voidElement(const char *tag, Attributes attributes);

    /// Adds source code as the content of an element that contains no markup.
    void source(const char *tag, const QString &code);

    /// Adds a line that is not an element.
    void line(const char *text);

    /// Writes what is left. Call it at the end; the destructor does not.
    void flush();

private:
    friend class Tag;

    void add(const char *bytes, REPORTGENERATOR::Size size);
    void add(const QByteArray &bytes) { add(bytes.constData(), bytes.size()); }
    void add(const char *bytes) { add(bytes, REPORTGENERATOR::Size(qstrlen(bytes))); }
    void open(const char *tag, Attributes attributes, const char *end = ">");
    void close(const char *tag);

    const Write m_write;
    QByteArray m_text; // not written yet
};

/// A length or a position in a drawing, as an attribute: a part of the whole.
QString percent(double part);

/// An element around everything that is added to the markup during its lifetime.
class Tag
{
public:
    Tag(Markup &markup, const char *tag, Attributes attributes = {})
        : m_markup(markup), m_tag(tag), m_exceptions(std::uncaught_exceptions())
    {
        m_markup.open(tag, attributes);
    }
    // Writing may fail. After an exception, whatever it was, nothing more is written.
    ~Tag() noexcept(false)
    {
        if (std::uncaught_exceptions() == m_exceptions)
            m_markup.close(m_tag);
    }
    Tag(const Tag &) = delete;
    Tag &operator=(const Tag &) = delete;

private:
    Markup &m_markup;
    const char *m_tag;
    int m_exceptions;
};

} // namespace TunerDocuments

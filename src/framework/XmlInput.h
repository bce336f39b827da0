// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QString>

#include "framework/ClassInfo.h"
#include "framework/RecentTexts.h"
#include "framework/Source.h"

namespace JobXml {

/// A name of the model, for documents in either encoding.
struct XmlName
{
    QStringView utf16;
    const char *ascii;
};

/// The value of an attribute or the text of an element, as it is in the document. Valid until the input is used again.
class XmlText
{
public:
    enum class Form : quint8 { Attribute, Element };

    XmlText() = default;
    /// A text as a reader returns it.
    explicit XmlText(QStringView text) : m_utf16(text.data()), m_size(Size(text.size())) { }
    /// A part of a well-formed document, with its references and line ends.
    XmlText(const char *utf8, Size size, Form form, RecentTexts &recent)
        : m_utf8(utf8), m_recent(&recent), m_size(size), m_form(form)
    {
    }

    bool isEmpty() const { return m_size == 0; }

    /// Whether the document contains exactly these characters, without a reference.
    bool is(QLatin1String ascii) const;

    /// The text; never null.
    QString toString() const;

    /// Calls a function that accepts a QStringView, or UTF-8 as a pointer and a size, with the text.
    template <class Use>
    auto use(Use &&function) const
    {
        if (!m_utf8)
            return function(QStringView(m_utf16, m_size));
        if (isVerbatim())
            return function(m_utf8, m_size);
        const QString text = toString();
        return function(QStringView(text));
    }

private:
    bool isVerbatim() const;

    const char *m_utf8 = nullptr; // null if the text is UTF-16
    const QChar *m_utf16 = nullptr;
    RecentTexts *m_recent = nullptr; // with UTF-8
    Size m_size = 0;
    Form m_form = Form::Element;
};

/// What objects are read from: the tags of an XML document, one after the other.
class XmlInput : public Source
{
public:
    enum class Tag { Start, End, None };

    /// Reads up to the next start or end tag. An empty element has both. None: the document has ended, or it is in
    /// error.
    virtual Tag next() = 0;

    /// Whether reading stopped before the end of the document.
    virtual bool isBroken() const = 0;

    /// \name The tag that was read last
    /// @{
    virtual QString name() const = 0;
    virtual bool isNamed(const XmlName &name) const = 0;
    /// The row of this name; null if there is none.
    virtual const Member *findRow(const ClassInfo::Rows &rows) const = 0;
    /// Of a start tag, before anything else is read. Looks first after the attribute that was found before.
    virtual bool findAttribute(const XmlName &name, XmlText &value) = 0;
    /// @}

    /// Reads the text of the element whose start tag was read last, without that of nested elements, and its end tag.
    /// Returns false if the document ends prematurely; then the text must be discarded.
    virtual bool readText(XmlText &text) = 0;

    /// Skips to the next start or end of an element with the same name, even if it is nested: the format requires this.
    virtual void skipToSameName() = 0;

    /// Whether names are looked up among declared namespaces.
    bool processesNamespaces() const { return m_processesNamespaces; }
    void processNamespaces(bool process)
    {
        m_processesNamespaces = process;
        setNamespaceProcessing(process);
    }

    /// The position of the start tag that was read last, for what is read up to its end tag. Without a value if only
    /// the present position is known.
    virtual Position elementPosition() const { return noPosition; }

protected:
    XmlInput(bool runsForeignCode, bool processesNamespaces, const ProblemVisitor *visitor)
        : Source(runsForeignCode, visitor), m_processesNamespaces(processesNamespaces)
    {
    }
    ~XmlInput() = default;

private:
    virtual void setNamespaceProcessing(bool) { }

    bool m_processesNamespaces;
};

} // namespace JobXml

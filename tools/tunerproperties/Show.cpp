// SPDX-License-Identifier: MIT
#include "Show.h"

#include <charconv>
#include <cmath>
#include <utility>

#include <QStringList>
#include <QVariant>

#include <jobxml/Visitor.h>

#include "Console.h"

namespace {

/// The shortest text from which the same number is read again; no exponent for the numbers that people write without.
template <class T>
QString exactly(T value)
{
    const T size = std::abs(value);
    const bool plain = value == T(0) || (size >= T(1e-6) && size < T(1e16));
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return QString::fromLatin1(text, int(end - text));
}

QString textOf(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QString:
        return value.toString().isNull() ? QStringLiteral("(null)") : Console::quoted(value.toString());
    case QMetaType::Float:
        return exactly(value.value<float>());
    case QMetaType::Double:
        return exactly(value.toDouble());
    default:
        return value.toString();
    }
}

const QString notSet = QStringLiteral("(not set)");

class Tree final : public JobXml::Visitor
{
public:
    explicit Tree(const JobXml::TunerProperties &document)
    {
        m_lines.append(document.GetObjectName());
        const QString version = document.GetInitialVersionLoaded();
        tell(QStringLiteral("Version"), version.isEmpty() ? notSet : Console::quoted(version));
        document.Accept(*this);
        finishList();
    }

    QString text() const { return m_lines.join(QLatin1Char('\n')) + QLatin1Char('\n'); }

    void VisitValue(QLatin1String name, const QVariant &value, bool set) override
    {
        if (m_listed.name == name) {
            m_listed.values.append(textOf(value));
            return;
        }
        finishList();
        if (set)
            tell(name, textOf(value));
        else if (value.type() == QVariant::String && value.toString().isNull())
            tell(name, notSet);
        else
            tell(name, textOf(value) + QLatin1Char(' ') + notSet);
    }

    void VisitList(QLatin1String name, int, bool set) override
    {
        finishList();
        m_listed = {name, {}, set};
    }

    void VisitChild(QLatin1String name, const JobXml::DataObject &child, int index) override
    {
        if (m_listed.name == name)
            m_listed = {}; // its items are shown for it
        finishList();
        m_holdsSomething = true;
        if (m_depth > 0 && index < 0) { // a choice and what is chosen share a line
            m_lines[m_line] += QLatin1String(" / ") + name;
            child.Accept(*this);
            return;
        }
        const int outerLine = std::exchange(m_line, m_lines.size());
        const QStringList outerValues = std::exchange(m_values, {});
        m_lines.append(indentation() + name + (index < 0 ? QString() : QStringLiteral(" %1").arg(index + 1)));
        m_holdsSomething = false;
        ++m_depth;
        child.Accept(*this);
        finishList();
        --m_depth;
        if (!m_values.isEmpty())
            m_lines[m_line] += QStringLiteral(": ") + m_values.join(QStringLiteral(", "));
        else if (!m_holdsSomething)
            m_lines[m_line] += QStringLiteral(": (empty)");
        m_holdsSomething = true; // the parent does
        m_line = outerLine;
        m_values = outerValues;
    }

private:
    struct List
    {
        QLatin1String name;
        QStringList values; // of a list of values; the items of others are objects
        bool set = false;
    };

    QString indentation() const { return QString(2 * (m_depth + 1), QLatin1Char(' ')); }

    void tell(const QString &name, const QString &text)
    {
        if (m_depth == 0)
            m_lines.append(indentation() + name + QStringLiteral(": ") + text);
        else
            m_values.append(name + QLatin1Char(' ') + text);
    }

    // A list is announced before its items, which may be values or objects or missing.
    void finishList()
    {
        const List list = std::exchange(m_listed, {});
        if (list.name.isEmpty())
            return;
        QStringList parts;
        if (!list.values.isEmpty() || list.set)
            parts.append(QLatin1Char('[') + list.values.join(QStringLiteral(", ")) + QLatin1Char(']'));
        if (!list.set)
            parts.append(notSet);
        tell(list.name, parts.join(QLatin1Char(' ')));
    }

    QStringList m_lines;
    QStringList m_values; // of the object whose line is m_line
    int m_line = 0;
    int m_depth = 0;
    bool m_holdsSomething = false; // the object whose line is m_line, in other objects
    List m_listed;
};

} // namespace

QString show(const JobXml::TunerProperties &document)
{
    return Tree(document).text();
}

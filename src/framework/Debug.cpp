// SPDX-License-Identifier: MIT
#include <charconv>
#include <iterator>

#include <QDebug>

#include <jobxml/Visit.h>

#include "text/Size.h"

namespace JobXml {

namespace {

/// The shortest text from which the same number is read, so that different numbers have different texts.
template <class T>
QString exactly(T value)
{
    char text[64];
    return QString::fromLatin1(text, int(std::to_chars(std::begin(text), std::end(text), value).ptr - text));
}

/// Null for an unknown kind.
const char *nameOf(MemberKind kind)
{
    switch (kind) {
    case MemberKind::Text:
        return "Text";
    case MemberKind::Boolean:
        return "Boolean";
    case MemberKind::Int:
        return "Int";
    case MemberKind::Int64:
        return "Int64";
    case MemberKind::UInt64:
        return "UInt64";
    case MemberKind::Float:
        return "Float";
    case MemberKind::Double:
        return "Double";
    case MemberKind::Enumeration:
        return "Enumeration";
    case MemberKind::EnumerationList:
        return "EnumerationList";
    case MemberKind::Choice:
        return "Choice";
    case MemberKind::Object:
        return "Object";
    case MemberKind::ObjectList:
        return "ObjectList";
    case MemberKind::Alternative:
        return "Alternative";
    }
    return nullptr;
}

/// Writes an object as a tree, with one member per line.
class DebugTree
{
public:
    explicit DebugTree(QDebug &debug) : m_debug(debug) { }

    void write(const DataObject &object) const
    {
        m_debug << object.GetObjectName();
        writeMembers(object, 0);
    }

private:
    void writeMembers(const DataObject &object, int depth) const
    {
        visit(object, [&](const MemberView &member) { write(member, depth + 1); });
    }

    void write(const MemberView &member, int depth) const
    {
        switch (member.GetKind()) {
        case MemberKind::Alternative:
        case MemberKind::Object:
        case MemberKind::ObjectList:
            if (member.IsChosen())
                writeChildren(member, depth);
            break;
        default:
            start(member, depth);
            write(member.GetValue());
            writeFlag(member);
        }
    }

    void writeChildren(const MemberView &member, int depth) const
    {
        if (member.GetSize() == 0) {
            start(member, depth);
            m_debug << (member.GetKind() == MemberKind::ObjectList ? "empty" : "unused");
            writeFlag(member);
        }
        for (int i = 0; i < member.GetSize(); ++i) {
            start(depth);
            if (member.GetKind() == MemberKind::ObjectList)
                m_debug << i << ": ";
            m_debug << member.GetChild(i).GetObjectName();
            writeFlag(member);
            writeMembers(member.GetChild(i), depth);
        }
    }

    void write(const QVariant &value) const
    {
        switch (value.userType()) {
        case QMetaType::QString:
            if (value.toString().isNull())
                m_debug << "null";
            else
                m_debug.quote() << value.toString();
            break;
        case QMetaType::Float:
            m_debug << exactly(value.toFloat());
            break;
        case QMetaType::Double:
            m_debug << exactly(value.toDouble());
            break;
        case QMetaType::QVariantList: {
            const QVariantList entries = value.toList();
            m_debug << '[';
            for (int i = 0; i < entries.size(); ++i) {
                m_debug << (i == 0 ? "" : ", ");
                write(entries.at(i));
            }
            m_debug << ']';
            break;
        }
        default:
            m_debug.noquote() << value.toString();
        }
    }

    void start(REPORTGENERATOR::Size depth) const { m_debug.noquote() << '\n' << QString(2 * depth, QLatin1Char(' ')); }
    void start(const MemberView &member, int depth) const
    {
        start(depth);
        m_debug << member.GetName() << ": ";
    }
    void writeFlag(const MemberView &member) const
    {
        if (!member.IsSet())
            m_debug.noquote() << " (not set)";
    }

    QDebug &m_debug;
};

} // namespace

QDebug operator<<(QDebug debug, const Problem &problem)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << "Problem(";
    if (problem.line > 0)
        debug << problem.line << ':' << problem.column << ": ";
    else if (problem.offset >= 0)
        debug << "offset " << problem.offset << ": ";
    if (!problem.path.isEmpty())
        debug << problem.path.join(QLatin1String(" / ")) << ": ";
    debug << problem.message << ')';
    return debug;
}

QDebug operator<<(QDebug debug, MemberKind kind)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "MemberKind";
    if (const char *const name = nameOf(kind))
        debug << "::" << name;
    else
        debug << '(' << int(kind) << ')';
    return debug;
}

QDebug operator<<(QDebug debug, const DataObject &object)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote();
    DebugTree(debug).write(object);
    return debug;
}

} // namespace JobXml

// SPDX-License-Identifier: MIT
#include <QDebug>

#include <jobxml/Visit.h>

namespace JobXml {

namespace {

/// Writes an object as a tree, a member a line.
class DebugTree
{
public:
    explicit DebugTree(QDebug &debug) : m_debug(debug) { }

    void write(const DataObject &object, int depth) const
    {
        m_debug << object.GetObjectName();
        visit(object, [&](const MemberView &member) { write(member, depth + 1); });
    }

private:
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
            write(member.GetChild(i), depth);
            writeFlag(member);
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
            m_debug << value.toFloat();
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

    void start(int depth) const { m_debug.noquote() << '\n' << QString(2 * depth, QLatin1Char(' ')); }
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

QDebug operator<<(QDebug debug, const DataObject &object)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote();
    DebugTree(debug).write(object, 0);
    return debug;
}

} // namespace JobXml

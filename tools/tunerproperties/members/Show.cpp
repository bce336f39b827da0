// SPDX-License-Identifier: MIT
#include "members/Show.h"

#include <utility>

#include <QStringList>

#include <jobxml/Visit.h>

#include "Console.h"
#include "members/ValueText.h"

using JobXml::MemberKind;
using JobXml::MemberView;

namespace {

class Tree
{
public:
    explicit Tree(const JobXml::TunerProperties &document)
    {
        m_lines.append(document.GetObjectName());
        const QString version = document.GetInitialVersionLoaded();
        tell(QStringLiteral("Version"), version.isEmpty() ? ValueText::notSet() : Console::quoted(version));
        showMembers(document);
    }

    QString text() const { return m_lines.join(QLatin1Char('\n')) + QLatin1Char('\n'); }

private:
    void showMembers(const JobXml::DataObject &object)
    {
        JobXml::visit(object, [this](const MemberView &member) { show(member); });
    }

    void show(const MemberView &member)
    {
        switch (member.GetKind()) {
        case MemberKind::Choice:
            break; // seen by the alternative that is shown
        case MemberKind::Alternative:
            if (member.IsChosen() && member.IsSet() && member.GetSize() != 0)
                showAlternative(member);
            break;
        case MemberKind::Object:
            if (member.IsSet() && member.GetSize() != 0)
                showChild(member.GetName(), member.GetChild());
            break;
        case MemberKind::ObjectList:
            for (int i = 0; i < member.GetSize(); ++i)
                showChild(member.GetName() + QStringLiteral(" %1").arg(i + 1), member.GetChild(i));
            if (member.GetSize() == 0)
                tell(member.GetName(), member.IsSet() ? QStringLiteral("[]") : ValueText::notSet());
            break;
        default:
            tell(member.GetName(), ValueText::ofMember(member));
        }
    }

    // A choice and what is chosen share a line.
    void showAlternative(const MemberView &member)
    {
        m_holdsSomething = true;
        m_lines[m_line] += QLatin1String(" / ") + member.GetName();
        showMembers(member.GetChild());
    }

    void showChild(const QString &title, const JobXml::DataObject &child)
    {
        const int outerLine = std::exchange(m_line, m_lines.size());
        const QStringList outerValues = std::exchange(m_values, {});
        m_lines.append(indentation() + title);
        m_holdsSomething = false;
        ++m_depth;
        if (child.IsInitialized())
            showMembers(child);
        --m_depth;
        if (!m_values.isEmpty())
            m_lines[m_line] += QStringLiteral(": ") + m_values.join(QStringLiteral(", "));
        else if (!m_holdsSomething)
            m_lines[m_line] += QStringLiteral(": (empty)");
        m_holdsSomething = true; // the parent does
        m_line = outerLine;
        m_values = outerValues;
    }

    QString indentation() const { return QString(2 * (m_depth + 1), QLatin1Char(' ')); }

    void tell(const QString &name, const QString &text)
    {
        if (m_depth == 0)
            m_lines.append(indentation() + name + QStringLiteral(": ") + text);
        else
            m_values.append(name + QLatin1Char(' ') + text);
    }

    QStringList m_lines;
    QStringList m_values; // of the object whose line is m_line
    int m_line = 0;
    int m_depth = 0;
    bool m_holdsSomething = false; // the object whose line is m_line, in other objects
};

} // namespace

QString show(const JobXml::TunerProperties &document)
{
    return Tree(document).text();
}

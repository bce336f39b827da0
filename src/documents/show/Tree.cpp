// SPDX-License-Identifier: MIT
#include <tunerdocuments/Tree.h>

#include <QStringList>

#include <jobxml/Visit.h>

#include <tunerdocuments/Value.h>

#include "text/Printable.h"
#include "text/Size.h"

using JobXml::MemberKind;
using JobXml::MemberView;
using REPORTGENERATOR::Size;

namespace TunerDocuments {

namespace {

using Lines = std::function<void(const QString &line)>;

/// Writes each line as soon as it is complete: an object's own values, then the objects in it.
class Tree
{
public:
    explicit Tree(const Lines &lines) : m_lines(lines) { }

    void show(const JobXml::TunerProperties &document)
    {
        m_lines(document.GetObjectName());
        const QString version = document.GetInitialVersionLoaded();
        writeMember(QStringLiteral("Version"), version.isEmpty() ? ValueText::notSet() : Printable::quoted(version));
        JobXml::visit(document, [this](const MemberView &member) {
            if (isShownAsValue(member))
                writeMember(member.GetName(), valueOf(member));
            else
                showChildren(member, 1);
        });
    }

private:
    /// The line of an object after its title.
    struct Line
    {
        QString text;
        QStringList values;
        bool hasChildren = false;
    };

    static bool isShownAsValue(const MemberView &member)
    {
        switch (member.GetKind()) {
        case MemberKind::Choice: // seen by the alternative that is shown
        case MemberKind::Alternative:
        case MemberKind::Object:
            return false;
        case MemberKind::ObjectList:
            return member.GetSize() == 0;
        default:
            return true;
        }
    }

    /// A choice that no alternative has, in a snapshot that was made by another program.
    static bool isNameless(const MemberView &member)
    {
        return member.GetKind() == MemberKind::Choice && member.IsSet()
            && !member.GetNames().contains(member.GetValue().toString());
    }

    static QString valueOf(const MemberView &member)
    {
        if (member.GetKind() != MemberKind::ObjectList)
            return ValueText::ofMember(member);
        return member.IsSet() ? QStringLiteral("[]") : ValueText::notSet();
    }

    static bool isShownAlternative(const MemberView &member)
    {
        return member.GetKind() == MemberKind::Alternative && member.IsChosen() && member.IsSet()
            && member.GetSize() != 0;
    }

    /// A child object that has a line of its own: every one with data, even if the data does not count.
    static bool isShownObject(const MemberView &member)
    {
        const bool isObject = member.GetKind() == MemberKind::Object
            || (member.GetKind() == MemberKind::Alternative && !isShownAlternative(member));
        return isObject && member.GetSize() != 0 && (member.IsSet() || member.GetChild().AnyData());
    }

    static QString titleOf(const MemberView &member)
    {
        return member.GetName() + (member.IsChosen() ? QString() : QStringLiteral(" (not chosen)"))
            + (member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet());
    }

    static void addTo(Line &line, const JobXml::DataObject &object)
    {
        JobXml::visit(object, [&](const MemberView &member) {
            if (isShownAlternative(member)) { // a choice and the chosen value share a line
                line.text += QLatin1String(" / ") + member.GetName();
                line.hasChildren = true;
                addTo(line, member.GetChild());
            } else if (isNameless(member)) {
                line.values.append(member.GetName() + QLatin1Char(' ') + ValueText::ofMember(member));
            } else if (isShownAsValue(member)) {
                line.values.append(member.GetName() + QLatin1Char(' ') + valueOf(member));
            } else if (isShownObject(member) || member.GetKind() == MemberKind::ObjectList) {
                line.hasChildren = true;
            }
        });
    }

    void showChild(const QString &title, const JobXml::DataObject &child, int depth)
    {
        Line line;
        line.text = indentation(depth) + title;
        if (child.IsInitialized())
            addTo(line, child);
        if (!line.values.isEmpty())
            line.text += QStringLiteral(": ") + line.values.join(QStringLiteral(", "));
        else if (!line.hasChildren)
            line.text += QStringLiteral(": (empty)");
        m_lines(line.text);
        if (child.IsInitialized())
            showChildrenOf(child, depth + 1);
    }

    void showChildrenOf(const JobXml::DataObject &object, int depth)
    {
        JobXml::visit(object, [&](const MemberView &member) { showChildren(member, depth); });
    }

    void showChildren(const MemberView &member, int depth)
    {
        if (isShownAlternative(member)) {
            showChildrenOf(member.GetChild(), depth);
        } else if (isShownObject(member)) {
            showChild(titleOf(member), member.GetChild(), depth);
        } else if (member.GetKind() == MemberKind::ObjectList) {
            for (int i = 0; i < member.GetSize(); ++i)
                showChild(member.GetName() + QStringLiteral(" %1").arg(i + 1)
                              + (member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet()),
                          member.GetChild(i), depth);
        }
    }

    void writeMember(const QString &name, const QString &text)
    {
        m_lines(indentation(1) + name + QStringLiteral(": ") + text);
    }

    static QString indentation(Size depth) { return QString(2 * depth, QLatin1Char(' ')); }

    const Lines &m_lines;
};

} // namespace

void show(const JobXml::TunerProperties &document, const std::function<void(const QString &line)> &lines)
{
    Tree(lines).show(document);
}

} // namespace TunerDocuments

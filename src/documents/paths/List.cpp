// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

void listFrom(const DataObject &object, const QString &start,
              const std::function<void(const QString &, const MemberView &)> &action)
{
    visit(object, [&](const MemberView &member) {
        if (!member.IsSet())
            return;
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        if (!isList && member.GetKind() != MemberKind::Object && member.GetKind() != MemberKind::Alternative) {
            action(start + member.GetName(), member);
            return;
        }
        const QStringList steps = isList ? stepsTo(member) : QStringList{member.GetName()};
        for (int i = 0; i < member.GetSize(); ++i)
            listFrom(member.GetChild(i), start + steps.at(i) + QLatin1Char('/'), action);
    });
}

/// Everything that is set.
class Lister
{
public:
    explicit Lister(const std::function<void(const Target &)> &action) : m_action(action) { }

    void listFrom(const DataObject &object, const QString &start)
    {
        visit(object, [&](const MemberView &member) {
            if (!member.IsSet())
                return;
            const bool hasItems = member.GetKind() == MemberKind::ObjectList && member.GetSize() != 0;
            const QStringList steps = hasItems ? stepsTo(member) : QStringList{member.GetName()};
            for (int i = 0; i < steps.size(); ++i)
                list(member, hasItems ? i : -1, start + steps.at(i));
        });
    }

private:
    void list(const MemberView &member, int item, const QString &path)
    {
        m_steps.append({member.GetName(), item});
        m_action({m_steps, path, member});
        if (member.GetSize() != 0)
            listFrom(member.GetChild(qMax(item, 0)), path + QLatin1Char('/'));
        m_steps.removeLast();
    }

    const std::function<void(const Target &)> &m_action;
    QVector<Step> m_steps;
};

} // namespace

void list(const DataObject &root, const std::function<void(const QString &, const MemberView &)> &action)
{
    listFrom(root, QString(), action);
}

void listAll(const DataObject &root, const std::function<void(const Target &)> &action)
{
    Lister(action).listFrom(root, QString());
}

} // namespace TunerDocuments::Paths

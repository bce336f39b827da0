// SPDX-License-Identifier: MIT
#include "documents/edit/AvoidableLoss.h"

#include <vector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/Contents.h"
#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

QString withFlag(const QString &text, const MemberView &member)
{
    return member.IsSet() ? text : text + QLatin1Char(' ') + ValueText::notSet();
}

/// What a member holds, apart from what is in its objects: two documents are equal if it is the same everywhere.
QString stateOf(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Choice:
        return member.IsSet() ? member.GetValue().toString() : QStringLiteral("(nothing)");
    case MemberKind::Object:
    case MemberKind::Alternative:
        if (!Contents::textOfChild(member).isEmpty())
            return withFlag(QStringLiteral("{...}"), member);
        return member.IsSet() ? QStringLiteral("{}") : ValueText::notSet();
    case MemberKind::ObjectList: {
        const int size = member.GetSize();
        const QString text = size == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(size);
        const bool isUsual = member.IsSet() == (size != 0);
        return isUsual ? text : withFlag(text, member) + (size == 0 ? QStringLiteral(" (set)") : QString());
    }
    default:
        return ValueText::ofMember(member);
    }
}

class Comparison
{
public:
    explicit Comparison(const TunerProperties &description) : m_paths(description) { }

    QString lossIn(const DataObject &described, const DataObject &read, const DataObject &written)
    {
        const std::vector<MemberView> ofRead = membersOf(read);
        const std::vector<MemberView> ofWritten = membersOf(written);
        QString loss;
        std::size_t next = 0;
        visit(described, [&](const MemberView &member) {
            const std::size_t i = next++;
            if (loss.isNull())
                loss = lossOf(member, ofRead.at(i), ofWritten.at(i));
        });
        return loss;
    }

private:
    QString lossOf(const MemberView &described, const MemberView &read, const MemberView &written)
    {
        const QString state = stateOf(described);
        if (state != stateOf(written))
            return QString(); // nor anything in it
        const QString stateInText = stateOf(read);
        if (state != stateInText) {
            // An object may be empty in the text since the form cannot hold what is in it.
            const bool isSingle = holdsObjects(described) && described.GetKind() != MemberKind::ObjectList;
            if (isSingle && !Contents::childrenAreAlike(described, written))
                return QString();
            return pathOf(described) + QStringLiteral(": ") + state + QStringLiteral(" would be read as ")
                + stateInText;
        }
        QString loss;
        const int count = holdsObjects(described) ? described.GetSize() : 0;
        for (int i = 0; i < count && loss.isNull(); ++i) {
            if (i >= read.GetSize() || i >= written.GetSize())
                break; // an object without content, which may be missing
            m_steps.append({described.GetName(), described.GetKind() == MemberKind::ObjectList ? i : -1});
            loss = lossIn(described.GetChild(i), read.GetChild(i), written.GetChild(i));
            m_steps.removeLast();
        }
        return loss;
    }

    QString pathOf(const MemberView &member)
    {
        const QString object = m_paths.of(m_steps);
        return object.isEmpty() ? QString(member.GetName()) : object + QLatin1Char('/') + member.GetName();
    }

    Paths::Texts m_paths;
    QVector<Step> m_steps;
};

} // namespace

QString avoidableLoss(const TunerProperties &description, const TunerProperties &read, const TunerProperties &written)
{
    return Comparison(description).lossIn(description, read, written);
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "members/Paths.h"

#include <algorithm>

#include "text/Printable.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace Paths {

namespace {

struct Condition
{
    QString member;
    QString text;
};

/// A text after the "=" of a condition.
QString written(const QString &text)
{
    const auto isSpecial = [](QChar character) { return QStringLiteral("[],=/\"'\\").contains(character); };
    const bool isPlain = !text.isEmpty() && text == text.trimmed() && text == Printable::onOneLine(text)
        && std::none_of(text.begin(), text.end(), isSpecial);
    return isPlain ? text : Printable::quoted(text);
}

/// The texts that identify an object, including null ones. A value has those of its chosen alternative.
QVector<Condition> identifyingTexts(const DataObject &object)
{
    QVector<Condition> own;
    QVector<Condition> chosen;
    visit(object, [&](const MemberView &member) {
        if (member.IsIdentifying())
            own.append({member.GetName(), member.GetValue().toString()});
        else if (member.GetKind() == MemberKind::Alternative && member.IsChosen() && member.GetSize() != 0)
            chosen = identifyingTexts(member.GetChild());
    });
    return own.isEmpty() ? chosen : own;
}

std::optional<MemberView> memberNamed(const DataObject &object, const QString &name)
{
    std::optional<MemberView> found;
    visit(object, [&](const MemberView &member) {
        if (member.GetName() == name)
            found.emplace(member);
    });
    return found;
}

/// The chosen alternative, if the object is a choice and there is one.
std::optional<MemberView> chosenIn(const DataObject &object)
{
    std::optional<MemberView> found;
    visit(object, [&](const MemberView &member) {
        if (member.GetKind() == MemberKind::Alternative && member.IsChosen())
            found.emplace(member);
    });
    return found;
}

QStringList membersOf(const DataObject &object)
{
    QStringList names;
    visit(object, [&](const MemberView &member) { names.append(member.GetName()); });
    return names;
}

// --- Paths as text ---------------------------------------------------------------------------------------------------

/// A step as it was typed.
struct WrittenStep
{
    QString member;
    QVector<Condition> conditions;
    int position = 0; // from 1; 0 is none
};

class Parser
{
public:
    explicit Parser(const QString &path) : m_path(path) { }

    QVector<WrittenStep> steps()
    {
        QVector<WrittenStep> result = {step()};
        while (take(QLatin1Char('/')))
            result.append(step());
        if (!atEnd())
            fail(QStringLiteral("expected '/' or '['"));
        return result;
    }

private:
    WrittenStep step()
    {
        WrittenStep result;
        result.member = textUpTo(QStringLiteral("/[]"));
        if (result.member.isEmpty())
            fail(QStringLiteral("expected a member name"));
        while (take(QLatin1Char('['))) {
            const int start = m_at;
            const QString name = textUpTo(QStringLiteral("=,[]/\""));
            if (take(QLatin1Char('=')))
                readConditions(result, name);
            else
                readPosition(result, name, start);
        }
        return result;
    }

    void readConditions(WrittenStep &step, const QString &first)
    {
        step.conditions.append({first, text()});
        while (take(QLatin1Char(','))) {
            const QString name = textUpTo(QStringLiteral("=,[]/\""));
            if (!take(QLatin1Char('=')))
                fail(QStringLiteral("expected '='"));
            step.conditions.append({name, text()});
        }
        close();
    }

    void readPosition(WrittenStep &step, const QString &digits, int start)
    {
        if (step.position > 0)
            fail(QStringLiteral("unexpected second position"));
        bool isNumber = false;
        step.position = digits.toInt(&isNumber);
        if (!isNumber || step.position < 1) {
            m_at = start;
            fail(QStringLiteral("expected a position (counted from 1) or MEMBER=TEXT"));
        }
        close();
    }

    void close()
    {
        if (!take(QLatin1Char(']')))
            fail(QStringLiteral("expected ']'"));
    }

    QString text()
    {
        if (!take(QLatin1Char('"')))
            return textUpTo(QStringLiteral(",[]\""));
        QString result = QStringLiteral("");
        while (!atEnd() && m_path[m_at] != QLatin1Char('"')) {
            const QChar character = m_path[m_at++];
            result += character == QLatin1Char('\\') ? escaped() : character;
        }
        if (!take(QLatin1Char('"')))
            fail(QStringLiteral("expected '\"'"));
        return result;
    }

    QChar escaped()
    {
        const QChar which = atEnd() ? QChar() : m_path[m_at++];
        switch (which.unicode()) {
        case '"':
        case '\\':
            return which;
        case 'n':
            return QLatin1Char('\n');
        case 'r':
            return QLatin1Char('\r');
        case 't':
            return QLatin1Char('\t');
        case 'u': {
            constexpr int digits = 4;
            bool isNumber = false;
            const ushort code = m_path.mid(m_at, digits).toUShort(&isNumber, 16);
            if (isNumber && m_at + digits <= m_path.size()) {
                m_at += digits;
                return QChar(code);
            }
            break;
        }
        default:
            break;
        }
        fail(QStringLiteral("expected \\\" \\\\ \\n \\r \\t or \\u0000"));
    }

    QString textUpTo(const QString &ends)
    {
        const int start = m_at;
        while (!atEnd() && !ends.contains(m_path[m_at]))
            ++m_at;
        return m_path.mid(start, m_at - start);
    }

    bool take(QChar character)
    {
        if (atEnd() || m_path[m_at] != character)
            return false;
        ++m_at;
        return true;
    }

    bool atEnd() const { return m_at >= m_path.size(); }

    [[noreturn]] void fail(const QString &message) const
    {
        throw PathFailure(QStringLiteral("%1 at character %2 of the path").arg(message).arg(m_at + 1));
    }

    const QString m_path;
    int m_at = 0;
};

// --- Finding ---------------------------------------------------------------------------------------------------------

QString listed(const QStringList &steps)
{
    constexpr int most = 5;
    if (steps.size() <= most)
        return steps.join(QStringLiteral(", "));
    return QStringList(steps.mid(0, most)).join(QStringLiteral(", "))
        + QStringLiteral(" and %1 more").arg(steps.size() - most);
}

void checkConditions(const MemberView &list, const WrittenStep &step)
{
    QStringList identifying;
    for (int i = 0; i < list.GetSize(); ++i) {
        const QVector<Condition> texts = identifyingTexts(list.GetChild(i));
        for (const Condition &text : texts) {
            if (!identifying.contains(text.member))
                identifying.append(text.member);
        }
    }
    for (const Condition &condition : step.conditions) {
        if (!identifying.contains(condition.member))
            throw PathFailure(
                QStringLiteral("'%1' does not identify a %2; use %3")
                    .arg(condition.member, step.member,
                         identifying.isEmpty() ? QStringLiteral("its position") : Suggestion::listed(identifying)));
    }
}

bool fits(const DataObject &item, const QVector<Condition> &conditions)
{
    const QVector<Condition> texts = identifyingTexts(item);
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition &condition) {
        return std::any_of(texts.begin(), texts.end(), [&](const Condition &text) {
            return text.member == condition.member && !text.text.isNull() && text.text == condition.text;
        });
    });
}

/// The item that a step selects.
int itemOf(const MemberView &list, const WrittenStep &step)
{
    const QStringList steps = stepsTo(list);
    if (list.GetSize() == 0)
        throw PathFailure(QStringLiteral("there is no %1").arg(step.member));
    QVector<int> fitting;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (fits(list.GetChild(i), step.conditions))
            fitting.append(i);
    }
    if (fitting.isEmpty()) {
        checkConditions(list, step);
        throw PathFailure(QStringLiteral("there is no such %1; there are %2").arg(step.member, listed(steps)));
    }
    if (step.position > fitting.size())
        throw PathFailure(
            QStringLiteral("position %1 is out of range; only %2 match").arg(step.position).arg(fitting.size()));
    if (step.position > 0)
        return fitting[step.position - 1];
    if (fitting.size() == 1)
        return fitting.first();
    QStringList candidates;
    for (const int i : qAsConst(fitting))
        candidates.append(steps[i]);
    throw PathFailure(QStringLiteral("%1 items match; choose one: %2").arg(fitting.size()).arg(listed(candidates)));
}

QString asWritten(const WrittenStep &step)
{
    QString text = step.member;
    QStringList conditions;
    for (const Condition &condition : step.conditions)
        conditions.append(condition.member + QLatin1Char('=') + written(condition.text));
    if (!conditions.isEmpty())
        text += QLatin1Char('[') + conditions.join(QLatin1Char(',')) + QLatin1Char(']');
    return step.position > 0 ? text + QStringLiteral("[%1]").arg(step.position) : text;
}

/// Follows the steps from the root.
class Finder
{
public:
    explicit Finder(const DataObject &root) : m_object(&root) { }

    Target find(const QVector<WrittenStep> &steps)
    {
        for (int i = 0; i < steps.size(); ++i) {
            try {
                go(steps[i], i + 1 == steps.size());
            } catch (const PathFailure &failure) {
                const QString tried = asWritten(steps[i]);
                throw PathFailure((m_path.isEmpty() ? tried : m_path + QLatin1Char('/') + tried) + QStringLiteral(": ")
                                  + failure.text());
            }
        }
        return {m_steps, m_path, *m_member};
    }

private:
    void go(const WrittenStep &step, bool isLast)
    {
        std::optional<MemberView> member = memberNamed(*m_object, step.member);
        const std::optional<MemberView> chosen = chosenIn(*m_object);
        if (!member && chosen && chosen->GetSize() != 0) {
            member = memberNamed(chosen->GetChild(), step.member);
            if (!member)
                throw PathFailure(unknownMember(step.member, chosen->GetName(), membersOf(chosen->GetChild())));
            enter(*chosen);
        }
        if (!member)
            throw PathFailure(unknownMember(step.member, m_object->GetObjectName(), membersOf(*m_object)));
        const bool isList = member->GetKind() == MemberKind::ObjectList;
        const bool choosesItem = step.position > 0 || !step.conditions.isEmpty();
        if (choosesItem && !isList)
            throw PathFailure(QStringLiteral("'%1' is not a list of objects").arg(step.member));
        if (member->GetKind() == MemberKind::Alternative && !member->IsChosen())
            throw PathFailure(chosen ? QStringLiteral("the item holds a %1").arg(chosen->GetName())
                                     : QStringLiteral("the item has no value"));
        m_member.emplace(*member);
        if (isList && (choosesItem || !isLast)) {
            const int index = itemOf(*member, step);
            add({member->GetName(), index}, stepsTo(*member)[index]);
            m_object = &member->GetChild(index);
        } else if (isLast) {
            add({member->GetName(), -1}, member->GetName());
        } else if (member->GetKind() == MemberKind::Object || member->GetKind() == MemberKind::Alternative) {
            enter(*member);
        } else {
            throw PathFailure(QStringLiteral("is a value and has no members"));
        }
    }

    void enter(const MemberView &member)
    {
        if (member.GetSize() == 0)
            throw PathFailure(QStringLiteral("has no data"));
        add({member.GetName(), -1}, member.GetName());
        m_object = &member.GetChild();
    }

    void add(const Step &step, const QString &text)
    {
        m_steps.append(step);
        m_path += (m_path.isEmpty() ? QString() : QStringLiteral("/")) + text;
    }

    const DataObject *m_object;
    std::optional<MemberView> m_member;
    QVector<Step> m_steps;
    QString m_path;
};

} // namespace

QString identityOf(const DataObject &object)
{
    QStringList parts;
    const QVector<Condition> texts = identifyingTexts(object);
    for (const Condition &text : texts) {
        if (text.text.isNull())
            return QString();
        parts.append(text.member + QLatin1Char('=') + written(text.text));
    }
    return parts.isEmpty() ? QString() : parts.join(QLatin1Char(','));
}

ItemSteps::ItemSteps(const MemberView &list) : m_list(list)
{
    for (int i = 0; i < list.GetSize(); ++i) {
        const QString identity = identityAt(i);
        if (!identity.isNull())
            ++m_alike[identity].count;
    }
}

QString ItemSteps::identityAt(int index) const
{
    // Every path into the item repeats its identity: a longer one would make many paths much larger than the document.
    constexpr int longestIdentity = 80;
    const QString identity = identityOf(m_list.GetChild(index));
    return identity.size() > longestIdentity ? QString() : identity;
}

QString ItemSteps::next()
{
    const int index = m_next++;
    const QString identity = identityAt(index);
    const QString name = m_list.GetName();
    if (identity.isNull())
        return name + QStringLiteral("[%1]").arg(index + 1);
    Alike &alike = m_alike[identity];
    ++alike.passed;
    const QString step = name + QLatin1Char('[') + identity + QLatin1Char(']');
    return alike.count > 1 ? step + QStringLiteral("[%1]").arg(alike.passed) : step;
}

QStringList stepsTo(const MemberView &list)
{
    ItemSteps items(list);
    QStringList steps;
    steps.reserve(list.GetSize());
    for (int i = 0; i < list.GetSize(); ++i)
        steps.append(items.next());
    return steps;
}

QString unknownMember(const QString &name, const QString &className, const QStringList &known)
{
    const QString meant = Suggestion::hint(name, known);
    return QStringLiteral("unknown member '%1' of %2").arg(name, className)
        + (meant.isNull() ? QStringLiteral("; expected ") + Suggestion::listed(known) : meant);
}

Target find(const DataObject &root, const QString &path)
{
    return Finder(root).find(Parser(path).steps());
}

std::optional<MemberView> at(const DataObject &root, const QVector<Step> &steps)
{
    const DataObject *object = &root;
    std::optional<MemberView> member;
    for (int i = 0; i < steps.size(); ++i) {
        member = memberNamed(*object, steps[i].member);
        const int index = qMax(steps[i].index, 0);
        const bool isLast = i + 1 == steps.size();
        if (!member || (!isLast && index >= member->GetSize()))
            return {};
        if (!isLast)
            object = &member->GetChild(index);
    }
    return member;
}

} // namespace Paths

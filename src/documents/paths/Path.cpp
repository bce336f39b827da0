// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include <algorithm>

#include <QHash>

#include "documents/paths/ItemSteps.h"
#include "documents/values/FindMember.h"
#include "text/Printable.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {

// what() would end at a NUL character.
PathFailure::PathFailure(const QString &text)
    : std::runtime_error(QString(text).replace(QChar(0), QStringLiteral("\\u0000")).toStdString())
{
}

PathFailure::PathFailure(const PathFailure &) = default;

PathFailure::~PathFailure() = default;

namespace Paths {

using Condition = Path::Condition;

namespace {

/// Whether a path uses the character for something else.
bool isSpecial(QChar character)
{
    switch (character.unicode()) {
    case '[':
    case ']':
    case ',':
    case '=':
    case '/':
    case '"':
    case '\'':
    case '\\':
        return true;
    default:
        return false;
    }
}

} // namespace

QString written(const QString &text)
{
    const bool isPlain = !text.isEmpty() && !text.front().isSpace() && !text.back().isSpace()
        && std::none_of(text.begin(), text.end(), isSpecial) && text == Printable::onOneLine(text);
    return isPlain ? text : Printable::quoted(text);
}

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

namespace {

using WrittenStep = Path::Step;

QStringList namesIn(const DataObject &object)
{
    QStringList names;
    visit(object, [&](const MemberView &member) { names.append(member.GetName()); });
    return names;
}

// --- Paths as text ---------------------------------------------------------------------------------------------------

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
            else if (name == QLatin1String("*"))
                readAll(result, start);
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

    void readAll(WrittenStep &step, int start)
    {
        if (step.isAll || step.position > 0) {
            m_at = start;
            fail(QStringLiteral("unexpected '*'"));
        }
        step.isAll = true;
        close();
    }

    void readPosition(WrittenStep &step, const QString &digits, int start)
    {
        if (step.position > 0 || step.isAll)
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

/// The texts that identify the items of one list, compared without collecting them.
class Identities
{
public:
    explicit Identities(const MemberView &list) : m_list(list)
    {
        if (list.GetSize() == 0)
            return;
        visit(list.GetChild(), [this](const MemberView &member) {
            if (member.IsIdentifying())
                m_members.append(member); // of all items, which are of one class
        });
    }

    /// Whether the item has these texts, and maybe others.
    bool fits(int item, const QVector<Condition> &conditions) const
    {
        if (conditions.isEmpty())
            return true;
        const DataObject &object = m_list.GetChild(item);
        return m_members.isEmpty() ? hasTexts(identifyingTexts(object), conditions) : hasTexts(object, conditions);
    }

    /// Whether the item has these texts, which are all that identify another item.
    bool isAlike(int item, const QVector<Condition> &all) const
    {
        const DataObject &object = m_list.GetChild(item);
        if (!m_members.isEmpty())
            return hasTexts(object, all);
        const QVector<Condition> texts = identifyingTexts(object);
        return texts.size() == all.size() && hasTexts(texts, all);
    }

private:
    static bool isText(const QString &text, const Condition &condition)
    {
        return !text.isNull() && text == condition.text;
    }

    static bool hasTexts(const QVector<Condition> &texts, const QVector<Condition> &conditions)
    {
        return std::all_of(conditions.begin(), conditions.end(), [&](const Condition &condition) {
            return std::any_of(texts.begin(), texts.end(), [&](const Condition &text) {
                return text.member == condition.member && isText(text.text, condition);
            });
        });
    }

    bool hasTexts(const DataObject &object, const QVector<Condition> &conditions) const
    {
        return std::all_of(conditions.begin(), conditions.end(), [&](const Condition &condition) {
            return std::any_of(m_members.begin(), m_members.end(), [&](const MemberView &member) {
                return member.GetName() == condition.member
                    && isText(member.Of(object).GetValue().toString(), condition);
            });
        });
    }

    const MemberView &m_list;
    QVector<MemberView> m_members; // empty for values, which are identified by what they hold
};

/// The items that fulfill the conditions of a step, up to the one at its position.
QVector<int> fittingItems(const MemberView &list, const WrittenStep &step)
{
    const Identities identities(list);
    QVector<int> fitting;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (!identities.fits(i, step.conditions))
            continue;
        fitting.append(i);
        if (fitting.size() == step.position)
            break;
    }
    return fitting;
}

/// The item that a step selects.
int itemOf(const MemberView &list, const WrittenStep &step)
{
    if (list.GetSize() == 0)
        throw PathFailure(QStringLiteral("there is no %1").arg(step.member));
    const QVector<int> fitting = fittingItems(list, step);
    if (fitting.isEmpty()) {
        checkConditions(list, step);
        throw PathFailure(QStringLiteral("there is no such %1; there are %2").arg(step.member, listed(stepsTo(list))));
    }
    if (step.position > fitting.size())
        throw PathFailure(
            QStringLiteral("position %1 is out of range; only %2 match").arg(step.position).arg(fitting.size()));
    if (step.position > 0 || fitting.size() == 1)
        return fitting.last();
    const ItemSteps steps(list);
    QStringList candidates;
    for (const int i : fitting)
        candidates.append(steps.at(i));
    throw PathFailure(QStringLiteral("%1 items match; choose one: %2").arg(fitting.size()).arg(listed(candidates)));
}

/// The identity in the step to an item; null if the item is selected by its position.
QString identityInStep(const QString &identity)
{
    // Every path into the item repeats its identity: a longer one would make many paths much larger than the document.
    constexpr int longestIdentity = 80;
    return identity.size() > longestIdentity ? QString() : identity;
}

QString stepText(const QString &list, const QString &identity, int position)
{
    QString step = list;
    if (!identity.isNull())
        step += QLatin1Char('[') + identity + QLatin1Char(']');
    if (position > 0)
        step += QStringLiteral("[%1]").arg(position);
    return step;
}

/// What ItemSteps has for one item, without the texts of the others.
QString stepTo(const MemberView &list, int index)
{
    const QString identity = identityInStep(identityOf(list.GetChild(index)));
    if (identity.isNull())
        return stepText(list.GetName(), identity, index + 1);
    const QVector<Condition> texts = identifyingTexts(list.GetChild(index));
    const Identities identities(list);
    int alike = 0;
    int position = 0;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (!identities.isAlike(i, texts))
            continue;
        ++alike;
        if (i <= index)
            ++position;
    }
    return stepText(list.GetName(), identity, alike > 1 ? position : 0);
}

QString asWritten(const WrittenStep &step)
{
    QString text = step.member;
    QStringList conditions;
    for (const Condition &condition : step.conditions)
        conditions.append(condition.member + QLatin1Char('=') + written(condition.text));
    if (!conditions.isEmpty())
        text += QLatin1Char('[') + conditions.join(QLatin1Char(',')) + QLatin1Char(']');
    if (step.isAll)
        text += QStringLiteral("[*]");
    return step.position > 0 ? text + QStringLiteral("[%1]").arg(step.position) : text;
}

/// Follows all branches of a pattern.
class Matcher
{
public:
    explicit Matcher(const QVector<WrittenStep> &steps) : m_pattern(steps) { }

    QVector<Target> match(const DataObject &root)
    {
        go(root, 0);
        return m_found;
    }

private:
    void go(const DataObject &object, int depth)
    {
        const WrittenStep &step = m_pattern.at(depth);
        bool isOwnMember = false;
        visit(object, [&](const MemberView &member) {
            if (step.member != QLatin1String("*") && step.member != member.GetName())
                return;
            isOwnMember = true;
            if (member.IsSet() && member.IsChosen())
                enter(member, step, depth);
        });
        if (isOwnMember)
            return;
        // The chosen alternative needs no step.
        if (const auto chosen = chosenIn(object); chosen && chosen->GetSize() != 0) {
            push({chosen->GetName(), -1}, chosen->GetName());
            go(chosen->GetChild(), depth);
            pop();
        }
    }

    void enter(const MemberView &member, const WrittenStep &step, int depth)
    {
        const bool isLast = depth + 1 == m_pattern.size();
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        const bool selectsItems = step.isAll || step.position > 0 || !step.conditions.isEmpty();
        if (selectsItems && !isList)
            return;
        if (!isList || (isLast && !selectsItems)) {
            push({member.GetName(), -1}, member.GetName());
            if (isLast)
                m_found.append({m_steps, m_path.join(QLatin1Char('/')), member});
            else if (member.GetSize() != 0 && !isList)
                go(member.GetChild(), depth + 1);
            pop();
            return;
        }
        QVector<int> fitting = fittingItems(member, step);
        if (step.position > 0)
            fitting = fitting.mid(step.position - 1);
        if (fitting.isEmpty())
            return;
        if (fitting.size() == 1)
            return enterItem(member, fitting.first(), stepTo(member, fitting.first()), depth);
        const ItemSteps steps(member);
        for (const int item : qAsConst(fitting))
            enterItem(member, item, steps.at(item), depth);
    }

    void enterItem(const MemberView &list, int item, const QString &step, int depth)
    {
        push({list.GetName(), item}, step);
        if (depth + 1 == m_pattern.size())
            m_found.append({m_steps, m_path.join(QLatin1Char('/')), list});
        else
            go(list.GetChild(item), depth + 1);
        pop();
    }

    void push(const Step &step, const QString &text)
    {
        m_steps.append(step);
        m_path.append(text);
    }

    void pop()
    {
        m_steps.removeLast();
        m_path.removeLast();
    }

    const QVector<WrittenStep> &m_pattern;
    QVector<Step> m_steps;
    QStringList m_path;
    QVector<Target> m_found;
};

void listFrom(const DataObject &object, const QString &start,
              const std::function<void(const QString &, const MemberView &)> &action)
{
    visit(object, [&](const MemberView &member) {
        if (!member.IsSet() || !member.IsChosen())
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
        if (step.isAll || step.member == QLatin1String("*"))
            throw PathFailure(QStringLiteral("a pattern does not select a single member"));
        std::optional<MemberView> member = memberNamed(*m_object, step.member);
        const std::optional<MemberView> chosen = chosenIn(*m_object);
        if (!member && chosen && chosen->GetSize() != 0) {
            member = memberNamed(chosen->GetChild(), step.member);
            if (!member)
                throw PathFailure(unknownMember(step.member, chosen->GetName(), namesIn(chosen->GetChild())));
            enter(*chosen);
        }
        if (!member)
            throw PathFailure(unknownMember(step.member, m_object->GetObjectName(), namesIn(*m_object)));
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
            add({member->GetName(), index}, stepTo(*member, index));
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

namespace {

QVector<QString> identitiesIn(const MemberView &list)
{
    QVector<QString> identities;
    identities.reserve(list.GetSize());
    for (int i = 0; i < list.GetSize(); ++i)
        identities.append(identityOf(list.GetChild(i)));
    return identities;
}

} // namespace

ItemSteps::ItemSteps(const MemberView &list) : ItemSteps(list.GetName(), identitiesIn(list)) { }

ItemSteps::ItemSteps(const QString &list, QVector<QString> identities)
    : m_list(list), m_identities(std::move(identities)), m_positions(m_identities.size())
{
    QHash<QString, int> alike;
    for (QString &identity : m_identities) {
        identity = identityInStep(identity);
        ++alike[identity];
    }
    QHash<QString, int> passed;
    for (int i = 0; i < m_identities.size(); ++i) {
        const QString &identity = m_identities.at(i);
        if (identity.isNull())
            m_positions[i] = i + 1;
        else if (alike.value(identity) > 1)
            m_positions[i] = ++passed[identity];
    }
}

QString ItemSteps::at(int index) const
{
    return stepText(m_list, m_identities.at(index), m_positions.at(index));
}

QStringList stepsTo(const MemberView &list)
{
    const ItemSteps steps(list);
    QStringList result;
    for (int i = 0; i < list.GetSize(); ++i)
        result.append(steps.at(i));
    return result;
}

/// The steps to the items of the last list of each depth.
struct Texts::Lists
{
    struct List
    {
        const DataObject *object = nullptr;
        QString member;
        QStringList steps;
    };

    const QString &stepTo(int depth, const DataObject &object, const MemberView &list, int index)
    {
        if (last.size() <= depth)
            last.resize(depth + 1);
        List &known = last[depth];
        if (known.object != &object || known.member != list.GetName())
            known = {&object, list.GetName(), stepsTo(list)};
        return known.steps.at(index);
    }

    QVector<List> last;
};

Texts::Texts(const DataObject &root) : m_root(root), m_lists(std::make_unique<Lists>()) { }

Texts::~Texts() = default;

QString Texts::of(const QVector<Step> &steps)
{
    QStringList path;
    const DataObject *object = &m_root;
    for (int i = 0; i < steps.size() && object; ++i) {
        const auto member = memberNamed(*object, steps[i].member);
        const int index = qMax(steps[i].index, 0);
        if (!member || index >= member->GetSize())
            break;
        path.append(steps[i].index < 0 ? steps[i].member : m_lists->stepTo(i, *object, *member, index));
        object = &member->GetChild(index);
    }
    return path.isEmpty() ? QStringLiteral("") : path.join(QLatin1Char('/'));
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

QVector<Target> findAll(const DataObject &root, const Path &pattern)
{
    return pattern.steps().isEmpty() ? QVector<Target>() : Matcher(pattern.steps()).match(root);
}

void list(const DataObject &root, const std::function<void(const QString &, const MemberView &)> &action)
{
    listFrom(root, QString(), action);
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

Path::Path() = default;
Path::Path(const QVector<Step> &steps) : m_steps(steps) { }
Path::Path(const Path &) = default;
Path::Path(Path &&) noexcept = default;
Path &Path::operator=(const Path &) = default;
Path &Path::operator=(Path &&) noexcept = default;
Path::~Path() = default;

Path Path::parse(const QString &text)
{
    return Path(Paths::Parser(text).steps());
}

QString Path::text() const
{
    QStringList parts;
    for (const Step &step : m_steps)
        parts.append(Paths::asWritten(step));
    return parts.join(QLatin1Char('/'));
}

bool Path::isPattern() const
{
    return std::any_of(m_steps.begin(), m_steps.end(),
                       [](const Step &step) { return step.isAll || step.member == QLatin1String("*"); });
}

} // namespace TunerDocuments

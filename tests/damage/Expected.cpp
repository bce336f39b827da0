// SPDX-License-Identifier: MIT
#include "Expected.h"

#include <algorithm>

namespace Damage {

namespace {

QString refusedItem(const Expected &owner, const MemberRule &member)
{
    return QStringLiteral("IncompleteDefinitionException: %1: Tried to append not completely defined or invalid item "
                          "%2.")
        .arg(QLatin1String(owner.rule->name), QLatin1String(member.name));
}

} // namespace

QString lengthErrorOf(const QString &className)
{
    return QStringLiteral("BinaryParsingException: ") + className
        + QStringLiteral("::SetBinary(...): Length error occurred during processing of binary representation");
}

Expected::Expected(const QString &className, bool validates)
    : rule(&ruleOf(className)), validate(validates), members(rule->members.size())
{
    reset();
}

void Expected::reset()
{
    choice = 255;
    for (const MemberRule &member : rule->members) {
        of(member) = MemberState();
        of(member).value = member.defaultValue;
    }
}

Expected &Expected::child(const MemberRule &member)
{
    MemberState &state = of(member);
    if (state.objects.isEmpty())
        state.objects.append(Expected(QString::fromLatin1(member.object), validate));
    return state.objects.first();
}

bool Expected::hasData() const
{
    if (!touched)
        return false;
    if (is("ValueItem"))
        return choice < members.size() && !members.at(choice).objects.isEmpty()
            && members.at(choice).objects.first().hasData();
    return std::all_of(rule->members.begin(), rule->members.end(), [this](const MemberRule &member) {
        const MemberState &state = of(member);
        if (!member.has(Mandatory))
            return true;
        switch (member.kind) {
        case Kind::Text:
            return !state.value.toString().isNull();
        case Kind::List:
            return !state.objects.isEmpty();
        case Kind::Modes:
            return !state.modes.isEmpty();
        default:
            return state.set;
        }
    });
}

bool Expected::isOlder() const
{
    return versionMember().defaultValue.toString().toFloat() > versionLoaded.toFloat();
}

// Reading data of an older version begins with all members at their defaults, with the flag of quantity set.
void Expected::setLoadedVersion(const QString &version)
{
    versionLoaded = version;
    if (!isOlder())
        return;
    reset();
    of(*rule->byName(QStringLiteral("quantity"))).set = true;
}

void Expected::set(const MemberRule &member, const QVariant &value)
{
    if (validate && member.kind == Kind::TypeName && typeByName(value.toString()) < 0)
        throw Refusal{QStringLiteral("OutOfRangeException: enum is not valid "
                                     "(classname=TunerProperties,membername=m_type)")};
    of(member).value = value;
    of(member).set = true;
}

void Expected::append(const MemberRule &member, const Expected &item)
{
    if (validate && !item.hasData())
        throw Refusal{refusedItem(*this, member)};
    of(member).objects.append(item);
    of(member).set = true;
}

void Expected::appendMode(const MemberRule &member, int mode)
{
    if (validate && !isMode(mode))
        throw Refusal{refusedItem(*this, member)};
    of(member).modes.append(shownMode(mode));
    of(member).set = true;
}

QString Expected::listing() const
{
    Lines lines;
    list(lines);
    return lines.text;
}

void Expected::list(Lines &lines) const
{
    if (!touched)
        return;
    if (is("ValueItem"))
        lines.value(QLatin1String("choice"), choice, true);
    if (is("TunerProperties"))
        lines.value(QLatin1String("version loaded"), versionLoaded, true);
    for (const MemberRule &member : rule->members) {
        const MemberState &state = of(member);
        const QLatin1String name(member.name);
        const bool hasObject = !state.objects.isEmpty();
        switch (member.kind) {
        case Kind::List:
            lines.list(name, state.objects.size(), state.set);
            for (int i = 0; i < state.objects.size(); ++i) {
                lines.enter(name, i);
                state.objects.at(i).list(lines);
                lines.leave();
            }
            break;
        case Kind::Modes:
            lines.list(name, state.modes.size(), state.set);
            for (const QVariant &mode : state.modes)
                lines.value(name, mode, true);
            break;
        case Kind::Child: // keeps the values read before an error, although it is not set
            if (state.set || (hasObject && state.objects.first().touched)) {
                lines.enter(name, -1, state.set);
                if (hasObject)
                    state.objects.first().list(lines);
                lines.leave();
            }
            break;
        case Kind::Alternative:
            if (choice == member.bit && state.set && hasObject) {
                lines.enter(name);
                state.objects.first().list(lines);
                lines.leave();
            }
            break;
        default:
            lines.value(name, state.value, state.set);
        }
    }
}

} // namespace Damage

// SPDX-License-Identifier: MIT
#include "documents/compare/ChangeLine.h"

#include <limits>

#include <tunerdocuments/DocumentError.h>

#include "documents/compare/Contents.h"
#include "documents/json/JsonForm.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {

namespace ChangeLine {

namespace {

Json text(const QString &path)
{
    return JsonText::fromString(path);
}

QByteArray keyOf(const MemberView &member)
{
    const QLatin1String name = member.GetName();
    return QByteArray(name.data(), name.size());
}

/// Adds a member as documents have it: by its key if it is set, in "unset" if it has a value although it is not set.
void addState(Json &object, Json &unset, const QByteArray &key, const MemberView &member)
{
    Json value = JsonForm::ofMember(member);
    if (member.IsSet())
        object.insert(key, std::move(value));
    else if (holdsObjects(member) ? !value.isEmpty() : Contents::differsFromDefault(member))
        unset.insert(key, std::move(value));
}

void close(Json &object, Json &&unset)
{
    if (!unset.isEmpty())
        object.insert(Key::unset, std::move(unset));
}

void addStates(Json &line, const Difference &difference)
{
    Json unset = Json::emptyObject();
    // The choice has no flag; without one, nothing is chosen.
    addState(line, unset, Key::before, *difference.first.member);
    addState(line, unset, Key::after, *difference.second.member);
    close(line, std::move(unset));
}

void addFlags(Json &line, const Difference &difference)
{
    Json flags = Json::emptyObject();
    flags.insert(Key::before, difference.first.member->IsSet());
    flags.insert(Key::after, difference.second.member->IsSet());
    line.insert(Key::set, std::move(flags));
}

Json identityOf(const DataObject &item)
{
    Json identity = Json::emptyObject();
    Json unset = Json::emptyObject();
    const auto add = [&](const MemberView &member) {
        if (member.IsIdentifying())
            addState(identity, unset, keyOf(member), member);
    };
    const QVector<Step> steps = stepsToIdentity(item);
    if (steps.isEmpty())
        visit(item, add);
    else
        visit(chosenIn(item)->GetChild(), add);
    close(identity, std::move(unset));
    return identity;
}

/// An item, or an object, that only one document has.
void addWhole(Json &line, const char *key, const char *positionKey, const DifferencePlace &place)
{
    if (place.position() >= 0)
        line.insert(positionKey, place.position() + 1);
    const DataObject *const object = place.object();
    line.insert(key, object ? JsonForm::ofObject(*object) : Json::emptyObject());
}

void addListFlags(Json &line, const Difference &difference)
{
    if (difference.firstListIsSet)
        line.insert(Key::listWasSet, *difference.firstListIsSet);
    if (difference.secondListIsSet)
        line.insert(Key::listIsSet, *difference.secondListIsSet);
}

QString quoted(const Json &json)
{
    const QString text = json.isText() ? JsonText::toString(json.text()) : JsonText::toString(JsonText::compact(json));
    return QLatin1Char('\'') + JsonText::shortened(text) + QLatin1Char('\'');
}

[[noreturn]] void wrongType(const Json &json, const QByteArray &key, const QString &what)
{
    throw JsonFailure(quoted(json) + QLatin1Char(' ') + what).within(JsonText::toString(key));
}

void checkType(const QByteArray &key, const Json &value)
{
    const auto isFlag = [](const Json *flag) { return flag && flag->isBoolean(); };
    if (key == Key::path || key == Key::newPath) {
        if (!value.isText())
            wrongType(value, key, QStringLiteral("is not a string"));
    } else if (key == Key::from || key == Key::to) {
        if (!value.isWholeNumber() || value.isNegative() || value.toNumber<quint64>() < 1
            || value.toNumber<quint64>() > quint64(std::numeric_limits<int>::max()))
            wrongType(value, key, QStringLiteral("is not a position, counted from 1"));
    } else if (key == Key::listWasSet || key == Key::listIsSet) {
        if (!value.isBoolean())
            wrongType(value, key, QStringLiteral("is not true or false"));
    } else if (key == Key::set) {
        if (!value.isObject() || value.members().size() != 2 || !isFlag(value.find(Key::before))
            || !isFlag(value.find(Key::after)))
            wrongType(value, key,
                      QStringLiteral("is not an object with the members before and after, which are true or false"));
    } else if (key == Key::unset) {
        if (!value.isObject())
            wrongType(value, key, QStringLiteral("is not an object"));
        for (const Json::Member &member : value.members()) {
            if (member.key != Key::before && member.key != Key::after)
                throw JsonFailure(QStringLiteral("unknown member '%1'; expected before or after")
                                      .arg(JsonText::shortened(JsonText::toString(member.key))))
                    .within(JsonText::toString(key));
        }
    }
}

/// The members of a line besides "change", "path" and "newPath".
QVector<QByteArray> membersOf(Difference::Kind kind)
{
    switch (kind) {
    case Difference::Removed:
        return {Key::from, Key::listWasSet, Key::listIsSet, Key::before};
    case Difference::Added:
        return {Key::to, Key::listWasSet, Key::listIsSet, Key::after};
    case Difference::Changed:
        return {Key::before, Key::after, Key::unset, Key::set};
    case Difference::Renamed:
        return {Key::before, Key::after};
    case Difference::Moved:
        break;
    }
    return {Key::from, Key::to};
}

QVector<QByteArray> requiredOf(Difference::Kind kind)
{
    switch (kind) {
    case Difference::Removed:
        return {Key::path, Key::before};
    case Difference::Added:
        return {Key::path, Key::after};
    case Difference::Changed:
        return {Key::path};
    case Difference::Renamed:
        return {Key::path, Key::before, Key::after};
    case Difference::Moved:
        break;
    }
    return {Key::path, Key::from, Key::to};
}

QString listed(const QVector<QByteArray> &names)
{
    QStringList texts;
    for (const QByteArray &name : names)
        texts.append(JsonText::toString(name));
    return Suggestion::listed(texts);
}

} // namespace

const QVector<QByteArray> &kindNames()
{
    static const QVector<QByteArray> names = {"removed", "added", "changed", "moved", "renamed"};
    return names;
}

Json compose(const Difference &difference)
{
    Json line = Json::emptyObject();
    line.insert(Key::change, Json(kindNames()[difference.kind]));
    line.insert(Key::path, text(difference.path));
    if (difference.secondPath != difference.path)
        line.insert(Key::newPath, text(difference.secondPath));
    switch (difference.kind) {
    case Difference::Removed:
        addWhole(line, Key::before, Key::from, difference.first);
        addListFlags(line, difference);
        break;
    case Difference::Added:
        addWhole(line, Key::after, Key::to, difference.second);
        addListFlags(line, difference);
        break;
    case Difference::Changed:
        if (difference.isFlagOnly)
            addFlags(line, difference);
        else
            addStates(line, difference);
        break;
    case Difference::Moved:
        line.insert(Key::from, difference.first.position() + 1);
        line.insert(Key::to, difference.second.position() + 1);
        break;
    case Difference::Renamed:
        line.insert(Key::before, identityOf(*difference.first.object()));
        line.insert(Key::after, identityOf(*difference.second.object()));
        break;
    }
    return line;
}

void check(const Json &line)
{
    if (!line.isObject())
        throw JsonFailure(quoted(line) + QStringLiteral(" is not an object"));
    const Json *const change = line.find(Key::change);
    const int kind = change && change->isText() ? int(kindNames().indexOf(change->text())) : -1;
    if (kind < 0 && change)
        throw JsonFailure(QStringLiteral("unknown change %1; expected %2").arg(quoted(*change), listed(kindNames())));
    if (kind < 0)
        throw JsonFailure(QStringLiteral("the member 'change' is missing"));
    for (const QByteArray &key : requiredOf(Difference::Kind(kind))) {
        if (!line.find(key))
            throw JsonFailure(QStringLiteral("the member '%1' is missing").arg(JsonText::toString(key)));
    }
    const QVector<QByteArray> known =
        QVector<QByteArray>{Key::change, Key::path, Key::newPath} + membersOf(Difference::Kind(kind));
    for (const Json::Member &member : line.members()) {
        if (!known.contains(member.key))
            throw JsonFailure(QStringLiteral("unknown member '%1'; expected %2")
                                  .arg(JsonText::shortened(JsonText::toString(member.key)), listed(known)));
        checkType(member.key, member.value);
    }
}

QVector<Step> stepsToIdentity(const DataObject &item)
{
    const auto chosen = chosenIn(item);
    return chosen && chosen->GetSize() != 0 ? QVector<Step>{{chosen->GetName(), -1}} : QVector<Step>();
}

} // namespace ChangeLine

QByteArray toJson(const Difference &difference, const QString &name)
{
    try {
        return JsonText::compact(ChangeLine::compose(difference));
    } catch (const JsonFailure &failure) {
        const QString text = difference.path.isEmpty() ? name : name + QStringLiteral(": ") + difference.path;
        throw UnstorableContent(failure.text(text));
    }
}

} // namespace TunerDocuments

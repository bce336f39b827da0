// SPDX-License-Identifier: MIT
#include "documents/compare/Change.h"

#include <QStringList>

#include "documents/compare/ChangeLine.h"
#include "documents/compare/Contents.h"
#include "documents/json/JsonForm.h"

using namespace JobXml;

namespace TunerDocuments {

namespace Key = ChangeLine::Key;

namespace {

using Direction = Patch::Direction;

Difference::Kind inDirection(Difference::Kind kind, Direction direction)
{
    if (direction == Direction::Forward || (kind != Difference::Added && kind != Difference::Removed))
        return kind;
    return kind == Difference::Added ? Difference::Removed : Difference::Added;
}

// --- In memory
// --------------------------------------------------------------------------------------------------------

class DifferenceSide final : public ChangeSide
{
public:
    DifferenceSide(const DifferencePlace &place, const std::optional<bool> &listIsSet)
        : m_place(place), m_listIsSet(listIsSet)
    {
    }

    ValueState value(const MemberView &) const override
    {
        return {m_place.member->GetValue(), m_place.member->IsSet()};
    }
    bool flag() const override { return m_place.member->IsSet(); }
    bool objectIsSet() const override { return m_place.member->IsSet(); }
    WholeObject object(const QVector<Step> &) const override { return {m_place.object()}; }
    WholeObject identity(const QVector<Step> &) const override
    {
        const DataObject *const item = m_place.object();
        const auto chosen = chosenIn(*item);
        return {chosen ? &chosen->GetChild() : item};
    }
    int position() const override { return m_place.position(); }
    std::optional<bool> listIsSet() const override { return m_listIsSet; }

private:
    const DifferencePlace &m_place;
    const std::optional<bool> &m_listIsSet;
};

class DifferenceChange final : public Change
{
public:
    DifferenceChange(const Difference &difference, Direction direction)
        : m_difference(difference), m_direction(direction), m_first(difference.first, difference.firstListIsSet),
          m_second(difference.second, difference.secondListIsSet)
    {
    }

    Difference::Kind kind() const override { return inDirection(m_difference.kind, m_direction); }
    QString path() const override { return isForward() ? m_difference.path : m_difference.secondPath; }
    bool isFlagOnly() const override { return m_difference.isFlagOnly; }
    const ChangeSide &before() const override { return isForward() ? m_first : m_second; }
    const ChangeSide &after() const override { return isForward() ? m_second : m_first; }

private:
    bool isForward() const { return m_direction == Direction::Forward; }

    const Difference &m_difference;
    const Direction m_direction;
    const DifferenceSide m_first;
    const DifferenceSide m_second;
};

// --- As JSON
// ----------------------------------------------------------------------------------------------------------

class LineSide final : public ChangeSide
{
public:
    enum Which { Before, After };

    LineSide(const Json &line, Which which) : m_line(line), m_which(which) { }

    ValueState value(const MemberView &member) const override
    {
        if (const Json *const set = m_line.find(key()))
            return {JsonForm::readValue(member, *set), true};
        if (const Json *const held = unset())
            return {JsonForm::readValue(member, *held), false};
        return {member.GetDefaultValue(), false};
    }
    bool flag() const override { return m_line.find(Key::set)->find(key())->toBoolean(); }
    bool objectIsSet() const override { return m_line.find(key()); }
    WholeObject object(const QVector<Step> &steps) const override
    {
        const Json *const set = m_line.find(key());
        const Json *const json = set ? set : unset();
        if (!json)
            return {};
        auto owner = std::make_shared<TunerProperties>();
        DataObject &object = Contents::newObjectAt(*owner, steps);
        JsonForm::readInto(object, *json);
        return {&object, owner};
    }
    WholeObject identity(const QVector<Step> &steps) const override { return object(steps); }
    int position() const override
    {
        const Json *const position = m_line.find(m_which == Before ? Key::from : Key::to);
        return position ? position->toNumber<int>() - 1 : -1;
    }
    std::optional<bool> listIsSet() const override
    {
        const Json *const flag = m_line.find(m_which == Before ? Key::listWasSet : Key::listIsSet);
        return flag ? std::optional<bool>(flag->toBoolean()) : std::nullopt;
    }

private:
    const char *key() const { return m_which == Before ? Key::before : Key::after; }

    const Json *unset() const
    {
        const Json *const unset = m_line.find(Key::unset);
        return unset ? unset->find(key()) : nullptr;
    }

    const Json &m_line;
    const Which m_which;
};

class LineChange final : public Change
{
public:
    LineChange(const Json &line, Direction direction)
        : m_line(line), m_direction(direction), m_before(line, LineSide::Before), m_after(line, LineSide::After)
    {
    }

    Difference::Kind kind() const override
    {
        const auto index = ChangeLine::kindNames().indexOf(m_line.find(Key::change)->text());
        return inDirection(Difference::Kind(index), m_direction);
    }
    QString path() const override
    {
        const Json *const newPath = m_line.find(Key::newPath);
        const Json *const path = newPath && !isForward() ? newPath : m_line.find(Key::path);
        return JsonText::toString(path->text());
    }
    bool isFlagOnly() const override { return m_line.find(Key::set); }
    const ChangeSide &before() const override { return isForward() ? m_before : m_after; }
    const ChangeSide &after() const override { return isForward() ? m_after : m_before; }

private:
    bool isForward() const { return m_direction == Direction::Forward; }

    const Json &m_line;
    const Direction m_direction;
    const LineSide m_before;
    const LineSide m_after;
};

} // namespace

std::unique_ptr<Change> changeOf(const Difference &difference, Patch::Direction direction)
{
    return std::make_unique<DifferenceChange>(difference, direction);
}

std::unique_ptr<Change> changeOf(const Json &line, Patch::Direction direction)
{
    return std::make_unique<LineChange>(line, direction);
}

} // namespace TunerDocuments

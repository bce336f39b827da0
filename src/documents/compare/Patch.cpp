// SPDX-License-Identifier: MIT
#include <tunerdocuments/Patch.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <QHash>
#include <QStringList>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Path.h>

#include "documents/compare/ChangeLine.h"
#include "documents/compare/Contents.h"
#include "documents/compare/Edits.h"
#include "documents/json/JsonForm.h"
#include "text/Printable.h"

using namespace JobXml;

namespace TunerDocuments {

namespace Key = ChangeLine::Key;

namespace {

QString failureText(const QString &path, const QString &reason)
{
    return path.isEmpty() ? reason : path + QStringLiteral(": ") + reason;
}

} // namespace

PatchFailure::PatchFailure(const QString &path, const QString &reason)
    : std::runtime_error(Printable::onOneLine(failureText(path, reason)).toStdString()), m_path(path),
      m_text(failureText(path, reason))
{
}

PatchFailure::PatchFailure(const PatchFailure &) = default;

PatchFailure::~PatchFailure() = default;

namespace {

using Direction = Patch::Direction;

// --- Where changes are -----------------------------------------------------------------------------------------------

/// The steps of a path as they are written.
QStringList stepsOf(const QString &path)
{
    QStringList steps{QString()};
    bool isQuoted = false;
    for (int i = 0; i < path.size(); ++i) {
        const QChar character = path[i];
        if (character == QLatin1Char('"'))
            isQuoted = !isQuoted;
        if (character == QLatin1Char('/') && !isQuoted) {
            steps.append(QString());
            continue;
        }
        steps.last() += character;
        if (isQuoted && character == QLatin1Char('\\') && i + 1 < path.size())
            steps.last() += path[++i];
    }
    return steps;
}

QString joined(const QString &path, const QString &step)
{
    return path.isEmpty() ? step : path + QLatin1Char('/') + step;
}

/// A member, or an item of a list, in the document that is being changed.
struct Place
{
    QVector<Step> steps; ///< to the object that has the member
    MemberView member;
    int index; ///< of the item; -1 if this is not an item

    QVector<Step> stepsToChild() const { return steps + QVector<Step>{{member.GetName(), index}}; }
};

/// Finds the places of changes in a document, which must not change meanwhile. Many changes concern the same lists,
/// whose steps are found once.
class Finder
{
public:
    explicit Finder(const DataObject &root) : m_root(root) { }

    /// The place at the end of the path. For an item that does not exist yet, the list alone. Throws PatchFailure.
    Place find(const QString &path, bool isNew)
    {
        const QStringList texts = stepsOf(path);
        const DataObject *object = &m_root;
        QVector<Step> steps;
        QString passed;
        for (int i = 0; i < texts.size(); ++i) {
            const bool isLast = i + 1 == texts.size();
            Place place = memberIn(*object, steps, texts[i], isLast && isNew, joined(passed, texts[i]));
            if (isLast)
                return place;
            passed = joined(passed, texts[i]);
            steps = place.stepsToChild();
            object = &childAt(place, passed);
        }
        throw PatchFailure(path, QStringLiteral("the path is empty"));
    }

private:
    Place memberIn(const DataObject &object, const QVector<Step> &steps, const QString &text, bool isNew,
                   const QString &path)
    {
        const auto member = memberNamed(object, text.left(text.indexOf(QLatin1Char('['))));
        const bool hasSelection = text.contains(QLatin1Char('['));
        if (!member || (hasSelection && member->GetKind() != MemberKind::ObjectList))
            return otherwise(object, steps, text, path);
        if (!hasSelection || isNew)
            return {steps, *member, -1};
        const QHash<QString, int> &known = indexesIn(object, *member);
        const auto found = known.find(text);
        return found == known.end() ? otherwise(object, steps, text, path) : Place{steps, *member, *found};
    }

    /// Steps that are not written as the library writes them.
    static Place otherwise(const DataObject &object, QVector<Step> steps, const QString &text, const QString &path)
    {
        try {
            const Paths::Target target = Paths::find(object, text);
            for (int i = 0; i + 1 < target.steps.size(); ++i)
                steps.append(target.steps[i]);
            return {steps, target.member, target.steps.last().index};
        } catch (const PathFailure &failure) {
            const QString prefix = path.left(path.size() - text.size());
            throw PatchFailure(prefix.isEmpty() ? prefix : prefix.left(prefix.size() - 1), failure.text());
        }
    }

    const DataObject &childAt(const Place &place, const QString &path) const
    {
        if (!holdsObjects(place.member))
            throw PatchFailure(path, QStringLiteral("is a value and has no members"));
        const bool isList = place.member.GetKind() == MemberKind::ObjectList;
        if (isList && place.index < 0 && place.member.GetSize() != 1)
            throw PatchFailure(path, QStringLiteral("is a list; select an item"));
        if (place.member.GetSize() == 0)
            throw PatchFailure(path, QStringLiteral("has no data"));
        return place.member.GetChild(qMax(place.index, 0));
    }

    const QHash<QString, int> &indexesIn(const DataObject &object, const MemberView &list)
    {
        QHash<QString, int> &known = m_indexes[{&object, list.GetName()}];
        if (known.isEmpty()) {
            const QStringList steps = Paths::stepsTo(list);
            for (int i = 0; i < steps.size(); ++i)
                known.insert(steps[i], i);
        }
        return known;
    }

    const DataObject &m_root;
    QHash<QPair<const DataObject *, QString>, QHash<QString, int>> m_indexes;
};

// --- What a change is ------------------------------------------------------------------------------------------------

/// An object of a change, null if it equals a new one, and the document that keeps it.
struct Whole
{
    const DataObject *object = nullptr;
    std::shared_ptr<TunerProperties> owner = nullptr;
};

/// One side of a change, in one of its two documents.
class Side
{
public:
    virtual ~Side() = default;
    /// The value of the member.
    virtual ValueState value(const MemberView &member) const = 0;
    /// The flag of a list or an object whose content does not change.
    virtual bool flag() const = 0;
    /// The flag of an object that changes as a whole.
    virtual bool objectIsSet() const = 0;
    /// The whole object. `steps` lead to an object of its class.
    virtual Whole object(const QVector<Step> &steps) const = 0;
    /// The object that has the identity of a renamed item; of its members, only those count.
    virtual Whole identity(const QVector<Step> &steps) const = 0;
    /// The position of an item, from 0.
    virtual int position() const = 0;
    /// The flag of the list of an item, if it does not follow from the number of its items.
    virtual std::optional<bool> listIsSet() const = 0;
};

class Change
{
public:
    virtual ~Change() = default;
    virtual Difference::Kind kind() const = 0;
    virtual QString path() const = 0;
    virtual bool isFlagOnly() const = 0;
    virtual const Side &before() const = 0;
    virtual const Side &after() const = 0;
};

Difference::Kind inDirection(Difference::Kind kind, Direction direction)
{
    if (direction == Direction::Forward || (kind != Difference::Added && kind != Difference::Removed))
        return kind;
    return kind == Difference::Added ? Difference::Removed : Difference::Added;
}

// --- Changes in memory -----------------------------------------------------------------------------------------------

class DifferenceSide final : public Side
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
    Whole object(const QVector<Step> &) const override { return {m_place.object()}; }
    Whole identity(const QVector<Step> &) const override
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
    const Side &before() const override { return isForward() ? m_first : m_second; }
    const Side &after() const override { return isForward() ? m_second : m_first; }

private:
    bool isForward() const { return m_direction == Direction::Forward; }

    const Difference &m_difference;
    const Direction m_direction;
    const DifferenceSide m_first;
    const DifferenceSide m_second;
};

// --- Changes as JSON -------------------------------------------------------------------------------------------------

class LineSide final : public Side
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
    Whole object(const QVector<Step> &steps) const override
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
    Whole identity(const QVector<Step> &steps) const override { return object(steps); }
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
        const int index = ChangeLine::kindNames().indexOf(m_line.find(Key::change)->text());
        return inDirection(Difference::Kind(index), m_direction);
    }
    QString path() const override
    {
        const Json *const newPath = m_line.find(Key::newPath);
        const Json *const path = newPath && !isForward() ? newPath : m_line.find(Key::path);
        return JsonText::toString(path->text());
    }
    bool isFlagOnly() const override { return m_line.find(Key::set); }
    const Side &before() const override { return isForward() ? m_before : m_after; }
    const Side &after() const override { return isForward() ? m_after : m_before; }

private:
    bool isForward() const { return m_direction == Direction::Forward; }

    const Json &m_line;
    const Direction m_direction;
    const LineSide m_before;
    const LineSide m_after;
};

// --- From changes to edits -------------------------------------------------------------------------------------------

/// The changes of one list, until all of them are known.
struct ListChanges
{
    struct Placed
    {
        int position;
        int index; ///< of an item of the list; -1 for one that is added
        const DataObject *added;
        QString path;
    };

    struct Removed
    {
        int index;
        QString path;
    };

    MemberView list;
    MemberEdit &edit;
    QVector<Removed> removed{};
    std::vector<Placed> placed{};
    bool hasOtherItems = false;
    std::optional<bool> isSet{};
};

/// Collects the edits of a document that the changes mean, and checks that they fit.
class Binder
{
public:
    explicit Binder(const TunerProperties &document) : m_finder(document) { }

    void add(const Change &change)
    {
        const QString path = change.path();
        try {
            addAt(change, path);
        } catch (const JsonFailure &failure) {
            throw PatchFailure(path, failure.text(QString()).mid(2)); // after the colon
        }
    }

    /// The edits of all changes that were added.
    const ObjectEdit &edits()
    {
        for (const auto &changes : m_lists)
            arrange(*changes);
        for (const auto &[edit, path] : qAsConst(m_replaced)) {
            if (!edit->children.empty())
                throwTwice(path);
        }
        return m_root;
    }

private:
    void addAt(const Change &change, const QString &path)
    {
        const bool isNew = change.kind() == Difference::Added;
        const Place place = m_finder.find(path, isNew);
        const bool isList = place.member.GetKind() == MemberKind::ObjectList;
        MemberEdit &edit = m_root.at(place.steps).members[place.member.GetName()];
        switch (change.kind()) {
        case Difference::Removed:
        case Difference::Added:
            if (isList)
                addOrRemoveItem(change, place, edit, path);
            else
                addOrRemoveObject(change, place, edit, path);
            break;
        case Difference::Moved:
            requireItem(place, path);
            listChanges(place, edit).placed.push_back({change.after().position(), place.index, nullptr, path});
            break;
        case Difference::Renamed:
            requireItem(place, path);
            rename(change, place, path);
            break;
        case Difference::Changed:
            if (change.isFlagOnly())
                changeFlag(change, place, edit, path);
            else if (holdsObjects(place.member))
                replaceObject(change, place, edit, path);
            else
                changeValue(change, place.member, edit, path);
            break;
        }
    }

    void addOrRemoveItem(const Change &change, const Place &place, MemberEdit &edit, const QString &path)
    {
        ListChanges &list = listChanges(place, edit);
        list.hasOtherItems = true;
        if (const auto isSet = change.after().listIsSet())
            list.isSet = isSet;
        if (change.kind() == Difference::Added) {
            const DataObject *const object = kept(change.after().object(place.stepsToChild()));
            list.placed.push_back({change.after().position(), -1, object, path});
            return;
        }
        requireItem(place, path);
        const DataObject &item = place.member.GetChild(place.index);
        requireAlike(kept(change.before().object(place.stepsToChild())), &item, path);
        list.removed.append({place.index, path});
    }

    void addOrRemoveObject(const Change &change, const Place &place, MemberEdit &edit, const QString &path)
    {
        const bool isAdded = change.kind() == Difference::Added;
        requireObject(place, path);
        if (isAdded && (place.member.IsSet() || !Contents::textOfChild(place.member).isEmpty()))
            throw PatchFailure(path, QStringLiteral("exists already"));
        if (!isAdded && !place.member.IsSet())
            throw PatchFailure(path, QStringLiteral("is not set"));
        if (!isAdded)
            requireAlike(kept(change.before().object(place.stepsToChild())), childOf(place), path);
        replace(edit, isAdded ? kept(change.after().object(place.stepsToChild())) : nullptr, isAdded, path);
    }

    void replaceObject(const Change &change, const Place &place, MemberEdit &edit, const QString &path)
    {
        requireObject(place, path);
        requireFlag(change.before().objectIsSet(), place.member, path);
        requireAlike(kept(change.before().object(place.stepsToChild())), childOf(place), path);
        replace(edit, kept(change.after().object(place.stepsToChild())), change.after().objectIsSet(), path);
    }

    void replace(MemberEdit &edit, const DataObject *replacement, bool isSet, const QString &path)
    {
        if (edit.isReplaced || edit.flag)
            throwTwice(path);
        m_replaced.append({&edit, path});
        edit.isReplaced = true;
        edit.replacement = replacement;
        edit.flag = isSet;
    }

    static void changeFlag(const Change &change, const Place &place, MemberEdit &edit, const QString &path)
    {
        if (place.index >= 0 || !holdsObjects(place.member))
            throw PatchFailure(path, QStringLiteral("is neither an object nor a list, so it has no flag alone"));
        requireFlag(change.before().flag(), place.member, path);
        if (edit.flag)
            throwTwice(path);
        edit.flag = change.after().flag();
    }

    static void changeValue(const Change &change, const MemberView &member, MemberEdit &edit, const QString &path)
    {
        const ValueState expected = change.before().value(member);
        const ValueState present{member.GetValue(), member.IsSet()};
        if (expected.text() != present.text())
            throw PatchFailure(path, QStringLiteral("expected %1, but it is %2").arg(expected.text(), present.text()));
        if (edit.value)
            throwTwice(path);
        edit.value = change.after().value(member);
        if (member.GetKind() == MemberKind::Choice)
            edit.value->isSet = true; // it has no flag
    }

    void rename(const Change &change, const Place &place, const QString &path)
    {
        const QVector<Step> steps =
            place.stepsToChild() + ChangeLine::stepsToIdentity(place.member.GetChild(place.index));
        const auto present = chosenIn(place.member.GetChild(place.index));
        const DataObject &holder =
            present && present->GetSize() != 0 ? present->GetChild() : place.member.GetChild(place.index);
        const DataObject *const before = kept(change.before().identity(steps));
        const DataObject *const after = kept(change.after().identity(steps));
        ObjectEdit &edit = m_root.at(steps);
        visit(holder, [&](const MemberView &member) {
            if (!member.IsIdentifying())
                return;
            const ValueState expected = stateIn(*before, member);
            const ValueState found{member.GetValue(), member.IsSet()};
            const QString memberPath = joined(path, member.GetName());
            if (expected.text() != found.text())
                throw PatchFailure(memberPath,
                                   QStringLiteral("expected %1, but it is %2").arg(expected.text(), found.text()));
            MemberEdit &name = edit.members[member.GetName()];
            if (name.value)
                throwTwice(memberPath);
            name.value = stateIn(*after, member);
        });
    }

    static ValueState stateIn(const DataObject &object, const MemberView &member)
    {
        const auto same = memberNamed(object, member.GetName());
        return {same->GetValue(), same->IsSet()};
    }

    static const DataObject *childOf(const Place &place)
    {
        return place.member.GetSize() == 0 ? nullptr : &place.member.GetChild();
    }

    static void requireItem(const Place &place, const QString &path)
    {
        if (place.index < 0)
            throw PatchFailure(path, QStringLiteral("is not an item of a list"));
    }

    static void requireObject(const Place &place, const QString &path)
    {
        const MemberKind kind = place.member.GetKind();
        if (kind == MemberKind::ObjectList)
            throw PatchFailure(path, QStringLiteral("is a list; only its items and its flag change"));
        if (kind != MemberKind::Object && kind != MemberKind::Alternative)
            throw PatchFailure(path, QStringLiteral("is a value; it can be changed, but neither added nor removed"));
    }

    static void requireFlag(bool expected, const MemberView &member, const QString &path)
    {
        if (member.IsSet() != expected)
            throw PatchFailure(path,
                               member.IsSet() ? QStringLiteral("expected it not to be set, but it is")
                                              : QStringLiteral("expected it to be set, but it is not"));
    }

    /// Null is an object that equals a new one.
    static void requireAlike(const DataObject *expected, const DataObject *present, const QString &path)
    {
        QString found;
        if (expected && present) {
            findDifferences(*expected, *present, [&](const Difference &difference) {
                if (found.isNull())
                    found = difference.text();
            });
        } else if (const DataObject *const one = expected ? expected : present) {
            found = Contents::text(*one, Contents::Amount::Brief, true);
            if (!found.isEmpty())
                found.prepend(expected ? QStringLiteral("- ") : QStringLiteral("+ "));
        }
        if (!found.isEmpty())
            throw PatchFailure(path, QStringLiteral("differs from what the changes expect: ") + found);
    }

    [[noreturn]] static void throwTwice(const QString &path)
    {
        throw PatchFailure(path, QStringLiteral("is changed twice"));
    }

    ListChanges &listChanges(const Place &place, MemberEdit &edit)
    {
        ListChanges *&known = m_listsByEdit[&edit];
        if (!known) {
            m_lists.push_back(std::make_unique<ListChanges>(ListChanges{place.member, edit}));
            known = m_lists.back().get();
        }
        return *known;
    }

    static void arrange(const ListChanges &changes)
    {
        const int size = changes.list.GetSize();
        MemberEdit &edit = changes.edit;
        QVector<bool> isTaken(size, false); // items that are removed or have another place
        for (const ListChanges::Removed &removed : changes.removed) {
            if (std::exchange(isTaken[removed.index], true) || edit.children.count(removed.index) != 0)
                throwTwice(removed.path);
        }
        const int isAdded = int(
            std::count_if(changes.placed.begin(), changes.placed.end(), [](const auto &one) { return one.index < 0; }));
        QVector<int> order(size - changes.removed.size() + isAdded, -1);
        for (const ListChanges::Placed &placed : changes.placed) {
            if (placed.position < 0)
                throw PatchFailure(placed.path, QStringLiteral("the position is missing"));
            if (placed.position >= order.size())
                throw PatchFailure(placed.path,
                                   QStringLiteral("cannot be at %1, since there will be only %2")
                                       .arg(placed.position + 1)
                                       .arg(order.size()));
            if (order[placed.position] >= 0)
                throw PatchFailure(placed.path, QStringLiteral("two items cannot be at %1").arg(placed.position + 1));
            if (placed.index >= 0 && std::exchange(isTaken[placed.index], true))
                throwTwice(placed.path);
            if (placed.index < 0)
                edit.added.append(placed.added);
            order[placed.position] = placed.index >= 0 ? placed.index : size + edit.added.size() - 1;
        }
        auto free = order.begin();
        for (int i = 0; i < size; ++i) {
            if (isTaken[i])
                continue;
            free = std::find(free, order.end(), -1);
            *free = i;
        }
        if (!edit.flag && changes.hasOtherItems)
            edit.flag = changes.isSet.value_or(!order.isEmpty());
        edit.order = order;
    }

    const DataObject *kept(const Whole &whole)
    {
        if (whole.owner)
            m_owners.push_back(whole.owner);
        return whole.object;
    }

    Finder m_finder;
    ObjectEdit m_root;
    std::vector<std::unique_ptr<ListChanges>> m_lists;
    QHash<const MemberEdit *, ListChanges *> m_listsByEdit;
    QVector<QPair<const MemberEdit *, QString>> m_replaced;
    std::vector<std::shared_ptr<TunerProperties>> m_owners;
};

} // namespace

// --- Patch -----------------------------------------------------------------------------------------------------------

/// Either lines, or differences of two documents, to which they refer.
struct Patch::Changes
{
    TunerProperties first;
    TunerProperties second;
    QVector<Difference> differences;
    std::vector<Json> lines;
};

Patch::Patch() : m_changes(std::make_shared<Changes>()) { }
Patch::Patch(const Patch &) = default;
Patch::Patch(Patch &&) noexcept = default;
Patch &Patch::operator=(const Patch &) = default;
Patch &Patch::operator=(Patch &&) noexcept = default;
Patch::~Patch() = default;

Patch Patch::between(const TunerProperties &first, const TunerProperties &second)
{
    const auto changes = std::make_shared<Changes>();
    changes->first = TunerProperties(first); // assigning would share the data with a document that may be in use
    changes->second = TunerProperties(second);
    const auto &documents = std::as_const(*changes);
    changes->differences = findDifferences(documents.first, documents.second);
    Patch patch;
    patch.m_changes = changes;
    return patch;
}

Patch Patch::fromJson(const QByteArray &lines, const QString &name)
{
    const auto changes = std::make_shared<Changes>();
    int number = 0;
    for (int begin = 0; begin < lines.size();) {
        const int feed = lines.indexOf('\n', begin);
        const int end = feed < 0 ? lines.size() : feed;
        const QByteArray text = lines.mid(begin, end - begin);
        begin = end + 1;
        ++number;
        if (text.trimmed().isEmpty())
            continue;
        try {
            Json json = JsonText::parse(text);
            ChangeLine::check(json);
            changes->lines.push_back(std::move(json));
        } catch (const JsonFailure &failure) {
            // An error in the text has its place in the line.
            throw DocumentError(failure.text(QStringLiteral("%1: line %2").arg(name).arg(number)));
        }
    }
    Patch patch;
    patch.m_changes = changes;
    return patch;
}

bool Patch::isEmpty() const
{
    return m_changes->differences.isEmpty() && m_changes->lines.empty();
}

void Patch::apply(TunerProperties &document, Direction direction) const
{
    const TunerProperties original = document; // visited only, so all places stay where they are
    Binder binder(original);
    for (const Difference &difference : m_changes->differences)
        binder.add(DifferenceChange(difference, direction));
    for (const Json &line : m_changes->lines)
        binder.add(LineChange(line, direction));
    TunerDocuments::apply(binder.edits(), document);
}

} // namespace TunerDocuments

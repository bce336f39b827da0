// SPDX-License-Identifier: MIT
#include <tunerdocuments/Editor.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <tuple>

#include <jobxml/Visit.h>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/compare/EditBinder.h"
#include "documents/compare/Edits.h"
#include "documents/edit/AvoidableLoss.h"
#include "documents/edit/JsonEditor.h"
#include "documents/edit/PathEdits.h"
#include "documents/values/DocumentSize.h"
#include "documents/values/FindMember.h"
#include "documents/values/Identical.h"
#include "documents/xml/XmlEditor.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// The steps to the object that has the member of a target.
QVector<Step> objectOf(const Paths::Target &target)
{
    return target.steps.mid(0, target.steps.size() - 1);
}

/// Calls the action with the object at the steps and its member; the objects on the way count as set afterwards. What
/// items have chosen stays.
template <class Action>
void editMember(DataObject &object, const QVector<Step> &steps, int depth, Action &&action)
{
    const Step &step = steps.at(depth);
    const auto choice = choiceOf(object);
    const QVariant chosen = choice ? choice->GetValue() : QVariant();
    bool isChosen = true;
    visit(object, [&](MemberEditor &member) {
        if (member.GetName() != step.member)
            return;
        if (depth + 1 == steps.size())
            return action(object, member);
        isChosen = member.IsChosen();
        editMember(member.EditChild(qMax(step.index, 0)), steps, depth + 1, action);
    });
    if (!isChosen)
        chooseAgain(object, chosen);
}

/// Whether the steps lead to an object.
bool leadsToObject(const DataObject &root, const QVector<Step> &steps)
{
    const DataObject *object = &root;
    for (const Step &step : steps) {
        const DataObject *child = nullptr;
        visit(*object, [&](const MemberView &member) {
            const int index = qMax(step.index, 0);
            const bool isThere = member.IsChosen() || member.IsSet();
            if (member.GetName() == step.member && isThere && index < member.GetSize())
                child = &member.GetChild(index);
        });
        if (!child)
            return false;
        object = child;
    }
    return true;
}

/// Some order of objects.
struct StepsBefore
{
    bool operator()(const QVector<Step> &left, const QVector<Step> &right) const
    {
        return std::lexicographical_compare(
            left.begin(), left.end(), right.begin(), right.end(), [](const Step &one, const Step &other) {
                return std::tie(one.index, one.member) < std::tie(other.index, other.member);
            });
    }
};

} // namespace

class Q_DECL_HIDDEN Editor::Private
{
public:
    Private(Document &&document, const QByteArray &bytes, QString name)
        : m_document(std::move(document)), m_original(bytes), m_name(std::move(name))
    {
        checkSize(bytes, m_name);
        if (m_document.tuner.GetValidate())
            m_document.tuner.SetValidate(false);
        if (m_document.form == Form::Json)
            m_json = std::make_unique<JsonEditor>(bytes, m_document.tuner);
        if (m_document.form != Form::Xml)
            return;
        auto xml = std::make_unique<XmlEditor>(bytes, m_document.tuner);
        m_reason = xml->refusal();
        if (m_reason.isNull())
            m_xml = std::move(xml);
    }

    const Document &document() const { return m_document; }
    bool isChanged() const { return m_isEdited; }
    bool mayCauseProblems() const { return m_mayCauseProblems; }
    bool isInPlace() const { return m_xml || m_json; }
    QString reason() const { return m_reason; }
    void rewrite()
    {
        m_reason = QString();
        m_xml.reset();
        m_json.reset();
    }

    void set(const QString &path, const QString &text)
    {
        const Paths::Target target = Paths::find(m_document.tuner, path);
        const QVariant value = TypedValue::parse(target.member, text);
        const MemberKind kind = target.member.GetKind();
        const bool isSame =
            target.member.IsSet() && ValueText::ofValue(target.member.GetValue()) == ValueText::ofValue(value);
        if (kind == MemberKind::Choice && !isSame) {
            m_mayCauseProblems = true;
            choose(target, value);
            return;
        }
        m_mayCauseProblems = m_mayCauseProblems || !isSetOnTheWay(target.steps);
        const bool isUnchanged = isSame && hasExactly(target, text);
        store(target, value);
        if (isUnchanged)
            return;
        // Not every reader knows all words for infinity.
        const bool isTyped =
            kind != MemberKind::EnumerationList && kind != MemberKind::Text && std::isfinite(value.toDouble());
        follow(target, [&](auto &editor) {
            editor.storeValue(objectOf(target), target.steps.last().member, isTyped ? text : QString());
        });
    }

    void unset(const QString &path)
    {
        const Paths::Target target = Paths::find(m_document.tuner, path);
        if (target.isItem())
            throw TypedValue::Mismatch(
                QStringLiteral("cannot unset an item of a list; 'remove' it, or unset the whole list"));
        const MemberKind kind = target.member.GetKind();
        const bool isObject =
            kind == MemberKind::Object || kind == MemberKind::ObjectList || kind == MemberKind::Alternative;
        if (!target.member.IsSet() && !isObject
            && ValueText::ofValue(target.member.GetValue()) == ValueText::ofValue(target.member.GetDefaultValue()))
            return;
        m_mayCauseProblems = true;
        const bool wasChosen = kind == MemberKind::Alternative && target.member.IsChosen();
        QStringList alternatives;
        editMember(m_document.tuner, target.steps, 0, [&](DataObject &item, MemberEditor &member) {
            member.Reset();
            const QStringList remaining = wasChosen ? alternativesWithData(item) : QStringList();
            if (remaining.size() == 1) // it would be chosen when it is read
                chooseAgain(item, remaining.first());
            if (kind != MemberKind::Choice)
                return;
            visit(item, [&](MemberEditor &alternative) { // whichever is there would be chosen when it is read
                if (alternative.GetKind() == MemberKind::Alternative && alternative.IsSet()) {
                    alternatives.append(alternative.GetName());
                    alternative.Reset();
                }
            });
        });
        const QVector<Step> object = objectOf(target);
        const QString member = target.steps.last().member;
        follow(target, [&](auto &editor) {
            if (!alternatives.isEmpty()) {
                for (const QString &alternative : qAsConst(alternatives))
                    editor.storeObject(object, alternative);
            } else if (isObject) {
                editor.storeObject(object, member);
            } else {
                editor.storeValue(object, member);
            }
        });
    }

    /// Makes the changes that `collect` adds to edits of the document.
    template <class Edits, class Collect>
    void change(Collect &&collect)
    {
        Edits edits(m_document.tuner);
        collect(edits);
        const ObjectEdit &edit = edits.edits();
        inText([&] {
            if (m_json)
                m_json->finishStoring();
        });
        apply(edit, m_document.tuner);
        m_isEdited = true;
        m_isRearranged = true;
        m_mayCauseProblems = true;
        followBy([&](auto &editor) { editor.follow(edit); });
    }

    void become(const TunerProperties &changed)
    {
        if (areIdentical(m_document.tuner, changed))
            return;
        if (!isInPlace()) {
            m_document.tuner = changed;
            m_document.tuner.SetValidate(false);
            m_isEdited = true;
            m_mayCauseProblems = true;
            return;
        }
        const QVector<Difference> differences = findDifferences(m_document.tuner, changed);
        if (differences.isEmpty())
            return;
        change<EditBinder>([&](EditBinder &binder) {
            for (const Difference &difference : differences)
                binder.add(*changeOf(difference, Patch::Direction::Forward));
        });
    }

    Findings newProblems(int most) const
    {
        if (!m_mayCauseProblems)
            return Findings(most);
        Findings all(0);
        m_document.tuner.VisitProblems([&](const Problem &problem) { all.add(problem); });
        return all.isEmpty() ? Findings(most) // and the original needs no look
                             : TunerDocuments::newProblems(original().tuner, m_document.tuner, most);
    }

    /// The bytes were read before, so nothing limits how far they expand.
    Document original() const { return Document::fromBytes(m_original, m_name, ofAnySize()); }

    QByteArray toBytes() const
    {
        if (!m_reason.isNull())
            cannotEdit(m_reason);
        if (!isInPlace())
            return m_document.toBytes(m_document.form, m_name);
        if (!m_isEdited)
            return m_original;
        if (m_isRearranged)
            requireFaithful();
        return inText([&] { return m_xml ? editedBy(*m_xml) : editedBy(*m_json); });
    }

    QVector<Loss> losses() const
    {
        if (isInPlace())
            return m_isRearranged ? differencesIn(textInPlace()) : QVector<Loss>();
        // First, while there are no losses yet, of which there may be two for every four bytes.
        const bool losesUnknownContent = hasUnknownContent();
        QVector<Loss> result = m_document.lossesIn(m_document.toBytes(m_document.form, m_name), m_document.form);
        if (losesUnknownContent)
            result.append({QString(), QString(), QString(),
                           m_document.form == Form::Xml
                               ? QStringLiteral("comments, layout and content that the model does not have are lost")
                               : QStringLiteral("content that the model does not have is lost")});
        return result;
    }

private:
    QByteArray textInPlace() const
    {
        return inText([&] { return m_xml ? m_xml->document() : m_json->document(); });
    }

    /// What the edited text reads as, other than the description.
    QVector<Loss> differencesIn(const QByteArray &text) const { return m_document.lossesIn(text, m_document.form); }

    LoadOptions ofAnySize() const
    {
        return LoadOptions().setForm(m_document.form).setMaxExpansion(std::numeric_limits<int>::max());
    }

    /// What the edited text does not have must be what the form cannot hold.
    void requireFaithful() const
    {
        const QByteArray text = textInPlace();
        if (differencesIn(text).isEmpty())
            return;
        const auto read = [&](const QByteArray &bytes) {
            return Document::fromBytes(bytes, m_name, ofAnySize()).tuner;
        };
        const QString loss =
            avoidableLoss(m_document.tuner, read(text), read(m_document.toBytes(m_document.form, m_name)));
        if (!loss.isNull())
            cannotEdit(loss);
    }

    template <class TextEditor>
    QByteArray editedBy(TextEditor &text) const
    {
        if (m_isRearranged)
            return text.document(); // which was compared as a whole
        for (const QVector<Step> &object : m_edited) {
            if (!leadsToObject(m_document.tuner, object))
                continue; // a later change has removed it
            const QString mismatch = text.mismatchOf(object);
            if (!mismatch.isNull())
                cannotEdit(mismatch);
        }
        return text.document();
    }

    /// Whether the text has a value exactly as it was typed, not only one that reads as the same.
    bool hasExactly(const Paths::Target &target, const QString &typed) const
    {
        if (!isInPlace() || target.member.GetKind() == MemberKind::Choice) // a choice follows from an object
            return true;
        const QVector<Step> object = objectOf(target);
        const QString member = target.steps.last().member;
        return inText([&] {
            return m_xml ? m_xml->hasExactly(object, member, typed) : m_json->hasExactly(object, member, typed);
        });
    }

    /// Whether writing the document unchanged would lose something that the description does not have.
    bool hasUnknownContent() const
    {
        if (m_document.form == Form::Json || m_document.form == Form::Snapshot)
            return false; // their readers refuse it
        const Document before = original();
        if (m_document.form == Form::Xml)
            return before.toBytes(Form::Xml, m_name) != m_original;
        const QByteArray written = before.toBytes(Form::Tagged, m_name);
        qint64 losses = 0;
        before.lossesIn(written, Form::Tagged, 0, &losses); // which are counted, not kept
        if (losses != 0)
            return false; // the size differs for that reason, which is listed
        // A null text may have become an empty one, of the same size.
        constexpr int sizeAt = 8; // of the uncompressed representation, in the compressed one
        const qint64 size = m_document.form == Form::Tagged
            ? m_original.size()
            : m_original.mid(sizeAt, sizeof(quint32)).toHex().toLongLong(nullptr, 16);
        return written.size() != size;
    }

    /// Whether storing a value sets nothing else.
    bool isSetOnTheWay(const QVector<Step> &steps) const
    {
        const DataObject *object = &m_document.tuner;
        for (int depth = 0; depth + 1 < steps.size(); ++depth) {
            const MemberView member = *memberNamed(*object, steps.at(depth).member);
            const int index = qMax(steps.at(depth).index, 0);
            if (!member.IsSet() || !member.IsChosen() || index >= member.GetSize())
                return false;
            object = &member.GetChild(index);
        }
        return true;
    }

    /// Stores the value as the setter does while it validates.
    void store(const Paths::Target &target, const QVariant &value)
    {
        bool isStored = false;
        editMember(m_document.tuner, target.steps, 0, [&](DataObject &object, MemberEditor &member) {
            object.SetValidate(true);
            try {
                isStored = member.SetValue(value);
            } catch (...) {
                object.SetValidate(false);
                throw;
            }
            object.SetValidate(false);
        });
        if (!isStored)
            throw TypedValue::Mismatch(QStringLiteral("cannot store '%1'").arg(TypedValue::print(value)));
    }

    /// The item then holds an empty value of that kind; the one before is removed.
    void choose(const Paths::Target &target, const QVariant &value)
    {
        const QVector<Step> item = objectOf(target);
        const QString before = target.member.GetValue().toString();
        const QString after = value.toString();
        const auto alternative = [&](const QString &name) {
            QVector<Step> steps = item;
            steps.append({name, -1});
            return steps;
        };
        if (!before.isEmpty())
            editMember(m_document.tuner, alternative(before), 0,
                       [](DataObject &, MemberEditor &member) { member.Reset(); });
        store(target, value);
        editMember(m_document.tuner, alternative(after), 0,
                   [](DataObject &, MemberEditor &member) { member.EditChild(); });
        follow(target, [&](auto &editor) {
            if (!before.isEmpty())
                editor.storeObject(item, before);
            editor.storeObject(item, after);
        });
    }

    /// Changes the text, too.
    template <class Action>
    void follow(const Paths::Target &target, Action &&action)
    {
        m_isEdited = true;
        followBy(action);
        const QVector<Step> object = objectOf(target);
        if (m_knownEdited.insert(object).second)
            m_edited.append(object);
    }

    template <class Action>
    void followBy(Action &&action)
    {
        inText([&] {
            if (m_xml)
                action(*m_xml);
            else if (m_json)
                action(*m_json);
        });
    }

    /// The result of an operation on the text.
    template <class Operation>
    auto inText(Operation &&operation) const -> decltype(operation())
    {
        try {
            return operation();
        } catch (const CannotEdit &exception) {
            cannotEdit(exception.why);
        }
    }

    [[noreturn]] void cannotEdit(const QString &why) const
    {
        throw UnstorableContent(m_name + QStringLiteral(": cannot edit the document in place: ") + why);
    }

    Document m_document;
    const QByteArray m_original;
    const QString m_name;
    // Both are null if the document is written anew.
    std::unique_ptr<XmlEditor> m_xml;
    std::unique_ptr<JsonEditor> m_json;
    QString m_reason;
    QVector<QVector<Step>> m_edited; // the objects whose text has changed
    std::set<QVector<Step>, StepsBefore> m_knownEdited; // the same
    bool m_isEdited = false;
    bool m_isRearranged = false; // by more than values
    bool m_mayCauseProblems = false;
};

Editor::Editor(Document document, const QByteArray &bytes, const QString &name)
    : d(std::make_unique<Private>(std::move(document), bytes, name))
{
}

Editor::~Editor() = default;

const Document &Editor::document() const
{
    return d->document();
}

void Editor::set(const QString &path, const QString &value)
{
    d->set(path, value);
}

void Editor::unset(const QString &path)
{
    d->unset(path);
}

void Editor::add(const QString &path, const QByteArray &content, const QString &contentName)
{
    d->change<PathEdits>([&](PathEdits &edits) { edits.add(path, content, contentName); });
}

void Editor::remove(const QStringList &paths)
{
    d->change<PathEdits>([&](PathEdits &edits) { edits.remove(paths); });
}

void Editor::move(const QString &path, int position)
{
    d->change<PathEdits>([&](PathEdits &edits) { edits.move(path, position); });
}

void Editor::become(const TunerProperties &changed)
{
    d->become(changed);
}

bool Editor::isChanged() const
{
    return d->isChanged();
}

bool Editor::mayCauseProblems() const
{
    return d->mayCauseProblems();
}

Findings Editor::newProblems(int most) const
{
    return d->newProblems(most);
}

Document Editor::original() const
{
    return d->original();
}

bool Editor::isInPlace() const
{
    return d->isInPlace();
}

QString Editor::reasonAgainst() const
{
    return d->reason();
}

void Editor::rewrite()
{
    d->rewrite();
}

QVector<Loss> Editor::losses() const
{
    return d->losses();
}

QByteArray Editor::toBytes() const
{
    return d->toBytes();
}

} // namespace TunerDocuments

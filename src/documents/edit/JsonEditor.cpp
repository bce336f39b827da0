// SPDX-License-Identifier: MIT
#include "documents/edit/JsonEditor.h"

#include <cmath>
#include <functional>
#include <numeric>
#include <optional>
#include <utility>

#include <QStringList>

#include <jobxml/Visit.h>

#include "documents/compare/Contents.h"
#include "documents/edit/JsonEntries.h"
#include "documents/json/JsonForm.h"
#include "documents/json/JsonVersion.h"
#include "documents/values/CannotEdit.h"
#include "documents/values/ExactNotation.h"
#include "documents/values/FindMember.h"
#include "documents/values/ItemArrangement.h"
#include "documents/values/NameArrangement.h"
#include "documents/values/UnlikeRead.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// Whether a reader reads the same value of the member from both.
bool areReadAlike(const MemberView &member, const Json &one, const Json &other)
{
    if (member.GetKind() == MemberKind::Float && one.isReal() && other.isReal())
        return std::equal_to<>()(one.toNumber<float>(), other.toNumber<float>())
            && std::signbit(one.toNumber<double>()) == std::signbit(other.toNumber<double>());
    return JsonText::compact(one) == JsonText::compact(other);
}

/// The text that the user typed, if it is that value of the member in JSON; null otherwise.
QByteArray sameInJson(const QString &typed, const Json &value, const MemberView &member)
{
    if (typed.isNull())
        return QByteArray();
    try {
        const QByteArray text = typed.toUtf8();
        return areReadAlike(member, JsonText::parse(text), value) ? text : QByteArray();
    } catch (const JsonFailure &) {
        return QByteArray(); // 007
    }
}

/// Why JSON cannot hold the document, with the path from it.
std::optional<JsonFailure> failureIn(const TunerProperties &document)
{
    try {
        JsonForm::ofObject(document);
    } catch (const JsonFailure &failure) {
        return failure;
    }
    return {};
}

} // namespace

JsonEditor::JsonEditor(const QByteArray &document, const TunerProperties &tuner) : m_tuner(tuner), m_text(document)
{
    visit(JsonReading::documentOfVersion(tuner.GetInitialVersionLoaded()), [this](const MemberView &member) {
        if (member.IsSet())
            m_setByVersion.append(member.GetName());
    });
}

const Json &JsonEditor::json()
{
    if (!m_isParsed)
        m_json = JsonText::parse(m_text);
    m_isParsed = true;
    return m_json;
}

void JsonEditor::storeValue(const QVector<Step> &object, const QString &member, const QString &typed)
{
    m_stored.at(object).members[member].typed = typed;
}

bool JsonEditor::hasExactly(const QVector<Step> &object, const QString &member, const QString &typed)
{
    if (isStored(object, member))
        return false;
    const Json *const value = JsonForm::valueAt(json(), object + QVector<Step>{{member, -1}});
    return value && hasExactly(*value, *memberNamed(*objectAt(m_tuner, object), member), typed);
}

bool JsonEditor::hasExactly(const Json &value, const MemberView &member, const QString &typed) const
{
    const QByteArray written = value.isText() ? value.text() : textOf(value);
    return isExactNotation(member.GetKind(), JsonText::toString(written), typed);
}

/// Whether the text will follow the present value.
bool JsonEditor::isStored(const QVector<Step> &object, const QString &member) const
{
    const ObjectEdit *edit = &m_stored;
    for (const Step &step : object) {
        const auto found = edit->members.find(step.member);
        if (found == edit->members.end())
            return false;
        if (found->second.isReplaced)
            return true;
        const auto child = found->second.children.find(qMax(step.index, 0));
        if (child == found->second.children.end())
            return false;
        edit = &child->second;
    }
    return edit->members.count(member) != 0;
}

void JsonEditor::storeObject(const QVector<Step> &object, const QString &member)
{
    m_stored.at(object).members[member].isReplaced = true;
}

void JsonEditor::finishStoring()
{
    if (m_stored.members.empty())
        return;
    follow(m_stored);
    m_stored = ObjectEdit();
}

void JsonEditor::follow(const ObjectEdit &edit)
{
    try {
        const Json &document = *JsonForm::valueAt(json(), {});
        m_layout.emplace(m_text, json(), document);
        const Replacements replacements = replacementsIn(document, m_tuner, edit);
        if (replacements.isEmpty())
            return;
        m_text = replaced(m_text, 0, int(m_text.size()), replacements);
        m_isParsed = false;
    } catch (const JsonFailure &failure) {
        throw CannotEdit{failureIn(m_tuner).value_or(failure).textInDocument()};
    }
}

QByteArray JsonEditor::document()
{
    finishStoring();
    return m_text;
}

// --- Objects ---------------------------------------------------------------------------------------------------------

/// The members of a JSON object, or those in its "unset".
class JsonEditor::Members
{
public:
    Members(const JsonEditor &editor, const Json &json, const DataObject &described)
        : m_json(json), m_entries(editor.m_text, *editor.m_layout, json)
    {
        m_order.append(QLatin1String(JsonForm::versionKey));
        visit(described, [&](const MemberView &member) { m_order.append(member.GetName()); });
    }

    const Json *find(const QByteArray &key) const { return m_json.find(key); }
    void remove(const QByteArray &key) { m_entries.remove(m_entries.indexOf(key)); }

    /// The text of a value that takes the place of the one that the key has.
    QByteArray laidOut(const QByteArray &key, const Json &value, const QByteArray &typed) const
    {
        return typed.isNull() ? m_entries.laidOut(value, m_entries.indexOf(key)) : typed;
    }

    /// The member follows those that are written before it.
    void add(const QByteArray &key, const Json &value, const QByteArray &typed)
    {
        const auto position = m_order.indexOf(JsonText::toString(key));
        int before = -1;
        int i = 0;
        for (const Json::Member &member : m_json.members()) {
            const auto other = m_order.indexOf(JsonText::toString(member.key));
            if (position < 0 || (other >= 0 && other < position)) // one that is not of the model comes last
                before = i;
            ++i;
        }
        if (i == 0)
            m_entries.addFirst({pairOf(key, value, typed, -1)});
        else if (before < 0)
            m_entries.addBefore(0, pairOf(key, value, typed, 0));
        else
            m_entries.addAfter(before, pairOf(key, value, typed, before));
    }

    Replacements replacements() const { return m_entries.replacements(); }

private:
    QByteArray pairOf(const QByteArray &key, const Json &value, const QByteArray &typed, int neighbor) const
    {
        return '"' + key + '"' + m_entries.colonAt(neighbor)
            + (typed.isNull() ? m_entries.laidOut(value, neighbor) : typed);
    }

    const Json &m_json;
    JsonEntries m_entries;
    QStringList m_order;
};

/// The items of a list, for arrangeItems(). An item is known by its index in the text.
class JsonEditor::Items
{
public:
    Items(const JsonEditor &editor, Replacements &out, const Json &list)
        : m_editor(editor), m_out(out), m_list(list), m_entries(editor.m_text, *editor.m_layout, list)
    {
    }

    void changeItem(int item, const DataObject &described, const ObjectEdit &edit)
    {
        m_out += m_editor.replacementsIn(jsonOf(item), described, edit);
    }
    QByteArray movedItem(int item, const DataObject &described, const ObjectEdit &edit)
    {
        const Json &json = jsonOf(item);
        return replaced(m_editor.m_text, int(json.textBegin()), int(json.textEnd()),
                        m_editor.replacementsIn(json, described, edit));
    }
    QByteArray newItem(const DataObject &described, int neighbor)
    {
        return m_entries.laidOut(JsonForm::ofObject(described), neighbor);
    }
    void remove(int item) { m_entries.remove(item); }
    void addBefore(int item, const QByteArray &text) { m_entries.addBefore(item, text); }
    void addAfter(int item, const QByteArray &text) { m_entries.addAfter(item, text); }
    void addFirst(const QByteArrayList &texts) { m_entries.addFirst(texts); }

    Replacements replacements() const { return m_entries.replacements(); }

private:
    const Json &jsonOf(int item) const { return m_list.items().at(std::size_t(item)); }

    const JsonEditor &m_editor;
    Replacements &m_out;
    const Json &m_list;
    JsonEntries m_entries;
};

/// A list of names, for arrangeNames().
class JsonEditor::Names
{
public:
    Names(const JsonEditor &editor, Replacements &out, const Json &list, const MemberView &member)
        : m_editor(editor), m_out(out), m_list(list), m_known(member.GetNames()), m_value(JsonForm::ofMember(member)),
          m_entries(editor.m_text, *editor.m_layout, list)
    {
    }

    QStringList before() const { return namesOf(m_list); }
    QStringList after() const { return namesOf(m_value); }

    void replace(int place, int name, int origin)
    {
        const Json &json = m_list.items().at(std::size_t(place));
        m_out.append({int(json.textBegin()), int(json.textEnd()), text(name, origin)});
    }
    void remove(int place) { m_entries.remove(place); }
    void addBefore(int place, int name, int origin) { m_entries.addBefore(place, text(name, origin)); }
    void addAfter(int place, int name, int origin) { m_entries.addAfter(place, text(name, origin)); }
    void addFirst(int name) { m_entries.addFirst({text(name, -1)}); }

    Replacements replacements() const { return m_entries.replacements(); }

private:
    /// The names, however they are written. A number of a value without a name is its own name; null is none.
    QStringList namesOf(const Json &list) const
    {
        QStringList names;
        for (const Json &entry : list.items()) {
            const int number = entry.isWholeNumber() ? entry.toNumber<int>() : -1;
            names.append(entry.isText()     ? JsonText::toString(entry.text())
                             : number == -1 ? QString()
                                            : m_known.value(number, QString::number(number)));
        }
        return names;
    }
    QByteArray text(int name, int origin) const
    {
        return origin < 0 ? JsonText::compact(m_value.items().at(std::size_t(name)))
                          : m_editor.textOf(m_list.items().at(std::size_t(origin)));
    }

    const JsonEditor &m_editor;
    Replacements &m_out;
    const Json &m_list;
    const QStringList m_known;
    const Json m_value;
    JsonEntries m_entries;
};

Replacements JsonEditor::replacementsInNames(const Json &list, const MemberView &member) const
{
    Replacements out;
    Names names(*this, out, list, member);
    arrangeNames(names, names.before(), names.after());
    return out + names.replacements();
}

/// Where the text has to have a member. Reading an older version may set one that the text does not have; only "unset"
/// unsets it then.
JsonForm::MemberPlace JsonEditor::placeOf(const MemberView &member, const DataObject &object) const
{
    const bool isUnset = !member.IsSet() && &object == &m_tuner && m_setByVersion.contains(member.GetName());
    return isUnset ? JsonForm::MemberPlace::Unset : JsonForm::placeOf(member, object);
}

/// The changes of an object and of everything in it. What was typed is written if it is the same value in JSON.
Replacements JsonEditor::replacementsIn(const Json &json, const DataObject &object, const ObjectEdit &edit) const
{
    Replacements out;
    if (edit.members.empty())
        return out;
    const Json noUnset = Json::emptyObject();
    const Json *const unsetJson = json.find(JsonForm::unsetKey);
    Members members(*this, json, object);
    Members unset(*this, unsetJson ? *unsetJson : noUnset, object);
    Json addedUnset = Json::emptyObject();
    int unsetCount = unsetJson ? int(unsetJson->members().size()) : 0;
    // Whatever makes an alternative appear or disappear may change what the text has to choose.
    bool isChosenAnew = false;
    const auto isUnset = [&](const MemberView &member) {
        return unset.find(QByteArray(member.GetName().data(), member.GetName().size())) != nullptr;
    };
    visit(object, [&](const MemberView &member) {
        const MemberEdit *const found = edit.of(member);
        isChosenAnew = isChosenAnew
            || (found
                && (member.GetKind() == MemberKind::Choice
                    || (member.GetKind() == MemberKind::Alternative
                        && (found->flag || found->isReplaced || isUnset(member)))));
    });
    visit(object, [&](const MemberView &member) {
        const MemberEdit *const found = edit.of(member);
        if (!found && !(isChosenAnew && member.GetKind() == MemberKind::Choice))
            return;
        const QByteArray key(member.GetName().data(), member.GetName().size());
        const JsonForm::MemberPlace place = placeOf(member, object);
        const Json *const before = members.find(key);
        const Json *const beforeUnset = unset.find(key);
        if (before && place != JsonForm::MemberPlace::Members)
            members.remove(key);
        if (beforeUnset && place != JsonForm::MemberPlace::Unset) {
            unset.remove(key);
            --unsetCount;
        }
        if (place == JsonForm::MemberPlace::Nowhere)
            return;
        const bool mayKeepText = found && !found->isReplaced && holdsObjects(member);
        if (before && place == JsonForm::MemberPlace::Members && mayKeepText) {
            const auto nested = found->children.find(0);
            if (before->isList()) {
                QVector<int> all(int(before->items().size()));
                std::iota(all.begin(), all.end(), 0);
                Items items(*this, out, *before);
                arrangeItems(items, all, member, *found);
                out += items.replacements();
            } else if (nested != found->children.end()) {
                out += replacementsIn(*before, member.GetChild(), nested->second);
            }
            return;
        }
        Json value = JsonForm::ofMember(member);
        const Json *const old = place == JsonForm::MemberPlace::Members ? before : beforeUnset;
        Members &target = place == JsonForm::MemberPlace::Members ? members : unset;
        const QString typed = found ? found->typed : QString();
        const bool isSame = old && JsonText::compact(*old) == JsonText::compact(value);
        if (isSame && (typed.isNull() || hasExactly(*old, member, typed)))
            return;
        const QByteArray text = sameInJson(typed, value, member);
        const bool areNames = member.GetKind() == MemberKind::EnumerationList;
        if (old && areNames && !old->isEmpty() && !value.isEmpty()) {
            out += replacementsInNames(*old, member);
        } else if (old) {
            out.append({int(old->textBegin()), int(old->textEnd()), target.laidOut(key, value, text)});
        } else if (place == JsonForm::MemberPlace::Members) {
            members.add(key, value, text);
        } else if (unsetJson) {
            unset.add(key, value, text);
            ++unsetCount;
        } else {
            addedUnset.insert(key, std::move(value));
        }
    });
    if (!addedUnset.isEmpty())
        members.add(JsonForm::unsetKey, addedUnset, QByteArray());
    else if (unsetJson && unsetCount == 0)
        members.remove(JsonForm::unsetKey);
    else
        out += unset.replacements();
    return out + members.replacements();
}

QString JsonEditor::mismatchOf(const QVector<Step> &steps)
{
    finishStoring();
    const DataObject &described = *objectAt(m_tuner, steps);
    const bool isChoice = choiceOf(described).has_value(); // which may follow from the objects in it
    const Json *const object = JsonForm::valueAt(json(), steps);
    const QByteArray text = !object || !object->isObject() ? QByteArray("{}") // nothing of it is left
        : isChoice                                         ? textOf(*object)
                                                           : valuesIn(*object, described);
    TunerProperties document;
    DataObject &read = Contents::newObjectAt(document, steps);
    if (!steps.isEmpty())
        JsonForm::readInto(read, JsonText::parse(text));
    else if (JsonForm::read(document, "{\"" + m_tuner.GetObjectName().toUtf8() + "\":" + text + '}') > 0)
        return QStringLiteral("the changed text cannot be read");
    return firstUnlikeRead(described, read, isChoice);
}

/// The text of an object, or of its "unset", without the objects in it.
QByteArray JsonEditor::valuesIn(const Json &json, const DataObject &described) const
{
    QStringList objects;
    visit(described, [&](const MemberView &member) {
        if (holdsObjects(member))
            objects.append(member.GetName());
    });
    QByteArrayList values;
    for (const Json::Member &member : json.members()) {
        if (member.key == JsonForm::unsetKey && member.value.isObject())
            values.append('"' + member.key + "\":" + valuesIn(member.value, described));
        else if (!objects.contains(JsonText::toString(member.key)))
            values.append('"' + member.key + "\":" + textOf(member.value));
    }
    return '{' + values.join(',') + '}';
}

QByteArray JsonEditor::textOf(const Json &value) const
{
    return m_text.mid(int(value.textBegin()), int(value.textEnd() - value.textBegin()));
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "documents/edit/JsonEditor.h"

#include <algorithm>
#include <optional>

#include <QStringList>

#include <jobxml/Visit.h>

#include "documents/json/JsonForm.h"
#include "documents/values/CannotEdit.h"
#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The text that the user typed, if it is the same value in JSON.
QByteArray typedOr(const QString &typed, const QByteArray &value)
{
    if (typed.isNull())
        return value;
    try {
        const QByteArray text = typed.toUtf8();
        return JsonText::compact(JsonText::parse(text)) == JsonText::compact(JsonText::parse(value)) ? text : value;
    } catch (const JsonFailure &) {
        return value; // 007
    }
}

} // namespace

JsonEditor::JsonEditor(const QByteArray &document, const TunerProperties &tuner) : m_tuner(tuner), m_text(document) { }

/// The JSON of the object, in which everything that is set has a member.
const Json &JsonEditor::objectIn(const QVector<Step> &steps)
{
    if (!m_isParsed)
        m_json = JsonText::parse(m_text);
    m_isParsed = true;
    // An edit of an object that is not set sets it, so it would have to move out of "unset".
    for (int depth = 0; depth < steps.size(); ++depth) {
        const Json *const outer = JsonForm::valueAt(m_json, steps.mid(0, depth));
        const Json *const unset = outer && outer->isObject() ? outer->find(JsonForm::unsetKey) : nullptr;
        if (unset && unset->find(steps.at(depth).member.toUtf8()))
            throw CannotEdit{QStringLiteral("'%1' is in \"unset\"").arg(steps.at(depth).member)};
    }
    const Json *const object = JsonForm::valueAt(m_json, steps);
    if (!object || !object->isObject())
        throw CannotEdit{QStringLiteral("its text has no such object")};
    return *object;
}

void JsonEditor::replace(int begin, int end, const QByteArray &text)
{
    m_text.replace(begin, end - begin, text);
    m_isParsed = false;
}

void JsonEditor::storeValue(const QVector<Step> &object, const QString &member, const QString &typed)
{
    const MemberView view = *memberNamed(*objectAt(m_tuner, object), member);
    try {
        store(object, member,
              view.IsSet() ? typedOr(typed, JsonText::compact(JsonForm::ofMember(view))) : QByteArray());
    } catch (const JsonFailure &failure) {
        throw CannotEdit{failure.text(member)};
    }
}

void JsonEditor::storeObject(const QVector<Step> &object, const QString &member)
{
    const DataObject &described = *objectAt(m_tuner, object);
    const MemberView view = *memberNamed(described, member);
    const bool isThere = view.IsSet() && view.IsChosen();
    store(object, member, isThere ? JsonText::compact(JsonForm::ofMember(view)) : QByteArray());
    // A choice is a value of its own.
    visit(described, [&](const MemberView &choice) {
        if (choice.GetKind() == MemberKind::Choice)
            storeValue(object, choice.GetName());
    });
}

/// Stores the value, or removes the member if it is empty.
void JsonEditor::store(const QVector<Step> &steps, const QString &member, const QByteArray &value)
{
    const QByteArray key = member.toUtf8();
    if (const Json *const unset = objectIn(steps).find(JsonForm::unsetKey); unset && unset->find(key)) {
        if (unset->members().size() == 1)
            remove(objectIn(steps), JsonForm::unsetKey);
        else
            remove(*unset, key);
    }
    const Json &object = objectIn(steps);
    const Json *const old = object.find(key);
    if (value.isEmpty()) {
        if (old)
            remove(object, key);
    } else if (!old) {
        insert(object, *objectAt(m_tuner, steps), key, value);
    } else if (JsonText::compact(*old) != JsonText::compact(JsonText::parse(value))) {
        replace(int(old->textBegin()), int(old->textEnd()), value);
    }
}

/// The member follows those that are written before it, laid out as they are.
void JsonEditor::insert(const Json &object, const DataObject &described, const QByteArray &key, const QByteArray &value)
{
    QStringList order = {QLatin1String(JsonForm::versionKey)};
    visit(described, [&](const MemberView &member) { order.append(member.GetName()); });
    const int position = order.indexOf(QString::fromUtf8(key));
    const Json *before = nullptr;
    for (const Json::Member &member : object.members()) {
        const int other = order.indexOf(QString::fromUtf8(member.key));
        if (other >= 0 && other < position)
            before = &member.value;
    }
    const QByteArray pair = '"' + key + "\": " + value;
    if (object.isEmpty()) {
        replace(int(object.textBegin()) + 1, int(object.textEnd()) - 1, pair);
        return;
    }
    // The blanks before a member separate it from the one before.
    const Json &sample = before ? *before : object.members().front().value;
    const int begin = int(sample.memberBegin());
    int blanks = begin;
    while (isBlank(m_text.at(blanks - 1)))
        --blanks;
    QByteArray separator = m_text.mid(blanks, begin - blanks);
    const bool isFirst = &sample == &object.members().front().value;
    if (isFirst && separator.isEmpty())
        separator = " ";
    if (before)
        replace(int(before->textEnd()), int(before->textEnd()), ',' + separator + pair);
    else
        replace(begin, begin, pair + ',' + separator);
}

void JsonEditor::remove(const Json &object, const QByteArray &key)
{
    const Json::Object &members = object.members();
    const auto at =
        std::find_if(members.begin(), members.end(), [&](const Json::Member &member) { return member.key == key; });
    int begin = int(at->value.memberBegin());
    int end = int(at->value.textEnd());
    if (std::next(at) != members.end()) {
        end = int(std::next(at)->value.memberBegin()); // with the comma after it
    } else if (at != members.begin()) {
        begin = int(std::prev(at)->value.textEnd()); // with the comma before it
    }
    replace(begin, end, QByteArray());
}

QString JsonEditor::mismatchOf(const QVector<Step> &steps)
{
    const Json &object = objectIn(steps);
    QString mismatch;
    visit(*objectAt(m_tuner, steps), [&](const MemberView &member) {
        if (!mismatch.isNull() || holdsObjects(member))
            return;
        const Json *const value = object.find(QByteArray(member.GetName().data(), member.GetName().size()));
        const QByteArray expected = member.IsSet() ? JsonText::compact(JsonForm::ofMember(member)) : QByteArray();
        const QByteArray found = value ? JsonText::compact(*value) : QByteArray();
        if (expected != found && member.GetKind() != MemberKind::Choice)
            mismatch = QStringLiteral("%1: %2 would be read as %3")
                           .arg(member.GetName(), QString::fromUtf8(expected), QString::fromUtf8(found));
    });
    return mismatch;
}

} // namespace TunerDocuments

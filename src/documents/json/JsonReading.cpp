// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include <tunerdocuments/Path.h>

#include "documents/json/JsonChoice.h"
#include "documents/json/JsonMembers.h"
#include "documents/json/JsonPlace.h"
#include "documents/json/JsonProblems.h"
#include "documents/json/JsonValues.h"
#include "documents/json/JsonVersion.h"
#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {

namespace JsonForm {

namespace {

using namespace JsonReading;

/// Reads a document, twice if it has problems: their paths contain what identifies the items, which may follow in the
/// text. So the first time, problems are counted; the second time, they are described.
class Reader
{
public:
    Reader(const QByteArray &text, const Json &whole) : m_whole(whole), m_problems(text), m_values(m_problems)
    {
        m_document.SetValidate(false);
    }

    /// Returns the number of problems.
    qint64 read()
    {
        readWhole();
        return m_problems.count();
    }

    const TunerProperties &document() const { return m_document; }

    /// Calls the visitor with the first `most` problems. Call it after read().
    void describe(const JsonProblemVisitor &visitor, qint64 most)
    {
        m_problems.describe([this] { readWhole(); }, visitor, most);
    }

    /// Reads the text as an object of another class. Throws JsonFailure with the first problem.
    void readPart(DataObject &object)
    {
        m_isPart = true;
        readOrThrow([&] { readObject(object, m_whole, Place()); });
    }

    /// Reads the text as the value of a member.
    QVariant readValue(const MemberView &member)
    {
        QVariant value;
        const Place place;
        readOrThrow([&] { value = m_values.read(member, m_whole, {place}); });
        return value;
    }

private:
    template <class Read>
    void readOrThrow(Read read)
    {
        read();
        if (m_problems.count() == 0)
            return;
        JsonProblem first;
        m_problems.describe(
            read, [&](const JsonProblem &problem) { first = problem; }, 1);
        throw first.path.isEmpty() ? JsonFailure(first.message) : JsonFailure(first.message).within(first.path);
    }

    void readWhole()
    {
        const Place document;
        const QString name = m_document.GetObjectName();
        const QByteArray key = name.toLatin1();
        const Json *const members = m_whole.isObject() ? m_whole.find(key) : nullptr;
        if (!members)
            m_problems.report({document}, m_whole.textBegin(),
                              [&] { return QStringLiteral("expected an object with the member '%1'").arg(name); });
        if (!m_whole.isObject())
            return;
        for (const Json::Member &entry : m_whole.members()) {
            if (refuseDuplicate(document, entry))
                continue;
            if (&entry.value == members)
                readDocument(*members, document);
            else if (entry.key == schemaKey)
                m_values.text({document, QLatin1String(schemaKey)}, entry.value);
            else
                refuseUnknown(document, entry, QStringLiteral("the outermost object"), [&] {
                    return QStringList{name, QLatin1String(schemaKey)};
                });
        }
    }

    void readDocument(const Json &json, const Place &place)
    {
        if (!m_problems.isDescribing() && json.isObject()) {
            const Json *const version = json.find(versionKey);
            const QString text = version && version->isText() ? JsonText::toString(version->text()) : QString();
            m_document = documentOfVersion(fitsIntoXml(text) ? text : QString());
        }
        readObject(m_document, json, place);
    }

    void checkVersion(const Json &json, const Place &place)
    {
        const Where where{place, QLatin1String(versionKey)};
        const QVariant version = m_values.text(where, json);
        if (json.isNull())
            m_problems.refuse(where, json, "is not a string");
        else if (version.isValid() && !fitsIntoXml(version.toString()))
            m_problems.refuse(where, json, "is not a version; expected 1.1");
    }

    void readObject(DataObject &object, const Json &json, const Place &place)
    {
        if (!json.isObject())
            return m_problems.refuse({place}, json, "is not an object");
        object.SetValidate(false); // a new object validates
        Members members(object);
        const Choice choice(members, json);
        const Json *const unset = json.find(unsetKey);
        for (const Json::Member &entry : json.members()) {
            if (refuseDuplicate(place, entry))
                continue;
            if (&entry.value == unset)
                readUnset(members, json, *unset, choice, object, place);
            else if (place.isDocument() && !m_isPart && entry.key == versionKey)
                checkVersion(entry.value, place);
            else if (MemberEditor *const member = members.find(entry.key))
                readMember(*member, entry.value, choice, place);
            else
                refuseUnknown(place, entry, object.GetObjectName(), [&] {
                    return place.isDocument() && !m_isPart ? QStringList{QLatin1String(versionKey)} + members.names()
                                                           : members.names();
                });
        }
    }

    void readUnset(Members &members, const Json &json, const Json &unset, const Choice &choice,
                   const DataObject &object, const Place &place)
    {
        if (!unset.isObject())
            return m_problems.refuse({place, QLatin1String(unsetKey)}, unset, "is not an object");
        for (const Json::Member &entry : unset.members()) {
            if (refuseDuplicate(place, entry))
                continue;
            MemberEditor *const member = members.find(entry.key);
            if (!member) {
                refuseUnknown(place, entry, object.GetObjectName(), [&] { return members.names(); });
            } else if (member->GetKind() == MemberKind::Choice) {
                m_problems.report({place}, entry.value.memberBegin(), [&] {
                    return QStringLiteral("'%1' is not allowed in \"unset\"").arg(member->GetName());
                });
            } else if (json.find(entry.key)) {
                m_problems.report({place}, entry.value.memberBegin(), [&] {
                    return QStringLiteral("'%1' is both in \"unset\" and outside it").arg(member->GetName());
                });
            } else {
                readMember(*member, entry.value, choice, place);
                member->SetFlag(false);
            }
        }
    }

    /// Returns whether the object has another member of that key before it.
    bool refuseDuplicate(const Place &place, const Json::Member &entry)
    {
        if (!entry.value.isDuplicate())
            return false;
        m_problems.report({place}, entry.value.memberBegin(), [&] {
            return Description{JsonText::duplicateMember(entry.key), JsonText::shortened(beginning(entry.key))};
        });
        return true;
    }

    template <class Names>
    void refuseUnknown(const Place &place, const Json::Member &member, const QString &in, Names known)
    {
        m_problems.report({place}, member.value.memberBegin(), [&] {
            const QString name = JsonText::shortened(beginning(member.key));
            const QStringList names = known();
            return Description{Paths::unknownMember(name, in, names), name, names, Suggestion::hint(name, names)};
        });
    }

    void readMember(MemberEditor &member, const Json &json, const Choice &choice, const Place &place)
    {
        const Where where{place, member.GetName()};
        switch (member.GetKind()) {
        case MemberKind::Object:
            readObject(member.EditChild(), json, {&place, member.GetName()});
            break;
        case MemberKind::Alternative: {
            DataObject &child = member.EditChild();
            choice.restoreAfter(member); // at once: it identifies the object while its problems are described
            readObject(child, json, {&place, member.GetName()});
            break;
        }
        case MemberKind::ObjectList:
            readItems(member, json, where);
            break;
        case MemberKind::Enumeration:
        case MemberKind::Choice:
            m_values.readName(member, json, where);
            break;
        case MemberKind::EnumerationList:
            m_values.readNames(member, json, where);
            break;
        default:
            if (const QVariant value = m_values.valueFor(member, json, where); value.isValid()) {
                [[maybe_unused]] const bool isStored = member.SetValue(value);
                Q_ASSERT(isStored); // it has the type of the member
            }
        }
    }

    void readItems(MemberEditor &list, const Json &json, const Where &where)
    {
        if (!json.isList())
            return m_problems.refuse(where, json, "is not an array");
        list.SetFlag(true); // even if the list is empty
        Items items(json, list);
        int index = 0;
        int objects = 0;
        for (const Json &item : json.items()) {
            const Place place{&where.place, list.GetName(), index++, &items};
            if (!item.isObject())
                m_problems.refuse({place}, item, "is not an object");
            else
                readObject(m_problems.isDescribing() ? list.EditChild(objects++) : list.AppendChild(), item, place);
        }
    }

    const Json &m_whole;
    Problems m_problems;
    Values m_values;
    TunerProperties m_document;
    bool m_isPart = false; // of a document
};

} // namespace

qint64 read(TunerProperties &document, const QByteArray &utf8, const JsonProblemVisitor &visitor, qint64 most)
{
    Json whole;
    try {
        whole = JsonText::parseLeniently(utf8);
    } catch (const JsonFailure &failure) {
        JsonProblem problem;
        problem.message = failure.message();
        problem.line = failure.line();
        problem.column = failure.column();
        problem.isUnreadable = true;
        if (visitor && most > 0)
            visitor(problem);
        return 1;
    }
    Reader reader(utf8, whole);
    const qint64 problems = reader.read();
    if (problems == 0) {
        const bool validate = document.GetValidate();
        document = reader.document();
        document.SetValidate(validate);
    } else if (visitor) {
        reader.describe(visitor, most);
    }
    return problems;
}

void readInto(DataObject &object, const Json &json)
{
    const QByteArray text = JsonText::compact(json);
    const Json whole = JsonText::parse(text); // whose values know their places in that text
    Reader(text, whole).readPart(object);
}

QVariant readValue(const MemberView &member, const Json &json)
{
    const QByteArray text = JsonText::compact(json);
    const Json whole = JsonText::parse(text);
    return Reader(text, whole).readValue(member);
}

} // namespace JsonForm

} // namespace TunerDocuments

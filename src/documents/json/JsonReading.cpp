// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

#include <QDataStream>
#include <QLocale>
#include <QVarLengthArray>
#include <QtEndian>

#include <jobxml/StringItem.h>

#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/paths/ItemSteps.h"
#include "text/Suggestion.h"
#include "text/TextLocation.h"

using namespace JobXml;

namespace TunerDocuments {

namespace JsonForm {

namespace {

// --- The model -------------------------------------------------------------------------------------------------------

bool isNamed(const MemberView &member, const QByteArray &key)
{
    const QLatin1String name = member.GetName();
    return name.size() == key.size() && std::memcmp(name.data(), key.constData(), std::size_t(name.size())) == 0;
}

/// The members of an object, found by their names. Those of a JSON object are mostly in the order of the model, so each
/// search begins after the last result.
class Members
{
public:
    explicit Members(DataObject &object)
    {
        visit(object, [this](const MemberEditor &member) { m_all.append(Entry(member)); });
    }

    MemberEditor *find(const QByteArray &name)
    {
        for (int left = m_all.size(); left > 0; --left) {
            if (m_next == m_all.size())
                m_next = 0;
            MemberEditor &member = *m_all[m_next++];
            if (isNamed(member, name))
                return &member;
        }
        return nullptr;
    }

    /// The choice between alternatives, if there is one; it comes first.
    MemberEditor *choice() { return m_all[0]->GetKind() == MemberKind::Choice ? &*m_all[0] : nullptr; }

    QStringList names() const
    {
        QStringList result;
        for (const Entry &member : m_all)
            result.append(member->GetName());
        return result;
    }

private:
    using Entry = std::optional<MemberEditor>; // the array needs a type that can be empty

    QVarLengthArray<Entry, 16> m_all;
    int m_next = 0;
};

/// The value of that member in an object; null if there is none.
const Json *find(const Json &object, const MemberView &member)
{
    const Json::Object &members = object.members();
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const Json::Member &entry) { return isNamed(member, entry.key); });
    return found == members.end() ? nullptr : &found->value;
}

/// Whether XML can carry the text: it has no form for most control characters.
bool fitsIntoXml(const QString &text)
{
    StringItem sample;
    sample.SetValidate(false);
    sample.Setvalue(text);
    const QVector<Problem> problems = sample.GetProblems();
    return std::none_of(problems.begin(), problems.end(), [](const Problem &problem) { return problem.xmlOnly; });
}

/// A document that has read that version, if there is one: the document's own rule decides what it means.
TunerProperties documentOfVersion(const QString &version)
{
    constexpr quint32 versionTag = 0xCCFEDFA1;
    constexpr int headSize = 8;
    QByteArray record;
    QDataStream writer(&record, QIODevice::WriteOnly);
    writer << versionTag << quint32(0) << (version.isNull() ? QStringLiteral("") : version);
    qToBigEndian(quint32(record.size() - headSize), record.data() + sizeof versionTag);
    TunerProperties document;
    document.SetValidate(false);
    QDataStream reader(record);
    document.SetBinary(reader, record.size());
    return document;
}

// --- Values ----------------------------------------------------------------------------------------------------------

/// A whole number in decimal digits, if it is written like one; no value if it is out of range.
template <class T>
struct Digits
{
    explicit Digits(const QByteArray &text)
    {
        const char *const end = text.constEnd();
        const char *const first = text.constBegin() + (text.startsWith('-') ? 1 : 0);
        const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
        isWholeNumber = first != end && std::all_of(first, end, isDigit) && (*first != '0' || first + 1 == end);
        T number = 0;
        const auto read = std::from_chars(text.constBegin(), end, number);
        if (isWholeNumber && read.ec == std::errc() && read.ptr == end)
            value = number;
    }

    bool isWholeNumber = false;
    std::optional<T> value;
};

/// A number that JSON holds as a number, if it fits.
template <class T>
std::optional<T> fitting(const Json &json)
{
    using Limits = std::numeric_limits<T>;
    const bool fits = json.isNegative() ? std::is_signed_v<T> && json.toNumber<qint64>() >= qint64(Limits::min())
                                        : json.toNumber<quint64>() <= quint64(Limits::max());
    return fits ? std::optional<T>(json.toNumber<T>()) : std::nullopt;
}

/// The number without the decimals, if they are all 0.
template <class T>
std::optional<T> wholePart(const Json &json)
{
    if (!json.isReal())
        return {};
    const QByteArray digits = QByteArray::number(json.toNumber<double>(), 'f', QLocale::FloatingPointShortest);
    return Digits<T>(digits).value;
}

/// For numbers that JSON cannot hold as numbers.
template <class T>
std::optional<T> specialNumber(const QByteArray &text)
{
    using Limits = std::numeric_limits<T>;
    if (text == "NaN")
        return Limits::quiet_NaN();
    if (text == "Infinity")
        return Limits::infinity();
    if (text == "-Infinity")
        return -Limits::infinity();
    return {};
}

/// The value of an enumeration: its name or its number; not valid if it is neither.
QVariant nameOrNumber(const Json &json)
{
    if (json.isText())
        return JsonText::toString(json.text());
    if (json.isNull())
        return QString();
    const std::optional<int> number = json.isWholeNumber() ? fitting<int>(json) : std::nullopt;
    return number ? QVariant(*number) : QVariant();
}

/// Which alternative an object chooses, according to its JSON.
class Choice
{
public:
    Choice(Members &members, const Json &json) : m_member(members.choice())
    {
        if (!m_member)
            return;
        m_given = find(json, *m_member);
        if (!m_given)
            m_inferred = singleAlternative(members, json);
    }

    /// Reading an alternative chooses it; this chooses the right one again.
    void restoreAfter(const MemberView &alternative) const
    {
        const QByteArray name = m_given && m_given->isText() ? m_given->text() : m_inferred;
        if (isNamed(alternative, name))
            return;
        const QVariant value = m_given ? nameOrNumber(*m_given) : QVariant(JsonText::toString(name));
        if (!value.isValid() || !m_member->SetValue(value))
            chooseNothing();
    }

private:
    static QByteArray singleAlternative(Members &members, const Json &json)
    {
        QByteArray single;
        int count = 0;
        for (const Json::Member &entry : json.members()) {
            const MemberEditor *const member = members.find(entry.key);
            if (!member || member->GetKind() != MemberKind::Alternative)
                continue;
            single = entry.key;
            ++count;
        }
        return count == 1 ? single : QByteArray();
    }

    void chooseNothing() const
    {
        [[maybe_unused]] const bool isStored = m_member->SetValue(QString());
        Q_ASSERT(isStored); // every choice may be none
    }

    MemberEditor *m_member;
    const Json *m_given = nullptr;
    QByteArray m_inferred;
};

template <class T>
QString rangeOf()
{
    using Limits = std::numeric_limits<T>;
    const auto text = [](T number) {
        if constexpr (std::is_integral_v<T>)
            return QString::number(number);
        else
            return ValueText::exactly(number);
    };
    return text(Limits::lowest()) + QStringLiteral(" to ") + text(Limits::max());
}

QStringList specialNumbers()
{
    return {QStringLiteral("NaN"), QStringLiteral("Infinity"), QStringLiteral("-Infinity")};
}

QString meant(const QString &text)
{
    return QStringLiteral("; did you mean ") + text + QLatin1Char('?');
}

// --- Reading ---------------------------------------------------------------------------------------------------------

/// The objects in an array, which are the items of a list in the document.
class Items
{
public:
    Items(const Json &array, const MemberView &list) : m_array(array), m_list(list) { }

    /// The step to the item of the array at that index.
    QString step(int index)
    {
        if (!m_steps) {
            QVector<QString> identities;
            int objects = 0;
            for (const Json &item : m_array.items())
                identities.append(item.isObject() ? Paths::identityOf(m_list.GetChild(objects++)) : QString());
            m_steps.emplace(m_list.GetName(), std::move(identities));
        }
        return m_steps->at(index);
    }

private:
    const Json &m_array;
    const MemberView &m_list;
    std::optional<Paths::ItemSteps> m_steps;
};

/// What is said about a problem. The hint is the end of the message: "; did you mean 'Scan'?"; null if there is none.
struct Description
{
    // Not explicit: most problems have a message only.
    Description(QString text, QString refused = {}, QStringList accepted = {}, QString itsHint = {})
        : message(std::move(text)), value(std::move(refused)), choices(std::move(accepted)), hint(std::move(itsHint))
    {
    }

    QString message;
    QString value;
    QStringList choices;
    QString hint;
};

/// An object that is being read, and how it is reached.
struct Place
{
    const Place *parent = nullptr; ///< null for the document
    QLatin1String member{nullptr}; ///< of the parent
    int index = -1; ///< in a list, otherwise -1
    Items *items = nullptr; ///< of the list
    mutable QString path = {}; ///< when it is known

    bool isDocument() const { return !parent; }

    QString pathTo(const QString &step) const
    {
        if (isDocument())
            return step;
        if (path.isNull())
            path = parent->pathTo(items ? items->step(index) : QString(member));
        return step.isNull() ? path : path + QLatin1Char('/') + step;
    }

    QVector<Step> steps() const
    {
        return isDocument() ? QVector<Step>() : parent->steps() + QVector<Step>{{member, index}};
    }
};

/// A member of an object, or the object itself if there is none.
struct Where
{
    const Place &place;
    QLatin1String member{nullptr};
};

/// Reads a document, twice if it has problems: their paths contain what identifies the items, which may follow in the
/// text. So the first time, problems are counted; the second time, they are described.
class Reader
{
public:
    Reader(const QByteArray &text, const Json &whole) : m_text(text), m_whole(whole), m_locator(text)
    {
        m_document.SetValidate(false);
    }

    /// Returns the number of problems.
    qint64 read()
    {
        readWhole();
        return m_count;
    }

    const TunerProperties &document() const { return m_document; }

    /// Calls the visitor with the first `most` problems. Call it after read().
    void describe(const JsonProblemVisitor &visitor, qint64 most)
    {
        describeBy([this] { readWhole(); }, visitor, most);
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
        readOrThrow([&] { value = readValue(member, m_whole, {place}); });
        return value;
    }

private:
    struct AllDescribed
    {
    };

    template <class Read>
    void describeBy(Read read, const JsonProblemVisitor &visitor, qint64 most)
    {
        m_visitor = &visitor;
        m_left = most;
        try {
            read();
        } catch (const AllDescribed &) {
            // Looking at the rest of the document would take as long as the first time.
        }
    }

    template <class Read>
    void readOrThrow(Read read)
    {
        read();
        if (m_count == 0)
            return;
        JsonProblem first;
        describeBy(
            read, [&](const JsonProblem &problem) { first = problem; }, 1);
        throw first.path.isEmpty() ? JsonFailure(first.message) : JsonFailure(first.message).within(first.path);
    }

    QVariant readValue(const MemberView &member, const Json &json, const Where &where)
    {
        const QStringList names = member.GetNames();
        const auto nameIn = [&](const Json &entry) {
            QVariant value = nameOrNumber(entry);
            if (!value.isValid() || (entry.isText() && !names.contains(value.toString())))
                refuseName(where, entry, names);
            return value;
        };
        if (member.GetKind() == MemberKind::Enumeration || member.GetKind() == MemberKind::Choice)
            return nameIn(json);
        if (member.GetKind() != MemberKind::EnumerationList)
            return valueFor(member, json, where);
        if (!json.isList()) {
            refuse(where, json, "is not an array");
            return {};
        }
        QVariantList values;
        for (const Json &entry : json.items())
            values.append(nameIn(entry));
        return values;
    }

    bool isDescribing() const { return m_visitor; }

    // --- Problems ---

    /// Adds a problem at that offset in the text. `describe` is called only if it is described.
    template <class Describe>
    void report(const Where &where, quint32 offset, Describe describe)
    {
        if (!isDescribing()) {
            ++m_count;
            return;
        }
        if (m_left == 0)
            throw AllDescribed();
        --m_left;
        const Description description = describe();
        JsonProblem problem;
        problem.message = description.message;
        problem.value = description.value;
        problem.choices = description.choices;
        problem.suggestion = description.hint.isNull() ? QString() : description.hint.mid(int(qstrlen("; ")));
        const TextLocation location = m_locator.at(int(offset));
        problem.line = location.line;
        problem.column = location.column;
        problem.steps = where.place.steps();
        problem.member = QString(where.member);
        problem.path = where.place.pathTo(problem.member);
        (*m_visitor)(problem);
    }

    /// Adds the problem of a value: "'7' is not a string". `hint` returns what follows.
    template <class Hint>
    void refuse(const Where &where, const Json &json, const char *what, Hint hint)
    {
        report(where, json.textBegin(), [&] {
            const QString itsHint = hint();
            return Description{
                shown(json) + QLatin1Char(' ') + QLatin1String(what) + itsHint, plain(json), {}, itsHint};
        });
    }

    void refuse(const Where &where, const Json &json, const char *what)
    {
        refuse(where, json, what, [] { return QString(); });
    }

    template <class T>
    void refuseOutOfRange(const Where &where, const Json &json)
    {
        report(where, json.textBegin(), [&] {
            return Description{quoted(json) + QStringLiteral(" is out of range; expected ") + rangeOf<T>(),
                               plain(json)};
        });
    }

    static constexpr int mostShown = 400; // bytes of a text, of which a message shows less

    static QString beginning(const QByteArray &utf8) { return JsonText::toString(utf8.left(mostShown)); }

    /// The value as it is in the text, a number for example; the beginning of a long one.
    QString source(const Json &json) const
    {
        const int size = std::min(int(json.textEnd() - json.textBegin()), mostShown);
        return JsonText::toString(m_text.mid(int(json.textBegin()), size)).simplified();
    }

    /// The content of a string, or any other value as it is in the text; shortened if it is long.
    QString plain(const Json &json) const
    {
        return JsonText::shortened(json.isText() ? beginning(json.text()) : source(json));
    }

    QString quoted(const Json &json) const { return QLatin1Char('\'') + plain(json) + QLatin1Char('\''); }

    /// For a value of the wrong type: a string may look like one of the right type.
    QString shown(const Json &json) const
    {
        return json.isText() ? QStringLiteral("the string ") + quoted(json) : quoted(json);
    }

    // --- Values ---

    template <class T>
    QVariant wholeNumber(const Where &where, const Json &json, bool mayBeText = false)
    {
        if (json.isWholeNumber()) {
            if (const std::optional<T> number = fitting<T>(json))
                return QVariant::fromValue(*number);
            refuseOutOfRange<T>(where, json);
            return {};
        }
        // A number with so many digits that it is not whole any more is also in the text.
        const Digits<T> digits(json.isText() ? json.text() : json.isReal() ? source(json).toLatin1() : QByteArray());
        if (digits.value && mayBeText)
            return QVariant::fromValue(*digits.value);
        if (digits.isWholeNumber && !digits.value)
            refuseOutOfRange<T>(where, json);
        else
            refuse(where, json, "is not a whole number", [&] {
                const std::optional<T> number = digits.value ? digits.value : wholePart<T>(json);
                return number ? meant(QString::number(*number)) : QString();
            });
        return {};
    }

    template <class T>
    QVariant real(const Where &where, const Json &json)
    {
        if (json.isNumber()) {
            const T number = json.toNumber<T>();
            if (!std::isinf(number))
                return QVariant::fromValue(number);
            refuseOutOfRange<T>(where, json);
            return {};
        }
        if (json.isText()) {
            if (const std::optional<T> number = specialNumber<T>(json.text()))
                return QVariant::fromValue(*number);
        }
        refuse(where, json, "is not a number", [&] {
            if (!json.isText())
                return QString();
            bool isNumber = false;
            const bool isFinite = std::isfinite(json.text().toDouble(&isNumber));
            return isNumber && isFinite ? meant(JsonText::shortened(beginning(json.text())))
                                        : Suggestion::hint(beginning(json.text()), specialNumbers());
        });
        return {};
    }

    QVariant boolean(const Where &where, const Json &json)
    {
        if (json.isBoolean())
            return json.toBoolean();
        refuse(where, json, "is neither true nor false", [&] {
            const bool isWord = json.isText() && (json.text() == "true" || json.text() == "false");
            return isWord ? meant(beginning(json.text())) : QString();
        });
        return {};
    }

    QVariant text(const Where &where, const Json &json)
    {
        if (json.isText() || json.isNull())
            return json.isText() ? JsonText::toString(json.text()) : QString();
        refuse(where, json, "is not a string", [&] {
            const bool isPlain = json.isNumber() || json.isBoolean();
            return isPlain ? meant(QLatin1Char('"') + JsonText::shortened(source(json)) + QLatin1Char('"')) : QString();
        });
        return {};
    }

    void refuseName(const Where &where, const Json &json, const QStringList &names)
    {
        report(where, json.textBegin(), [&] {
            const QString value = plain(json);
            if (json.isText())
                return Description{Suggestion::unknownWordAmong(value, QStringLiteral("name"), names), value, names,
                                   Suggestion::hint(value, names)};
            const QString what = json.isWholeNumber() ? QStringLiteral(" is out of range; expected ")
                                                      : QStringLiteral(" is not a name; expected ");
            return Description{quoted(json) + what + Suggestion::listed(names), value, names};
        });
    }

    /// A member that is an enumeration decides which names and numbers it has.
    void readName(MemberEditor &member, const Json &json, const Where &where)
    {
        const QVariant value = nameOrNumber(json);
        if (!value.isValid() || !member.SetValue(value))
            refuseName(where, json, member.GetNames());
    }

    void readNames(MemberEditor &member, const Json &json, const Where &where)
    {
        if (!json.isList())
            return refuse(where, json, "is not an array");
        QVariantList values;
        for (const Json &entry : json.items())
            values.append(nameOrNumber(entry));
        if (member.SetValue(values))
            return;
        const QStringList names = member.GetNames();
        for (int i = 0; i < values.size(); ++i) {
            if (!member.SetValue(QVariantList{values.at(i)}))
                refuseName(where, json.items()[std::size_t(i)], names);
        }
    }

    QVariant valueFor(const MemberView &member, const Json &json, const Where &where)
    {
        switch (member.GetKind()) {
        case MemberKind::Text:
            return text(where, json);
        case MemberKind::Boolean:
            return boolean(where, json);
        case MemberKind::Int:
            return wholeNumber<int>(where, json);
        case MemberKind::Int64:
            return wholeNumber<qlonglong>(where, json, true);
        case MemberKind::UInt64:
            return wholeNumber<qulonglong>(where, json, true);
        case MemberKind::Float:
            return real<float>(where, json);
        case MemberKind::Double:
            return real<double>(where, json);
        default:
            return {};
        }
    }

    // --- Objects ---

    void readWhole()
    {
        const Place document;
        const QString name = m_document.GetObjectName();
        const QByteArray key = name.toLatin1();
        const Json *const members = m_whole.isObject() ? m_whole.find(key) : nullptr;
        if (!members)
            report({document}, m_whole.textBegin(),
                   [&] { return QStringLiteral("expected an object with the member '%1'").arg(name); });
        if (!m_whole.isObject())
            return;
        for (const Json::Member &entry : m_whole.members()) {
            if (&entry.value == members)
                readDocument(*members, document);
            else if (entry.key == schemaKey)
                text({document, QLatin1String(schemaKey)}, entry.value);
            else
                refuseUnknown(document, entry, QStringLiteral("the outermost object"), [&] {
                    return QStringList{name, QLatin1String(schemaKey)};
                });
        }
    }

    void readDocument(const Json &json, const Place &place)
    {
        if (!isDescribing() && json.isObject()) {
            const Json *const version = json.find(versionKey);
            const QString text = version && version->isText() ? JsonText::toString(version->text()) : QString();
            m_document = documentOfVersion(fitsIntoXml(text) ? text : QString());
        }
        readObject(m_document, json, place);
    }

    void checkVersion(const Json &json, const Place &place)
    {
        const Where where{place, QLatin1String(versionKey)};
        const QVariant version = text(where, json);
        if (json.isNull())
            refuse(where, json, "is not a string");
        else if (version.isValid() && !fitsIntoXml(version.toString()))
            refuse(where, json, "is not a version; expected 1.1");
    }

    void readObject(DataObject &object, const Json &json, const Place &place)
    {
        if (!json.isObject())
            return refuse({place}, json, "is not an object");
        object.SetValidate(false); // a new object validates
        Members members(object);
        const Choice choice(members, json);
        const Json *const unset = json.find(unsetKey);
        for (const Json::Member &entry : json.members()) {
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
            return refuse({place, QLatin1String(unsetKey)}, unset, "is not an object");
        for (const Json::Member &entry : unset.members()) {
            MemberEditor *const member = members.find(entry.key);
            if (!member) {
                refuseUnknown(place, entry, object.GetObjectName(), [&] { return members.names(); });
            } else if (member->GetKind() == MemberKind::Choice) {
                report({place}, entry.value.memberBegin(),
                       [&] { return QStringLiteral("'%1' is not allowed in \"unset\"").arg(member->GetName()); });
            } else if (json.find(entry.key)) {
                report({place}, entry.value.memberBegin(), [&] {
                    return QStringLiteral("'%1' is both in \"unset\" and outside it").arg(member->GetName());
                });
            } else {
                readMember(*member, entry.value, choice, place);
                member->SetFlag(false);
            }
        }
    }

    template <class Names>
    void refuseUnknown(const Place &place, const Json::Member &member, const QString &in, Names known)
    {
        report({place}, member.value.memberBegin(), [&] {
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
            readName(member, json, where);
            break;
        case MemberKind::EnumerationList:
            readNames(member, json, where);
            break;
        default:
            if (const QVariant value = valueFor(member, json, where); value.isValid()) {
                [[maybe_unused]] const bool isStored = member.SetValue(value);
                Q_ASSERT(isStored); // it has the type of the member
            }
        }
    }

    void readItems(MemberEditor &list, const Json &json, const Where &where)
    {
        if (!json.isList())
            return refuse(where, json, "is not an array");
        list.SetFlag(true); // even if the list is empty
        Items items(json, list);
        int index = 0;
        int objects = 0;
        for (const Json &item : json.items()) {
            const Place place{&where.place, list.GetName(), index++, &items};
            if (!item.isObject())
                refuse({place}, item, "is not an object");
            else
                readObject(isDescribing() ? list.EditChild(objects++) : list.AppendChild(), item, place);
        }
    }

    const QByteArray &m_text;
    const Json &m_whole;
    TextLocator m_locator;
    TunerProperties m_document;
    bool m_isPart = false; // of a document
    qint64 m_count = 0;
    const JsonProblemVisitor *m_visitor = nullptr; // while problems are described
    qint64 m_left = 0; // to describe
};

} // namespace

qint64 read(TunerProperties &document, const QByteArray &utf8, const JsonProblemVisitor &visitor, qint64 most)
{
    Json whole;
    try {
        whole = JsonText::parse(utf8);
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

const Json *valueAt(const Json &document, const QVector<Step> &steps)
{
    const Json *value = document.isObject() ? document.find(TunerProperties().GetObjectName().toLatin1()) : nullptr;
    for (const Step &step : steps) {
        if (!value || !value->isObject())
            return nullptr;
        const QByteArray key = step.member.toLatin1();
        const Json *const unset = value->find(unsetKey);
        value = value->find(key);
        if (!value && unset && unset->isObject())
            value = unset->find(key);
        if (!value || step.index < 0)
            continue;
        const bool hasItem = value->isList() && std::size_t(step.index) < value->items().size();
        value = hasItem ? &value->items()[std::size_t(step.index)] : nullptr;
    }
    return value;
}

} // namespace JsonForm

} // namespace TunerDocuments

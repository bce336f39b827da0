// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include <QDataStream>
#include <QRegularExpression>
#include <QtEndian>

#include <jobxml/StringItem.h>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>

#include "text/Suggestion.h"

using namespace JobXml;

namespace TunerDocuments {

namespace JsonForm {

namespace {

const char *const unsetKey = "unset";
const char *const versionKey = "Version";

QByteArray keyOf(const MemberView &member)
{
    const QLatin1String name = member.GetName();
    return QByteArray(name.data(), name.size());
}

/// The path of a failure from the object that holds the member.
QString stepTo(const MemberView &member, int index)
{
    return member.GetKind() == MemberKind::ObjectList ? Paths::stepsTo(member).value(index) : QString(member.GetName());
}

// --- Writing ---------------------------------------------------------------------------------------------------------

Json ofReal(double value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-Infinity" : "Infinity";
    return value;
}

/// The number with the digits of the float: 0.1, not 0.10000000149011612.
Json ofReal(float value)
{
    char text[64];
    const char *const end = std::to_chars(std::begin(text), std::end(text), value).ptr;
    double sameDigits = 0;
    std::from_chars(std::begin(text), end, sameDigits);
    return ofReal(float(sameDigits) == value ? sameDigits : double(value));
}

Json ofValue(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QString:
        return value.toString().isNull() ? Json() : JsonText::fromString(value.toString());
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString().toUtf8(); // many readers of JSON keep only 53 bits of a number
    case QMetaType::Float:
        return ofReal(value.value<float>());
    case QMetaType::Double:
        return ofReal(value.toDouble());
    case QMetaType::QVariantList: {
        Json entries = Json::emptyList();
        const QVariantList values = value.toList();
        for (const QVariant &entry : values)
            entries.append(ofValue(entry));
        return entries;
    }
    default:
        qFatal("a value of the type %s has no form in JSON", value.typeName());
    }
}

/// Whether a member that is not set has the value that every new object has.
bool isDefault(const MemberView &member, const Json &value)
{
    if (value.isList() || value.isObject())
        return value.isEmpty();
    // As texts: 0.0 and -0.0 are equal numbers.
    return JsonText::compact(value) == JsonText::compact(ofValue(member.GetDefaultValue()));
}

// --- Reading ---------------------------------------------------------------------------------------------------------

/// The JSON value in quotes, for messages.
QString shown(const Json &json)
{
    const QString text = json.isText() ? JsonText::toString(json.text()) : QString::fromUtf8(JsonText::compact(json));
    return QLatin1Char('\'') + JsonText::shortened(text) + QLatin1Char('\'');
}

[[noreturn]] void refuse(const Json &json, const char *what)
{
    throw JsonFailure(shown(json) + QLatin1Char(' ') + QLatin1String(what));
}

template <class T>
T wholeNumber(const Json &json)
{
    if (!json.isWholeNumber())
        refuse(json, "is not a whole number");
    const bool fits = json.isNegative()
        ? std::is_signed_v<T> && json.toNumber<qint64>() >= qint64(std::numeric_limits<T>::min())
        : json.toNumber<quint64>() <= quint64(std::numeric_limits<T>::max());
    if (!fits)
        refuse(json, "is out of range");
    return json.toNumber<T>();
}

/// A number of 64 bits may also be a string, which is how it is written.
template <class T>
QVariant longNumber(const Json &json)
{
    if (!json.isText())
        return QVariant::fromValue(wholeNumber<T>(json));
    static const QRegularExpression decimal(QStringLiteral(R"(^-?(?:0|[1-9][0-9]*)\z)"));
    const QString text = JsonText::toString(json.text());
    if (!decimal.match(text).hasMatch())
        refuse(json, "is not a whole number");
    bool fits = false;
    const T value = std::is_signed_v<T> ? T(text.toLongLong(&fits)) : T(text.toULongLong(&fits));
    if (!fits)
        refuse(json, "is out of range");
    return QVariant::fromValue(value);
}

bool isText(const Json &json, const char *text)
{
    return json.isText() && json.text() == text;
}

template <class T>
QVariant real(const Json &json)
{
    using Limits = std::numeric_limits<T>;
    if (isText(json, "NaN"))
        return QVariant::fromValue(Limits::quiet_NaN());
    if (isText(json, "Infinity"))
        return QVariant::fromValue(Limits::infinity());
    if (isText(json, "-Infinity"))
        return QVariant::fromValue(-Limits::infinity());
    if (!json.isNumber())
        refuse(json, "is not a number");
    const T value = json.toNumber<T>();
    if (std::isinf(value))
        refuse(json, "is out of range");
    return QVariant::fromValue(value);
}

QVariant enumeration(const Json &json, const QStringList &names)
{
    if (json.isNull())
        return QString();
    if (json.isNumber())
        return wholeNumber<int>(json);
    if (!json.isText())
        refuse(json, "is not a name");
    const QString name = JsonText::toString(json.text());
    if (!names.contains(name))
        throw JsonFailure(Suggestion::unknownWord(JsonText::shortened(name), QStringLiteral("name"), names));
    return name;
}

QVariant valueFor(const MemberView &member, const Json &json)
{
    switch (member.GetKind()) {
    case MemberKind::Text:
        if (!json.isNull() && !json.isText())
            refuse(json, "is not a string");
        return json.isNull() ? QString() : JsonText::toString(json.text());
    case MemberKind::Boolean:
        if (!json.isBoolean())
            refuse(json, "is neither true nor false");
        return json.toBoolean();
    case MemberKind::Int:
        return wholeNumber<int>(json);
    case MemberKind::Int64:
        return longNumber<qlonglong>(json);
    case MemberKind::UInt64:
        return longNumber<qulonglong>(json);
    case MemberKind::Float:
        return real<float>(json);
    case MemberKind::Double:
        return real<double>(json);
    case MemberKind::Enumeration:
    case MemberKind::Choice:
        return enumeration(json, member.GetNames());
    case MemberKind::EnumerationList: {
        if (!json.isList())
            refuse(json, "is not an array");
        QVariantList values;
        for (const Json &entry : json.items())
            values.append(enumeration(entry, member.GetNames()));
        return values;
    }
    case MemberKind::Object:
    case MemberKind::ObjectList:
    case MemberKind::Alternative:
        break;
    }
    return {};
}

void readObject(DataObject &object, const Json &json);

void readMember(MemberEditor &member, const Json &json)
{
    switch (member.GetKind()) {
    case MemberKind::Object:
    case MemberKind::Alternative:
        readObject(member.EditChild(), json);
        break;
    case MemberKind::ObjectList:
        if (!json.isList())
            refuse(json, "is not an array");
        member.SetFlag(true); // even if the list is empty
        for (const Json &item : json.items()) {
            DataObject &child = member.AppendChild();
            try {
                readObject(child, item);
            } catch (const JsonFailure &failure) {
                throw failure.within(stepTo(member, member.GetSize() - 1));
            }
        }
        break;
    default:
        if (!member.SetValue(valueFor(member, json)))
            refuse(json, "is out of range");
    }
}

/// Prefixes errors with the name of the member; an item of a list has added its own step.
void readNamedMember(MemberEditor &member, const Json &json)
{
    const bool isListOfObjects = member.GetKind() == MemberKind::ObjectList && json.isList();
    try {
        readMember(member, json);
    } catch (const JsonFailure &failure) {
        throw isListOfObjects ? failure : failure.within(member.GetName());
    }
}

void checkKeys(const DataObject &object, const Json &json, const Json *unset)
{
    QStringList names;
    visit(object, [&](const MemberView &member) {
        names.append(member.GetName());
        const QByteArray key = keyOf(member);
        if (!unset || !unset->find(key))
            return;
        if (member.GetKind() == MemberKind::Choice)
            throw JsonFailure(QStringLiteral("'%1' is not allowed in \"unset\"").arg(member.GetName()));
        if (json.find(key))
            throw JsonFailure(QStringLiteral("'%1' is both in \"unset\" and outside it").arg(member.GetName()));
    });
    const auto check = [&](const Json &in, const char *alsoKnown) {
        for (const Json::Member &member : in.members()) {
            const QString key = JsonText::toString(member.key);
            if (!names.contains(key) && member.key != alsoKnown)
                throw JsonFailure(Paths::unknownMember(JsonText::shortened(key), object.GetObjectName(), names));
        }
    };
    check(json, unsetKey);
    if (unset)
        check(*unset, "");
}

void readObject(DataObject &object, const Json &json)
{
    if (!json.isObject())
        refuse(json, "is not an object");
    const Json *const unset = json.find(unsetKey);
    if (unset && !unset->isObject())
        throw JsonFailure(shown(*unset) + QStringLiteral(" is not an object")).within(QLatin1String(unsetKey));
    checkKeys(object, json, unset);
    object.SetValidate(false); // a new object validates
    bool hasChoice = false;
    visit(object, [&](MemberEditor &member) {
        const QByteArray key = keyOf(member);
        if (member.GetKind() == MemberKind::Choice)
            hasChoice = true; // stored last, since reading an alternative chooses it
        else if (const Json *const set = json.find(key))
            readNamedMember(member, *set);
        else if (const Json *const held = unset ? unset->find(key) : nullptr) {
            readNamedMember(member, *held);
            member.SetFlag(false);
        }
    });
    if (!hasChoice)
        return;
    visit(object, [&](MemberEditor &member) {
        if (member.GetKind() != MemberKind::Choice)
            return;
        const Json *const choice = json.find(keyOf(member));
        const Json none;
        readNamedMember(member, choice ? *choice : none);
    });
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

/// A document that has read that version: the document's own rule decides what it means.
TunerProperties documentOfVersion(const QString &version)
{
    constexpr quint32 versionTag = 0xCCFEDFA1;
    constexpr int headSize = 8;
    QByteArray record;
    QDataStream writer(&record, QIODevice::WriteOnly);
    writer << versionTag << quint32(0) << version;
    qToBigEndian(quint32(record.size() - headSize), record.data() + sizeof versionTag);
    TunerProperties document;
    document.SetValidate(false);
    QDataStream reader(record);
    document.SetBinary(reader, record.size());
    return document;
}

/// The same for the member of a JSON document; null if there is none.
TunerProperties documentOfVersion(const Json *version)
{
    if (!version)
        return documentOfVersion(QStringLiteral(""));
    if (!version->isText())
        throw JsonFailure(shown(*version) + QStringLiteral(" is not a string")).within(QLatin1String(versionKey));
    const QString text = JsonText::toString(version->text());
    if (!fitsIntoXml(text))
        throw JsonFailure(shown(*version) + QStringLiteral(" is not a version")).within(QLatin1String(versionKey));
    return documentOfVersion(text);
}

void addMembers(Json &result, const DataObject &object)
{
    Json unset = Json::emptyObject();
    visit(object, [&](const MemberView &member) {
        Json value;
        try {
            value = ofMember(member);
        } catch (const JsonFailure &failure) {
            throw member.GetKind() == MemberKind::ObjectList ? failure : failure.within(member.GetName());
        }
        if (member.IsSet())
            result.insert(keyOf(member), std::move(value));
        else if (member.GetKind() != MemberKind::Choice && !isDefault(member, value))
            unset.insert(keyOf(member), std::move(value));
    });
    if (!unset.isEmpty())
        result.insert(unsetKey, std::move(unset));
}

} // namespace

Json ofMember(const MemberView &member)
{
    switch (member.GetKind()) {
    case MemberKind::Object:
    case MemberKind::Alternative:
        return member.GetSize() == 0 ? Json::emptyObject() : ofObject(member.GetChild());
    case MemberKind::ObjectList: {
        Json items = Json::emptyList();
        for (int i = 0; i < member.GetSize(); ++i) {
            try {
                items.append(ofObject(member.GetChild(i)));
            } catch (const JsonFailure &failure) {
                throw failure.within(stepTo(member, i));
            }
        }
        return items;
    }
    default:
        return ofValue(member.GetValue());
    }
}

Json ofObject(const DataObject &object)
{
    Json result = Json::emptyObject();
    addMembers(result, object);
    return result;
}

void readInto(DataObject &object, const Json &json)
{
    readObject(object, json);
}

QVariant readValue(const MemberView &member, const Json &json)
{
    return valueFor(member, json);
}

QByteArray compose(const TunerProperties &document)
{
    Json members = Json::emptyObject();
    members.insert(versionKey, document.GetVersion().toUtf8());
    addMembers(members, document);
    Json whole = Json::emptyObject();
    whole.insert(document.GetObjectName().toUtf8(), std::move(members));
    return JsonText::pretty(whole);
}

void read(TunerProperties &document, QByteArray utf8)
{
    Json whole = JsonText::parse(utf8);
    utf8.clear(); // a document has the size of its text, and more
    auto members = whole.isObject() ? whole.take(document.GetObjectName().toUtf8()) : std::nullopt;
    if (!members || !whole.isEmpty())
        throw JsonFailure(
            QStringLiteral("expected an object with the single member '%1'").arg(document.GetObjectName()));
    if (!members->isObject())
        refuse(*members, "is not an object");
    const auto version = members->take(versionKey);
    TunerProperties result = documentOfVersion(version ? &*version : nullptr);
    readObject(result, *members);
    const bool validate = document.GetValidate();
    document = result;
    document.SetValidate(validate);
}

} // namespace JsonForm

namespace {

template <class Part>
QByteArray prettyOr(const QString &name, Part &&part)
{
    try {
        return JsonText::pretty(part());
    } catch (const JsonFailure &failure) {
        throw DocumentError(failure.text(name));
    }
}

} // namespace

QByteArray toJson(const DataObject &object, const QString &name)
{
    return prettyOr(name, [&] { return JsonForm::ofObject(object); });
}

QByteArray toJson(const MemberView &member, const QString &name)
{
    return prettyOr(name, [&] { return JsonForm::ofMember(member); });
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>

using namespace JobXml;

namespace TunerDocuments {

namespace JsonForm {

namespace {

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

/// A number that every reader keeps exactly, or its digits: JavaScript has only doubles.
template <class T>
Json ofLongNumber(T value)
{
    constexpr T greatest = (T(1) << 53) - 1;
    const bool isExact = value <= greatest && (std::is_unsigned_v<T> || value >= T(0) - greatest);
    return isExact ? Json(value) : Json(QByteArray::number(value));
}

Json ofValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return value.toString().isNull() ? Json() : JsonText::fromString(value.toString());
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::LongLong:
        return ofLongNumber(value.toLongLong());
    case QMetaType::ULongLong:
        return ofLongNumber(value.toULongLong());
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

/// Whether any of the alternatives is set, chosen or not.
bool holdsAlternative(const DataObject &object)
{
    bool result = false;
    visit(object, [&](const MemberView &member) {
        result = result || (member.GetKind() == MemberKind::Alternative && member.IsSet());
    });
    return result;
}

MemberPlace placeOf(const MemberView &member, const Json &value, const DataObject &object)
{
    if (member.IsSet())
        return MemberPlace::Members;
    if (member.GetKind() != MemberKind::Choice)
        return isDefault(member, value) ? MemberPlace::Nowhere : MemberPlace::Unset;
    // Reading would choose a single alternative otherwise.
    return holdsAlternative(object) ? MemberPlace::Members : MemberPlace::Nowhere;
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
        const MemberPlace place = placeOf(member, value, object);
        if (place == MemberPlace::Members)
            result.insert(keyOf(member), std::move(value));
        else if (place == MemberPlace::Unset)
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

MemberPlace placeOf(const MemberView &member, const DataObject &object)
{
    return placeOf(member, member.IsSet() ? Json() : ofMember(member), object);
}

Json ofObject(const DataObject &object)
{
    Json result = Json::emptyObject();
    addMembers(result, object);
    return result;
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

} // namespace JsonForm

namespace {

template <class Part>
QByteArray textOf(const QString &name, JsonLayout layout, Part &&part)
{
    try {
        return layout == JsonLayout::OneLine ? JsonText::compact(part()) : JsonText::pretty(part());
    } catch (const JsonFailure &failure) {
        throw UnstorableContent(failure.text(name));
    }
}

} // namespace

QByteArray toJson(const DataObject &object, const QString &name, JsonLayout layout)
{
    return textOf(name, layout, [&] { return JsonForm::ofObject(object); });
}

QByteArray toJson(const MemberView &member, const QString &name, JsonLayout layout)
{
    return textOf(name, layout, [&] { return JsonForm::ofMember(member); });
}

QByteArray toJson(const Paths::Target &target, const QString &name, JsonLayout layout)
{
    return target.isItem() ? toJson(target.member.GetChild(target.steps.last().index), name, layout)
                           : toJson(target.member, name, layout);
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "model/Model.h"

#include "framework/Behavior.h"
#include "framework/Member.h"
#include "model/Json.h"
#include "module/Classes.h"

using namespace JobXml;

namespace {

bool holdsObjects(MemberKind kind)
{
    return kind == MemberKind::Object || kind == MemberKind::ObjectList || kind == MemberKind::Alternative;
}

QByteArray nameOf(MemberKind kind)
{
    switch (kind) {
    case MemberKind::Text:
        return "text";
    case MemberKind::Boolean:
        return "boolean";
    case MemberKind::Int:
        return "int32";
    case MemberKind::Int64:
        return "int64";
    case MemberKind::UInt64:
        return "uint64";
    case MemberKind::Float:
        return "float";
    case MemberKind::Double:
        return "double";
    case MemberKind::Enumeration:
        return "enumeration";
    case MemberKind::EnumerationList:
        return "enumeration list";
    case MemberKind::Object:
        return "object";
    case MemberKind::ObjectList:
        return "object list";
    case MemberKind::Alternative:
        return "alternative";
    case MemberKind::Choice:
        break;
    }
    qFatal("a choice is not a row of a table");
}

/// When XML and tagged records contain a member.
const char *written(const Member &row)
{
    if (row.kind() == MemberKind::Alternative)
        return "when chosen and set";
    if (row.has(WrittenUnlessEmpty))
        return "unless empty";
    return row.has(WrittenWhenSet) ? "when set" : "always";
}

/// When snapshots do: on writing before a slash, on reading after it.
const char *inSnapshots(const Member &row)
{
    if (row.kind() == MemberKind::Alternative)
        return "chosen: set / always";
    if (row.has(WrittenUnlessEmpty))
        return "when set";
    if (row.kind() == MemberKind::ObjectList)
        return row.has(SnapshotReadByCount) ? "items set / always" : "items when set";
    if (row.has(WrittenWhenSet))
        return row.has(SnapshotReadAlways) ? "set / always" : "when set";
    return "always";
}

/// The other properties of a member that readers in other languages need.
QByteArray traits(const Member &row)
{
    QVariantList names;
    for (const auto &[trait, name] :
         {std::pair(ComparedByRightFlag, "comparedByRightFlag"), std::pair(IsValidAcceptsNull, "isValidAcceptsNull"),
          std::pair(Identifies, "identifies"), std::pair(AlsoIdentifies, "alsoIdentifies")}) {
        if (row.has(trait))
            names.append(QString::fromLatin1(name));
    }
    return Json::value(names);
}

QString classOfChildren(const Member &row, DataObject &object)
{
    const DataObject &child = row.kind() == MemberKind::ObjectList ? row.appendChild(object) : row.editChild(object, 0);
    return child.GetObjectName();
}

QByteArray defaultOf(const Member &row)
{
    if (row.kind() == MemberKind::ObjectList)
        return "[]";
    return holdsObjects(row.kind()) ? "{}" : Json::value(row.value(nullptr));
}

QByteArray memberAsJson(const Member &row, DataObject &object)
{
    Json::Object member;
    member.add("name", Json::value(row.text())).add("kind", '"' + nameOf(row.kind()) + '"');
    if (holdsObjects(row.kind()))
        member.add("class", Json::value(classOfChildren(row, object)));
    const QStringList names = row.names();
    if (!names.isEmpty())
        member.add("names", Json::value(names));
    member.add("default", defaultOf(row))
        .add("bit", QByteArray::number(row.bit()))
        .add("tag", Json::hex(row.tag()))
        .add("xml", row.has(Attribute) ? "\"attribute\"" : "\"element\"")
        .add("mandatory", row.has(Mandatory) ? "true" : "false")
        .add("written", Json::value(QString::fromLatin1(written(row))))
        .add("snapshot", Json::value(QString::fromLatin1(inSnapshots(row))))
        .add("traits", traits(row));
    return member.onOneLine();
}

/// The tag of the first record of a new object. A class with a version writes it there.
quint32 firstTag(DataObject &object)
{
    constexpr int sizeOfTagAndLength = 8;
    return QByteArray(object.GetBinaryRepresentationAsQByteArray())
        .mid(sizeOfTagAndLength, 4)
        .toHex()
        .toUInt(nullptr, 16);
}

template <class T>
void addVersion(Json::Object &cls, T &object)
{
    if constexpr (std::is_same_v<T, TunerProperties>) {
        cls.add("version",
                Json::Object()
                    .add("attribute", "\"Version\"")
                    .add("tag", Json::hex(firstTag(object)))
                    .add("value", Json::value(object.GetVersion()))
                    .onOneLine());
    }
}

template <class T>
QByteArray classAsJson()
{
    T object;
    object.SetValidate(false);
    Json::Object cls;
    cls.add("name", Json::value(T::GetStaticObjectName())).add("identifier", Json::hex(quint32(T::GetId())));
    addVersion(cls, object);

    auto addChoice = [&](const VisitedMember &member) {
        if (member.kind() == MemberKind::Choice) // not a row
            cls.add("choice", Json::value(QString(member.name())));
    };
    ObjectAccess::behavior(object).forEachMember(object, MemberAction(addChoice));

    QByteArrayList members;
    for (const Member *row : ObjectAccess::info(object).bitOrder())
        members.append(memberAsJson(*row, object));
    return cls.add("members", Json::listOnLines(members, "      ")).onLines("    ");
}

} // namespace

QByteArray modelAsJson()
{
    QByteArrayList classes;
    Classes::forEach([&](auto tag) { classes.append(classAsJson<typename decltype(tag)::Class>()); });
    return Json::Object()
               .add("model", Json::value(TunerProperties::GetStaticObjectName()))
               .add("version", Json::value(TunerProperties().GetVersion()))
               .add("classes", Json::listOnLines(classes, "  "))
               .onLines({})
        + '\n';
}

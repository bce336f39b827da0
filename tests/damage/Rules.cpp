// SPDX-License-Identifier: MIT
#include "Rules.h"

#include <algorithm>

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Damage {

namespace {

Kind kindOf(const QString &kind)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("text"), Kind::Text},
        {QStringLiteral("boolean"), Kind::Boolean},
        {QStringLiteral("int32"), Kind::Integer},
        {QStringLiteral("int64"), Kind::Integer64},
        {QStringLiteral("uint64"), Kind::Unsigned64},
        {QStringLiteral("float"), Kind::Float},
        {QStringLiteral("double"), Kind::Double},
        {QStringLiteral("enumeration"), Kind::TypeName},
        {QStringLiteral("enumeration list"), Kind::Modes},
        {QStringLiteral("object list"), Kind::List},
        {QStringLiteral("object"), Kind::Child},
        {QStringLiteral("alternative"), Kind::Alternative},
    };
    if (!kinds.contains(kind))
        qFatal("no rules for members of the kind '%s'", qPrintable(kind));
    return kinds.value(kind);
}

// Of "written / read", only the second part matters here.
unsigned snapshotTraitsOf(const QString &snapshot)
{
    static const QHash<QString, unsigned> traits{
        {QStringLiteral("always"), Plain},
        {QStringLiteral("when set"), SnapshotIfSet},
        {QStringLiteral("set / always"), Plain},
        {QStringLiteral("items when set"), Plain},
        {QStringLiteral("items set / always"), SnapshotByCount},
        {QStringLiteral("chosen: set / always"), Plain},
    };
    if (!traits.contains(snapshot))
        qFatal("no rules for members that a snapshot holds '%s'", qPrintable(snapshot));
    return traits.value(snapshot);
}

QVariant defaultOf(Kind kind, const QJsonValue &value)
{
    switch (kind) {
    case Kind::Boolean:
        return value.toBool();
    case Kind::Integer:
        return value.toInt();
    case Kind::Integer64: // a text, since numbers of JSON are not exact
        return value.toString().toLongLong();
    case Kind::Unsigned64:
        return value.toString().toULongLong();
    case Kind::Float:
        return float(value.toDouble());
    case Kind::Double:
        return value.toDouble();
    default:
        return QString();
    }
}

quint32 hexNumber(const QJsonValue &value)
{
    bool ok = false;
    const quint32 number = value.toString().toUInt(&ok, 16);
    if (!ok)
        qFatal("'%s' in the model is not a hexadecimal number", qPrintable(value.toString()));
    return number;
}

MemberRule memberRule(const QJsonObject &row)
{
    MemberRule member;
    member.bit = row.value(QLatin1String("bit")).toInt(-1);
    member.name = row.value(QLatin1String("name")).toString().toLatin1();
    member.tag = hexNumber(row.value(QLatin1String("tag")));
    member.kind = kindOf(row.value(QLatin1String("kind")).toString());
    member.traits = snapshotTraitsOf(row.value(QLatin1String("snapshot")).toString());
    if (row.value(QLatin1String("xml")).toString() == QLatin1String("attribute"))
        member.traits |= Attribute;
    if (row.value(QLatin1String("mandatory")).toBool())
        member.traits |= Mandatory;
    member.object = row.value(QLatin1String("class")).toString().toLatin1();
    member.defaultValue = defaultOf(member.kind, row.value(QLatin1String("default")));
    member.names = row.value(QLatin1String("names")).toVariant().toStringList();
    return member;
}

ClassRule classRule(const QJsonObject &listed)
{
    ClassRule rule{listed.value(QLatin1String("name")).toString().toLatin1(),
                   hexNumber(listed.value(QLatin1String("identifier"))),
                   {}};
    const QJsonArray rows = listed.value(QLatin1String("members")).toArray();
    for (const QJsonValue &row : rows)
        rule.members.append(memberRule(row.toObject()));
    // Attributes are written before elements, both in the order of their bits.
    rule.members = rule.inBitOrder();
    std::stable_partition(rule.members.begin(), rule.members.end(),
                          [](const MemberRule &member) { return member.has(Attribute); });
    return rule;
}

QJsonArray classesOfTheModel()
{
    QFile file(QStringLiteral(MODEL_JSON));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s: %s", MODEL_JSON, qPrintable(file.errorString()));
    QJsonParseError error;
    const QJsonDocument model = QJsonDocument::fromJson(file.readAll(), &error);
    if (model.isNull())
        qFatal("cannot read %s: %s", MODEL_JSON, qPrintable(error.errorString()));
    return model.object().value(QLatin1String("classes")).toArray();
}

QVector<ClassRule> makeRules()
{
    QVector<ClassRule> rules;
    const QJsonArray classes = classesOfTheModel();
    for (const QJsonValue &listed : classes)
        rules.append(classRule(listed.toObject()));
    return rules;
}

MemberRule makeVersionMember()
{
    const QJsonObject version = classesOfTheModel().at(0).toObject().value(QLatin1String("version")).toObject();
    MemberRule member{};
    member.name = version.value(QLatin1String("attribute")).toString().toLatin1();
    member.tag = hexNumber(version.value(QLatin1String("tag")));
    member.kind = Kind::Text;
    member.defaultValue = version.value(QLatin1String("value")).toString();
    return member;
}

const QStringList &namesOf(const char *className, const char *member)
{
    const MemberRule *found = ruleOf(QString::fromLatin1(className)).byName(QString::fromLatin1(member));
    if (!found || found->names.isEmpty())
        qFatal("the model has no enumeration %s.%s", className, member);
    return found->names;
}

const QStringList &typeNames()
{
    static const QStringList &names = namesOf("TunerProperties", "type");
    return names;
}

const QStringList &modeNames()
{
    static const QStringList &names = namesOf("StartupModes", "StartupMode");
    return names;
}

QVariant shown(int value, const QStringList &names)
{
    const bool hasName = value >= 0 && value < names.size();
    return hasName || value == -1 ? QVariant(names.value(value)) : QVariant(value);
}

} // namespace

QVector<MemberRule> ClassRule::inBitOrder() const
{
    QVector<MemberRule> ordered = members;
    std::sort(ordered.begin(), ordered.end(),
              [](const MemberRule &left, const MemberRule &right) { return left.bit < right.bit; });
    return ordered;
}

const MemberRule *ClassRule::byTag(quint32 tag) const
{
    const auto found = std::find_if(members.begin(), members.end(), [=](const MemberRule &m) { return m.tag == tag; });
    return found == members.end() ? nullptr : &*found;
}

const MemberRule *ClassRule::byName(const QString &wanted) const
{
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const MemberRule &m) { return QLatin1String(m.name) == wanted; });
    return found == members.end() ? nullptr : &*found;
}

const QVector<ClassRule> &classRules()
{
    static const QVector<ClassRule> rules = makeRules();
    return rules;
}

const ClassRule &ruleOf(const QString &className)
{
    const QVector<ClassRule> &rules = classRules();
    const auto found = std::find_if(rules.begin(), rules.end(),
                                    [&](const ClassRule &rule) { return QLatin1String(rule.name) == className; });
    if (found == rules.end())
        qFatal("the model has no class '%s'", qPrintable(className));
    return *found;
}

const MemberRule &versionMember()
{
    static const MemberRule member = makeVersionMember();
    return member;
}

int typeByName(const QString &name)
{
    return typeNames().indexOf(name);
}

int modeByName(const QString &name)
{
    return modeNames().indexOf(name);
}

QVariant shownType(int type)
{
    return shown(type, typeNames());
}

bool isMode(int mode)
{
    return mode >= 0 && mode < modeNames().size();
}

QVariant shownMode(int mode)
{
    return shown(mode, modeNames());
}

} // namespace Damage

// SPDX-License-Identifier: MIT
#include "Rules.h"

#include <algorithm>

#include <QStringList>

namespace Damage {

namespace {

// clang-format off
const MemberRule id{         0, "id",    0x2B262DC9, Kind::Text, Attribute | Mandatory, nullptr};
const MemberRule idInList{   1, "id",    0x2B262DC9, Kind::Text, Attribute | Mandatory, nullptr};

MemberRule value(quint32 tag, Kind kind, int bit = 1)
{
    return {bit, "value", tag, kind, Attribute | Mandatory, nullptr};
}

QVector<MemberRule> ranged(Kind kind, quint32 valueTag, quint32 minTag, quint32 maxTag, quint32 stepTag)
{
    return {id,
            value(valueTag, kind),
            {2, "min",  minTag,  kind, Attribute | Mandatory, nullptr},
            {3, "max",  maxTag,  kind, Attribute | Mandatory, nullptr},
            {4, "step", stepTag, kind, Attribute | Mandatory, nullptr}};
}

MemberRule alternative(int bit, const char *name, quint32 tag)
{
    return {bit, name, tag, Kind::Alternative, Plain, name};
}

QVector<ClassRule> makeRules()
{
    constexpr unsigned optionalText = Attribute | SnapshotIfSet;
    return {
        {"TunerProperties", 0xC10CBB5F, {
            { 5, "name",                 0xCB4CF645, Kind::Text,       optionalText,              nullptr},
            { 6, "type",                 0xA1F0EE2D, Kind::TypeName,   Attribute | Mandatory,     nullptr},
            { 7, "baseresource",         0xE0CFAE8E, Kind::Text,       Attribute | Mandatory,     nullptr},
            { 8, "connectableResources", 0x6ADAF7A6, Kind::Text,       optionalText,              nullptr},
            { 9, "quantity",             0xA59D7D84, Kind::Integer,    Attribute | SnapshotIfSet, nullptr},
            {10, "parentBaseResource",   0x0BEE909A, Kind::Text,       optionalText,              nullptr},
            {11, "hwProcessing",         0x64D08C29, Kind::Boolean,    Attribute | SnapshotIfSet, nullptr},
            { 0, "StartupModes",         0x2A68BEF4, Kind::Child,      SnapshotIfSet,             "StartupModes"},
            { 1, "BandwidthSelection",   0xC2483BA3, Kind::List,       SnapshotIfSet,             "BandwidthSelection"},
            { 2, "MaxFFPDelay",          0xC8B67267, Kind::Unsigned64, SnapshotIfSet,             nullptr},
            { 3, "HRPANSupported",       0xC82D81E1, Kind::Boolean,    SnapshotIfSet,             nullptr},
            { 4, "Component",            0x66BA8E61, Kind::List,       Mandatory,                 "Component"}}},
        {"StartupModes", 0xA7563754, {
            {0, "StartupMode", 0x627B74CE, Kind::Modes, Mandatory, nullptr}}},
        {"BandwidthSelection", 0x09F7EAA9, {
            {0, "Name",         0x8C9FBCA8, Kind::Text,   Mandatory, nullptr},
            {1, "MaxBandwidth", 0xA723FFDA, Kind::Double, Mandatory, nullptr}}},
        {"Component", 0x0ADD1857, {
            {1, "type",        0x0BAD2053, Kind::Text,    Attribute | Mandatory,       nullptr},
            {2, "name",        0xCB4CF645, Kind::Text,    Attribute | Mandatory,       nullptr},
            {3, "displayName", 0xA1939AA3, Kind::Text,    optionalText,                nullptr},
            {4, "optional",    0x44E09811, Kind::Boolean, Attribute | Mandatory,       nullptr},
            {0, "Node",        0xC5E53936, Kind::List,    Mandatory | SnapshotByCount, "Node"}}},
        {"Node", 0xC8131DB4, {
            idInList,
            {0, "ValueItem", 0x4F71131F, Kind::List, Mandatory | SnapshotByCount, "ValueItem"}}},
        {"ValueItem", 0xA6C468CF, {
            alternative(0, "ValueBoolean",      0xE8182C83),
            alternative(1, "ValueFloat",        0x07877B18),
            alternative(2, "ValueInt",          0x4ACA6514),
            alternative(3, "ValueInt64",        0xC7AF86A5),
            alternative(4, "ValueNumericFloat", 0x881D77BB),
            alternative(5, "ValueNumericInt",   0x07114506),
            alternative(6, "ValueNumericInt64", 0x8CD014A1),
            alternative(7, "ValueSelection",    0xAA5F786F),
            alternative(8, "ValueString",       0x022B9478),
            alternative(9, "ValueStringList",   0x491ED6FE)}},
        {"ValueBoolean", 0xC8FC2661, {id, value(0x89537E94, Kind::Boolean)}},
        {"ValueFloat",   0x6440D555, {id, value(0xE3DF649D, Kind::Float)}},
        {"ValueInt",     0x278DA93B, {id, value(0x0BA44238, Kind::Integer)}},
        {"ValueInt64",   0x4E82A0AA, {id, value(0x64A03F86, Kind::Integer64)}},
        {"ValueNumericFloat", 0x4BA90080,
            ranged(Kind::Float,     0xE3DF649D, 0x655BA9DC, 0x81166ACB, 0xA8D464CF)},
        {"ValueNumericInt",   0xC55D0588,
            ranged(Kind::Integer,   0x0BA44238, 0x685654A1, 0x25F6AFCC, 0x43766B23)},
        {"ValueNumericInt64", 0x044D7AEC,
            ranged(Kind::Integer64, 0x64A03F86, 0x6A28E46A, 0x86123363, 0x27D34B73)},
        {"ValueSelection", 0x00C375A5, {
            idInList,
            value(0xC14D665E, Kind::Double, 2),
            {3, "text",          0xA323E10D, Kind::Text,    Attribute | Mandatory, nullptr},
            {4, "index",         0x2128394B, Kind::Integer, Attribute | Mandatory, nullptr},
            {0, "SelectionItem", 0x4FB19F31, Kind::List,    Mandatory,             "SelectionItem"}}},
        {"SelectionItem", 0x228141C0, {
            {0, "name", 0xCB4CF645, Kind::Text, Attribute | Mandatory, nullptr},
            value(0xC14D665E, Kind::Double)}},
        {"ValueString", 0xC5ECF92B, {id, value(0xCEFF51BA, Kind::Text)}},
        {"ValueStringList", 0xC290BC31, {
            idInList,
            value(0xCEFF51BA, Kind::Text, 2),
            {0, "StringItem", 0x2940EBDD, Kind::List, Mandatory, "StringItem"}}},
        {"StringItem", 0xEBB03A60, {value(0xCEFF51BA, Kind::Text, 0)}},
    };
}
// clang-format on

const QStringList &typeNames()
{
    static const QStringList names{QStringLiteral("MCP"), QStringLiteral("SCP"), QStringLiteral("FFP"),
                                   QStringLiteral("Receiver"), QStringLiteral("DirectionFinder")};
    return names;
}

QVariant shown(int value, const QStringList &names)
{
    const bool hasName = value >= 0 && value < names.size();
    return hasName || value == -1 ? QVariant(names.value(value)) : QVariant(value);
}

const QStringList &modeNames()
{
    static const QStringList names{QStringLiteral("Scan"),   QStringLiteral("FastScan"), QStringLiteral("MScan"),
                                   QStringLiteral("FFM"),    QStringLiteral("WFFM"),     QStringLiteral("Step"),
                                   QStringLiteral("DF"),     QStringLiteral("MSearch"),  QStringLiteral("Polar"),
                                   QStringLiteral("Search"), QStringLiteral("Stop")};
    return names;
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
    Q_ASSERT(found != rules.end());
    return *found;
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

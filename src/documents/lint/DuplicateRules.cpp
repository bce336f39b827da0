// SPDX-License-Identifier: MIT
#include "documents/lint/ObjectRules.h"

#include <cmath>

#include <QHash>

#include <tunerdocuments/Value.h>

#include "documents/lint/Duplicates.h"

using JobXml::HashValue;
using JobXml::MemberKind;

namespace TunerDocuments::ObjectRules {

namespace {

struct ByIdentity
{
    static bool has(const LintedItem &item) { return item.isIdentified; }
    static HashValue hash(const LintedItem &item) { return qHash(item.identity[1], qHash(item.identity[0])); }
    static bool isSame(const LintedItem &one, const LintedItem &other)
    {
        return one.identity[0] == other.identity[0] && one.identity[1] == other.identity[1];
    }
    static int compare(const LintedItem &one, const LintedItem &other)
    {
        const int order = one.identity[0].compare(other.identity[0]);
        return order != 0 ? order : one.identity[1].compare(other.identity[1]);
    }
};

struct ByNumber
{
    static bool has(const LintedItem &item) { return item.hasNumber && !std::isnan(item.number); }
    static HashValue hash(const LintedItem &item) { return qHash(item.number); }
    static bool isSame(const LintedItem &one, const LintedItem &other) { return one.number == other.number; }
    static int compare(const LintedItem &one, const LintedItem &other)
    {
        return one.number == other.number ? 0 : one.number < other.number ? -1 : 1;
    }
};

/// "type 'Filter' and name 'Pre'"
QString identityOf(const LintedItem &item)
{
    QString text = item.names[0] + QLatin1Char(' ') + quoted(item.identity[0]);
    if (item.texts > 1)
        text += QStringLiteral(" and ") + item.names[1] + QLatin1Char(' ') + quoted(item.identity[1]);
    return text;
}

bool hasList(const Shape &shape, const char *name)
{
    const int list = shape.find(QLatin1String(name));
    return list >= 0 && shape.members[std::size_t(list)].kind == MemberKind::ObjectList;
}

/// Reports the items of a list that an earlier item has the identity of.
void reportDuplicates(const LintedObject &object, const char *name, const char *kind)
{
    const int list = object.shape.find(QLatin1String(name));
    const std::vector<LintedItem> &items = object.items(list);
    findDuplicates(items, ByIdentity(), [&](int item, int earlier) {
        object.warnItem(list, item, items[std::size_t(item)].names[0], [&]() -> Description {
            return {QStringLiteral("%1 %2 already has %3")
                        .arg(QLatin1String(kind))
                        .arg(earlier + 1)
                        .arg(identityOf(items[std::size_t(item)]))};
        });
    });
}

} // namespace

bool hasOptions(const Shape &shape)
{
    return isSelection(shape) || isTextWithList(shape);
}

void duplicateOption(const LintedObject &object)
{
    const int list = object.shape.list;
    const std::vector<LintedItem> &options = object.items(list);
    findDuplicates(options, ByIdentity(), [&](int item, int earlier) {
        const LintedItem &option = options[std::size_t(item)];
        object.warnItem(list, item, option.names[0], [&]() -> Description {
            return {QStringLiteral("option %1 already has %2").arg(earlier).arg(identityOf(option))};
        });
    });
    findDuplicates(options, ByNumber(), [&](int item, int earlier) {
        object.warnItem(list, item, QLatin1String("value"), [&]() -> Description {
            return {QStringLiteral("option %1 already has value %2")
                        .arg(earlier)
                        .arg(ValueText::exactly(options[std::size_t(item)].number))};
        });
    });
}

bool hasComponents(const Shape &shape)
{
    return hasList(shape, "Component");
}

void duplicateComponent(const LintedObject &object)
{
    reportDuplicates(object, "Component", "component");
}

bool hasNodes(const Shape &shape)
{
    return hasList(shape, "Node");
}

void duplicateNode(const LintedObject &object)
{
    reportDuplicates(object, "Node", "node");
}

bool hasValues(const Shape &shape)
{
    return hasList(shape, "ValueItem");
}

void duplicateValue(const LintedObject &object)
{
    reportDuplicates(object, "ValueItem", "value");
}

bool hasBandwidths(const Shape &shape)
{
    return hasList(shape, "BandwidthSelection");
}

void duplicateBandwidth(const LintedObject &object)
{
    reportDuplicates(object, "BandwidthSelection", "bandwidth");
}

bool hasNames(const Shape &shape)
{
    return shape.findKind(MemberKind::EnumerationList) >= 0;
}

void duplicateStartupMode(const LintedObject &object)
{
    const int list = object.shape.findKind(MemberKind::EnumerationList);
    const QVariantList names = object.member(list).GetValue().toList();
    QHash<QString, int> first;
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names.at(i).userType() == QMetaType::QString ? names.at(i).toString() : QString();
        if (name.isNull())
            continue; // which the model refuses
        const auto known = first.constFind(name);
        if (known == first.constEnd()) {
            first.insert(name, i);
            continue;
        }
        object.warnEntry(list, i, [&]() -> Description {
            return {QStringLiteral("start-up mode %1 is already at position %2").arg(quoted(name)).arg(*known + 1)};
        });
    }
}

} // namespace TunerDocuments::ObjectRules

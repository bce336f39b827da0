// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QtTest>

#include "Members.h"
#include "damage/CompactDocument.h"

/// The alternatives of a ValueItem, each with a value to fill it with.

namespace ValueItemKinds {

using namespace JobXml;

using Choice = ValueItem::ChoiceValueItem;

/// One alternative of the item, so that a test can run for each.
struct Kind
{
    QString name;
    std::function<void(ValueItem &)> setSample; ///< SetX of something complete
    std::function<void(ValueItem &)> modify; ///< the non-const GetX, and nothing done to what it returns
    std::function<const DataObject &(const ValueItem &)> look; ///< the const GetX
    std::function<bool(const ValueItem &)> isSet;
    std::function<void(ValueItem &)> reset;
    std::function<bool(const ValueItem &)> isValid; ///< IsValidX of something without any data
};

/// A value with this id.
template <class T, class Value>
T sample(const char *id, Value value)
{
    T object;
    object.Setid(QString::fromLatin1(id));
    object.Setvalue(value);
    return object;
}

/// The same with a range.
template <class T, class Value>
T sample(const char *id, Value value, Value min, Value max, Value step)
{
    T object = sample<T>(id, value);
    object.Setmin(min);
    object.Setmax(max);
    object.Setstep(step);
    return object;
}

inline ValueSelection sampleSelection()
{
    SelectionItem option;
    option.Setname(QStringLiteral("mid"));
    option.Setvalue(1.5);
    auto selection = sample<ValueSelection>("s", 1.5);
    selection.Settext(QStringLiteral("mid"));
    selection.Setindex(0);
    selection.AppendSelectionItem(option);
    return selection;
}

inline ValueStringList sampleStringList()
{
    auto list = sample<ValueStringList>("n", QStringLiteral("x"));
    for (const QString &text : {QStringLiteral("x"), QStringLiteral("y")}) {
        StringItem item;
        item.Setvalue(text);
        list.AppendStringItem(item);
    }
    return list;
}

/// A sample of a kind: for each of those below, the one with literal encodings in tst_ValueItemEncodings; for any
/// other, one with a value in every member.
template <class T>
T filled()
{
    T object;
    object.SetValidate(false);
    Damage::Filler().fill(object);
    object.SetValidate(true);
    return object;
}

// clang-format off
template <> inline ValueBoolean filled() { return sample<ValueBoolean>("b", true); }
template <> inline ValueFloat filled() { return sample<ValueFloat>("f", 2.5f); }
template <> inline ValueInt filled() { return sample<ValueInt>("i", -2); }
template <> inline ValueInt64 filled() { return sample<ValueInt64>("l", 5000000000); }
template <> inline ValueNumericFloat filled() { return sample<ValueNumericFloat>("nf", 0.5f, -1.f, 1.f, 0.25f); }
template <> inline ValueNumericInt filled() { return sample<ValueNumericInt>("ni", 5, -1, 10, 1); }
template <> inline ValueNumericInt64 filled() { return sample<ValueNumericInt64>("nl", 4294967296, 0L, 8589934592, 1L); }
template <> inline ValueSelection filled() { return sampleSelection(); }
template <> inline ValueString filled() { return sample<ValueString>("t", QStringLiteral("\u00E4")); }
template <> inline ValueStringList filled() { return sampleStringList(); }
// clang-format on

template <class T>
Kind makeKind(const Members::Child<ValueItem, T> &member)
{
    return {T::GetStaticObjectName(),
            [=](ValueItem &item) { (item.*member.set)(filled<T>()); },
            [=](ValueItem &item) { (item.*member.modify)(); },
            [=](const ValueItem &item) -> const DataObject & { return (item.*member.get)(); },
            [=](const ValueItem &item) { return (item.*member.isSet)(); },
            [=](ValueItem &item) { (item.*member.reset)(); },
            [=](const ValueItem &item) { return (item.*member.isValid)(T()); }};
}

inline const QVector<Kind> &kinds()
{
    static const QVector<Kind> all = [] {
        QVector<Kind> ofItems;
        Members::forEach<ValueItem>([&](const auto &member) { ofItems.append(makeKind(member)); });
        return ofItems;
    }();
    return all;
}

inline ValueItem withoutValidation()
{
    ValueItem item;
    item.SetValidate(false);
    return item;
}

/// One data row for each alternative.
inline void kindRows()
{
    QTest::addColumn<int>("kind");
    for (int i = 0; i < kinds().size(); ++i)
        QTest::newRow(qPrintable(kinds().at(i).name)) << i;
}

/// The indices of the alternatives that are set.
inline QVector<int> setKinds(const ValueItem &item)
{
    QVector<int> set;
    for (int i = 0; i < kinds().size(); ++i) {
        if (kinds().at(i).isSet(item))
            set.append(i);
    }
    return set;
}

} // namespace ValueItemKinds

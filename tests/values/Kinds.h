// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QtTest>

#include <jobxml/ValueItem.h>

/// The ten alternatives of a ValueItem, each with a value to fill it with.

namespace ValueItemKinds {

using namespace JobXml;

using Choice = ValueItem::ChoiceValueItem;

/// One alternative of the item, so that a rule can be asked of each of the ten.
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

template <class T>
Kind makeKind(const T &filled, T &(ValueItem::*modify)(), const T &(ValueItem::*look)() const,
              void (ValueItem::*set)(const T &), bool (ValueItem::*isSet)() const, void (ValueItem::*reset)(),
              bool (ValueItem::*isValid)(const T &) const)
{
    return {T::GetStaticObjectName(),
            [=](ValueItem &item) { (item.*set)(filled); },
            [=](ValueItem &item) { (item.*modify)(); },
            [=](const ValueItem &item) -> const DataObject & { return (item.*look)(); },
            [=](const ValueItem &item) { return (item.*isSet)(); },
            [=](ValueItem &item) { (item.*reset)(); },
            [=](const ValueItem &item) { return (item.*isValid)(T()); }};
}

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

inline const QVector<Kind> &kinds()
{
    using I = ValueItem;
    // clang-format off
    static const QVector<Kind> all = {
        makeKind(sample<ValueBoolean>("b", true), &I::GetValueBoolean, &I::GetValueBoolean, &I::SetValueBoolean, &I::IsValueBooleanSet, &I::ResetValueBoolean, &I::IsValidValueBoolean),
        makeKind(sample<ValueFloat>("f", 2.5f), &I::GetValueFloat, &I::GetValueFloat, &I::SetValueFloat, &I::IsValueFloatSet, &I::ResetValueFloat, &I::IsValidValueFloat),
        makeKind(sample<ValueInt>("i", -2), &I::GetValueInt, &I::GetValueInt, &I::SetValueInt, &I::IsValueIntSet, &I::ResetValueInt, &I::IsValidValueInt),
        makeKind(sample<ValueInt64>("l", 5000000000), &I::GetValueInt64, &I::GetValueInt64, &I::SetValueInt64, &I::IsValueInt64Set, &I::ResetValueInt64, &I::IsValidValueInt64),
        makeKind(sample<ValueNumericFloat>("nf", 0.5f, -1.f, 1.f, 0.25f), &I::GetValueNumericFloat, &I::GetValueNumericFloat, &I::SetValueNumericFloat, &I::IsValueNumericFloatSet, &I::ResetValueNumericFloat, &I::IsValidValueNumericFloat),
        makeKind(sample<ValueNumericInt>("ni", 5, -1, 10, 1), &I::GetValueNumericInt, &I::GetValueNumericInt, &I::SetValueNumericInt, &I::IsValueNumericIntSet, &I::ResetValueNumericInt, &I::IsValidValueNumericInt),
        makeKind(sample<ValueNumericInt64>("nl", 4294967296, 0L, 8589934592, 1L), &I::GetValueNumericInt64, &I::GetValueNumericInt64, &I::SetValueNumericInt64, &I::IsValueNumericInt64Set, &I::ResetValueNumericInt64, &I::IsValidValueNumericInt64),
        makeKind(sampleSelection(), &I::GetValueSelection, &I::GetValueSelection, &I::SetValueSelection, &I::IsValueSelectionSet, &I::ResetValueSelection, &I::IsValidValueSelection),
        makeKind(sample<ValueString>("t", QStringLiteral("\u00E4")), &I::GetValueString, &I::GetValueString, &I::SetValueString, &I::IsValueStringSet, &I::ResetValueString, &I::IsValidValueString),
        makeKind(sampleStringList(), &I::GetValueStringList, &I::GetValueStringList, &I::SetValueStringList, &I::IsValueStringListSet, &I::ResetValueStringList, &I::IsValidValueStringList),
    };
    // clang-format on
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

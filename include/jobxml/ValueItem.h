// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/ValueBoolean.h>
#include <jobxml/ValueFloat.h>
#include <jobxml/ValueInt.h>
#include <jobxml/ValueInt64.h>
#include <jobxml/ValueNumericFloat.h>
#include <jobxml/ValueNumericInt.h>
#include <jobxml/ValueNumericInt64.h>
#include <jobxml/ValueSelection.h>
#include <jobxml/ValueString.h>
#include <jobxml/ValueStringList.h>

namespace JobXml {

/// The one value that a node carries: a choice of exactly one of several kinds.
///
/// Every way to store a value in an alternative also chooses it: its setter, its non-const getter, reading it. The
/// alternative that was chosen before keeps its value and its set flag, but only the chosen one counts for checking,
/// comparing, writing and HasData(). Access to an alternative that is not chosen is never refused.
///
/// Check() checks the choice only while validating, and throws IncompleteDefinitionException, after the object's name:
/// ":Check failed. The mandatory choice ChoiceValueItem is not initialized" if nothing is chosen; ":Check failed. The
/// mandatory member (choice element) m_valueInt is not set." if the chosen alternative (here ValueInt) was reset;
/// ":Check failed. Mandatory data of the member (choice element) m_valueInt is not set." if it has no data. The
/// alternative's own Check() runs when it is written.
///
/// In XML the choice is the child element; in a tagged record it is the tag of the nested record. Of several, the last
/// one is chosen. In a snapshot it is a byte of its own; an alternative that is chosen but not set is not written there
/// although it is read, so such an item is lost in that form.
///
/// Two items are equal if neither has a choice, or if the same alternative is chosen and either not set in the
/// left one, or equal in both. A comparison initializes both items if one of them is initialized. AnyData() only checks
/// whether there is a choice.
///
/// Release a reference from a non-const getter before assigning the item to another, see Sharing in DataObject.
class JOBXML_EXPORT ValueItem : public DataObject
{
public:
    /// The kinds of value; the value is also the index of its name and of its set flag.
    enum class ChoiceValueItem : quint8 {
        ValueBoolean,
        ValueFloat,
        ValueInt,
        ValueInt64,
        ValueNumericFloat,
        ValueNumericInt,
        ValueNumericInt64,
        ValueSelection,
        ValueString,
        ValueStringList,
        None = 255, ///< nothing is chosen
    };

    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueItem();
    ValueItem(const ValueItem &other);
    ValueItem(ValueItem &&other) noexcept;
    ValueItem &operator=(const ValueItem &other) noexcept;
    ValueItem &operator=(ValueItem &&other) noexcept;
    ~ValueItem() override;

    bool operator==(const ValueItem &other) const;
    bool operator!=(const ValueItem &other) const;
    void swap(ValueItem &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueItem> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueItem> fromBinary(const QByteArray &representation, QString *error = nullptr,
                                                             const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xA6C468CF, leads the binary representation; its name, "ValueItem", is that of the XML element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name ChoiceValueItem
    /// Which alternative is chosen; None until one is.
    /// @{
    const ChoiceValueItem &GetChoiceValueItem() const;
    /// Chooses nothing; the alternatives keep their values and flags.
    void ResetChoiceValueItem();
    /// True for every value but None.
    bool IsValidChoiceValueItem(const ChoiceValueItem &choice) const;
    /// Resets the item so that an alternative can be chosen; the argument itself chooses nothing. Throws
    /// OutOfRangeException "Invalid enum value set in 'ValueItem'." for None, after resetting.
    void InitChoice(const ChoiceValueItem &choice);
    /// The name of a kind; null for None and for invalid values.
    QString ChoiceValueItemToName(const ChoiceValueItem &choice) const;
    /// The kind of exactly this name; None if there is no such kind.
    ChoiceValueItem NameToChoiceValueItem(const QString &name) const;
    ChoiceValueItem NameToChoiceValueItem(std::nullptr_t) const = delete;
    /// The names of the kinds.
    static QStringList GetChoiceValueItems();
    /// The same names to show to a user, in the language of the installed translations.
    static QStringList GetGUIChoiceValueItems();
    /// @}

    /// \name ValueBoolean
    /// The alternative for a switch. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueBoolean &GetValueBoolean();
    const ValueBoolean &GetValueBoolean() const;
    void SetValueBoolean(const ValueBoolean &value);
    bool IsValueBooleanSet() const;
    void ResetValueBoolean();
    bool IsValidValueBoolean(const ValueBoolean &value) const;
    /// @}

    /// \name ValueFloat
    /// The alternative for a floating-point number. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueFloat &GetValueFloat();
    const ValueFloat &GetValueFloat() const;
    void SetValueFloat(const ValueFloat &value);
    bool IsValueFloatSet() const;
    void ResetValueFloat();
    bool IsValidValueFloat(const ValueFloat &value) const;
    /// @}

    /// \name ValueInt
    /// The alternative for a 32-bit integer. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueInt &GetValueInt();
    const ValueInt &GetValueInt() const;
    void SetValueInt(const ValueInt &value);
    bool IsValueIntSet() const;
    void ResetValueInt();
    bool IsValidValueInt(const ValueInt &value) const;
    /// @}

    /// \name ValueInt64
    /// The alternative for a 64-bit integer. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueInt64 &GetValueInt64();
    const ValueInt64 &GetValueInt64() const;
    void SetValueInt64(const ValueInt64 &value);
    bool IsValueInt64Set() const;
    void ResetValueInt64();
    bool IsValidValueInt64(const ValueInt64 &value) const;
    /// @}

    /// \name ValueNumericFloat
    /// The alternative for a floating-point number with a range. Its setter and its non-const getter choose it and set
    /// its flag.
    /// @{
    ValueNumericFloat &GetValueNumericFloat();
    const ValueNumericFloat &GetValueNumericFloat() const;
    void SetValueNumericFloat(const ValueNumericFloat &value);
    bool IsValueNumericFloatSet() const;
    void ResetValueNumericFloat();
    bool IsValidValueNumericFloat(const ValueNumericFloat &value) const;
    /// @}

    /// \name ValueNumericInt
    /// The alternative for a 32-bit integer with a range. Its setter and its non-const getter choose it and set its
    /// flag.
    /// @{
    ValueNumericInt &GetValueNumericInt();
    const ValueNumericInt &GetValueNumericInt() const;
    void SetValueNumericInt(const ValueNumericInt &value);
    bool IsValueNumericIntSet() const;
    void ResetValueNumericInt();
    bool IsValidValueNumericInt(const ValueNumericInt &value) const;
    /// @}

    /// \name ValueNumericInt64
    /// The alternative for a 64-bit integer with a range. Its setter and its non-const getter choose it and set its
    /// flag.
    /// @{
    ValueNumericInt64 &GetValueNumericInt64();
    const ValueNumericInt64 &GetValueNumericInt64() const;
    void SetValueNumericInt64(const ValueNumericInt64 &value);
    bool IsValueNumericInt64Set() const;
    void ResetValueNumericInt64();
    bool IsValidValueNumericInt64(const ValueNumericInt64 &value) const;
    /// @}

    /// \name ValueSelection
    /// The alternative for a number out of named options. Its setter and its non-const getter choose it and set its
    /// flag.
    /// @{
    ValueSelection &GetValueSelection();
    const ValueSelection &GetValueSelection() const;
    void SetValueSelection(const ValueSelection &value);
    bool IsValueSelectionSet() const;
    void ResetValueSelection();
    bool IsValidValueSelection(const ValueSelection &value) const;
    /// @}

    /// \name ValueString
    /// The alternative for a text. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueString &GetValueString();
    const ValueString &GetValueString() const;
    void SetValueString(const ValueString &value);
    bool IsValueStringSet() const;
    void ResetValueString();
    bool IsValidValueString(const ValueString &value) const;
    /// @}

    /// \name ValueStringList
    /// The alternative for a text out of a list. Its setter and its non-const getter choose it and set its flag.
    /// @{
    ValueStringList &GetValueStringList();
    const ValueStringList &GetValueStringList() const;
    void SetValueStringList(const ValueStringList &value);
    bool IsValueStringListSet() const;
    void ResetValueStringList();
    bool IsValidValueStringList(const ValueStringList &value) const;
    /// @}

    bool HasData() const override;
    bool AnyData() const override;
    void Reset() override;
};

/// Writes a value as spelled in C++, or its number if it has no name.
JOBXML_EXPORT QDebug operator<<(QDebug debug, ValueItem::ChoiceValueItem value);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueItem)
Q_DECLARE_METATYPE(JobXml::ValueItem)

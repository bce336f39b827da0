// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>
#include <jobxml/SelectionItem.h>

namespace JobXml {

/// A named number of a node, chosen from a list of named options.
///
/// The chosen value, its text and its index are stored unchanged: nothing compares them with the options.
///
/// Text that is not a number reads as 0 and counts as set.
///
/// Check() checks the list, each item, then id, value, text and index: OutOfRangeException "ValueSelection: Please set
/// SelectionItem properly.".
class JOBXML_EXPORT ValueSelection : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueSelection();
    ValueSelection(const ValueSelection &other);
    ValueSelection(ValueSelection &&other) noexcept;
    ValueSelection &operator=(const ValueSelection &other) noexcept;
    ValueSelection &operator=(ValueSelection &&other) noexcept;
    ~ValueSelection() override;

    bool operator==(const ValueSelection &other) const;
    bool operator!=(const ValueSelection &other) const;
    void swap(ValueSelection &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueSelection> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueSelection> fromBinary(const QByteArray &representation,
                                                                  QString *error = nullptr,
                                                                  const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x00C375A5, leads the binary representation; its name, "ValueSelection", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name SelectionItem
    /// The options; mandatory. The list must be set and may be empty, but an empty one does not count as data: while
    /// validating nothing is written for it. Snapshots hold items only while the list is set. Release a reference from
    /// GetSelectionItem() before assigning the object to another, see Sharing in DataObject.
    /// @{
    QVector<SelectionItem> &GetSelectionItem();
    const QVector<SelectionItem> &GetSelectionItem() const;
    void SetSelectionItem(const QVector<SelectionItem> &items);
    void AppendSelectionItem(const SelectionItem &item);
    void AppendSelectionItem(std::nullptr_t) = delete;
    bool IsSelectionItemSet() const;
    void ResetSelectionItem();
    bool IsValidSelectionItem(const SelectionItem &item) const;
    bool IsValidSelectionItem(const QVector<SelectionItem> &items) const;
    /// @}

    /// \name id
    /// The identifier of the value within its node; mandatory, null until set. IsValidid() returns true for every text,
    /// also a null one, although Setid() refuses null while validating.
    /// @{
    QString Getid() const;
    void Setid(QString value);
    void Setid(std::nullptr_t) = delete;
    bool IsidSet() const;
    void Resetid();
    QString GetDefaultid() const;
    bool IsValidid(const QString &value) const;
    bool IsValidid(std::nullptr_t) const = delete;
    /// @}

    /// \name value
    /// The number chosen; mandatory, 0 until set, any number. XML and tagged records carry two decimals; only a
    /// snapshot keeps it exactly.
    /// @{
    double Getvalue() const;
    void Setvalue(double value);
    bool IsvalueSet() const;
    void Resetvalue();
    double GetDefaultvalue() const;
    bool IsValidvalue(const double &value) const;
    /// @}

    /// \name text
    /// The text to show for it; mandatory, null until set. IsValidtext() returns true for every text, also a null one,
    /// although Settext() refuses null while validating.
    /// @{
    QString Gettext() const;
    void Settext(QString value);
    void Settext(std::nullptr_t) = delete;
    bool IstextSet() const;
    void Resettext();
    QString GetDefaulttext() const;
    bool IsValidtext(const QString &value) const;
    bool IsValidtext(std::nullptr_t) const = delete;
    /// @}

    /// \name index
    /// The position of the option chosen, counted from 0; mandatory, 0 until set, any number: it may be negative or
    /// beyond the list.
    /// @{
    int Getindex() const;
    void Setindex(int value);
    bool IsindexSet() const;
    void Resetindex();
    int GetDefaultindex() const;
    bool IsValidindex(const int &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueSelection)
Q_DECLARE_METATYPE(JobXml::ValueSelection)

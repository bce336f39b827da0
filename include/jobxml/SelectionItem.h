// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// One option of a ValueSelection: a name and a number.
///
/// Text that is not a number reads as 0 and counts as set.
///
/// Check() checks name, then value: OutOfRangeException "SelectionItem: Please set name properly.".
class JOBXML_EXPORT SelectionItem : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    SelectionItem();
    SelectionItem(const SelectionItem &other);
    SelectionItem(SelectionItem &&other) noexcept;
    SelectionItem &operator=(const SelectionItem &other) noexcept;
    SelectionItem &operator=(SelectionItem &&other) noexcept;
    ~SelectionItem() override;

    bool operator==(const SelectionItem &other) const;
    bool operator!=(const SelectionItem &other) const;
    void swap(SelectionItem &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<SelectionItem> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<SelectionItem> fromBinary(const QByteArray &representation,
                                                                 QString *error = nullptr,
                                                                 const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x228141C0, leads the binary representation; its name, "SelectionItem", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name name
    /// The name to show; mandatory, null until set. IsValidname() returns true for every text, also a null one,
    /// although Setname() refuses null while validating.
    /// @{
    QString Getname() const;
    void Setname(QString value);
    void Setname(std::nullptr_t) = delete;
    bool IsnameSet() const;
    void Resetname();
    QString GetDefaultname() const;
    bool IsValidname(const QString &value) const;
    bool IsValidname(std::nullptr_t) const = delete;
    /// @}

    /// \name value
    /// The number of the option; mandatory, 0 until set, any number. XML and tagged records carry two decimals; only a
    /// snapshot keeps it exactly.
    /// @{
    double Getvalue() const;
    void Setvalue(double value);
    bool IsvalueSet() const;
    void Resetvalue();
    double GetDefaultvalue() const;
    bool IsValidvalue(const double &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const SelectionItem &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::SelectionItem)
Q_DECLARE_METATYPE(JobXml::SelectionItem)

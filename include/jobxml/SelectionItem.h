// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// One option of a ValueSelection: a name and a number.
///
/// Text that is no number reads as 0 and counts as set.
class JOBXML_EXPORT SelectionItem : public DataObject
{
public:
    SelectionItem();
    SelectionItem(const SelectionItem &other);
    SelectionItem(SelectionItem &&other) noexcept;
    SelectionItem &operator=(const SelectionItem &other) noexcept;
    SelectionItem &operator=(SelectionItem &&other) noexcept;
    ~SelectionItem() override;

    bool operator==(const SelectionItem &other) const;
    bool operator!=(const SelectionItem &other) const;
    void swap(SelectionItem &other) noexcept;

    static qint64 GetId();
    static QString GetStaticObjectName();

    /// \name name
    /// The name to show; mandatory, null until set. IsValidname() says yes to every text, a null one included, although
    /// Setname() refuses null while validating.
    /// @{
    QString Getname() const;
    void Setname(QString value);
    bool IsnameSet() const;
    void Resetname();
    QString GetDefaultname() const;
    bool IsValidname(const QString &value) const;
    /// @}

    /// \name value
    /// The number that the option stands for; mandatory, 0 until set, any number. XML and tagged records carry two
    /// decimals, only a snapshot keeps it exactly.
    /// @{
    double Getvalue() const;
    void Setvalue(double value);
    bool IsvalueSet() const;
    void Resetvalue();
    double GetDefaultvalue() const;
    bool IsValidvalue(const double &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::SelectionItem)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>
#include <jobxml/StringItem.h>

namespace JobXml {

/// A named text of a node, out of or alongside a list of texts.
///
/// The value need not be among the items: nothing compares them.
///
/// Check() checks the list, each item, then id and value: OutOfRangeException "ValueStringList: Please set StringItem
/// properly.".
class JOBXML_EXPORT ValueStringList : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueStringList();
    ValueStringList(const ValueStringList &other);
    ValueStringList(ValueStringList &&other) noexcept;
    ValueStringList &operator=(const ValueStringList &other) noexcept;
    ValueStringList &operator=(ValueStringList &&other) noexcept;
    ~ValueStringList() override;

    bool operator==(const ValueStringList &other) const;
    bool operator!=(const ValueStringList &other) const;
    void swap(ValueStringList &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueStringList> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueStringList> fromBinary(const QByteArray &representation,
                                                                   QString *error = nullptr,
                                                                   const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC290BC31, leads the binary representation; its name, "ValueStringList", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name StringItem
    /// The texts offered; mandatory. The list must be set and may be empty, but an empty one does not count as data:
    /// while validating nothing is written for it. Snapshots hold items only while the list is set. Release a reference
    /// from GetStringItem() before assigning the object to another, see Sharing in DataObject.
    /// @{
    QVector<StringItem> &GetStringItem();
    const QVector<StringItem> &GetStringItem() const;
    void SetStringItem(const QVector<StringItem> &items);
    void AppendStringItem(const StringItem &item);
    void AppendStringItem(std::nullptr_t) = delete;
    bool IsStringItemSet() const;
    void ResetStringItem();
    bool IsValidStringItem(const StringItem &item) const;
    bool IsValidStringItem(const QVector<StringItem> &items) const;
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
    /// The text chosen; mandatory, null until set. IsValidvalue() returns true for every text, also a null one,
    /// although Setvalue() refuses null while validating.
    /// @{
    QString Getvalue() const;
    void Setvalue(QString value);
    void Setvalue(std::nullptr_t) = delete;
    bool IsvalueSet() const;
    void Resetvalue();
    QString GetDefaultvalue() const;
    bool IsValidvalue(const QString &value) const;
    bool IsValidvalue(std::nullptr_t) const = delete;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueStringList)
Q_DECLARE_METATYPE(JobXml::ValueStringList)

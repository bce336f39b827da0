// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// One text of a ValueStringList.
///
/// Check() checks value: OutOfRangeException "StringItem: Please set value properly.".
class JOBXML_EXPORT StringItem : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    StringItem();
    StringItem(const StringItem &other);
    StringItem(StringItem &&other) noexcept;
    StringItem &operator=(const StringItem &other) noexcept;
    StringItem &operator=(StringItem &&other) noexcept;
    ~StringItem() override;

    bool operator==(const StringItem &other) const;
    bool operator!=(const StringItem &other) const;
    void swap(StringItem &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<StringItem> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<StringItem> fromBinary(const QByteArray &representation,
                                                              QString *error = nullptr,
                                                              const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xEBB03A60, leads the binary representation; its name, "StringItem", is that of the XML element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name value
    /// The text; mandatory, null until set. IsValidvalue() returns true for every text, also a null one, although
    /// Setvalue() refuses null while validating.
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

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const StringItem &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::StringItem)
Q_DECLARE_METATYPE(JobXml::StringItem)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named text of a node.
///
/// Check() checks id, then value, and throws for the first one missing: OutOfRangeException "ValueString: Please set id
/// properly.".
class JOBXML_EXPORT ValueString : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueString();
    ValueString(const ValueString &other);
    ValueString(ValueString &&other) noexcept;
    ValueString &operator=(const ValueString &other) noexcept;
    ValueString &operator=(ValueString &&other) noexcept;
    ~ValueString() override;

    bool operator==(const ValueString &other) const;
    bool operator!=(const ValueString &other) const;
    void swap(ValueString &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueString> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueString> fromBinary(const QByteArray &representation,
                                                               QString *error = nullptr,
                                                               const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC5ECF92B, leads the binary representation; its name, "ValueString", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name id
    /// The identifier of the value within its node; mandatory, null until set.
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
    /// The text; mandatory, null until set. An empty text is a value.
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
JOBXML_EXPORT HashValue qHash(const ValueString &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueString)
Q_DECLARE_METATYPE(JobXml::ValueString)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 64-bit integer of a node.
///
/// Check() checks id, then value, and throws for the first one missing: OutOfRangeException "ValueInt64: Please set id
/// properly.".
class JOBXML_EXPORT ValueInt64 : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueInt64();
    ValueInt64(const ValueInt64 &other);
    ValueInt64(ValueInt64 &&other) noexcept;
    ValueInt64 &operator=(const ValueInt64 &other) noexcept;
    ValueInt64 &operator=(ValueInt64 &&other) noexcept;
    ~ValueInt64() override;

    bool operator==(const ValueInt64 &other) const;
    bool operator!=(const ValueInt64 &other) const;
    void swap(ValueInt64 &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueInt64> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueInt64> fromBinary(const QByteArray &representation,
                                                              QString *error = nullptr,
                                                              const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x4E82A0AA, leads the binary representation; its name, "ValueInt64", is that of the XML element.
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
    /// The number; mandatory, 0 until set. Text that is not a number reads as 0 and counts as set.
    /// @{
    qint64 Getvalue() const;
    void Setvalue(qint64 value);
    bool IsvalueSet() const;
    void Resetvalue();
    qint64 GetDefaultvalue() const;
    bool IsValidvalue(const qint64 &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueInt64 &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueInt64)
Q_DECLARE_METATYPE(JobXml::ValueInt64)

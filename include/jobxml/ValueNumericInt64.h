// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 64-bit integer of a node, with the range and increment offered for it.
///
/// The range is not enforced: nothing compares the value with its limits, and min may be above max. A user interface
/// decides what it offers, and whether it accepts a value out of range. The unit is that of the setting. Text that is
/// not a number reads as 0 and counts as set. Getid() also has a non-const overload.
///
/// Check() checks id, value, min, max and step, in this order: OutOfRangeException "ValueNumericInt64: Please set step
/// properly.".
class JOBXML_EXPORT ValueNumericInt64 : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueNumericInt64();
    ValueNumericInt64(const ValueNumericInt64 &other);
    ValueNumericInt64(ValueNumericInt64 &&other) noexcept;
    ValueNumericInt64 &operator=(const ValueNumericInt64 &other) noexcept;
    ValueNumericInt64 &operator=(ValueNumericInt64 &&other) noexcept;
    ~ValueNumericInt64() override;

    bool operator==(const ValueNumericInt64 &other) const;
    bool operator!=(const ValueNumericInt64 &other) const;
    void swap(ValueNumericInt64 &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueNumericInt64> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueNumericInt64> fromBinary(const QByteArray &representation,
                                                                     QString *error = nullptr,
                                                                     const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x044D7AEC, leads the binary representation; its name, "ValueNumericInt64", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name id
    /// The identifier of the value within its node; mandatory, null until set. IsValidid() returns true for every text,
    /// also a null one, although Setid() refuses null while validating.
    /// @{
    QString Getid();
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
    /// The number set; mandatory, 0 until set.
    /// @{
    qint64 Getvalue() const;
    void Setvalue(qint64 value);
    bool IsvalueSet() const;
    void Resetvalue();
    qint64 GetDefaultvalue() const;
    bool IsValidvalue(const qint64 &value) const;
    /// @}

    /// \name min
    /// The least number offered; mandatory, 0 until set.
    /// @{
    qint64 Getmin() const;
    void Setmin(qint64 value);
    bool IsminSet() const;
    void Resetmin();
    qint64 GetDefaultmin() const;
    bool IsValidmin(const qint64 &value) const;
    /// @}

    /// \name max
    /// The greatest number offered; mandatory, 0 until set.
    /// @{
    qint64 Getmax() const;
    void Setmax(qint64 value);
    bool IsmaxSet() const;
    void Resetmax();
    qint64 GetDefaultmax() const;
    bool IsValidmax(const qint64 &value) const;
    /// @}

    /// \name step
    /// The increment between numbers offered; mandatory, 0 until set. May be 0 or negative.
    /// @{
    qint64 Getstep() const;
    void Setstep(qint64 value);
    bool IsstepSet() const;
    void Resetstep();
    qint64 GetDefaultstep() const;
    bool IsValidstep(const qint64 &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueNumericInt64 &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueNumericInt64)
Q_DECLARE_METATYPE(JobXml::ValueNumericInt64)

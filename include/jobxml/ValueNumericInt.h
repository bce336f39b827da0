// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 32-bit integer of a node, with the range and increment offered for it.
///
/// The range is not enforced: nothing compares the value with its limits, and min may be above max. A user interface
/// decides what it offers, and whether it accepts a value out of range. The unit is that of the setting. Binary forms
/// carry the numbers in 64 bits and keep the low 32 when read. Text that is not a number reads as 0 and counts as set.
/// Getid() also has a non-const overload.
///
/// Check() checks id, value, min, max and step, in this order: OutOfRangeException "ValueNumericInt: Please set step
/// properly.".
class JOBXML_EXPORT ValueNumericInt : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueNumericInt();
    ValueNumericInt(const ValueNumericInt &other);
    ValueNumericInt(ValueNumericInt &&other) noexcept;
    ValueNumericInt &operator=(const ValueNumericInt &other) noexcept;
    ValueNumericInt &operator=(ValueNumericInt &&other) noexcept;
    ~ValueNumericInt() override;

    bool operator==(const ValueNumericInt &other) const;
    bool operator!=(const ValueNumericInt &other) const;
    void swap(ValueNumericInt &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueNumericInt> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueNumericInt> fromBinary(const QByteArray &representation,
                                                                   QString *error = nullptr,
                                                                   const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC55D0588, leads the binary representation; its name, "ValueNumericInt", is that of the XML
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
    int Getvalue() const;
    void Setvalue(int value);
    bool IsvalueSet() const;
    void Resetvalue();
    int GetDefaultvalue() const;
    bool IsValidvalue(const int &value) const;
    /// @}

    /// \name min
    /// The least number offered; mandatory, 0 until set.
    /// @{
    int Getmin() const;
    void Setmin(int value);
    bool IsminSet() const;
    void Resetmin();
    int GetDefaultmin() const;
    bool IsValidmin(const int &value) const;
    /// @}

    /// \name max
    /// The greatest number offered; mandatory, 0 until set.
    /// @{
    int Getmax() const;
    void Setmax(int value);
    bool IsmaxSet() const;
    void Resetmax();
    int GetDefaultmax() const;
    bool IsValidmax(const int &value) const;
    /// @}

    /// \name step
    /// The increment between numbers offered; mandatory, 0 until set. May be 0 or negative.
    /// @{
    int Getstep() const;
    void Setstep(int value);
    bool IsstepSet() const;
    void Resetstep();
    int GetDefaultstep() const;
    bool IsValidstep(const int &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueNumericInt &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueNumericInt)
Q_DECLARE_METATYPE(JobXml::ValueNumericInt)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named floating-point number of a node, with the range and increment offered for it.
///
/// The range is not enforced: nothing compares the value with its limits, and min may be above max. A user interface
/// decides what it offers, and whether it accepts a value out of range. The unit is that of the setting. XML and tagged
/// records carry two decimals; only a snapshot keeps the numbers exactly. Text that is not a number reads as 0 and
/// counts as set. Getid() also has a non-const overload.
///
/// Check() checks id, value, min, max and step, in this order: OutOfRangeException "ValueNumericFloat: Please set step
/// properly.".
class JOBXML_EXPORT ValueNumericFloat : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueNumericFloat();
    ValueNumericFloat(const ValueNumericFloat &other);
    ValueNumericFloat(ValueNumericFloat &&other) noexcept;
    ValueNumericFloat &operator=(const ValueNumericFloat &other) noexcept;
    ValueNumericFloat &operator=(ValueNumericFloat &&other) noexcept;
    ~ValueNumericFloat() override;

    bool operator==(const ValueNumericFloat &other) const;
    bool operator!=(const ValueNumericFloat &other) const;
    void swap(ValueNumericFloat &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueNumericFloat> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueNumericFloat> fromBinary(const QByteArray &representation,
                                                                     QString *error = nullptr,
                                                                     const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x4BA90080, leads the binary representation; its name, "ValueNumericFloat", is that of the XML
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
    float Getvalue() const;
    void Setvalue(float value);
    bool IsvalueSet() const;
    void Resetvalue();
    float GetDefaultvalue() const;
    bool IsValidvalue(const float &value) const;
    /// @}

    /// \name min
    /// The least number offered; mandatory, 0 until set.
    /// @{
    float Getmin() const;
    void Setmin(float value);
    bool IsminSet() const;
    void Resetmin();
    float GetDefaultmin() const;
    bool IsValidmin(const float &value) const;
    /// @}

    /// \name max
    /// The greatest number offered; mandatory, 0 until set.
    /// @{
    float Getmax() const;
    void Setmax(float value);
    bool IsmaxSet() const;
    void Resetmax();
    float GetDefaultmax() const;
    bool IsValidmax(const float &value) const;
    /// @}

    /// \name step
    /// The increment between numbers offered; mandatory, 0 until set. May be 0 or negative.
    /// @{
    float Getstep() const;
    void Setstep(float value);
    bool IsstepSet() const;
    void Resetstep();
    float GetDefaultstep() const;
    bool IsValidstep(const float &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueNumericFloat &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueNumericFloat)
Q_DECLARE_METATYPE(JobXml::ValueNumericFloat)

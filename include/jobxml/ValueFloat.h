// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named floating-point number of a node.
///
/// Check() checks id, then value, and throws for the first one missing: OutOfRangeException "ValueFloat: Please set id
/// properly.".
class JOBXML_EXPORT ValueFloat : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueFloat();
    ValueFloat(const ValueFloat &other);
    ValueFloat(ValueFloat &&other) noexcept;
    ValueFloat &operator=(const ValueFloat &other) noexcept;
    ValueFloat &operator=(ValueFloat &&other) noexcept;
    ~ValueFloat() override;

    bool operator==(const ValueFloat &other) const;
    bool operator!=(const ValueFloat &other) const;
    void swap(ValueFloat &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueFloat> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueFloat> fromBinary(const QByteArray &representation,
                                                              QString *error = nullptr,
                                                              const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x6440D555, leads the binary representation; its name, "ValueFloat", is that of the XML element.
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
    /// The number; mandatory, 0 until set. XML and tagged records carry two decimals; only a snapshot keeps it exactly.
    /// Text that is not a number reads as 0 and counts as set.
    /// @{
    float Getvalue() const;
    void Setvalue(float value);
    bool IsvalueSet() const;
    void Resetvalue();
    float GetDefaultvalue() const;
    bool IsValidvalue(const float &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueFloat &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueFloat)
Q_DECLARE_METATYPE(JobXml::ValueFloat)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 32-bit integer of a node.
///
/// Check() checks id, then value, and throws for the first one missing: OutOfRangeException "ValueInt: Please set id
/// properly.".
class JOBXML_EXPORT ValueInt : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueInt();
    ValueInt(const ValueInt &other);
    ValueInt(ValueInt &&other) noexcept;
    ValueInt &operator=(const ValueInt &other) noexcept;
    ValueInt &operator=(ValueInt &&other) noexcept;
    ~ValueInt() override;

    bool operator==(const ValueInt &other) const;
    bool operator!=(const ValueInt &other) const;
    void swap(ValueInt &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueInt> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueInt> fromBinary(const QByteArray &representation, QString *error = nullptr,
                                                            const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x278DA93B, leads the binary representation; its name, "ValueInt", is that of the XML element.
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
    /// The number; mandatory, 0 until set. Binary forms carry it in 64 bits and keep the low 32 when read. Text that is
    /// not a number reads as 0 and counts as set.
    /// @{
    int Getvalue() const;
    void Setvalue(int value);
    bool IsvalueSet() const;
    void Resetvalue();
    int GetDefaultvalue() const;
    bool IsValidvalue(const int &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueInt &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueInt)
Q_DECLARE_METATYPE(JobXml::ValueInt)

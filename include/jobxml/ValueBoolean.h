// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named switch of a node.
///
/// Check() checks id, then value, and throws for the first one missing: OutOfRangeException "ValueBoolean: Please set
/// id properly.".
class JOBXML_EXPORT ValueBoolean : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    ValueBoolean();
    ValueBoolean(const ValueBoolean &other);
    ValueBoolean(ValueBoolean &&other) noexcept;
    ValueBoolean &operator=(const ValueBoolean &other) noexcept;
    ValueBoolean &operator=(ValueBoolean &&other) noexcept;
    ~ValueBoolean() override;

    bool operator==(const ValueBoolean &other) const;
    bool operator!=(const ValueBoolean &other) const;
    void swap(ValueBoolean &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<ValueBoolean> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<ValueBoolean> fromBinary(const QByteArray &representation,
                                                                QString *error = nullptr,
                                                                const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC8FC2661, leads the binary representation; its name, "ValueBoolean", is that of the XML
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
    /// Whether the switch is on; mandatory, false until set. Not written while it is not set. In XML "0" and "false",
    /// in any case, are false and every other text is true; an empty one throws InvalidXmlException while validating
    /// and is false otherwise. Snapshots are read as if it were always written, so a value without it is lost in that
    /// form.
    /// @{
    bool Getvalue() const;
    void Setvalue(bool value);
    bool IsvalueSet() const;
    void Resetvalue();
    bool GetDefaultvalue() const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const ValueBoolean &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueBoolean)
Q_DECLARE_METATYPE(JobXml::ValueBoolean)

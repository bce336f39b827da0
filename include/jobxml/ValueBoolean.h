// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named switch of a node.
class JOBXML_EXPORT ValueBoolean : public DataObject
{
public:
    ValueBoolean();
    ValueBoolean(const ValueBoolean &other);
    ValueBoolean(ValueBoolean &&other) noexcept;
    ValueBoolean &operator=(const ValueBoolean &other) noexcept;
    ValueBoolean &operator=(ValueBoolean &&other) noexcept;
    ~ValueBoolean() override;

    bool operator==(const ValueBoolean &other) const;
    bool operator!=(const ValueBoolean &other) const;
    void swap(ValueBoolean &other) noexcept;

    static qint64 GetId();
    static QString GetStaticObjectName();

    /// \name id
    /// The identifier of the value within its node; mandatory, null until set.
    /// @{
    QString Getid() const;
    void Setid(QString value);
    bool IsidSet() const;
    void Resetid();
    QString GetDefaultid() const;
    bool IsValidid(const QString &value) const;
    /// @}

    /// \name value
    /// Whether the switch is on; mandatory, false until set. Not written while it is not set. In XML "0" and "false",
    /// in any case, are false and every other text is true; an empty one throws InvalidXmlException while validating
    /// and is false otherwise. Snapshots are read as if it were always written, so that a value without it does not
    /// survive that form.
    /// @{
    bool Getvalue() const;
    void Setvalue(bool value);
    bool IsvalueSet() const;
    void Resetvalue();
    bool GetDefaultvalue() const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueBoolean)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named floating-point number of a node.
class JOBXML_EXPORT ValueFloat : public DataObject
{
public:
    ValueFloat();
    ValueFloat(const ValueFloat &other);
    ValueFloat(ValueFloat &&other) noexcept;
    ValueFloat &operator=(const ValueFloat &other) noexcept;
    ValueFloat &operator=(ValueFloat &&other) noexcept;
    ~ValueFloat() override;

    bool operator==(const ValueFloat &other) const;
    bool operator!=(const ValueFloat &other) const;
    void swap(ValueFloat &other) noexcept;

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
    /// The number; mandatory, 0 until set. XML and tagged records carry two decimals, only a snapshot keeps it exactly.
    /// Text that is no number reads as 0 and counts as set.
    /// @{
    float Getvalue() const;
    void Setvalue(float value);
    bool IsvalueSet() const;
    void Resetvalue();
    float GetDefaultvalue() const;
    bool IsValidvalue(const float &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueFloat)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 64-bit integer of a node.
class JOBXML_EXPORT ValueInt64 : public DataObject
{
public:
    ValueInt64();
    ValueInt64(const ValueInt64 &other);
    ValueInt64(ValueInt64 &&other) noexcept;
    ValueInt64 &operator=(const ValueInt64 &other) noexcept;
    ValueInt64 &operator=(ValueInt64 &&other) noexcept;
    ~ValueInt64() override;

    bool operator==(const ValueInt64 &other) const;
    bool operator!=(const ValueInt64 &other) const;
    void swap(ValueInt64 &other) noexcept;

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
    /// The number; mandatory, 0 until set. Text that is no number reads as 0 and counts as set.
    /// @{
    qint64 Getvalue() const;
    void Setvalue(qint64 value);
    bool IsvalueSet() const;
    void Resetvalue();
    qint64 GetDefaultvalue() const;
    bool IsValidvalue(const qint64 &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueInt64)

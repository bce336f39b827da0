// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named 32-bit integer of a node.
class JOBXML_EXPORT ValueInt : public DataObject
{
public:
    ValueInt();
    ValueInt(const ValueInt &other);
    ValueInt(ValueInt &&other) noexcept;
    ValueInt &operator=(const ValueInt &other) noexcept;
    ValueInt &operator=(ValueInt &&other) noexcept;
    ~ValueInt() override;

    bool operator==(const ValueInt &other) const;
    bool operator!=(const ValueInt &other) const;
    void swap(ValueInt &other) noexcept;

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
    /// The number; mandatory, 0 until set. Binary forms carry it in 64 bits and keep the low 32 when read. Text that is
    /// no number reads as 0 and counts as set.
    /// @{
    int Getvalue() const;
    void Setvalue(int value);
    bool IsvalueSet() const;
    void Resetvalue();
    int GetDefaultvalue() const;
    bool IsValidvalue(const int &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueInt)

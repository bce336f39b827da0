// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// A named text of a node.
class JOBXML_EXPORT ValueString : public DataObject
{
public:
    ValueString();
    ValueString(const ValueString &other);
    ValueString(ValueString &&other) noexcept;
    ValueString &operator=(const ValueString &other) noexcept;
    ValueString &operator=(ValueString &&other) noexcept;
    ~ValueString() override;

    bool operator==(const ValueString &other) const;
    bool operator!=(const ValueString &other) const;
    void swap(ValueString &other) noexcept;

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
    /// The text; mandatory, null until set. An empty text is a value.
    /// @{
    QString Getvalue() const;
    void Setvalue(QString value);
    bool IsvalueSet() const;
    void Resetvalue();
    QString GetDefaultvalue() const;
    bool IsValidvalue(const QString &value) const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::ValueString)

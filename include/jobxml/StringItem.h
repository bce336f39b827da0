// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// One text of a ValueStringList.
class JOBXML_EXPORT StringItem : public DataObject
{
public:
    StringItem();
    StringItem(const StringItem &other);
    StringItem(StringItem &&other) noexcept;
    StringItem &operator=(const StringItem &other) noexcept;
    StringItem &operator=(StringItem &&other) noexcept;
    ~StringItem() override;

    bool operator==(const StringItem &other) const;
    bool operator!=(const StringItem &other) const;
    void swap(StringItem &other) noexcept;

    static qint64 GetId();
    static QString GetStaticObjectName();

    /// \name value
    /// The text; mandatory, null until set. IsValidvalue() says yes to every text, a null one included, although
    /// Setvalue() refuses null while validating.
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

Q_DECLARE_SHARED(JobXml::StringItem)

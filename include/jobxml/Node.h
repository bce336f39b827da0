// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>
#include <jobxml/ValueItem.h>

namespace JobXml {

/// One configurable parameter of a component: an identifier and the values that it carries.
///
/// Check() and HasData() look at the values before the identifier, whatever the validate flag.
class JOBXML_EXPORT Node : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    Node();
    Node(const Node &other);
    Node(Node &&other) noexcept;
    Node &operator=(const Node &other) noexcept;
    Node &operator=(Node &&other) noexcept;
    ~Node() override;

    bool operator==(const Node &other) const;
    bool operator!=(const Node &other) const;
    void swap(Node &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<Node> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<Node> fromBinary(const QByteArray &representation, QString *error = nullptr,
                                                        const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC8131DB4, leads the binary representation; its name, "Node", is that of the XML element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name ValueItem
    /// The values; mandatory. The list must be set and may be empty, but an empty one does not count as data: while
    /// validating nothing is written for it, AppendNode() refuses the node, and the XML writer the component that holds
    /// it. Snapshots are read by the count alone. Release a reference from GetValueItem() before assigning the object
    /// to another, see Sharing in DataObject.
    /// @{
    QVector<ValueItem> &GetValueItem();
    const QVector<ValueItem> &GetValueItem() const;
    void SetValueItem(const QVector<ValueItem> &items);
    void AppendValueItem(const ValueItem &item);
    void AppendValueItem(std::nullptr_t) = delete;
    bool IsValueItemSet() const;
    void ResetValueItem();
    bool IsValidValueItem(const ValueItem &item) const;
    bool IsValidValueItem(const QVector<ValueItem> &items) const;
    /// @}

    /// \name id
    /// The identifier of the parameter within its component; mandatory, null until set.
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
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::Node)
Q_DECLARE_METATYPE(JobXml::Node)

// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>
#include <jobxml/Node.h>

namespace JobXml {

/// One configurable part of a tuner: its type, its name and its nodes.
///
/// Check() checks the list, each node, then type, name, displayName (not null if it is set) and optional, whatever the
/// validate flag: OutOfRangeException "Component: Please set Node properly.".
class JOBXML_EXPORT Component : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    Component();
    Component(const Component &other);
    Component(Component &&other) noexcept;
    Component &operator=(const Component &other) noexcept;
    Component &operator=(Component &&other) noexcept;
    ~Component() override;

    bool operator==(const Component &other) const;
    bool operator!=(const Component &other) const;
    void swap(Component &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<Component> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<Component> fromBinary(const QByteArray &representation, QString *error = nullptr,
                                                             const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x0ADD1857, leads the binary representation; its name, "Component", is that of the XML element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name Node
    /// The configurable parameters; mandatory. The list must be set and may be empty, but an empty one does not count
    /// as data: while validating nothing is written for it, AppendComponent() refuses the component, and the XML writer
    /// the document that holds it. Snapshots are read by the count alone. Release a reference from GetNode() before
    /// assigning the object to another, see Sharing in DataObject.
    /// @{
    QVector<Node> &GetNode();
    const QVector<Node> &GetNode() const;
    void SetNode(const QVector<Node> &items);
    void AppendNode(const Node &item);
    void AppendNode(std::nullptr_t) = delete;
    bool IsNodeSet() const;
    void ResetNode();
    bool IsValidNode(const Node &item) const;
    bool IsValidNode(const QVector<Node> &items) const;
    /// @}

    /// \name type
    /// What kind of part this is; mandatory, null until set.
    /// @{
    QString Gettype() const;
    void Settype(QString value);
    void Settype(std::nullptr_t) = delete;
    bool IstypeSet() const;
    void Resettype();
    QString GetDefaulttype() const;
    bool IsValidtype(const QString &value) const;
    bool IsValidtype(std::nullptr_t) const = delete;
    /// @}

    /// \name name
    /// The name of the part within the tuner; mandatory, null until set.
    /// @{
    QString Getname() const;
    void Setname(QString value);
    void Setname(std::nullptr_t) = delete;
    bool IsnameSet() const;
    void Resetname();
    QString GetDefaultname() const;
    bool IsValidname(const QString &value) const;
    bool IsValidname(std::nullptr_t) const = delete;
    /// @}

    /// \name displayName
    /// The name to show to a user; optional, null until set. Must not be null when it is set.
    /// @{
    QString GetdisplayName() const;
    void SetdisplayName(QString value);
    void SetdisplayName(std::nullptr_t) = delete;
    bool IsdisplayNameSet() const;
    void ResetdisplayName();
    QString GetDefaultdisplayName() const;
    bool IsValiddisplayName(const QString &value) const;
    bool IsValiddisplayName(std::nullptr_t) const = delete;
    /// @}

    /// \name optional
    /// Whether the tuner may lack this part; mandatory, false until set. In XML "0" and "false", in any case, are false
    /// and every other text is true; an empty one throws InvalidXmlException while validating and is false otherwise.
    /// Snapshots are read as if it were always set, so a component without it is lost in that form.
    /// @{
    bool Getoptional() const;
    void Setoptional(bool value);
    bool IsoptionalSet() const;
    void Resetoptional();
    bool GetDefaultoptional() const;
    /// @}
};

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::Component)
Q_DECLARE_METATYPE(JobXml::Component)

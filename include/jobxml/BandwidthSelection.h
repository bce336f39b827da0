// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// One bandwidth that a tuner can select: a name and a maximum bandwidth.
///
/// Text that is not a number reads as 0 and counts as set.
///
/// Check() checks Name, then MaxBandwidth: OutOfRangeException "BandwidthSelection: Please set Name properly.".
class JOBXML_EXPORT BandwidthSelection : public DataObject
{
public:
    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    BandwidthSelection();
    BandwidthSelection(const BandwidthSelection &other);
    BandwidthSelection(BandwidthSelection &&other) noexcept;
    BandwidthSelection &operator=(const BandwidthSelection &other) noexcept;
    BandwidthSelection &operator=(BandwidthSelection &&other) noexcept;
    ~BandwidthSelection() override;

    bool operator==(const BandwidthSelection &other) const;
    bool operator!=(const BandwidthSelection &other) const;
    void swap(BandwidthSelection &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<BandwidthSelection> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<BandwidthSelection> fromBinary(const QByteArray &representation,
                                                                      QString *error = nullptr,
                                                                      const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0x09F7EAA9, leads the binary representation; its name, "BandwidthSelection", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name Name
    /// The name of the bandwidth; mandatory, null until set. A child element in XML.
    /// @{
    QString GetName() const;
    void SetName(QString value);
    void SetName(std::nullptr_t) = delete;
    bool IsNameSet() const;
    void ResetName();
    QString GetDefaultName() const;
    bool IsValidName(const QString &value) const;
    bool IsValidName(std::nullptr_t) const = delete;
    /// @}

    /// \name MaxBandwidth
    /// The greatest bandwidth, in the unit that the producer of the document uses; mandatory, 0 until set, any number.
    /// A child element in XML. XML and tagged records carry two decimals; only a snapshot keeps it exactly.
    /// @{
    double GetMaxBandwidth() const;
    void SetMaxBandwidth(double value);
    bool IsMaxBandwidthSet() const;
    void ResetMaxBandwidth();
    double GetDefaultMaxBandwidth() const;
    bool IsValidMaxBandwidth(const double &value) const;
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const BandwidthSelection &object, HashValue seed = 0);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::BandwidthSelection)
Q_DECLARE_METATYPE(JobXml::BandwidthSelection)

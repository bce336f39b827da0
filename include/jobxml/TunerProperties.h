// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/BandwidthSelection.h>
#include <jobxml/Component.h>
#include <jobxml/DataObject.h>
#include <jobxml/StartupModes.h>

namespace JobXml {

/// The document: one tuner resource of a measurement job.
///
/// **Version.** The document writes its version, "1.1", and compares the version that it reads with its own, as numbers
/// (a text that is not a number counts as 0). An older version resets the object by ResetToDefault() as soon as it is
/// read, and so does an XML document without one; data of the same or a newer version, and a record without a version,
/// are read without a reset. GetInitialVersionLoaded() is the version that was read last.
///
/// **Check()** checks, in this order: StartupModes if set, each BandwidthSelection if set, whether Component is set,
/// each Component, name (not null if set), type (set, and one of the kinds), baseresource (set, not null),
/// connectableResources and parentBaseResource (not null if set). HasData() requires a Component, type and
/// baseresource.
///
/// **Equality** compares the versions, then the members; two lists are equal only if both or neither are set.
///
/// **Unknown elements.** In XML of an older version an unknown child element is skipped. Under the same or a newer
/// version it throws InvalidXmlException "Unknown Tag 'x' in 'TunerProperties'." while validating; otherwise its
/// content is read as content of the document.
class JOBXML_EXPORT TunerProperties : public DataObject
{
public:
    /// The kind of a tuner; the value is the index of its name. The order is part of the format.
    enum class type : qint8 {
        MCP, ///< a bank of channels of one signal
        SCP, ///< a single channel of a signal
        FFP, ///< a processor of a whole band
        Receiver, ///< a receiver
        DirectionFinder, ///< a direction finder
        Invalid = -1, ///< not a kind; has no name
    };

    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    TunerProperties();
    TunerProperties(const TunerProperties &other);
    TunerProperties(TunerProperties &&other) noexcept;
    TunerProperties &operator=(const TunerProperties &other) noexcept;
    TunerProperties &operator=(TunerProperties &&other) noexcept;
    ~TunerProperties() override;

    bool operator==(const TunerProperties &other) const;
    bool operator!=(const TunerProperties &other) const;
    void swap(TunerProperties &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<TunerProperties> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<TunerProperties> fromBinary(const QByteArray &representation,
                                                                   QString *error = nullptr,
                                                                   const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xC10CBB5F, leads the binary representation; its name, "TunerProperties", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// The version of the documents that the object writes: "1.1".
    const QString &GetVersion() const override;

    /// The version that was read last; null before anything was read, empty if XML carried none. Resetting the object
    /// does not change it.
    QString GetInitialVersionLoaded() const;

    /// \name name
    /// The name of the tuner; optional, null until set. Must not be null when it is set.
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

    /// \name type
    /// The kind of the tuner; mandatory, Invalid until set. XML and tagged records carry its name, snapshots its value.
    /// @{
    type Gettype() const;
    /// Refuses an invalid kind while validating: OutOfRangeException "enum is not valid
    /// (classname=TunerProperties,membername=m_type)". Otherwise stores it unchanged.
    void Settype(type value);
    bool IstypeSet() const;
    void Resettype();
    type GetDefaulttype() const;
    type GetInvalidtype() const;
    bool IsValidtype(type value) const;
    /// The name of the kind; null for an invalid one.
    QString GettypeAsString() const;
    QString typeToName(type value) const;
    /// The kind of exactly this name; Invalid if there is none.
    type NameTotype(const QString &name) const;
    type NameTotype(std::nullptr_t) const = delete;
    /// The names of the kinds.
    static QStringList Gettypes();
    /// The same names to show to a user, in the language of the installed translations.
    static QStringList GetGUItypes();
    /// @}

    /// \name baseresource
    /// The resource that the tuner is based on; mandatory, null until set.
    /// @{
    QString Getbaseresource() const;
    void Setbaseresource(QString value);
    void Setbaseresource(std::nullptr_t) = delete;
    bool IsbaseresourceSet() const;
    void Resetbaseresource();
    QString GetDefaultbaseresource() const;
    bool IsValidbaseresource(const QString &value) const;
    bool IsValidbaseresource(std::nullptr_t) const = delete;
    /// @}

    /// \name connectableResources
    /// The resources that can be connected to the tuner; optional, null until set. Must not be null when it is set.
    /// @{
    QString GetconnectableResources() const;
    void SetconnectableResources(QString value);
    void SetconnectableResources(std::nullptr_t) = delete;
    bool IsconnectableResourcesSet() const;
    void ResetconnectableResources();
    QString GetDefaultconnectableResources() const;
    bool IsValidconnectableResources(const QString &value) const;
    bool IsValidconnectableResources(std::nullptr_t) const = delete;
    /// @}

    /// \name quantity
    /// How many instances of the tuner there are; optional, 1 until set, any number. ResetToDefault() leaves it set.
    /// Text that is not a number reads as 0 and counts as set.
    /// @{
    int Getquantity() const;
    void Setquantity(int value);
    bool IsquantitySet() const;
    void Resetquantity();
    int GetDefaultquantity() const;
    bool IsValidquantity(const int &value) const;
    /// @}

    /// \name parentBaseResource
    /// The resource that the base resource belongs to; optional, null until set. Must not be null when it is set.
    /// @{
    QString GetparentBaseResource() const;
    void SetparentBaseResource(QString value);
    void SetparentBaseResource(std::nullptr_t) = delete;
    bool IsparentBaseResourceSet() const;
    void ResetparentBaseResource();
    QString GetDefaultparentBaseResource() const;
    bool IsValidparentBaseResource(const QString &value) const;
    bool IsValidparentBaseResource(std::nullptr_t) const = delete;
    /// @}

    /// \name hwProcessing
    /// Whether the tuner processes in hardware; optional, false until set. In XML "0" and "false", in any case, are
    /// false and every other text is true; an empty one throws InvalidXmlException while validating and is false
    /// otherwise.
    /// @{
    bool GethwProcessing() const;
    void SethwProcessing(bool value);
    bool IshwProcessingSet() const;
    void ResethwProcessing();
    bool GetDefaulthwProcessing() const;
    /// @}

    /// \name StartupModes
    /// The modes in which the tuner can start up; optional, a new object until set. Reading XML or a record adds modes
    /// to those present.
    /// Release a reference from GetStartupModes() before assigning the object to another, see Sharing in DataObject.
    /// @{
    StartupModes &GetStartupModes();
    const StartupModes &GetStartupModes() const;
    void SetStartupModes(const StartupModes &modes);
    bool IsStartupModesSet() const;
    void ResetStartupModes();
    bool IsValidStartupModes(const StartupModes &modes) const;
    /// @}

    /// \name BandwidthSelection
    /// The bandwidths that can be selected; optional. Written in XML and in tagged records whenever there are any, in a
    /// snapshot only while the list is set.
    /// Release a reference from GetBandwidthSelection() before assigning the object to another, see Sharing in
    /// DataObject.
    /// @{
    QVector<BandwidthSelection> &GetBandwidthSelection();
    const QVector<BandwidthSelection> &GetBandwidthSelection() const;
    void SetBandwidthSelection(const QVector<BandwidthSelection> &items);
    void AppendBandwidthSelection(const BandwidthSelection &item);
    void AppendBandwidthSelection(std::nullptr_t) = delete;
    bool IsBandwidthSelectionSet() const;
    void ResetBandwidthSelection();
    bool IsValidBandwidthSelection(const BandwidthSelection &item) const;
    bool IsValidBandwidthSelection(const QVector<BandwidthSelection> &items) const;
    /// @}

    /// \name MaxFFPDelay
    /// The maximum FFP delay, in the unit that the producer of the document uses; optional, 0 until set, any number. A
    /// child element in XML, written as an unsigned number and read as a signed one: a number beyond
    /// 9223372036854775807 reads as 0, as does text that is not a number, and -1 as 18446744073709551615. Binary forms
    /// carry all 64 bits.
    /// @{
    quint64 GetMaxFFPDelay() const;
    void SetMaxFFPDelay(quint64 value);
    bool IsMaxFFPDelaySet() const;
    void ResetMaxFFPDelay();
    quint64 GetDefaultMaxFFPDelay() const;
    bool IsValidMaxFFPDelay(const quint64 &value) const;
    /// @}

    /// \name HRPANSupported
    /// Whether HRPAN is supported; optional, false until set. A child element in XML, with the same texts as
    /// hwProcessing.
    /// @{
    bool GetHRPANSupported() const;
    void SetHRPANSupported(bool value);
    bool IsHRPANSupportedSet() const;
    void ResetHRPANSupported();
    bool GetDefaultHRPANSupported() const;
    /// @}

    /// \name Component
    /// The configurable parts of the tuner; mandatory. The list must be set and may be empty, but an empty one does not
    /// count as data: while validating nothing is written for it. Release a reference from GetComponent() before
    /// assigning the object to another, see Sharing in DataObject.
    /// @{
    QVector<Component> &GetComponent();
    const QVector<Component> &GetComponent() const;
    void SetComponent(const QVector<Component> &items);
    void AppendComponent(const Component &item);
    void AppendComponent(std::nullptr_t) = delete;
    bool IsComponentSet() const;
    void ResetComponent();
    bool IsValidComponent(const Component &item) const;
    bool IsValidComponent(const QVector<Component> &items) const;
    /// @}

    /// Resets every member to its default and sets the flag of quantity, whose default is 1.
    void ResetToDefault() override;

    /// \name Translation
    /// Translates in the context "JobXml::TunerProperties": QCoreApplication::translate() with these arguments.
    /// @{
    static QString tr(const char *sourceText, const char *disambiguation, int n);
    static QString trUtf8(const char *sourceText, const char *disambiguation, int n);
    /// @}
};

/// Writes a value as spelled in C++, or its number if it has no name.
JOBXML_EXPORT QDebug operator<<(QDebug debug, TunerProperties::type value);

} // namespace JobXml

Q_DECLARE_SHARED(JobXml::TunerProperties)
Q_DECLARE_METATYPE(JobXml::TunerProperties)

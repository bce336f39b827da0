// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// The measurement modes in which a tuner can start up.
class JOBXML_EXPORT StartupModes : public DataObject
{
public:
    /// One mode; the value is the index of its name. The order is part of the format.
    enum class StartupMode : qint8 {
        Scan, ///< scanning a range of frequencies
        FastScan, ///< scanning a range of frequencies fast
        MScan, ///< scanning frequencies from memory
        FFM, ///< measuring at a fixed frequency
        WFFM, ///< measuring at a fixed frequency, wideband
        Step, ///< going through frequencies step by step
        DF, ///< direction finding
        MSearch, ///< searching frequencies from memory
        Polar, ///< showing bearings as a polar display
        Search, ///< searching a range of frequencies
        Stop, ///< not measuring
        Invalid = -1, ///< not a mode; has no name
    };

    /// \name Construction, copies and comparison
    /// For copies, moves, swapping and equality, see DataObject.
    /// @{
    StartupModes();
    StartupModes(const StartupModes &other);
    StartupModes(StartupModes &&other) noexcept;
    StartupModes &operator=(const StartupModes &other) noexcept;
    StartupModes &operator=(StartupModes &&other) noexcept;
    ~StartupModes() override;

    bool operator==(const StartupModes &other) const;
    bool operator!=(const StartupModes &other) const;
    void swap(StartupModes &other) noexcept;
    /// @}

    /// \name New objects
    /// A new object that was read from a whole XML document or from a binary representation, see DataObject.
    /// @{
    [[nodiscard]] static std::optional<StartupModes> fromXml(const QString &xml, QString *error = nullptr);
    [[nodiscard]] static std::optional<StartupModes> fromBinary(const QByteArray &representation,
                                                                QString *error = nullptr,
                                                                const REPORTGENERATOR::ReadLimits &limits = {});
    static void fromXml(std::nullptr_t, QString * = nullptr) = delete;
    static void fromBinary(std::nullptr_t, QString * = nullptr, const REPORTGENERATOR::ReadLimits & = {}) = delete;
    /// @}

    /// \name The class
    /// Its identifier, 0xA7563754, leads the binary representation; its name, "StartupModes", is that of the XML
    /// element.
    /// @{
    static qint64 GetId();
    static QString GetStaticObjectName();
    /// @}

    /// \name StartupMode
    /// The modes offered; mandatory. The list must be set and may be empty, but an empty one does not count as data:
    /// while validating nothing is written for it. In XML one child element per entry holds the mode's name, in tagged
    /// records the name, in snapshots the value. HasData() and AnyData() require at least one entry; Check() throws for
    /// an invalid entry as for a list that is not set. Release a reference from GetStartupMode() before assigning the
    /// object to another, see Sharing in DataObject.
    /// @{
    QVector<StartupMode> &GetStartupMode();
    const QVector<StartupMode> &GetStartupMode() const;
    void SetStartupMode(const QVector<StartupMode> &modes);
    /// Refuses an invalid mode while validating: IncompleteDefinitionException "StartupModes: Tried to append not
    /// completely defined or invalid item StartupMode.". Otherwise appends it unchanged.
    void AppendStartupMode(StartupMode mode);
    void AppendStartupMode(std::nullptr_t) = delete;
    bool IsStartupModeSet() const;
    void ResetStartupMode();
    /// Invalid, for a single mode.
    StartupMode GetDefaultStartupMode() const;
    StartupMode GetInvalidStartupMode() const;
    /// Whether this is one of the modes.
    bool IsValidStartupMode(StartupMode mode) const;
    /// True for an empty list and false for every other, even with valid entries: the list is compared with names of
    /// the object itself, of which there are never any. Check the entries one by one instead.
    bool IsValidStartupMode(const QVector<StartupMode> &modes) const;
    /// @}

    /// The name of a mode; null for an invalid one.
    QString StartupModeToName(StartupMode mode) const;
    /// The mode of exactly this name; Invalid if there is none.
    StartupMode NameToStartupMode(const QString &name) const;
    StartupMode NameToStartupMode(std::nullptr_t) const = delete;
    /// The names of the modes.
    static QStringList GetStartupModes();
    /// The same names to show to a user, in the language of the installed translations.
    static QStringList GetGUIStartupModes();

    /// \name Translation
    /// Translates in the context "JobXml::StartupModes": QCoreApplication::translate() with these arguments.
    /// @{
    static QString tr(const char *sourceText, const char *disambiguation, int n);
    static QString trUtf8(const char *sourceText, const char *disambiguation, int n);
    /// @}
};

/// Equal objects have the same hash.
JOBXML_EXPORT HashValue qHash(const StartupModes &object, HashValue seed = 0);

/// Writes a value as spelled in C++, or its number if it has no name.
JOBXML_EXPORT QDebug operator<<(QDebug debug, StartupModes::StartupMode value);

} // namespace JobXml

Q_DECLARE_TYPEINFO(JobXml::StartupModes::StartupMode, Q_PRIMITIVE_TYPE);
Q_DECLARE_SHARED(JobXml::StartupModes)
Q_DECLARE_METATYPE(JobXml::StartupModes)

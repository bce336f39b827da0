// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QTypeInfo>

#include <reportbase/Export.h>

namespace REPORTGENERATOR {

/// The first four bytes of the compressed form, big-endian: "RGZ1". No class has this identifier.
constexpr quint32 CompressedMark = 0x52475A31;

/// The limits of a reader of binary representations. The defaults are the limits of the functions without a ReadLimits
/// argument.
///
///     object.LoadBinary(path, ReadLimits().setLargestSize(1 << 20).setAcceptCompressed(false));
///
/// A representation is refused after its first bytes, before memory is reserved for the rest. The objects that are read
/// may take 45 times the memory of an uncompressed representation, 11 times while validating, so a limit of 4 MiB means
/// up to 180 MiB.
///
/// Copies share their content. Later versions may add limits, with defaults that change nothing.
class REPORTBASE_EXPORT ReadLimits
{
public:
    /// The upper bound of both sizes: 2 GiB less 256 bytes, the capacity of a QByteArray of Qt 5. Higher limits have
    /// the same effect.
    static constexpr qint64 LargestPossible = 0x7FFFFF00;
    /// The default of largestExpandedSize(): 1 GiB.
    static constexpr qint64 UsualExpandedSize = qint64(1) << 30;

    /// The defaults.
    ReadLimits() noexcept;
    /// Limits for programs that read data of unknown origin: 4 MiB as received and 4 MiB expanded. The largest example
    /// document takes less than a hundredth of that.
    static ReadLimits forUntrustedData();

    /// The size of a representation as it is received, plain or compressed, its leading word and length included.
    qint64 largestSize() const noexcept;
    ReadLimits &setLargestSize(qint64 bytes); ///< Sets that size.

    /// The size that a compressed representation may expand to. Whatever the limit, it may not expand to more than
    /// 1,100 times its own size, which no intact one does.
    qint64 largestExpandedSize() const noexcept;
    ReadLimits &setLargestExpandedSize(qint64 bytes); ///< Sets that size.

    /// Whether the compressed form is accepted at all; true unless set.
    bool acceptCompressed() const noexcept;
    ReadLimits &setAcceptCompressed(bool accept); ///< Sets whether it is.

private:
    struct Values;
    Q_DECL_HIDDEN const Values &values() const noexcept;
    Q_DECL_HIDDEN Values &change();

    std::shared_ptr<Values> m_values; // null: the defaults
};

} // namespace REPORTGENERATOR

Q_DECLARE_TYPEINFO(REPORTGENERATOR::ReadLimits, Q_MOVABLE_TYPE);

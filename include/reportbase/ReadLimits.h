// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace REPORTGENERATOR {

/// The first four bytes of the compressed form, big-endian: "RGZ1". No class has this identifier.
constexpr quint32 CompressedMark = 0x52475A31;

/// The limits of a reader of binary representations. The defaults are the limits of the functions without a ReadLimits
/// argument.
///
/// A representation is refused after its first bytes, before memory is reserved for the rest. The objects that are read
/// may take 45 times the memory of an uncompressed representation, 11 times while validating, so a limit of 4 MiB means
/// up to 180 MiB.
struct ReadLimits
{
    /// The upper bound of both sizes: 2 GiB less 256 bytes, the capacity of a QByteArray. Higher limits have the same
    /// effect.
    static constexpr qint64 LargestPossible = 0x7FFFFF00;

    /// The size of a representation as it is received, plain or compressed, its leading word and length included.
    qint64 largestSize = LargestPossible;

    /// The size that a compressed representation may expand to. Whatever the limit, it may not expand to more than
    /// 1,100 times its own size, which no intact one does.
    qint64 largestExpandedSize = qint64(1) << 30;

    /// Whether the compressed form is accepted at all.
    bool acceptCompressed = true;

    /// Limits for programs that read data of unknown origin: 4 MiB as received and 4 MiB expanded. The largest example
    /// document takes less than a hundredth of that.
    static constexpr ReadLimits forUntrustedData() noexcept { return {qint64(4) << 20, qint64(4) << 20, true}; }
};

} // namespace REPORTGENERATOR

// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>

#include <reportbase/Export.h>
#include <reportbase/ReadLimits.h>

namespace REPORTGENERATOR {

/// The size of a binary representation, as far as it is known. No later version adds members.
struct RepresentationSize
{
    /// The result for the first bytes.
    enum class State {
        NeedsMoreBytes, ///< fewer than the eight bytes that declare the size
        Known, ///< `bytes` is the size
        Invalid, ///< the bytes are not the start of a representation of the class
    };

    State state = State::NeedsMoreBytes; ///< whether `bytes` is valid
    qint64 bytes = 0; ///< of the whole representation, leading word and length included; 0 unless known
};

/// Returns how many bytes a representation takes that starts with `firstBytes`, plain or compressed, big-endian as
/// IRGObject::GetBinaryRepresentationAsQByteArray() writes it. `classIdentifier` is the `GetId()` of its class; only
/// the low 32 bits count. Only the first eight bytes are read.
[[nodiscard]] REPORTBASE_EXPORT RepresentationSize SizeOfRepresentation(const QByteArray &firstBytes,
                                                                        qint64 classIdentifier);

/// Splits a stream of bytes, as it arrives from a socket for instance, into whole representations.
///
/// Pass all received bytes to Append(), then call Take() until it returns nothing. The work is linear in the number of
/// bytes, however they are divided. Memory grows with the bytes received, never with a declared size, and a
/// representation that exceeds the limits is refused as soon as its first bytes declare that.
class REPORTBASE_EXPORT RepresentationSplitter
{
public:
    /// For representations of one class; `classIdentifier` is its `GetId()`.
    explicit RepresentationSplitter(qint64 classIdentifier, const ReadLimits &limits = ReadLimits::forUntrustedData());
    RepresentationSplitter(const RepresentationSplitter &) = delete;
    RepresentationSplitter &operator=(const RepresentationSplitter &) = delete;
    ~RepresentationSplitter();

    /// Appends bytes to those that are waiting. Bytes that follow a failure are discarded.
    void Append(const QByteArray &bytes);

    /// Removes the next representation from the waiting bytes and returns it. Returns nothing if more bytes are needed
    /// and after a failure, see GetErrorString().
    [[nodiscard]] std::optional<QByteArray> Take();

    /// Why the stream cannot be read any further: another class, a negative length, a size beyond the limits,
    /// compressed data that are not accepted. Null if there was no failure. The end of a damaged representation is
    /// unknown, so a failure is final; close the connection.
    QString GetErrorString() const;

    /// How many bytes are waiting for the rest of their representation. If a connection ends while this is not 0, the
    /// last representation is truncated.
    qint64 GetPendingSize() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace REPORTGENERATOR

Q_DECLARE_TYPEINFO(REPORTGENERATOR::RepresentationSize, Q_PRIMITIVE_TYPE);

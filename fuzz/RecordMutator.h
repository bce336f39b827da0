// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// Mutators for libFuzzer that know the form of records, and so pass their framing: they change tags, lengths, counts
/// and payloads as units and correct the lengths around them, or sometimes make them wrong on purpose.
namespace Fuzz {

/// The words before the length and the members of a record.
enum class Framing : std::size_t {
    ClassByte = 1,
    ClassByteAndLeadingWord = 5,
    ClassByteEncodingByteAndLeadingWord = 6,
};

struct View
{
    const std::uint8_t *data;
    std::size_t size;
};

/// libFuzzer's own mutations, of bytes.
std::size_t mutatePlainly(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed);

std::size_t mutateRecord(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed, Framing framing);

/// Puts a part of the second record into the first.
std::size_t crossRecords(View first, View second, std::uint8_t *out, std::size_t maxSize, unsigned seed,
                         Framing framing);

/// Mutates the content of a compressed representation, and compresses it again.
std::size_t mutateCompressed(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed);

} // namespace Fuzz

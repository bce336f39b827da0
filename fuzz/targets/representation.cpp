// SPDX-License-Identifier: MIT
#include "RepresentationTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    Fuzz::readRepresentation(data, size);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(quint8 *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    return Fuzz::mutateRecord(data, size, maxSize, seed, Fuzz::Framing::ClassByteAndLeadingWord);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const quint8 *first, std::size_t firstSize, const quint8 *second,
                                                 std::size_t secondSize, quint8 *out, std::size_t maxSize,
                                                 unsigned seed)
{
    return Fuzz::crossRecords({first, firstSize}, {second, secondSize}, out, maxSize, seed,
                              Fuzz::Framing::ClassByteAndLeadingWord);
}

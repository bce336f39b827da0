// SPDX-License-Identifier: MIT
#include "RepresentationTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    Fuzz::readRepresentation(data, size);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(quint8 *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    return Fuzz::mutateCompressed(data, size, maxSize, seed);
}

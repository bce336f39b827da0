// SPDX-License-Identifier: MIT
//
// The members of a record as a caller passes them that has read the leading word from the stream: 4 bytes length,
// members.
#include <QDataStream>

#include "Harness.h"
#include "RecordMutator.h"

using namespace Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const Input input(data, size);
    const Class::Pointer object = input.object();

    const qint64 peak = heapPeakOf([&] {
        returnsNormally([&] {
            QDataStream stream(input.bytes);
            qint32 length = 0;
            stream >> length;
            object->SetBinary(stream, length);
        });
    });
    require(peak <= memoryFor(input.bytes.size()), "reading a record costs no more memory than it may");
    useAfterReading(input, *object);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(quint8 *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    return mutateRecord(data, size, maxSize, seed, Framing::ClassByte);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const quint8 *first, std::size_t firstSize, const quint8 *second,
                                                 std::size_t secondSize, quint8 *out, std::size_t maxSize,
                                                 unsigned seed)
{
    return crossRecords({first, firstSize}, {second, secondSize}, out, maxSize, seed, Framing::ClassByte);
}

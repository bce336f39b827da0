// SPDX-License-Identifier: MIT
#include <QDataStream>

#include "Harness.h"

using namespace Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const Input input(data, size);
    const Class::Pointer object = input.object();

    const qint64 peak = heapPeakOf([&] {
        returnsNormally([&] {
            QDataStream stream(input.bytes);
            object->SetVersionSpecificBinaryWithoutValidation(stream);
        });
    });
    require(peak <= memoryFor(input.bytes.size()), "reading a snapshot costs no more memory than it may");
    useAfterReading(input, *object);
    return 0;
}

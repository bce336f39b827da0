// SPDX-License-Identifier: MIT
#include "Harness.h"

using namespace Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const Input input(data, size);
    const Class::Pointer object = input.object();

    bool read = false;
    const bool hasReturned =
        returnsNormally([&] { read = object->SetXmlString(QString::fromUtf8(input.bytes), input.validate); });
    require(object->GetErrorString().isNull() == (read || !hasReturned),
            "there is an error string exactly where false is returned");
    useAfterReading(input, *object);
    return 0;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>

#include "Harness.h"
#include "RecordMutator.h"

namespace Fuzz {

/// Reads a representation, plain or compressed, in both ways there are, which must agree.
inline void readRepresentation(const quint8 *data, std::size_t size)
{
    const Input input(data, size);

    const Class::Pointer object = input.object();
    QByteArray bytes = input.bytes;
    bool read = false;
    const bool hasReturned = returnsNormally([&] { read = object->SetBinaryRepresentation(bytes); });
    require(object->GetErrorString().isNull() == (read || !hasReturned),
            "there is an error string exactly where false is returned");

    const Class::Pointer streamed = input.object();
    QDataStream stream(input.bytes);
    stream.setVersion(QDataStream::Qt_5_15);
    bool readFromStream = false;
    returnsNormally([&] { readFromStream = streamed->SetBinaryRepresentation(stream); });
    require(!read || readFromStream, "what is read from bytes is read from a stream");
    if (read) {
        streamed->SetValidate(false);
        const Class::Pointer other = input.type->copy(*object);
        other->SetValidate(false);
        require(streamed->GetBinaryRepresentationAsQByteArray() == other->GetBinaryRepresentationAsQByteArray(),
                "bytes and stream give the same object");
    }
    useAfterReading(input, *object);
}

} // namespace Fuzz

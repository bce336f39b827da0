// SPDX-License-Identifier: MIT
#include <sys/mman.h>
#include <unistd.h>

#include <QFile>

#include "Harness.h"

using namespace Fuzz;

namespace {

/// A file in memory with the bytes, open and positioned at its start.
class FileOf
{
public:
    explicit FileOf(const QByteArray &bytes)
    {
        static const int descriptor = memfd_create("document", 0);
        require(ftruncate(descriptor, 0) == 0
                    && pwrite(descriptor, bytes.constData(), std::size_t(bytes.size()), 0) == bytes.size()
                    && lseek(descriptor, 0, SEEK_SET) == 0,
                "the file in memory can be written");
        m_file.open(descriptor, QIODevice::ReadOnly);
    }

    QFile *operator&() { return &m_file; }

private:
    QFile m_file;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const Input input(data, size);
    const Class::Pointer object = input.object();
    FileOf file(input.bytes);

    bool read = false;
    const bool hasReturned = returnsNormally([&] { read = object->LoadXml(&file); });
    require(object->GetErrorString().isNull() == (read || !hasReturned),
            "there is an error string exactly where false is returned");
    useAfterReading(input, *object);
    return 0;
}

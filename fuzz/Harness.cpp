// SPDX-License-Identifier: MIT
#include "Harness.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <QDataStream>

#include <sanitizer/allocator_interface.h>

namespace Fuzz {

Input::Input(const quint8 *data, std::size_t size)
{
    const quint8 choice = size > 0 ? data[0] : 0;
    type = &classNumber(choice & 0x7F);
    validate = (choice & 0x80) == 0;
    if (size > 1)
        bytes = QByteArray(reinterpret_cast<const char *>(data) + 1, int(size - 1));
}

Class::Pointer Input::object() const
{
    Class::Pointer object = type->make();
    object->SetValidate(validate);
    return object;
}

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", what);
    std::abort();
}

void useAfterReading(const Input &input, JobXml::DataObject &object)
{
    constexpr int large = 1 << 16;
    if (input.bytes.size() > large) {
        object.Reset();
        return;
    }
    const Class &type = *input.type;
    object.HasData();
    object.AnyData();
    returnsNormally([&] { object.Check(); });
    object.GetProblems();

    const Class::Pointer copy = type.copy(object);
    type.equal(*copy, object);
    returnsNormally([&] { return object.GetXmlString(); });
    returnsNormally([&] { return object.GetBinaryRepresentationAsQByteArray(); });
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    object.GetVersionSpecificBinaryWithoutValidation(stream);

    const Class::Pointer sharing = type.make();
    type.assign(*sharing, object);
    returnsNormally([&] { return sharing->MergeRGObject(*copy); });
    object.Reset();
    require(!object.HasData(), "an object that was reset has no data");
    returnsNormally([&] { return sharing->GetXmlString(); });
    type.assign(object, *sharing);
}

namespace HeapPeak {

namespace {

// Only the thread that reads allocates meanwhile.
thread_local bool counting = false;
thread_local qint64 live = 0;
thread_local qint64 peak = 0;

void allocated(const volatile void *, std::size_t size)
{
    if (!counting)
        return;
    live += qint64(size);
    peak = std::max(peak, live);
}

void freed(const volatile void *block)
{
    if (counting && block)
        live -= qint64(__sanitizer_get_allocated_size(const_cast<const void *>(block)));
}

} // namespace

void start()
{
    static const bool installed = __sanitizer_install_malloc_and_free_hooks(allocated, freed) != 0;
    require(installed, "the sanitizer reports every allocation");
    live = peak = 0;
    counting = true;
}

qint64 stop()
{
    counting = false;
    return peak;
}

} // namespace HeapPeak

} // namespace Fuzz

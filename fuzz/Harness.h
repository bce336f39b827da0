// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <reportbase/ReportException.h>

#include "Classes.h"

/// What the targets share. The first byte of an input determines how the rest of it is read: its low seven bits choose
/// the class, its high bit switches validation off.
namespace Fuzz {

struct Input
{
    Input(const quint8 *data, std::size_t size);

    /// An object of the chosen class, with the chosen validate flag.
    Class::Pointer object() const;

    const Class *type = nullptr;
    bool validate = true;
    QByteArray bytes; ///< after the first byte
};

/// Ends the program, and thus the run, unless `holds` is true: asserts more than the sanitizers detect.
void require(bool holds, const char *what);

/// Calls the function and returns whether it has returned normally. Documented exceptions of the library are refusals,
/// which are expected; any other exception is a finding.
template <class Function>
bool returnsNormally(Function &&function)
{
    try {
        function();
        return true;
    } catch (const ReportException &) {
        return false;
    }
}

/// The limit for the memory of a reader of hostile data: 64 MiB and 200 bytes for each byte of the data.
constexpr qint64 memoryFor(qint64 inputSize)
{
    return (qint64(64) << 20) + 200 * inputSize;
}

/// Calls the function and returns the most memory that was in use meanwhile, beyond what was in use before.
template <class Function>
qint64 heapPeakOf(Function &&function);

/// Uses an object, in the state in which reading the input has left it, in every way: queries, checks, writes, copies,
/// resets. Only resets it if the input is large, since the time of reading is of interest then.
void useAfterReading(const Input &input, JobXml::DataObject &object);

namespace HeapPeak {
void start();
qint64 stop();
} // namespace HeapPeak

template <class Function>
qint64 heapPeakOf(Function &&function)
{
    HeapPeak::start();
    function(); // throws nothing: see returnsNormally()
    return HeapPeak::stop();
}

} // namespace Fuzz

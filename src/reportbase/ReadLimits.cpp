// SPDX-License-Identifier: MIT
#include <reportbase/ReadLimits.h>

#include "text/OptionValues.h"

namespace REPORTGENERATOR {

struct ReadLimits::Values
{
    qint64 largestSize = LargestPossible;
    qint64 largestExpandedSize = UsualExpandedSize;
    bool acceptCompressed = true;
};

ReadLimits::ReadLimits() noexcept = default;

ReadLimits ReadLimits::forUntrustedData()
{
    constexpr qint64 size = qint64(4) << 20;
    ReadLimits limits;
    limits.change() = {size, size, true};
    return limits;
}

const ReadLimits::Values &ReadLimits::values() const noexcept
{
    return OptionValues::of(m_values);
}

ReadLimits::Values &ReadLimits::change()
{
    return OptionValues::changed(m_values);
}

qint64 ReadLimits::largestSize() const noexcept
{
    return values().largestSize;
}

ReadLimits &ReadLimits::setLargestSize(qint64 bytes)
{
    change().largestSize = bytes;
    return *this;
}

qint64 ReadLimits::largestExpandedSize() const noexcept
{
    return values().largestExpandedSize;
}

ReadLimits &ReadLimits::setLargestExpandedSize(qint64 bytes)
{
    change().largestExpandedSize = bytes;
    return *this;
}

bool ReadLimits::acceptCompressed() const noexcept
{
    return values().acceptCompressed;
}

ReadLimits &ReadLimits::setAcceptCompressed(bool accept)
{
    change().acceptCompressed = accept;
    return *this;
}

} // namespace REPORTGENERATOR

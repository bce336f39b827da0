// SPDX-License-Identifier: MIT
#include <limits>

#include <jobxml/DataObject.h>

#include "text/OptionValues.h"

namespace JobXml {

struct ReadOptions::Values
{
    qint64 maxBytes = std::numeric_limits<qint64>::max();
    bool allowCompressed = true;
    bool validate = true;
};

ReadOptions::ReadOptions() noexcept = default;

const ReadOptions::Values &ReadOptions::values() const noexcept
{
    return OptionValues::of(m_values);
}

ReadOptions::Values &ReadOptions::change()
{
    return OptionValues::changed(m_values);
}

qint64 ReadOptions::maxBytes() const noexcept
{
    return values().maxBytes;
}

ReadOptions &ReadOptions::setMaxBytes(qint64 bytes)
{
    change().maxBytes = bytes;
    return *this;
}

bool ReadOptions::allowCompressed() const noexcept
{
    return values().allowCompressed;
}

ReadOptions &ReadOptions::setAllowCompressed(bool allow)
{
    change().allowCompressed = allow;
    return *this;
}

bool ReadOptions::validate() const noexcept
{
    return values().validate;
}

ReadOptions &ReadOptions::setValidate(bool validate)
{
    change().validate = validate;
    return *this;
}

} // namespace JobXml

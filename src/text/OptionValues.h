// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

/// What all classes of options have in common. Copies share their values, and null means the defaults, so that options
/// cost nothing unless one is set.
namespace OptionValues {

template <class Values>
const Values &of(const std::shared_ptr<Values> &values)
{
    static const Values defaults;
    return values ? *values : defaults;
}

/// Values of one object alone, to be changed. Shared values are only read, so other threads may read them at the same
/// time.
template <class Values>
Values &changed(std::shared_ptr<Values> &values)
{
    values = std::make_shared<Values>(of(values));
    return *values;
}

} // namespace OptionValues

// SPDX-License-Identifier: MIT
#include <tunerdocuments/Document.h>

#include "text/OptionValues.h"

namespace TunerDocuments {

struct LoadOptions::Values
{
    std::optional<Form> form{};
    int maxExpansion = UsualExpansion;
    int maxProblems = UsualProblems;
};

LoadOptions::LoadOptions() noexcept = default;

const LoadOptions::Values &LoadOptions::values() const noexcept
{
    return OptionValues::of(m_values);
}

LoadOptions::Values &LoadOptions::change()
{
    return OptionValues::changed(m_values);
}

std::optional<Form> LoadOptions::form() const noexcept
{
    return values().form;
}

LoadOptions &LoadOptions::setForm(std::optional<Form> form)
{
    change().form = form;
    return *this;
}

int LoadOptions::maxExpansion() const noexcept
{
    return values().maxExpansion;
}

LoadOptions &LoadOptions::setMaxExpansion(int times)
{
    change().maxExpansion = times;
    return *this;
}

int LoadOptions::maxProblems() const noexcept
{
    return values().maxProblems;
}

LoadOptions &LoadOptions::setMaxProblems(int most)
{
    change().maxProblems = most;
    return *this;
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include <tunerdocuments/Document.h>

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
    static constexpr Values defaults;
    return m_values ? *m_values : defaults;
}

/// Values of this object alone.
LoadOptions::Values &LoadOptions::change()
{
    m_values = std::make_shared<Values>(values());
    return *m_values;
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

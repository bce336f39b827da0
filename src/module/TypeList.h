// SPDX-License-Identifier: MIT
#pragma once

namespace JobXml {

/// Represents a class as a function argument.
template <class T>
struct ClassTag
{
    using Class = T;
};

/// An ordered list of classes.
template <class... T>
struct TypeList
{
    static constexpr int size = int(sizeof...(T));

    /// Calls `function(ClassTag<T>())` for each of them.
    template <class Function>
    static void forEach(Function &&function)
    {
        (function(ClassTag<T>()), ...);
    }

    /// `Template<T...>`
    template <template <class...> class Template>
    using Into = Template<T...>;
};

template <class... T, class Next>
constexpr TypeList<T..., Next> operator+(TypeList<T...>, ClassTag<Next>)
{
    return {};
}

} // namespace JobXml

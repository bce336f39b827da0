// SPDX-License-Identifier: MIT
#pragma once

#include <random>

#include <QtGlobal>

/// Numbers that only depend on the seed, the same on every machine.
class Random
{
public:
    explicit Random(quint32 seed) : m_engine(seed) { }

    /// From 0 up to, but without, `count`.
    int below(int count) { return int(m_engine() % unsigned(count)); }

    bool oneIn(int count) { return below(count) == 0; }

    template <class Container>
    const auto &oneOf(const Container &container)
    {
        return container[decltype(container.size())(below(int(container.size())))];
    }

    template <class Item, std::size_t count>
    Item oneOf(const Item (&items)[count])
    {
        return items[std::size_t(below(int(count)))];
    }

private:
    std::mt19937 m_engine;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <new>
#include <utility>

#include "module/Classes.h"

namespace JobXml {

/// The alternatives, each built when it is first used: nearly always, only one is. An unused alternative
/// behaves like a default-constructed one. The first one is stored in the item's data, each other one in memory of its
/// own. Alternatives never move, so references to them stay valid.
class Alternatives
{
public:
    static constexpr int kinds = Kinds::size;

    Alternatives() = default;
    Alternatives(const Alternatives &other);
    Alternatives &operator=(const Alternatives &) = delete;
    ~Alternatives()
    {
        if (DataObject *const object = first())
            object->~DataObject();
    }

    /// The alternative of a kind; null if it was never used.
    DataObject *find(int kind)
    {
        if (kind == m_kindOfFirst)
            return first();
        return m_others ? (*m_others)[std::size_t(kind)].get() : nullptr;
    }
    const DataObject *find(int kind) const { return const_cast<Alternatives *>(this)->find(kind); }

    template <class Action>
    void forEach(Action &&action)
    {
        if (m_kindOfFirst >= 0)
            action(*first());
        if (!m_others)
            return;
        for (const std::unique_ptr<DataObject> &object : *m_others) {
            if (object)
                action(*object);
        }
    }

    template <class T, class... From>
    T &build(int kind, From &&...from)
    {
        static_assert(sizeof(T) == sizeof(DataObject), "an alternative has its data in its block");
        if (m_kindOfFirst < 0) {
            T &object = *new (m_first) T(std::forward<From>(from)...);
            m_kindOfFirst = qint8(kind);
            return object;
        }
        if (!m_others)
            m_others = std::make_unique<Others>();
        auto object = std::make_unique<T>(std::forward<From>(from)...);
        T &built = *object;
        (*m_others)[std::size_t(kind)] = std::move(object);
        return built;
    }

private:
    using Others = std::array<std::unique_ptr<DataObject>, kinds>;

    DataObject *first() { return m_kindOfFirst < 0 ? nullptr : std::launder(reinterpret_cast<DataObject *>(m_first)); }

    template <class... T>
    struct Copies;
    void copyFrom(const Alternatives &other, int kind);

    template <class T>
    void copy(int kind, const DataObject &object)
    {
        build<T>(kind, static_cast<const T &>(object));
    }

    alignas(DataObject) unsigned char m_first[sizeof(DataObject)]; // empty until its kind is known
    std::unique_ptr<Others> m_others;
    qint8 m_kindOfFirst = -1;
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#include "Classes.h"

namespace Fuzz {

namespace {

template <class T>
const T &of(const JobXml::DataObject &object)
{
    return static_cast<const T &>(object);
}

template <class T>
constexpr Class classOf() noexcept
{
    return {
        []() -> Class::Pointer { return std::make_unique<T>(); },
        [](const JobXml::DataObject &object) -> Class::Pointer { return std::make_unique<T>(of<T>(object)); },
        [](JobXml::DataObject &to, const JobXml::DataObject &from) { static_cast<T &>(to) = of<T>(from); },
        [](const JobXml::DataObject &left, const JobXml::DataObject &right) { return of<T>(left) == of<T>(right); }};
}

template <class... T>
struct Table
{
    static constexpr Class classes[] = {classOf<T>()...};
};

} // namespace

const Class &classNumber(int number)
{
    return JobXml::Classes::Into<Table>::classes[number % NumberOfClasses];
}

} // namespace Fuzz

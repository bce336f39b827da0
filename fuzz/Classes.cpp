// SPDX-License-Identifier: MIT
#include "Classes.h"

#include <iterator>

#include <jobxml/TunerProperties.h>

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

// The corpus depends on this order: add a new class at the end.
constexpr Class classes[] = {
    classOf<JobXml::TunerProperties>(),
    classOf<JobXml::StartupModes>(),
    classOf<JobXml::BandwidthSelection>(),
    classOf<JobXml::Component>(),
    classOf<JobXml::Node>(),
    classOf<JobXml::ValueItem>(),
    classOf<JobXml::ValueBoolean>(),
    classOf<JobXml::ValueFloat>(),
    classOf<JobXml::ValueInt>(),
    classOf<JobXml::ValueInt64>(),
    classOf<JobXml::ValueNumericFloat>(),
    classOf<JobXml::ValueNumericInt>(),
    classOf<JobXml::ValueNumericInt64>(),
    classOf<JobXml::ValueSelection>(),
    classOf<JobXml::SelectionItem>(),
    classOf<JobXml::ValueString>(),
    classOf<JobXml::ValueStringList>(),
    classOf<JobXml::StringItem>(),
};
static_assert(std::size(classes) == NumberOfClasses);

} // namespace

const Class &classNumber(int number)
{
    return classes[number % NumberOfClasses];
}

} // namespace Fuzz

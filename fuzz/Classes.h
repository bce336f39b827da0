// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "../src/module/Classes.h"

namespace Fuzz {

/// The operations of a target on an object of the class that the input has chosen.
struct Class
{
    using Pointer = std::unique_ptr<JobXml::DataObject>;

    Pointer (*make)();
    Pointer (*copy)(const JobXml::DataObject &object);
    void (*assign)(JobXml::DataObject &to, const JobXml::DataObject &from);
    bool (*equal)(const JobXml::DataObject &left, const JobXml::DataObject &right);
};

/// The numbers are those of the corpus, and a new class goes to the end of the list.
constexpr int NumberOfClasses = JobXml::Classes::size;

/// The class with this number, modulo their number; the document root is number 0.
const Class &classNumber(int number);

} // namespace Fuzz

// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include <QVector>

#include "text/Size.h"

namespace JobXml {

/// Makes room in an empty list, or throws std::bad_alloc: QList::reserve() of Qt 6 does nothing if memory runs out.
template <class Item>
void makeRoom(QVector<Item> &empty, REPORTGENERATOR::Size capacity)
{
    empty.reserve(capacity);
    if (empty.capacity() < capacity)
        throw std::bad_alloc();
}

} // namespace JobXml

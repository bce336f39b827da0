// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest>

#include "Objects.h"

/// A row for each operation.
template <class T>
void addRows(const QVector<Operation<T>> &operations)
{
    QTest::addColumn<int>("operation");
    for (int i = 0; i < operations.size(); ++i)
        QTest::newRow(operations.at(i).name.constData()) << i;
}

/// Tries the operation: a failed allocation must end in std::bad_alloc, except in the known places, where it must not.
/// Prints the differences, and returns whether there are none.
template <class T>
bool isSurvived(const Operation<T> &operation, int *allocations)
{
    const OutOfMemory::Report report =
        OutOfMemory::failEveryAllocation([&] { return std::make_unique<ObjectsAttempt<T>>(operation); });
    *allocations += report.allocations;
    const QStringList surprises = OutOfMemory::surprises(report, operation.places);
    for (const QString &surprise : surprises)
        qWarning("%s", qUtf8Printable(surprise));
    return surprises.isEmpty();
}

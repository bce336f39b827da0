// SPDX-License-Identifier: MIT
#pragma once

#include "ClassUnderTest.h"

/// A suite whose functions run for each of the classes, as rows.
class Suite : public QObject
{
    Q_OBJECT

protected:
    /// The class of the current row.
    static const ClassUnderTest &type()
    {
        static ClassPointer current; // kept for the duration of the function
        current = *static_cast<ClassPointer *>(QTest::qGlobalData("type", qMetaTypeId<ClassPointer>()));
        return *current;
    }

    static QString text(const char *column)
    {
        return *static_cast<QString *>(QTest::qGlobalData(column, QMetaType::QString));
    }

    /// Whether this is the document: the only class that refuses unknown elements and keeps its quantity.
    static bool isDocument() { return type().staticName() == QLatin1String("TunerProperties"); }

private Q_SLOTS:
    void initTestCase_data() { addEveryClass(); }
};

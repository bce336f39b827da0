// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "text/OwnText.h"

namespace JobXml {

/// The texts that each class unit builds when the library is loaded and destroys, in reverse order, when it is
/// unloaded. Nothing reads the name of the version attribute and the names of the log levels; they exist so that the
/// order of construction and destruction stays the same. All objects of the class, and programs, share the class name.
struct UnitStatics
{
    explicit UnitStatics(QLatin1String name) : objectName(name) { }

    const QString version = REPORTGENERATOR::ownText("Version");
    const QStringList levels{REPORTGENERATOR::ownText("ERROR"), REPORTGENERATOR::ownText("WARNING"),
                             REPORTGENERATOR::ownText("INFO")};
    const QString objectName;
};

} // namespace JobXml

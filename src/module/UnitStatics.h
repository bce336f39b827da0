// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "text/OwnText.h"

namespace JobXml {

/// What each class unit builds when the library is loaded and destroys, in the reverse order, when it is unloaded: the
/// name of the version attribute and the names of the log levels, which nothing reads, but which the units keep so that
/// loading and unloading stay as hosts know them; and the name of the class, to which all of its objects refer and
/// which programs share.
struct UnitStatics
{
    explicit UnitStatics(QLatin1String name) : objectName(name) { }

    const QString version = REPORTGENERATOR::ownText("Version");
    const QStringList levels{REPORTGENERATOR::ownText("ERROR"), REPORTGENERATOR::ownText("WARNING"),
                             REPORTGENERATOR::ownText("INFO")};
    const QString objectName;
};

} // namespace JobXml

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace JobXml {

/// What each class unit builds when the library is loaded and destroys, in the reverse order, when it is unloaded: the
/// name of the version attribute and the names of the log levels. Nothing reads them; the units keep them so that
/// loading and unloading stay as hosts know them.
struct UnitStatics
{
    const QString version = QStringLiteral("Version");
    const QStringList levels{QStringLiteral("ERROR"), QStringLiteral("WARNING"), QStringLiteral("INFO")};
};

} // namespace JobXml

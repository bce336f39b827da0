// SPDX-License-Identifier: MIT
#include "documents/resources/Resource.h"

#include <QFile>

// The linker omits resources of a static library that nothing calls. Q_INIT_RESOURCE must be outside of any namespace.
static void requireResources()
{
    Q_INIT_RESOURCE(tunerdocuments);
}

namespace TunerDocuments {

QByteArray resource(const char *name)
{
    requireResources();
    QFile file(QStringLiteral(":/tunerdocuments/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the resource %s is missing", name);
    return file.readAll();
}

} // namespace TunerDocuments

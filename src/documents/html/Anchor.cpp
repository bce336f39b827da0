// SPDX-License-Identifier: MIT
#include "documents/html/Anchor.h"

#include <QByteArray>

namespace TunerDocuments {

QString anchorOf(const QString &path)
{
    return QString::fromLatin1(path.toUtf8().toPercentEncoding("[]=,/"));
}

} // namespace TunerDocuments

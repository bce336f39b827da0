// SPDX-License-Identifier: MIT
#include "html/Anchor.h"

#include <QByteArray>

QString anchorOf(const QString &path)
{
    return QString::fromLatin1(path.toUtf8().toPercentEncoding("[]=,/"));
}

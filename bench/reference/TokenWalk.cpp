// SPDX-License-Identifier: MIT
#include "TokenWalk.h"

#include <QXmlStreamReader>

int Bench::walkTokens(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    int tokens = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        ++tokens;
    }
    return reader.hasError() ? -1 : tokens;
}

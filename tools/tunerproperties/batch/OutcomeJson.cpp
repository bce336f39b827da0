// SPDX-License-Identifier: MIT
#include "batch/OutcomeJson.h"

#include <tunerdocuments/Json.h>

#include "text/Printable.h"

namespace OutcomeJson {

void addName(JsonLine &line, const QByteArray &key, const FileName &name)
{
    const auto text = Printable::decoded(name.bytes());
    line.add(key, (text ? *text : name.shown()).toUtf8());
    if (!text)
        line.add(key + "Bytes", name.bytes().toHex());
}

void addError(JsonLine &line, const QString &error)
{
    line.add("error", error.isNull() ? Json() : Json(error.toUtf8()));
}

void addFindings(JsonLine &line, const QVector<TunerDocuments::Finding> &findings)
{
    QByteArrayList items;
    for (const TunerDocuments::Finding &finding : findings)
        items.append(toJson(finding));
    line.addList("findings", items);
}

} // namespace OutcomeJson

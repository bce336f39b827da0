// SPDX-License-Identifier: MIT
#include "documents/lint/JsonPlaces.h"

#include "documents/json/JsonForm.h"

using JobXml::Step;

namespace TunerDocuments {

JsonPlaces::JsonPlaces(const QByteArray &text) : m_whole(JsonText::parse(text)) { }

int JsonPlaces::find(const QVector<Step> &steps, const QString &member, int entry) const
{
    QVector<Step> path = steps;
    if (!member.isEmpty())
        path.append({member, entry});
    const Json *value = JsonForm::valueAt(m_whole, path);
    while (!value && !path.isEmpty()) {
        path.removeLast();
        value = JsonForm::valueAt(m_whole, path);
    }
    return value ? int(value->textBegin()) : none;
}

QString JsonPlaces::version() const
{
    const Json *const version = JsonForm::valueAt(m_whole, {{QLatin1String(JsonForm::versionKey), none}});
    return version && version->isText() ? JsonText::toString(version->text()) : QString();
}

int JsonPlaces::placeOfVersion() const
{
    return find({}, QLatin1String(JsonForm::versionKey));
}

} // namespace TunerDocuments

// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

using namespace JobXml;

namespace TunerDocuments {

namespace JsonForm {

const Json *valueAt(const Json &document, const QVector<Step> &steps)
{
    const Json *value = document.isObject() ? document.find(TunerProperties().GetObjectName().toLatin1()) : nullptr;
    for (const Step &step : steps) {
        if (!value || !value->isObject())
            return nullptr;
        const QByteArray key = step.member.toLatin1();
        const Json *const unset = value->find(unsetKey);
        value = value->find(key);
        if (!value && unset && unset->isObject())
            value = unset->find(key);
        if (!value || step.index < 0)
            continue;
        const bool hasItem = value->isList() && std::size_t(step.index) < value->items().size();
        value = hasItem ? &value->items()[std::size_t(step.index)] : nullptr;
    }
    return value;
}

} // namespace JsonForm

} // namespace TunerDocuments

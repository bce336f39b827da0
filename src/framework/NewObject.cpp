// SPDX-License-Identifier: MIT
#include "framework/NewObject.h"

namespace JobXml {

namespace {

template <class Read>
bool readNew(const DataObject &object, QString *error, Read read)
{
    bool isRead = false;
    QString why;
    try {
        isRead = read();
        why = object.GetErrorString();
    } catch (const ReportException &exception) {
        why = exception.GetMessageText();
    }
    if (error)
        *error = why;
    return isRead;
}

} // namespace

bool readNewFromXml(DataObject &object, const QString &xml, QString *error)
{
    return readNew(object, error, [&] { return object.SetXmlString(xml, true); });
}

bool readNewFromBinary(DataObject &object, const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return readNew(object, error, [&] { return object.SetBinaryRepresentation(representation, limits); });
}

} // namespace JobXml

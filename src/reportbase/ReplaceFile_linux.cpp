// SPDX-License-Identifier: MIT
#include "ReplaceFile.h"

#include <cerrno>

#include <QByteArray>
#include <QFileDevice>

#include "FailureTexts.h"
#include "KeptAttributes.h"
#include "NewFile.h"
#include "SaveTarget.h"

namespace REPORTGENERATOR {

QString replaceFile(const QByteArray &path, const QByteArray &content, const QFileDevice *original)
{
    SaveTarget target;
    QString reason = target.find(path);
    if (reason.isNull() && original && !target.leadsTo(original->handle()))
        reason = FailureTexts::pathHasChanged();
    if (!reason.isNull())
        return reason;
    NewFile file(target.folder(), target.name());
    // Nobody else can open it before it has the owner and the permissions of the old one.
    if (!file.create(target.isNew() ? 0666 : 0600) || !file.write(content.constData(), content.size()))
        return qt_error_string(errno);
    if (!target.isNew())
        reason = keepAttributes(target.old(), file.descriptor());
    if (!reason.isNull())
        return reason;
    return file.synchronize() && file.replace() ? QString() : qt_error_string(errno);
}

} // namespace REPORTGENERATOR

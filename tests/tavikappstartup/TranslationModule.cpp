// SPDX-License-Identifier: MIT
// A module that registers when it is loaded and forgets to unregister, so that the destructor of the registry withdraws
// its catalog.
#include <QLocale>

#include <tavikappstartup/TranslationCenter.h>

namespace {

struct Attachment
{
    Attachment()
    {
        QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
        TranslationCenter::Instance().AddSearchPath(QStringLiteral(CATALOGS_DIR "/first"));
        TranslationCenter::Instance().Register(QStringLiteral("Probe"));
    }
};

const Attachment attachment;

} // namespace

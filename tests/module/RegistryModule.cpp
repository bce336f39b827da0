// SPDX-License-Identifier: MIT

// A plug-in that is linked with the translation registry alone, and shows what is registered.

#include <QStringList>

#include <tavikappstartup/TranslationCenter.h>

extern "C" Q_DECL_EXPORT void tellRegisteredModules(QStringList *modules)
{
    *modules = TranslationCenter::Instance().RegisteredModules();
}

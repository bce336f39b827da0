// SPDX-License-Identifier: MIT

// A plug-in that is linked only with the translation registry, and returns the registered modules.

#include <QStringList>

#include <tavikappstartup/TranslationCenter.h>

extern "C" Q_DECL_EXPORT void getRegisteredModules(QStringList *modules)
{
    *modules = TranslationCenter::Instance().RegisteredModules();
}

// SPDX-License-Identifier: MIT

// Replaces the translation registry in a host process. Prints when the module registers and unregisters, and its tuner
// types at that moment, which shows whether the module's statics exist.

#include <dlfcn.h>

#include <cstdio>

#include <QStringList>

#include <tavikappstartup/TranslationCenter.h>

namespace {

using TypesFunction = QStringList (*)();

TypesFunction types = nullptr;

void say(const char *what, const QString &module)
{
    const QString names = types ? types().join(QLatin1Char(' ')) : QStringLiteral("no types");
    std::printf("%s(%s) with %s\n", what, module.toUtf8().constData(), names.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

class TranslationCenter::Private
{
};

TranslationCenter::TranslationCenter() = default;
TranslationCenter::~TranslationCenter() = default;

TranslationCenter &TranslationCenter::Instance()
{
    static TranslationCenter center;
    return center;
}

void TranslationCenter::Register(const QString &module)
{
    types = reinterpret_cast<TypesFunction>(dlsym(RTLD_DEFAULT, "_ZN6JobXml15TunerProperties8GettypesEv"));
    say("Register", module);
}

void TranslationCenter::Unregister(const QString &module)
{
    say("Unregister", module);
}

// SPDX-License-Identifier: MIT

#include <exception>

#include <QString>

#include <tavikappstartup/TranslationCenter.h>

namespace {

// Registers the module when the library is loaded and unregisters it when it is unloaded or the process exits. As the
// object built last (this unit is linked last) it is destroyed first, while every other static still stands: a plain
// destructor function would run after them when a process exits.
class ModuleRegistration
{
public:
    ModuleRegistration() noexcept
    {
        attempt([] { TranslationCenter::Instance().Register(QStringLiteral("TunerProperties")); });
    }
    ModuleRegistration(const ModuleRegistration &) = delete;
    ModuleRegistration &operator=(const ModuleRegistration &) = delete;
    ~ModuleRegistration()
    {
        attempt([] { TranslationCenter::Instance().Unregister(QStringLiteral("TunerProperties")); });
    }

private:
    // Loading succeeds whatever becomes of the translations.
    template <class Action>
    static void attempt(Action action) noexcept
    {
        try {
            action();
        } catch (const std::exception &) { // without a registry the names are shown as they are
        }
    }
};

const ModuleRegistration registration;

} // namespace

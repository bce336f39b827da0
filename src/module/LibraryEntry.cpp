// SPDX-License-Identifier: MIT

#include <exception>

#include <QString>

#include <tavikappstartup/TranslationCenter.h>

#include "text/OwnText.h"

namespace {

// Registers the module when the library is loaded and unregisters it when it is unloaded or the process exits. As the
// object built last (this unit is linked last) it is destroyed first, while every other static still stands: a plain
// destructor function would run after them when a process exits.
class ModuleRegistration
{
public:
    ModuleRegistration() noexcept
    {
        attempt([this] { TranslationCenter::Instance().Register(m_module); });
    }
    ModuleRegistration(const ModuleRegistration &) = delete;
    ModuleRegistration &operator=(const ModuleRegistration &) = delete;
    ~ModuleRegistration()
    {
        attempt([this] { TranslationCenter::Instance().Unregister(m_module); });
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

    const QString m_module = REPORTGENERATOR::ownText("TunerProperties");
};

const ModuleRegistration registration;

} // namespace

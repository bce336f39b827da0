// SPDX-License-Identifier: MIT

#include <exception>

#include <QString>

#include <tavikappstartup/TranslationCenter.h>

#include "text/OwnText.h"

namespace {

// Registers the module when the library is loaded and unregisters it when it is unloaded or the process exits. This
// unit is linked last, so the object is built last and destroyed first, while every other static still exists. A plain
// destructor function would run after their destruction when a process exits.
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
    // Loading succeeds even if registering fails.
    template <class Action>
    static void attempt(Action action) noexcept
    {
        try {
            action();
        } catch (const std::exception &) { // without a registry the names are not translated
        }
    }

    const QString m_module = REPORTGENERATOR::ownText("TunerProperties");
};

const ModuleRegistration registration;

} // namespace

#include "frame/Module.h"

#include "frame/LibraryVersion.h"
#include "platform/ModuleEvents.h"
#include "platform/SharedLibrary.h"

namespace {
using VersionCheck = bool (*)(unsigned version, const char* buildDate);
using Register = void (*)(unsigned version, const char* buildDate);
using Unregister = void (*)();

template <class Function>
Function Found(Module::FindFunction find, const char* name)
{
    return reinterpret_cast<Function>(find(name));
}

Module& ThisModule()
{
    static Module s_Module(SharedLibrary::FindInProgram);
    return s_Module;
}
} // namespace

bool Module::Load()
{
    const auto check = Found<VersionCheck>(m_Find, "HalyardVersionCheck");
    if (check && !check(LibraryVersion::Number(), LibraryVersion::BuildDate())) return false;
    if (const auto enter = Found<Register>(m_Find, "HalyardRegister")) {
        enter(LibraryVersion::Number(), LibraryVersion::BuildDate());
        m_IsRegistered = true;
    }
    return true;
}

void Module::Unload()
{
    if (!m_IsRegistered) return;
    m_IsRegistered = false;
    if (const auto leave = Found<Unregister>(m_Find, "HalyardUnregister")) leave();
}

bool ModuleEvents::Loading()
{
    return ThisModule().Load();
}

void ModuleEvents::Unloading()
{
    ThisModule().Unload();
}

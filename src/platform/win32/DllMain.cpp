#include "platform/ModuleEvents.h"
#include "platform/win32/WindowsApi.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD event, void* atProcessEnd)
{
    if (event == DLL_PROCESS_ATTACH) return ModuleEvents::Loading() ? TRUE : FALSE;
    // At the end of the process its other threads are gone, wherever they were, and so may be what they held.
    if (event == DLL_PROCESS_DETACH && !atProcessEnd) ModuleEvents::Unloading();
    return TRUE;
}

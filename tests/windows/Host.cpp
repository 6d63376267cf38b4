// A program that loads the library:  host LIBRARY. It exports what HOST_... asks for, and ends with 0 when
// everything happened as its name says.
#include "platform/SharedLibrary.h"
#include "platform/Utf8.h"

#include <cstdio>
#include <cstring>

namespace {
int g_Checks = 0;
int g_Registrations = 0;
int g_Departures = 0;

[[maybe_unused]] bool IsThisVersion(unsigned version, const char* buildDate)
{
    return version == 0x5050100 && std::strlen(buildDate) == std::strlen("2026-11-21");
}

int Complain(const char* what, int number)
{
    std::printf("%s: %d\n", what, number);
    return 1;
}
} // namespace

#ifdef HOST_CHECKS
extern "C" [[gnu::dllexport]] bool HalyardVersionCheck(unsigned version, const char* buildDate)
{
    ++g_Checks;
    return HOST_CHECKS && IsThisVersion(version, buildDate);
}

extern "C" [[gnu::dllexport]] void HalyardRegister(unsigned version, const char* buildDate)
{
    g_Registrations += IsThisVersion(version, buildDate);
}

extern "C" [[gnu::dllexport]] void HalyardUnregister()
{
    ++g_Departures;
}

constexpr bool IS_ASKED = true;
constexpr bool IS_LOADED = HOST_CHECKS;
#else
constexpr bool IS_ASKED = false;
constexpr bool IS_LOADED = true;
#endif

int main(int argc, char** argv)
{
    if (argc != 2) return Complain("one argument is wanted, not", argc - 1);
    constexpr int TOLD = IS_ASKED && IS_LOADED;
    SharedLibrary library;
    const bool isLoaded = library.Open(FromUtf8(argv[1]));
    std::printf("%s\n", isLoaded ? "loaded" : ToUtf8(library.Reason()).c_str());
    if (isLoaded != IS_LOADED) return Complain("loaded", isLoaded);
    if (g_Checks != IS_ASKED) return Complain("checked", g_Checks);
    if (g_Registrations != TOLD) return Complain("registered", g_Registrations);
    library.Close();
    if (g_Departures != TOLD) return Complain("unregistered", g_Departures);
    return 0;
}

#include "platform/ModuleString.h"

#include "platform/win32/WindowsApi.h"

namespace {
/// String tables come in blocks of so many; each text begins with its length.
constexpr unsigned BLOCK = 16;

HMODULE ThisModule()
{
    HMODULE module = nullptr;
    constexpr DWORD FLAGS =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    const auto* inside = reinterpret_cast<const wchar_t*>(&ModuleString);
    return ::GetModuleHandleExW(FLAGS, inside, &module) ? module : nullptr;
}
} // namespace

std::optional<std::wstring> ModuleString(unsigned number)
{
    const HMODULE module = ThisModule();
    const HRSRC place = ::FindResourceW(module, MAKEINTRESOURCEW(number / BLOCK + 1), RT_STRING);
    const HGLOBAL block = place ? ::LoadResource(module, place) : nullptr;
    const auto* text = block ? static_cast<const wchar_t*>(::LockResource(block)) : nullptr;
    if (!text) return std::nullopt;
    for (unsigned i = 0; i < number % BLOCK; ++i) text += 1 + *text;
    if (*text == 0) return std::nullopt;
    return std::wstring(text + 1, static_cast<std::size_t>(*text));
}

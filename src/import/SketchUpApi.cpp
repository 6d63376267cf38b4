#include "import/SketchUpApi.h"

#include "platform/CommandLine.h"
#include "platform/Utf8.h"

namespace {

/// As the vendor names it on each system.
constexpr const wchar_t* USUAL_NAMES[] = {L"SketchUpAPI.dll", L"libSketchUpAPI.so",
                                          L"SketchUpAPI.framework/SketchUpAPI"};

struct Vendor {
    std::wstring name;
    SharedLibrary library;
};

bool OpenLibrary(Vendor& vendor, const std::wstring& name)
{
    if (vendor.library.IsOpen() && vendor.name == name) return true;
    SharedLibrary library;
    const bool isOpen = library.Open(name);
    vendor.library = std::move(library);
    vendor.name = name;
    return isOpen;
}

bool OpenVendor(Vendor& vendor, std::wstring& reason)
{
    const std::wstring named = EnvironmentVariable("HALYARD_SKETCHUP_API").value_or(L"");
    if (!named.empty()) {
        if (OpenLibrary(vendor, named)) return true;
        reason = L"the SketchUp API library that HALYARD_SKETCHUP_API names cannot be loaded ("
                 + vendor.library.Reason() + L")";
        return false;
    }
    for (const wchar_t* name : USUAL_NAMES)
        if (OpenLibrary(vendor, name)) return true;
    reason = L"the SketchUp API library is not there; its maker offers it, and HALYARD_SKETCHUP_API can name "
             L"its file";
    return false;
}

} // namespace

bool SketchUpApi::Open(std::wstring& reason)
{
    // Never destroyed: see the header.
    static Vendor& vendor = *new Vendor;
    if (!OpenVendor(vendor, reason)) return false;
    const char* missing = nullptr;
#define SKETCHUP_FIND(result, name, parameters)                                                              \
    name = reinterpret_cast<result(*) parameters>(vendor.library.Find(#name));                               \
    if (!name) missing = #name;
    SKETCHUP_FUNCTIONS(SKETCHUP_FIND)
#undef SKETCHUP_FIND
    if (!missing) return true;
    reason = L"the SketchUp API library has no function " + FromUtf8(missing);
    return false;
}

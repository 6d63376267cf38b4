#pragma once

#include <string>

#include "platform/Export.h"

/// A shared library that is loaded at run time. Unloaded at the end of this object's life.
class HALYARD_API SharedLibrary {
public:
    SharedLibrary() = default;
    ~SharedLibrary();
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Loads a library by file name, closing the one that was open. A name without a folder is looked for
    /// where the system looks for libraries.
    [[nodiscard]] bool Open(const std::wstring& name);

    [[nodiscard]] bool IsOpen() const { return m_Handle != nullptr; }

    /// Address of an exported symbol; null when there is none or no library is open.
    [[nodiscard]] void* Find(const char* symbol) const;

    /// Address of a symbol that the running program's own main module exports; null when there is none.
    [[nodiscard]] static void* FindInProgram(const char* symbol);

    /// Addresses got by Find die here.
    void Close();

    /// Why the last Open failed, in the system's words; empty when it did not.
    [[nodiscard]] const std::wstring& Reason() const { return m_Reason; }

private:
    void* m_Handle = nullptr;
    std::wstring m_Reason;
};

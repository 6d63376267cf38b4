#pragma once

#include <optional>
#include <string>

/// A file that takes its place only when it is whole: it is written under another name beside its target and
/// renamed at the end. Until then, and for ever when Commit is not reached, the target stays as it was.
class SafeOutput {
public:
    /// The suffix is that of the name to write under, for writers that go by it.
    explicit SafeOutput(const std::wstring& target, const std::wstring& suffix = L".tmp")
        : m_Target(target), m_Suffix(suffix)
    {
    }
    /// Removes what was not committed.
    ~SafeOutput();
    SafeOutput(const SafeOutput&) = delete;
    SafeOutput& operator=(const SafeOutput&) = delete;

    /// Finds out whether the target can be written, and a name to write under. Otherwise says why not, in a
    /// clause that follows the target's name. A link as target leads to the file behind it.
    std::optional<std::wstring> Prepare();
    /// The name to write under, in the target's folder. It is nobody's guess.
    const std::wstring& TemporaryName() const { return m_Temporary; }
    /// Puts what was written in the target's place, with the permissions of the file that was there.
    /// Otherwise says why not.
    std::optional<std::wstring> Commit();

private:
    std::wstring m_Target;
    std::wstring m_Suffix;
    std::wstring m_Temporary;
};

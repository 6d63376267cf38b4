#pragma once

#include <string>
#include <string_view>

/// What the program's exit status says.
enum EXIT_STATUS {
    EXIT_DONE = 0,
    EXIT_FAILED = 1, ///< one sentence on standard error says why
    EXIT_WRONG_USAGE = 2,
    EXIT_STOPPED = 130, ///< by Ctrl-C
};

/// Text for people to read: UTF-8 without control characters, which would act on a terminal; each becomes
/// "?".
std::string Printable(std::wstring_view text);

/// Names and texts of a drawing as people read them. The model holds one character for each byte of the file,
/// and newer files hold UTF-8, whatever release they state: what is well-formed UTF-8 is taken for it.
std::wstring AsMeant(const std::wstring& modelText);

/// Writes "halyard: FILE: WHAT" to standard error; returns EXIT_FAILED.
int Fail(std::wstring_view file, std::wstring_view what);
/// Writes "halyard: FILE: warning: WHAT" to standard error.
void Warn(std::wstring_view file, std::wstring_view what);
/// Says that the user stopped the work; returns EXIT_STOPPED.
int SayStopped();

/// Standard output. The first failure sticks.
class StandardOutput {
public:
    /// False after a failure: there is no use in going on.
    static bool Write(std::string_view text);
    /// Hands everything to the system; returns EXIT_DONE, or EXIT_FAILED after saying why it cannot be
    /// written. When the reader at the other end has gone, that is no failure.
    static int Finish();
};

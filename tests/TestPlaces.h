#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <string>
#include <type_traits>

/// Where a test finds what is not compiled into it. Each place can be moved by the environment.
namespace TestPlaces {
inline std::filesystem::path FromEnvironment(const char* variable, const char* otherwise)
{
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

/// Sets a variable of the environment; empty is as good as not set.
inline void SetEnvironment(const std::string& name, const std::string& value)
{
    static std::deque<std::string> s_Kept; // the environment refers to them
    putenv(s_Kept.emplace_back(name + "=" + value).data());
}

/// The system names files by wide characters, and is not that of this source's shell commands: Windows.
inline constexpr bool IS_WINDOWS = std::is_same_v<std::filesystem::path::value_type, wchar_t>;

/// Root of the source tree.
inline std::filesystem::path Source()
{
    return FromEnvironment("HALYARD_SOURCE_DIR", HALYARD_TEST_SOURCE_DIR);
}

/// The built `halyard` program.
inline std::filesystem::path Program()
{
    return FromEnvironment("HALYARD_PROGRAM", HALYARD_TEST_PROGRAM);
}

/// The stand-in for the vendor's library that reads SketchUp files.
inline std::filesystem::path SketchUpLibrary()
{
    return FromEnvironment("HALYARD_TEST_SKETCHUP_LIBRARY", HALYARD_TEST_SKETCHUP);
}

/// The folder of sample files from public projects; it need not exist (see SKIP_WITHOUT_CORPUS).
inline std::filesystem::path Corpus()
{
    return FromEnvironment("HALYARD_CORPUS", HALYARD_TEST_CORPUS);
}
} // namespace TestPlaces

/// First line of a test that reads the sample files: skips, and says so, where they are absent.
#define SKIP_WITHOUT_CORPUS()                                                                                \
    do {                                                                                                     \
        if (!std::filesystem::is_directory(TestPlaces::Corpus()))                                            \
            GTEST_SKIP() << "no sample files at " << TestPlaces::Corpus() << " (set HALYARD_CORPUS)";        \
    } while (false)

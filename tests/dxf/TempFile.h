#pragma once

#include "platform/Utf8.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

/// A file in the folder for temporary files, removed at the end of its life.
class TempFile {
public:
    explicit TempFile(const std::string& suffix = ".dxf")
    {
        static int number = 0;
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        m_Path = std::filesystem::temp_directory_path()
                 / (std::string(test->test_suite_name()) + "." + test->name() + "."
                    + std::to_string(std::random_device()()) + "." + std::to_string(++number) + suffix);
    }
    TempFile(const std::string& suffix, std::string_view content) : TempFile(suffix) { Write(content); }
    ~TempFile() { std::filesystem::remove(m_Path); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Write(std::string_view content) const
    {
        std::ofstream file(m_Path, std::ios::binary);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    std::string Content() const
    {
        std::ifstream file(m_Path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    const std::filesystem::path& Path() const { return m_Path; }
    std::wstring Name() const { return FromUtf8(m_Path.string()); }

private:
    std::filesystem::path m_Path;
};

#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

/// A folder for one test, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("halyard_") + test->test_suite_name() + "_" + test->name();
        for (char& c : name) c = c == '/' ? '_' : c;
        m_Path =
            std::filesystem::temp_directory_path() / (name + "_" + std::to_string(std::random_device()()));
        std::filesystem::remove_all(m_Path);
        std::filesystem::create_directories(m_Path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path Path() const { return m_Path; }
    std::filesystem::path operator/(const std::string& name) const { return m_Path / name; }

private:
    std::filesystem::path m_Path;
};

inline void WriteFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "TestPlaces.h"
#include "platform/FileSystem.h"
#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "platform/RawFile.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"

namespace {
std::wstring Wide(const std::filesystem::path& path)
{
    return FromUtf8(path.string());
}

std::string ReadAll(InputFile& file)
{
    std::string bytes(file.Size() + 100, '?');
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    return bytes;
}

/// Bytes without a short period, so that a block in the wrong place shows.
std::string Pattern(std::size_t count)
{
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 2654435761u >> 13);
    return bytes;
}
} // namespace

TEST(InputFile, ReadsWhatStandsInTheFileFromAnyPosition)
{
    const TemporaryFolder folder;
    const std::string bytes = Pattern(100'000);
    WriteFile(folder / "a.bin", bytes);
    InputFile file;
    ASSERT_TRUE(file.Open(Wide(folder / "a.bin"))) << ToUtf8(file.Reason());
    EXPECT_EQ(file.Size(), bytes.size());
    EXPECT_EQ(ReadAll(file), bytes);
    EXPECT_EQ(file.Tell(), bytes.size());

    ASSERT_TRUE(file.Seek(99'990));
    EXPECT_EQ(ReadAll(file), bytes.substr(99'990));
    ASSERT_TRUE(file.Seek(1'000'000'000'000));
    EXPECT_EQ(ReadAll(file), "");
    EXPECT_FALSE(file.Seek(~std::uint64_t{0}));
    EXPECT_FALSE(file.Failed());

    InputFile moved = std::move(file);
    EXPECT_FALSE(file.IsOpen());
    ASSERT_TRUE(moved.Seek(0));
    EXPECT_EQ(ReadAll(moved), bytes);
}

TEST(InputFile, AFileThatShrinksOrGrowsWhileItIsReadEndsWhereItEnds)
{
    const TemporaryFolder folder;
    const std::string bytes = Pattern(10'000);
    WriteFile(folder / "a.bin", bytes);
    InputFile file;
    ASSERT_TRUE(file.Open(Wide(folder / "a.bin")));
    std::string start(4000, '\0');
    ASSERT_EQ(file.Read(start.data(), start.size()), 4000u);
    std::filesystem::resize_file(folder / "a.bin", 5000);
    EXPECT_EQ(ReadAll(file), bytes.substr(4000, 1000));
    std::filesystem::resize_file(folder / "a.bin", 100);
    EXPECT_EQ(ReadAll(file), "");
    EXPECT_FALSE(file.Failed());
    std::filesystem::resize_file(folder / "a.bin", 5010);
    EXPECT_EQ(ReadAll(file), std::string(10, '\0'));
}

TEST(InputFile, RefusesWhatIsNoRegularFileAndSaysWhy)
{
    const TemporaryFolder folder;
    WriteFile(folder / "a.bin", "x");
    const struct {
        std::wstring name;
        std::wstring reason;
    } rows[] = {
        {Wide(folder / "none"), L"no such file"},
        {L"", L"no such file"},
        {Wide(folder.Path()), L"is a folder"},
        {Wide(folder / "a.bin" / "b"), L"no such folder"},
        {Wide(folder / "a.bin") + std::wstring(1, L'\0') + L"b", L"no such file"},
        {Wide(folder / std::string(300, 'n')), L"the file name is too long"},
    };
    for (const auto& row : rows) {
        InputFile file;
        EXPECT_FALSE(file.Open(row.name));
        EXPECT_TRUE(file.Failed());
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(file.Reason(), row.reason);
        char byte = 0;
        EXPECT_EQ(file.Read(&byte, 1), 0u);
        EXPECT_TRUE(file.Open(Wide(folder / "a.bin"))) << "a failure does not stick to the object";
        EXPECT_FALSE(file.Failed());
    }
}

TEST(InputFile, PipesAndDevicesAreRefusedWithoutWaiting)
{
    const TemporaryFolder folder;
    const std::filesystem::path pipe = folder / "pipe";
    if (std::system(("mkfifo '" + pipe.string() + "' 2>/dev/null").c_str()) != 0) GTEST_SKIP() << "no pipes";
    for (const std::filesystem::path& path : {pipe, std::filesystem::path("/dev/zero")}) {
        InputFile file;
        EXPECT_FALSE(file.Open(Wide(path)));
        EXPECT_EQ(file.Reason(), L"is no regular file");
        RawFile raw;
        EXPECT_FALSE(raw.Open(Wide(path), "rb"));
        EXPECT_EQ(raw.Reason(), L"is no regular file");
    }
    OutputFile output;
    EXPECT_FALSE(output.Open(Wide(pipe)));
    EXPECT_EQ(output.Reason(), L"no one reads at the other end");
}

TEST(InputFile, OpensNamesThatAreNoUtf8)
{
    if (TestPlaces::IS_WINDOWS) GTEST_SKIP() << "file names are no bytes here";
    const TemporaryFolder folder;
    const std::string name = "na\xEFve \xFF\xC3\xA9.dxf"; // Latin-1, a stray byte, then UTF-8
    try {
        WriteFile(folder / name, "x");
    } catch (const std::exception&) {
    }
    if (!std::filesystem::exists(folder / name)) GTEST_SKIP() << "file names are no bytes here";
    InputFile file;
    EXPECT_TRUE(file.Open(Wide(folder.Path()) + L"/" + FromUtf8(name)));
    EXPECT_EQ(ReadAll(file), "x");
}

TEST(OutputFile, WritesTheSameBytesWhateverTheirPortions)
{
    const TemporaryFolder folder;
    const std::string bytes = Pattern(5 * OutputFile::BUFFER_SIZE + 12'345);
    for (const std::size_t portion : {std::size_t{1}, std::size_t{777}, OutputFile::BUFFER_SIZE - 1,
                                      OutputFile::BUFFER_SIZE, 2 * OutputFile::BUFFER_SIZE + 1}) {
        OutputFile file;
        ASSERT_TRUE(file.Open(Wide(folder / "a.bin")));
        bool isToldRight = true;
        for (std::size_t i = 0; i < bytes.size(); i += portion) {
            const std::size_t count = std::min(portion, bytes.size() - i);
            isToldRight = isToldRight && file.Tell() == i;
            if (i % 2 == 0) {
                file.Write(bytes.data() + i, count);
                continue;
            }
            bytes.copy(file.Reserve(count + 5), count, i);
            file.Commit(count);
        }
        EXPECT_TRUE(isToldRight);
        EXPECT_EQ(file.Tell(), bytes.size());
        EXPECT_TRUE(file.Close());
        EXPECT_TRUE(file.Close());
        EXPECT_TRUE(ReadFile(folder / "a.bin") == bytes) << portion;
    }
}

TEST(OutputFile, PatchesBytesOnTheDiskInTheBufferAndAcrossBoth)
{
    const TemporaryFolder folder;
    std::string bytes = Pattern(OutputFile::BUFFER_SIZE + 1000);
    OutputFile file;
    ASSERT_TRUE(file.Open(Wide(folder / "a.bin")));
    file.Write(bytes.data(), 1000);
    ASSERT_TRUE(file.Flush());
    file.Write(bytes.data() + 1000, bytes.size() - 1000);
    file.Write("tail", 4);
    bytes += "tail";
    const std::string patch(20, '#');
    for (const std::size_t at : {std::size_t{0}, std::size_t{990}, std::size_t{1000}, bytes.size() - 20}) {
        EXPECT_TRUE(file.PatchAt(at, patch.data(), patch.size()));
        bytes.replace(at, patch.size(), patch);
    }
    EXPECT_FALSE(file.PatchAt(bytes.size() - 19, patch.data(), patch.size()));
    EXPECT_FALSE(file.PatchAt(~std::uint64_t{0}, patch.data(), patch.size()));
    EXPECT_EQ(file.Tell(), bytes.size());
    EXPECT_TRUE(file.Sync());
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(ReadFile(folder / "a.bin") == bytes);
}

TEST(OutputFile, TheFirstFailureSticksUntilTheNextOpening)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no full device here";
    const TemporaryFolder folder;
    OutputFile file;
    ASSERT_TRUE(file.Open(L"/dev/full"));
    const std::string bytes = Pattern(OutputFile::BUFFER_SIZE);
    file.Write(bytes.data(), 100);
    EXPECT_FALSE(file.Failed()) << "nothing has been handed over yet";
    for (int i = 0; i < 5; ++i) file.Write(bytes.data(), bytes.size());
    ASSERT_NE(file.Reserve(2 * OutputFile::BUFFER_SIZE), nullptr);
    EXPECT_TRUE(file.Failed());
    EXPECT_EQ(file.Reason(), L"no space left on the device");
    EXPECT_FALSE(file.PatchAt(0, "x", 1));
    EXPECT_FALSE(file.Sync());
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(file.Reason(), L"no space left on the device");

    ASSERT_TRUE(file.Open(Wide(folder / "a.bin")));
    EXPECT_FALSE(file.Failed());
    EXPECT_TRUE(file.Close());
}

TEST(OutputFile, WithoutAnOpenFileWritingFailsAndHarmsNothing)
{
    const TemporaryFolder folder;
    OutputFile never;
    never.Write("x", 1);
    EXPECT_EQ(never.Reason(), L"no file is open");
    EXPECT_FALSE(never.Close());

    OutputFile refused;
    EXPECT_FALSE(refused.Open(Wide(folder.Path())));
    EXPECT_EQ(refused.Reason(), L"is a folder");
    refused.Write("x", 1);
    EXPECT_EQ(refused.Reason(), L"is a folder");
    EXPECT_FALSE(refused.Open(Wide(folder / "no folder" / "a")));
    EXPECT_EQ(refused.Reason(), L"no such file");
}

TEST(RawFile, ReadsAndWritesByTheModesOfTheCLibrary)
{
    const TemporaryFolder folder;
    const std::wstring name = Wide(folder / "a.bin");
    RawFile file;
    EXPECT_FALSE(file.Open(name, "rb"));
    EXPECT_EQ(file.Reason(), L"no such file");
    EXPECT_FALSE(file.Open(name, "q"));
    EXPECT_FALSE(file.Open(name, nullptr));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.bin"));

    char bytes[10] = {};
    ASSERT_TRUE(file.Open(name, "wb+"));
    EXPECT_EQ(file.Write("0123456789", 10), 10u);
    EXPECT_EQ(file.Tell(), 10);
    EXPECT_TRUE(file.Seek(-4, RawFile::FROM_END));
    EXPECT_EQ(file.Read(bytes, 10), 4u);
    EXPECT_TRUE(file.AtEnd());
    EXPECT_EQ(std::string(bytes, 4), "6789");
    EXPECT_TRUE(file.Seek(2, RawFile::FROM_START));
    EXPECT_TRUE(file.Seek(1, RawFile::FROM_POSITION));
    EXPECT_EQ(file.Write("x", 1), 1u);
    EXPECT_FALSE(file.Seek(-1, RawFile::FROM_START));
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(ReadFile(folder / "a.bin"), "012x456789");

    ASSERT_TRUE(file.Open(name, "ab"));
    EXPECT_EQ(file.Write("!", 1), 1u);
    ASSERT_TRUE(file.Open(name, "rb")) << "opening closes";
    EXPECT_EQ(file.Read(bytes, 10), 10u);
    EXPECT_EQ(file.Write("?", 1), 0u);
    EXPECT_TRUE(file.Failed());
    EXPECT_EQ(ReadFile(folder / "a.bin"), "012x456789!");
    EXPECT_FALSE(file.Open(Wide(folder.Path()), "rb"));
    EXPECT_EQ(file.Reason(), L"is a folder");
}

TEST(FileSystem, TellsFilesFromFolders)
{
    const TemporaryFolder folder;
    WriteFile(folder / "a", "12345");
    const std::wstring file = Wide(folder / "a");
    const std::wstring here = Wide(folder.Path());
    EXPECT_TRUE(FileSystem::IsRegularFile(file));
    EXPECT_FALSE(FileSystem::IsRegularFile(here));
    EXPECT_TRUE(FileSystem::IsFolder(here));
    EXPECT_FALSE(FileSystem::IsFolder(file));
    EXPECT_TRUE(FileSystem::Exists(here));
    EXPECT_FALSE(FileSystem::Exists(file + L"b"));
    EXPECT_FALSE(FileSystem::Exists(L""));
    EXPECT_FALSE(FileSystem::Exists(file + std::wstring(1, L'\0')));
    EXPECT_EQ(FileSystem::FileSize(file), 5u);
    EXPECT_EQ(FileSystem::FileSize(here), std::nullopt);
    EXPECT_TRUE(FileSystem::SameFile(file, here + L"/./a"));
    EXPECT_FALSE(FileSystem::SameFile(file, here));
    EXPECT_FALSE(FileSystem::SameFile(file + L"b", file + L"b"));
}

TEST(FileSystem, ReplacesAFileInOneStepOrNotAtAll)
{
    const TemporaryFolder folder;
    WriteFile(folder / "new", "new");
    WriteFile(folder / "old", "old");
    std::wstring reason;
    EXPECT_TRUE(FileSystem::Replace(Wide(folder / "new"), Wide(folder / "old"), &reason));
    EXPECT_EQ(ReadFile(folder / "old"), "new");
    EXPECT_FALSE(std::filesystem::exists(folder / "new"));
    EXPECT_FALSE(FileSystem::Replace(Wide(folder / "new"), Wide(folder / "old"), &reason));
    EXPECT_EQ(reason, L"no such file");
    EXPECT_EQ(ReadFile(folder / "old"), "new");
    EXPECT_FALSE(FileSystem::Replace(Wide(folder / "old"), Wide(folder.Path())));
    EXPECT_TRUE(FileSystem::Remove(Wide(folder / "old")));
    EXPECT_FALSE(FileSystem::Remove(Wide(folder / "old"), &reason));
    EXPECT_FALSE(FileSystem::Remove(Wide(folder.Path()), &reason));
    EXPECT_TRUE(std::filesystem::exists(folder.Path()));
}

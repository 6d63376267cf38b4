// Runs one fuzz target over files and folders of files named on the command line, without a fuzzer.
// A folder that does not exist is passed over; a run that found no input at all fails.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {
bool Replay(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", file.string().c_str());
        return false;
    }
    const std::vector<char> bytes(std::istreambuf_iterator<char>(in), {});
    std::printf("%s (%zu bytes)\n", file.string().c_str(), bytes.size());
    std::fflush(stdout); // the name must be seen when the target ends the process
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

std::vector<std::filesystem::path> FilesAt(const std::filesystem::path& place)
{
    if (!std::filesystem::is_directory(place))
        return std::filesystem::exists(place) ? std::vector{place} : std::vector<std::filesystem::path>{};

    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    return files;
}
} // namespace

int main(int count, char** arguments)
{
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const std::filesystem::path& file : FilesAt(arguments[i])) {
            if (!Replay(file)) return 1;
            ++replayed;
        }
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}

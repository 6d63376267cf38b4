// Reading DXF files into a document, beside a plain loop that reads blocks, finds lines, parses codes and
// doubles and builds nothing. The files are named by HALYARD_BENCH_FILES, separated by ":"; scripts/bench
// makes them.

#include "dxf/DXFFile.h"
#include "model/DXF.h"
#include "platform/Utf8.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t BLOCK = std::size_t{1} << 20;

struct LineLoop {
    bool isCode = true;
    long code = 0;
    double sum = 0;
    std::size_t lines = 0;

    void Take(const char* p, const char* end)
    {
        ++lines;
        if (p != end && end[-1] == '\r') --end;
        while (p != end && *p == ' ') ++p;
        if (isCode) {
            code = 0;
            std::from_chars(p, end, code);
        } else if (code >= 10 && code < 60) {
            double value = 0;
            std::from_chars(p, end, value);
            sum += value;
        }
        isCode = !isCode;
    }
};

double PlainLoop(const std::string& name)
{
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (!file) return -1;
    std::vector<char> buffer(2 * BLOCK);
    std::size_t kept = 0;
    LineLoop loop;
    while (const std::size_t count = std::fread(buffer.data() + kept, 1, BLOCK, file)) {
        const char* p = buffer.data();
        const char* end = p + kept + count;
        while (const void* hit = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
            loop.Take(p, static_cast<const char*>(hit));
            p = static_cast<const char*>(hit) + 1;
        }
        kept = static_cast<std::size_t>(end - p);
        std::memmove(buffer.data(), p, kept);
    }
    std::fclose(file);
    return loop.sum;
}

std::size_t SizeOf(const std::string& name)
{
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (!file) return 0;
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::fclose(file);
    return static_cast<std::size_t>(size);
}

void BenchPlainLoop(benchmark::State& state, const std::string& name)
{
    for (auto _ : state) benchmark::DoNotOptimize(PlainLoop(name));
    state.SetBytesProcessed(static_cast<std::int64_t>(SizeOf(name)) * state.iterations());
}

void BenchRead(benchmark::State& state, const std::string& name)
{
    const std::atomic<bool> keepGoing{true};
    for (auto _ : state) {
        DXF document;
        if (!document.Read(FromUtf8(name), keepGoing, true)) state.SkipWithError("read failed");
        state.PauseTiming();
        state.counters["entities"] = document.NumEntities();
        document.Clear();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(SizeOf(name)) * state.iterations());
}

const int REGISTERED = [] {
    const char* names = std::getenv("HALYARD_BENCH_FILES");
    std::istringstream list(names ? names : "");
    for (std::string name; std::getline(list, name, ':');) {
        const std::string base = name.substr(name.find_last_of('/') + 1);
        benchmark::RegisterBenchmark(("PlainLoop/" + base).c_str(), BenchPlainLoop, name)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("DXFRead/" + base).c_str(), BenchRead, name)
            ->Unit(benchmark::kMillisecond);
    }
    return 0;
}();

} // namespace

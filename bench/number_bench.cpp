#include "support/NumberText.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

// Numbers as drawings hold them, read and written one after another; items are numbers. The C and C++
// libraries stand beside for comparison.
namespace {

constexpr std::size_t COUNT = 4096;

/// printf formats of coordinates: two decimals, six decimals, 15 and 17 significant digits.
constexpr const char* FORMATS[] = {"%.2f", "%.6f", "%.15g", "%.17g"};

std::vector<double> Coordinates()
{
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> place(-10000, 10000);
    std::vector<double> numbers(COUNT);
    for (double& number : numbers) number = place(random);
    return numbers;
}

std::vector<std::string> Texts(const char* format)
{
    std::vector<std::string> texts;
    for (const double number : Coordinates()) {
        std::array<char, 64> text{};
        texts.emplace_back(text.data(),
                           static_cast<std::size_t>(std::snprintf(text.data(), text.size(), format, number)));
    }
    return texts;
}

double FromChars(const std::string& text)
{
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

double CLibrary(const std::string& text)
{
    return std::strtod(text.c_str(), nullptr);
}

double Ours(const std::string& text)
{
    return ParseDouble(text);
}

template <double (*PARSE)(const std::string&)>
void ReadDouble(benchmark::State& state)
{
    const char* const format = FORMATS[state.range(0)];
    const std::vector<std::string> texts = Texts(format);
    for (auto _ : state)
        for (const std::string& text : texts) benchmark::DoNotOptimize(PARSE(text));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
    state.SetLabel(format);
}
BENCHMARK(ReadDouble<Ours>)->DenseRange(0, 3);
BENCHMARK(ReadDouble<FromChars>)->DenseRange(0, 3);
BENCHMARK(ReadDouble<CLibrary>)->DenseRange(0, 3);

void ReadInt(benchmark::State& state)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < COUNT; ++i)
        texts.push_back((i % 3 ? "  " : " ") + std::to_string(i * 7919 % 400));
    for (auto _ : state)
        for (const std::string& text : texts) benchmark::DoNotOptimize(ParseInt(text));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(ReadInt);

template <char* (*FORMAT)(char*, double)>
void WriteDouble(benchmark::State& state)
{
    const std::vector<double> numbers = Coordinates();
    std::array<char, FIXED6_MAX_LENGTH + 1> text{};
    for (auto _ : state)
        for (const double number : numbers) benchmark::DoNotOptimize(FORMAT(text.data(), number));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

char* Printf(char* out, double value)
{
    return out + std::snprintf(out, FIXED6_MAX_LENGTH + 1, "%.6f", value);
}

char* ToChars(char* out, double value)
{
    return std::to_chars(out, out + FIXED6_MAX_LENGTH, value, std::chars_format::fixed, 6).ptr;
}

BENCHMARK(WriteDouble<FormatFixed6>);
BENCHMARK(WriteDouble<ToChars>);
BENCHMARK(WriteDouble<Printf>);

void WriteInt(benchmark::State& state)
{
    std::array<char, INT_MAX_LENGTH> text{};
    for (auto _ : state)
        for (long long i = 0; i < static_cast<long long>(COUNT); ++i)
            benchmark::DoNotOptimize(FormatInt(text.data(), i * 7919 % 400));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(WriteInt);

} // namespace

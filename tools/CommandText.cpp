#include "CommandText.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <map>

std::vector<std::string> PiecesOf(std::string_view text)
{
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t comma = text.find(',');
        pieces.emplace_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return pieces;
        text.remove_prefix(comma + 1);
    }
}

std::optional<std::vector<double>> NumbersOf(std::string_view text, std::size_t count)
{
    std::vector<double> numbers;
    for (const std::string& piece : PiecesOf(text)) {
        const char* last = piece.data() + piece.size();
        double number = 0;
        const auto [end, error] = std::from_chars(piece.data(), last, number);
        if (error != std::errc() || end != last || !std::isfinite(number)) return std::nullopt;
        numbers.push_back(number);
    }
    if (numbers.size() != count) return std::nullopt;
    return numbers;
}

std::optional<GTL::Extents2D<double>> BoxOf(std::string_view text)
{
    const auto corners = NumbersOf(text, 4);
    if (!corners) return std::nullopt;
    const std::vector<double>& c = *corners;
    return GTL::Extents2D<double>({c[0], c[1]}, {c[2], c[3]});
}

CLI::Option* AddStepOption(CLI::App& command, const std::string& name, const std::string& form,
                           const std::string& help)
{
    const auto keepText = [](const std::vector<std::string>&) {
    };
    return command.add_option_function<std::vector<std::string>>(name, keepText, help)
        ->type_name(form)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
}

std::vector<GivenStep> StepsInOrder(const CLI::App& command)
{
    std::vector<GivenStep> steps;
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* option : command.parse_order()) {
        const std::size_t place = taken[option]++;
        if (place < option->results().size()) steps.push_back({option, option->results()[place]});
    }
    return steps;
}

#include "CommandText.h"

#include <charconv>
#include <cmath>

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

#include "InfoText.h"

#include "JsonWriter.h"
#include "Report.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace {

/// Escapes U+007F to U+009F, which stand in strings only.
std::string WithoutControls(const std::string& json)
{
    std::string text;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const bool isDelete = json[i] == '\x7F';
        const bool isControl =
            json[i] == '\xC2' && i + 1 < json.size() && static_cast<unsigned char>(json[i + 1]) < 0xA0;
        if (!isDelete && !isControl) {
            text += json[i];
            continue;
        }
        char escape[sizeof "\\u0000"];
        std::snprintf(escape, sizeof escape, "\\u%04x",
                      static_cast<unsigned>(isDelete ? 0x7F : static_cast<unsigned char>(json[++i])));
        text += escape;
    }
    return text;
}

std::string CoordinateText(double value)
{
    constexpr double LARGEST_IN_DIGITS = 1e15;
    constexpr int DECIMALS = 6;
    if (!std::isfinite(value)) return "unknown";
    if (std::abs(value) >= LARGEST_IN_DIGITS) return ShortestText(value);
    char digits[32];
    const std::to_chars_result end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, DECIMALS);
    std::string text(digits, end.ptr);
    text.resize(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text == "-0" ? "0" : text;
}

} // namespace

Json PointJson(const GTL::Point3D<double>& point)
{
    Json array = Json::array();
    // Numbers that JSON does not know become null.
    for (const double value : {point.X(), point.Y(), point.Z()})
        array.push_back(std::isfinite(value) ? Json(value) : Json());
    return array;
}

std::string JsonText(const Json& json)
{
    return WithoutControls(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

std::string Shown(const std::wstring& text)
{
    return Printable(AsMeant(text));
}

std::string ShortestText(double value)
{
    JsonWriter text;
    text.Number(value);
    return text.Text();
}

std::string ShortestText(float value)
{
    JsonWriter text;
    text.Number(value);
    return text.Text();
}

std::string PointText(const GTL::Point3D<double>& point)
{
    std::string text;
    for (const double value : {point.X(), point.Y(), point.Z()}) {
        text += text.empty() ? "(" : ", ";
        text += CoordinateText(value);
    }
    return text += ")";
}

#include "support/Numeric.h"

#include "support/NumberText.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

/// Doubles from here on have no fraction.
constexpr double FIRST_WITHOUT_FRACTION = 4503599627370496.0;

wchar_t UpperAscii(wchar_t c)
{
    return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
}

bool EqualWithoutCase(std::wstring_view a, std::wstring_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t l, wchar_t r) { return UpperAscii(l) == UpperAscii(r); });
}

/// The bytes of a wide text up to the first character that can be no part of a number.
class NarrowNumber {
public:
    explicit NarrowNumber(std::wstring_view text)
    {
        constexpr std::wstring_view NUMBER_CHARACTERS = L" \t\n\v\f\r+-.0123456789eE";
        const std::size_t length = std::min(text.find_first_not_of(NUMBER_CHARACTERS), text.size());
        char* out = m_Short;
        if (length > sizeof m_Short) {
            m_Long.resize(length);
            out = m_Long.data();
        }
        std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), out,
                       [](wchar_t c) { return static_cast<char>(c); });
        m_View = {out, length};
    }
    NarrowNumber(const NarrowNumber&) = delete;
    NarrowNumber& operator=(const NarrowNumber&) = delete;

    std::string_view View() const { return m_View; }

private:
    char m_Short[64];
    std::string m_Long;
    std::string_view m_View;
};

} // namespace

double MATH::round(double value, int digits)
{
    static constexpr double POWERS[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const double scale = POWERS[std::clamp(digits, 0, 15)];
    const double scaled = value * scale;
    return std::fabs(scaled) < FIRST_WITHOUT_FRACTION ? std::round(scaled) / scale : value;
}

double TrimAngle(double degrees)
{
    if (degrees > 0 && degrees < 360) return degrees;
    if (!std::isfinite(degrees)) return 0;
    double rest = std::fmod(degrees, 360.0);
    if (rest < 0) rest += 360;
    // A tiny negative rest is rounded up to the full turn; adding zero turns -0 into 0.
    return rest < 360 ? rest + 0.0 : 0.0;
}

bool icompareW(const std::wstring& a, const wchar_t* b)
{
    return EqualWithoutCase(a, b ? std::wstring_view(b) : std::wstring_view());
}

bool icompareW(const std::wstring& a, const std::wstring& b)
{
    return EqualWithoutCase(a, b);
}

int atoi(const std::wstring& text)
{
    return ParseInt(NarrowNumber(text).View());
}

double atof(const std::wstring& text)
{
    return ParseDouble(NarrowNumber(text).View());
}

#pragma once

#include "platform/Export.h"

#include <string>

/// Degrees to radians.
inline constexpr double D_TO_R = 0.017453292519943295769;

/// Comparisons of doubles within a tolerance, and the constants of the circle.
namespace MATH {

inline constexpr double TWOPI = 6.2831853071795864769;
inline constexpr double DTR = D_TO_R;                ///< degrees to radians
inline constexpr double RTD = 57.295779513082320877; ///< radians to degrees

/// Relative tolerance of all comparisons here; below a magnitude of 1 it is absolute.
inline constexpr double RELATIVE_TOLERANCE = 1e-10;

} // namespace MATH

/// Tolerance for values of the given magnitude: RELATIVE_TOLERANCE * max(1, |magnitude|).
inline double Epsilon(double magnitude)
{
    const double size = magnitude < 0 ? -magnitude : magnitude;
    return MATH::RELATIVE_TOLERANCE * (size > 1.0 ? size : 1.0);
}

namespace MATH {

using ::Epsilon;

/// The tolerance for a pair: that of the larger magnitude.
inline double PairEpsilon(double a, double b)
{
    const double ea = Epsilon(a);
    const double eb = Epsilon(b);
    return ea > eb ? ea : eb;
}

/// |a - b| within the tolerance; equal infinities are equal, NaN equals nothing.
inline bool equal(double a, double b)
{
    const double gap = a - b;
    return a == b || (gap < 0 ? -gap : gap) < PairEpsilon(a, b);
}

/// a < b by more than the tolerance.
inline bool less(double a, double b)
{
    return a < b && !equal(a, b);
}
/// a >= b, or a below b by no more than the tolerance. False for NaN.
inline bool gequal(double a, double b)
{
    return a >= b || equal(a, b);
}
/// a <= b, or a above b by no more than the tolerance. False for NaN.
inline bool lequal(double a, double b)
{
    return a <= b || equal(a, b);
}

/// value rounded to a number of decimal digits (0 to 15; others count as the nearest of these), halves of the
/// last digit away from zero. Values without that many digits, infinities and NaN stay as they are.
HALYARD_API double round(double value, int digits);

} // namespace MATH

/// An angle in degrees brought into one turn: 0 <= result < 360. Not a number and infinities give 0.
HALYARD_API double TrimAngle(double degrees);

/// True when both strings are equal without regard to the case of the letters A to Z.
HALYARD_API bool icompareW(const std::wstring& a, const wchar_t* b);
HALYARD_API bool icompareW(const std::wstring& a, const std::wstring& b);

/// Decimal number at the start of the text after white space; reading stops at the first character that
/// is no part of it. Independent of the locale; no hexadecimal, no "inf" or "nan". Out of range gives the
/// nearest finite value (the nearest int); text without a number gives 0.
HALYARD_API int atoi(const std::wstring& text);
HALYARD_API double atof(const std::wstring& text);

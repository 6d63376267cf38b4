#pragma once

#include <cstdint>

/// Products of two coordinates of 33 bits each and a factor of two.
__extension__ using WideInt = __int128;

/// a / b rounded down; b > 0.
inline std::int64_t FloorDiv(WideInt a, std::int64_t b)
{
    const WideInt q = a / b;
    return static_cast<std::int64_t>(a % b < 0 ? q - 1 : q);
}

/// The int nearest to a value.
inline int ToInt(std::int64_t v)
{
    constexpr std::int64_t LOWEST = -2147483647LL - 1;
    constexpr std::int64_t HIGHEST = 2147483647LL;
    return static_cast<int>(v < LOWEST ? LOWEST : v > HIGHEST ? HIGHEST : v);
}

/// A double cut to a range of ints, rounded up to a whole number; not-a-number gives the lower end.
inline int CeilWithin(double v, int low, int high)
{
    if (!(v > low)) return low;
    if (v >= high) return high;
    const int whole = static_cast<int>(v);
    return whole < v ? whole + 1 : whole;
}

/// The first whole number above a double, cut to a range of ints; not-a-number gives the lower end.
inline int AfterWithin(double v, int low, int high)
{
    const int up = CeilWithin(v, low, high);
    return up < high && up == v ? up + 1 : up;
}

#include "render/FarLine.h"

#include <algorithm>
#include <cmath>

// Sums, products and quotients of two doubles each: Joldes, Muller, Popescu, "Tight and rigorous error bounds
// for basic building blocks of double-word arithmetic", ACM TOMS 44 (2017). A sum is off by less than 2^-104
// of itself, however much of its parts cancels.
namespace {

/// Exact.
Twofold Sum(double a, double b)
{
    const double sum = a + b;
    const double partOfB = sum - a;
    return {sum, (a - (sum - partOfB)) + (b - partOfB)};
}

/// Exact where the first is the larger.
Twofold SortedSum(double large, double small)
{
    const double sum = large + small;
    return {sum, small - (sum - large)};
}

/// The upper 26 bits and the rest.
Twofold Halves(double a)
{
    constexpr double SPLIT = (1 << 27) + 1;
    const double shifted = SPLIT * a;
    const double high = shifted - (shifted - a);
    return {high, a - high};
}

/// Exact but for underflow.
Twofold Product(double a, double b)
{
    const double product = a * b;
    const Twofold x = Halves(a);
    const Twofold y = Halves(b);
    const double low = ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low;
    return {product, low};
}

Twofold operator+(const Twofold& a, const Twofold& b)
{
    const Twofold high = Sum(a.high, b.high);
    const Twofold low = Sum(a.low, b.low);
    const Twofold joined = SortedSum(high.high, high.low + low.high);
    return SortedSum(joined.high, low.low + joined.low);
}

Twofold operator-(const Twofold& a)
{
    return {-a.high, -a.low};
}

Twofold operator*(const Twofold& a, double b)
{
    const Twofold high = Product(a.high, b);
    const Twofold joined = SortedSum(high.high, a.low * b);
    return SortedSum(joined.high, joined.low + high.low);
}

/// The double nearest to the quotient, or one beside it when both are nearly as near.
double Quotient(const Twofold& a, const Twofold& b)
{
    const double first = a.high / b.high;
    const Twofold rest = a + -(b * first);
    return first + rest.high / b.high;
}

int ExponentOf(const GTL::Point2D<double>& a, const GTL::Point2D<double>& b)
{
    const double largest = std::max({std::fabs(a.X()), std::fabs(a.Y()), std::fabs(b.X()), std::fabs(b.Y())});
    return largest > 0 ? std::ilogb(largest) : 0;
}

} // namespace

FarLine::FarLine(const GTL::Point2D<double>& a, const GTL::Point2D<double>& b) : m_Exponent(ExponentOf(a, b))
{
    const double ax = std::scalbn(a.X(), -m_Exponent);
    const double ay = std::scalbn(a.Y(), -m_Exponent);
    const double bx = std::scalbn(b.X(), -m_Exponent);
    const double by = std::scalbn(b.Y(), -m_Exponent);
    m_Dx = Sum(bx, -ax);
    m_Dy = Sum(by, -ay);
    m_Determinant = Product(ax, by) + -Product(ay, bx);
}

double FarLine::YAt(double x) const
{
    const double scaled = std::scalbn(x, -m_Exponent);
    return std::scalbn(Quotient(m_Dy * scaled + -m_Determinant, m_Dx), m_Exponent);
}

double FarLine::XAt(double y) const
{
    const double scaled = std::scalbn(y, -m_Exponent);
    return std::scalbn(Quotient(m_Dx * scaled + m_Determinant, m_Dy), m_Exponent);
}

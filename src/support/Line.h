#pragma once

namespace GTL {

/// A straight segment from Start to End.
template <class P>
class Line {
public:
    Line() = default;
    Line(const P& start, const P& end) : m_Start(start), m_End(end) {}

    const P& Start() const { return m_Start; }
    const P& End() const { return m_End; }
    P& Start() { return m_Start; }
    P& End() { return m_End; }

    bool operator==(const Line&) const = default;

private:
    P m_Start;
    P m_End;
};

} // namespace GTL

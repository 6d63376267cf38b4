#include "clip/OutlineCut.h"

#include "clip/InnerChains.h"
#include "clip/Winding.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace GTL {
namespace {

using P3 = Point3D<double>;
using Pieces = std::vector<Polyline<P3>>;

constexpr int SIDES = 4;

/// Height of the plane that fits a ring, at places within the window.
class RingPlane {
public:
    explicit RingPlane(const std::vector<P3>& ring) : m_Origin(ring.front())
    {
        m_Low = m_High = m_Origin.Z();
        Vector3D<double> sum;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Vector3D<double> a = ring[i] - m_Origin;
            const Vector3D<double> b = ring[i + 1 == ring.size() ? 0 : i + 1] - m_Origin;
            m_Normal = m_Normal + a.Cross(b);
            sum = sum + a;
            m_Low = std::min(m_Low, ring[i].Z());
            m_High = std::max(m_High, ring[i].Z());
        }
        m_Middle = m_Origin + sum * (1.0 / static_cast<double>(ring.size()));
    }

    /// Never beyond the heights of the ring itself.
    double HeightAt(double x, double y) const
    {
        if (m_Low == m_High) return m_Low;
        const double rise =
            (m_Normal.X() * (x - m_Middle.X()) + m_Normal.Y() * (y - m_Middle.Y())) / m_Normal.Z();
        return std::isfinite(rise) ? std::clamp(m_Middle.Z() - rise, m_Low, m_High) : m_Middle.Z();
    }

private:
    P3 m_Origin;
    P3 m_Middle;
    Vector3D<double> m_Normal;
    double m_Low;
    double m_High;
};

/// Joins inner chains along the border into closed outlines. Between two neighbouring ends of chains the ring
/// has one winding number just inside the border; going counter-clockwise it rises by one where a chain
/// leaves and falls by one where one enters. So many times the border there is part of outlines,
/// counter-clockwise when it is positive.
class BorderJoin {
public:
    BorderJoin(const Extents2D<double>& window, const std::vector<P3>& ring, const InnerChains& chains)
        : m_Window(window), m_Ring(ring), m_Chains(chains), m_Links(chains.Chains().size())
    {
    }

    void Join(Pieces& pieces)
    {
        GatherEnds();
        const std::size_t start = FindStart();
        MatchEnds(start);
        for (std::size_t chain = 0; chain < m_Links.size(); ++chain) Follow(chain, pieces);
        for (; m_Surplus != 0; m_Surplus += m_Surplus > 0 ? -1 : 1) AddWindow(m_Surplus > 0, pieces);
    }

    /// The window itself as an outline.
    void AddWindow(bool counterClockwise, Pieces& pieces)
    {
        for (int i = 0; i < SIDES; ++i) Append(Corner(counterClockwise ? i : SIDES - 1 - i));
        Close(pieces);
    }

private:
    struct ChainEnd {
        BorderPlace place;
        bool leaves;
        std::size_t chain;

        auto Key() const { return std::make_tuple(place.side, place.along, place.slant, !leaves); }
    };
    /// What follows on the exit of a chain: corners of the border, then a chain.
    struct Link {
        std::size_t next = 0;
        int firstCorner = 0;
        int corners = 0; ///< negative when they are passed clockwise
        bool followed = false;
    };

    void GatherEnds()
    {
        const std::vector<InnerChain>& chains = m_Chains.Chains();
        m_Ends.reserve(2 * chains.size());
        for (std::size_t i = 0; i < chains.size(); ++i) {
            m_Ends.push_back({chains[i].entry, false, i});
            m_Ends.push_back({chains[i].exit, true, i});
        }
        std::sort(m_Ends.begin(), m_Ends.end(),
                  [](const ChainEnd& a, const ChainEnd& b) { return a.Key() < b.Key(); });
    }

    /// First and past the last coordinate of a side, in the order of BorderPlace::along.
    double SideStart(int side) const
    {
        const double starts[] = {m_Window.MinX(), m_Window.MinY(), -m_Window.MaxX(), -m_Window.MaxY()};
        return starts[side];
    }
    double SideEnd(int side) const
    {
        const double ends[] = {m_Window.MaxX(), m_Window.MaxY(), -m_Window.MinX(), -m_Window.MinY()};
        return ends[side];
    }

    /// Winding number just inside the border between an end of a chain and the one before it, seen from the
    /// middle of the longest free stretch of a side. Returns the index of that end, which may be the number
    /// of ends.
    std::size_t Sound(int& winding) const
    {
        double longest = -1;
        double middle = 0;
        int soundedSide = 0;
        std::size_t following = 0;
        std::size_t next = 0;
        for (int side = 0; side < SIDES; ++side) {
            double from = SideStart(side);
            const auto sound = [&](double to) {
                if (to - from > longest) {
                    longest = to - from;
                    middle = from + (to - from) / 2;
                    soundedSide = side;
                    following = next;
                }
                from = to;
            };
            for (; next < m_Ends.size() && static_cast<int>(m_Ends[next].place.side) == side; ++next)
                sound(m_Ends[next].place.along);
            sound(SideEnd(side));
        }
        winding = WindingInsideBorder(m_Ring, m_Window, Side(soundedSide), middle);
        return following;
    }

    /// The end at which matching starts, so that no outline has to pass the border before it; where the ring
    /// winds around the whole border, m_Surplus says how often.
    std::size_t FindStart()
    {
        int winding = 0;
        const std::size_t sounded = Sound(winding);
        std::size_t best = sounded;
        m_Surplus = winding;
        for (std::size_t i = 0; i < m_Ends.size() && m_Surplus != 0; ++i) {
            winding += m_Ends[(sounded + i) % m_Ends.size()].leaves ? 1 : -1;
            if (std::abs(winding) >= std::abs(m_Surplus)) continue;
            m_Surplus = winding;
            best = sounded + i + 1;
        }
        return best % m_Ends.size();
    }

    /// Pairs every exit with an entry, nearest first, so that paths along the border nest.
    void MatchEnds(std::size_t start)
    {
        std::vector<std::size_t> waiting;
        for (std::size_t i = start; i < start + m_Ends.size(); ++i) {
            const ChainEnd& end = m_Ends[i % m_Ends.size()];
            if (waiting.empty() || m_Ends[waiting.back() % m_Ends.size()].leaves == end.leaves) {
                waiting.push_back(i);
                continue;
            }
            const ChainEnd& earlier = m_Ends[waiting.back() % m_Ends.size()];
            const int low = SideFromStart(waiting.back());
            const int high = SideFromStart(i);
            waiting.pop_back();
            if (earlier.leaves)
                m_Links[earlier.chain] = {end.chain, low + 1, high - low, false};
            else
                m_Links[end.chain] = {earlier.chain, high, low - high, false};
        }
    }

    int SideFromStart(std::size_t index) const
    {
        return static_cast<int>(m_Ends[index % m_Ends.size()].place.side)
               + (index < m_Ends.size() ? 0 : SIDES);
    }

    void Follow(std::size_t chain, Pieces& pieces)
    {
        while (!m_Links[chain].followed) {
            Link& link = m_Links[chain];
            link.followed = true;
            const InnerChain& points = m_Chains.Chains()[chain];
            if (m_Outline.empty()) m_Outline.reserve(points.end - points.begin + SIDES);
            for (std::size_t i = points.begin; i < points.end; ++i) Append(m_Chains.Points()[i]);
            const P3& exit = m_Chains.Points()[points.end - 1];
            const P3& entry = m_Chains.Points()[m_Chains.Chains()[link.next].begin];
            for (int i = 0; i < std::abs(link.corners); ++i) {
                const P3 corner = Corner(link.corners > 0 ? link.firstCorner + i : link.firstCorner - i);
                if (!InOnePlace(corner, exit) && !InOnePlace(corner, entry)) Append(corner);
            }
            chain = link.next;
        }
        Close(pieces);
    }

    static bool InOnePlace(const P3& a, const P3& b) { return a.X() == b.X() && a.Y() == b.Y(); }

    P3 Corner(int number)
    {
        if (!m_Plane) m_Plane.emplace(m_Ring);
        const int side = number % SIDES;
        const double x = side == 1 || side == 2 ? m_Window.MaxX() : m_Window.MinX();
        const double y = side >= 2 ? m_Window.MaxY() : m_Window.MinY();
        return {x, y, m_Plane->HeightAt(x, y)};
    }

    void Append(const P3& p)
    {
        if (!m_Outline.empty() && InOnePlace(m_Outline.back(), p) && m_Outline.back().Z() == p.Z())
            m_Outline.back() = p;
        else
            m_Outline.push_back(p);
    }

    void Close(Pieces& pieces)
    {
        while (m_Outline.size() > 1 && InOnePlace(m_Outline.back(), m_Outline.front())
               && m_Outline.back().Z() == m_Outline.front().Z())
            m_Outline.pop_back();
        if (m_Outline.size() > 1) pieces.emplace_back(std::move(m_Outline));
        m_Outline = {};
    }

    const Extents2D<double>& m_Window;
    const std::vector<P3>& m_Ring;
    const InnerChains& m_Chains;
    std::vector<ChainEnd> m_Ends;
    std::vector<Link> m_Links;
    int m_Surplus = 0;
    std::optional<RingPlane> m_Plane;
    std::vector<P3> m_Outline;
};

} // namespace

ClipResult CutOutline(const Extents2D<double>& window, const std::vector<P3>& ring, Pieces& pieces)
{
    if (!(window.MinX() < window.MaxX() && window.MinY() < window.MaxY())) return Outside;
    if (!std::all_of(ring.begin(), ring.end(), GTL::IsFinite)) {
        std::vector<P3> finite;
        std::copy_if(ring.begin(), ring.end(), std::back_inserter(finite), GTL::IsFinite);
        if (finite.empty()) return Outside;
        const ClipResult result = CutOutline(window, finite, pieces);
        if (result == Inside) pieces.emplace_back(std::move(finite));
        return result == Inside ? Clipped : result;
    }

    const InnerChains chains(window, ring);
    if (chains.RingIsInside()) return Inside;
    BorderJoin join(window, ring, chains);
    if (!chains.Chains().empty()) {
        join.Join(pieces);
    } else {
        const int winding = WindingInsideBorder(ring, window, Side::BOTTOM, window.Center().X());
        if (winding != 0) join.AddWindow(winding > 0, pieces);
    }
    return pieces.empty() ? Outside : Clipped;
}

} // namespace GTL

#include "clip/PolylineClipper.h"

#include "clip/SegmentCut.h"

#include <algorithm>
#include <array>
#include <memory_resource>

namespace GTL {
namespace {

using P3 = Point3D<double>;
using Code = SegmentCut::Code;

bool AreNumbers(const std::vector<P3>& vertices)
{
    return std::none_of(vertices.begin(), vertices.end(),
                        [](const P3& p) { return std::isnan(p.X()) || std::isnan(p.Y()); });
}

/// Walks along a chain and gathers its inner runs. While a vertex is inside, the run ends with it.
class RunWalk {
public:
    RunWalk(const Extents2D<double>& window, std::vector<Polyline<P3>>& runs)
        : m_Cut(window, SegmentCut::Border::BELONGS), m_Runs(runs)
    {
    }

    void Walk(const std::vector<P3>& vertices)
    {
        m_Run.reserve(SHORT_RUN);
        Code codeA = m_Cut.CodeOf(vertices.front());
        if (codeA == 0) m_Run.push_back(vertices.front());
        for (std::size_t i = 1; i < vertices.size(); ++i) {
            const P3& a = vertices[i - 1];
            const P3& b = vertices[i];
            const Code codeB = m_Cut.CodeOf(b);
            if (a.B() != 0 && IsBent(a, b))
                Bent(a, codeA, b, codeB);
            else if ((codeA | codeB) == 0)
                m_Run.push_back(b);
            else if ((codeA & codeB) == 0 || codeA == 0 || codeB == 0)
                Straight(a, codeA, b, codeB);
            codeA = codeB;
        }
        End();
    }

private:
    void Straight(const P3& a, Code codeA, const P3& b, Code codeB)
    {
        SegmentCut::Stretch inside;
        if (!m_Cut.Straight(a, codeA, b, codeB, inside)) {
            if (codeA == 0) End();
            if (codeB == 0) m_Run.push_back(b);
            return;
        }
        if (codeA != 0) m_Run.push_back(m_Cut.PointAt(a, b, inside.from));
        Extend(m_Cut.PointAt(a, b, inside.to));
        if (codeB != 0) End();
    }

    void Bent(const P3& a, Code codeA, const P3& b, Code codeB)
    {
        const BulgeSegment arc(a, b);
        const SegmentCut::Stretches inside = m_Cut.Bent(arc, a, b);
        bool reachesEnd = false;
        if (codeA == 0 && (inside.count == 0 || inside.list[0].from.at > 0)) EndAtVertex();
        for (std::size_t i = 0; i < inside.count; ++i) {
            const SegmentCut::Stretch& stretch = inside.list[i];
            const bool whole = stretch.from.at == 0 && stretch.to.at == 1;
            if (m_Run.empty()) m_Run.push_back(m_Cut.PointAt(arc, stretch.from));
            m_Run.back().B(whole ? a.B() : arc.BulgeBetween(stretch.from.at, stretch.to.at));
            reachesEnd = codeB == 0 && stretch.to.at == 1;
            m_Run.push_back(reachesEnd ? b : m_Cut.PointAt(arc, stretch.to));
            if (!reachesEnd) End();
        }
        if (codeB == 0 && !reachesEnd) m_Run.push_back(b);
    }

    void Extend(const P3& p)
    {
        const bool repeats =
            m_Run.back().X() == p.X() && m_Run.back().Y() == p.Y() && m_Run.back().Z() == p.Z();
        if (repeats)
            m_Run.back() = p;
        else
            m_Run.push_back(p);
    }

    void EndAtVertex()
    {
        m_Run.back().B(0);
        End();
    }

    void End()
    {
        constexpr std::size_t USUAL_RUNS = 4;
        if (m_Run.size() > 1) {
            if (m_Runs.empty()) m_Runs.reserve(USUAL_RUNS);
            m_Runs.emplace_back(std::vector<P3>(m_Run.begin(), m_Run.end()));
        }
        m_Run.clear();
    }

    SegmentCut m_Cut;
    std::vector<Polyline<P3>>& m_Runs;
    // Runs of ordinary length are gathered without asking for memory.
    static constexpr std::size_t SHORT_RUN = 128;
    alignas(P3) std::array<std::byte, SHORT_RUN * sizeof(P3)> m_Buffer;
    std::pmr::monotonic_buffer_resource m_Memory{m_Buffer.data(), m_Buffer.size()};
    std::pmr::vector<P3> m_Run{&m_Memory};
};

} // namespace

template <class P>
ClipResult PolylineClipper<P>::Clip(const Polyline<P>& input, std::vector<Polyline<P>>& output) const
{
    output.clear();
    const ClipResult whole = this->ClassifyBox(BulgedBox(input, false));
    if (whole == Outside || (whole == Inside && (input.IsFinite() || AreNumbers(input.Vertices()))))
        return whole;
    RunWalk(this->Window(), output).Walk(input.Vertices());
    return output.empty() ? Outside : Clipped;
}

template class PolylineClipper<Point3D<double>>;

} // namespace GTL

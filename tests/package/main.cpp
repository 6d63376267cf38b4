// Makes a drawing, writes it, reads it back and looks at it, through the installed library alone.
//   uses_halyard FILE.dxf          exit 0 when everything came back
#include <halyard/clip/CircleClipper.h>
#include <halyard/dxf/DXFFile.h>
#include <halyard/model/DXF.h>
#include <halyard/model/DXFArc.h>
#include <halyard/model/DXFCircle.h>
#include <halyard/model/DXFLine.h>
#include <halyard/model/DXFPolygon.h>
#include <halyard/model/DXFWriter.h>

#include <atomic>
#include <cstdio>
#include <filesystem>

namespace {
const std::atomic<bool> KEEP_GOING{true};

class Counter : public DXFWriter {
public:
    using DXFWriter::Write;
    void Write(const DXFLine&) override { ++m_Lines; }
    void Write(const DXFCircle&) override { ++m_Circles; }
    void Write(const DXFArc&) override { ++m_Arcs; }
    void Write(const DXFPolygon&) override { ++m_Polygons; }

    int m_Lines = 0;
    int m_Circles = 0;
    int m_Arcs = 0;
    int m_Polygons = 0;
};

void Fill(DXF& drawing)
{
    drawing.AddLayer(L"WALLS")->SetColor(DXFColor(1));
    drawing.Add(L"WALLS", new DXFLine({0, 0, 0}, {30, 0, 0}), false);
    drawing.Add(L"WALLS", new DXFLine({30, 0, 0}, {30, 40, 0}), false);
    drawing.Add(L"ROUND", new DXFCircle({10, 10, 0}, 5), true);
    drawing.Add(L"ROUND", new DXFArc({10, 10, 0}, 8, 0, 90), true);
    auto* ring = new DXFPolygon;
    ring->PushBack(0, 0);
    ring->PushBack(4, 0);
    ring->PushBack(4, 3);
    drawing.Add(L"WALLS", ring, false);
}

bool Expect(bool claim, const char* what)
{
    if (!claim) std::fprintf(stderr, "not so: %s\n", what);
    return claim;
}

/// The lower half of a circle, by the clipper itself.
bool CutsCircles()
{
    using P = GTL::Point3D<double>;
    const GTL::Extents2D<double> window({-20, -20}, {20, 0});
    std::vector<GTL::Arc<P>> arcs;
    const GTL::Circle<P> circle({0, 0, 0}, 25);
    const bool isCut = GTL::CircleClipper<P>(window).Clip(circle, arcs) == GTL::Clipped;
    return Expect(isCut, "clippers can be called");
}

bool Holds(DXF& drawing)
{
    Counter counter;
    const GTL::Extents3D<double> box = drawing.Extents();
    drawing.Draw(counter, box, KEEP_GOING);
    bool good = CutsCircles();
    good &= Expect(drawing.NumLayers() == 3, "layers 0, WALLS and ROUND");
    good &= Expect(drawing.HasLayer(L"walls"), "layers are found in any case");
    good &= Expect(counter.m_Lines == 2 && counter.m_Circles == 1, "two lines and a circle");
    good &= Expect(counter.m_Arcs == 1 && counter.m_Polygons == 1, "an arc and a polygon");
    good &= Expect(box.IsValid() && box.MaxX() == 30 && box.MaxY() == 40, "a box of 30 by 40");
    return good;
}
} // namespace

int main(int count, char** arguments)
{
    if (count != 2) return 2;
    const std::wstring file = std::filesystem::path(arguments[1]).wstring();

    DXF drawing;
    Fill(drawing);
    if (!Holds(drawing)) return 1;
    if (!Expect(static_cast<bool>(drawing.Write(file, KEEP_GOING, 0)), "the drawing is written")) return 1;

    DXF again;
    DXFFile reader;
    if (!Expect(static_cast<bool>(reader.Read(file, again, KEEP_GOING, true)), "the file is read")) return 1;
    if (!Expect(reader.Ending() == DXFFile::EOF_OBJECT, "it ends at its EOF object")) return 1;
    if (!Holds(again)) return 1;
    std::puts("the installed library works");
    return 0;
}

// Bytes become a window and entities of all kinds; clipping them must end, leave nothing beyond the window
// where that is promised, and change nothing when it is done again.
#include "clip/DXFClipContext.h"
#include "model/DXF.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/DXFWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using P3 = GTL::Point3D<double>;

const std::atomic<bool> GO = true;

class Bytes {
public:
    Bytes(const std::uint8_t* bytes, std::size_t size) : m_Next(bytes), m_End(bytes + size) {}

    bool Left() const { return m_Next < m_End; }
    unsigned Byte() { return Left() ? *m_Next++ : 0; }
    /// Mostly small numbers with few bits, so that they meet; sometimes any double at all.
    double Number()
    {
        const double value = AnyNumber();
        m_Tame = m_Tame && (value == 0 || (std::abs(value) > 1e-6 && std::abs(value) < 1e6));
        return value;
    }
    /// True while all numbers were such that rounding stays within the tolerance of the clippers.
    bool Tame() const { return m_Tame; }
    double Bulge() { return Byte() % 2 != 0 ? Number() / 8 : 0; }
    P3 Point()
    {
        const double x = Number();
        return {x, Number(), 1};
    }

private:
    double AnyNumber()
    {
        const unsigned kind = Byte();
        if (kind < 200) return int(kind % 50) - 20;
        if (kind < 245) return (int(Byte()) - 128) / 7.0;
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i) bits = bits << 8 | Byte();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    const std::uint8_t* m_Next;
    const std::uint8_t* m_End;
    bool m_Tame = true;
};

template <class Shape>
DXFEntity* MakeShape(Bytes& bytes)
{
    auto* shape = new Shape;
    for (unsigned count = bytes.Byte() % 20; count > 0; --count) {
        P3 p = bytes.Point();
        p.B() = bytes.Bulge();
        shape->PushBack(p);
    }
    return shape;
}

template <class Face>
DXFEntity* MakeFace(Bytes& bytes)
{
    auto* face = new Face;
    for (int corner = 0; corner < 4; ++corner) (*face)[corner] = bytes.Point();
    if (bytes.Byte() % 2 != 0) (*face)[3] = (*face)[2];
    return face;
}

template <class Text>
DXFEntity* MakeText(Bytes& bytes)
{
    auto* text = new Text;
    text->SetText(std::wstring(bytes.Byte() % 9, L'x'));
    text->SetPosition(bytes.Point());
    text->SetSize(static_cast<float>(bytes.Byte()));
    text->SetRotation(bytes.Number());
    return text;
}

DXFEntity* MakeImage(Bytes& bytes)
{
    auto* image = new DXFImage;
    image->SetInsertPoint(bytes.Point());
    image->SetUVector(bytes.Point());
    image->SetVVector(bytes.Point());
    image->SetSize(bytes.Number(), bytes.Number());
    return image;
}

DXFEntity* MakeEntity(Bytes& bytes)
{
    switch (bytes.Byte() % 12) {
    case 0:
        return new DXFPoint(bytes.Point());
    case 1:
        return new DXFLine(bytes.Point(), bytes.Point());
    case 2:
        return MakeShape<DXFPolyline>(bytes);
    case 3:
        return MakeShape<DXFPolygon>(bytes);
    case 4:
        return new DXFCircle(bytes.Point(), bytes.Number());
    case 5:
        return new DXFArc(bytes.Point(), bytes.Number(), bytes.Number() * 9, bytes.Number() * 9);
    case 6:
        return MakeFace<DXFSolid>(bytes);
    case 7:
        return MakeFace<DXF3dFace>(bytes);
    case 8:
        return MakeText<DXFText>(bytes);
    case 9:
        return MakeText<DXFMText>(bytes);
    case 10:
        return MakeImage(bytes);
    default:
        return new DXFInsert(L"B", bytes.Point(), 0);
    }
}

/// Aborts on what must not remain of a clipped drawing.
class Check : public DXFWriter {
public:
    using DXFWriter::Write;
    explicit Check(const DXFClipContext& window) : m_Window(window) {}

    void Write(const DXFInsert&) override { std::abort(); }
    void Write(const DXFPoint& point) override { Inside(point.Point()); }
    void Write(const DXFPolyline& line) override { Vertices(line); }
    void Write(const DXFPolygon& ring) override { Vertices(ring); }
    void Write(const DXFSolid& solid) override
    {
        for (int corner = 0; corner < 4; ++corner) Inside(solid[corner]);
    }

    /// Vertices of chains and rings seen.
    int Seen() const { return m_Seen; }

private:
    void Vertices(const DXFPolyline& shape)
    {
        m_Seen += shape.NumPoints();
        for (int i = 0; i < shape.NumPoints(); ++i) Inside(shape[i]);
    }
    void Inside(const P3& p) const
    {
        const auto within = [](double value, double low, double high) {
            return value >= low - Epsilon(low) && value <= high + Epsilon(high);
        };
        if (!within(p.X(), m_Window.xmin, m_Window.xmax) || !within(p.Y(), m_Window.ymin, m_Window.ymax))
            std::abort();
    }

    const DXFClipContext& m_Window;
    int m_Seen = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes(data, size);
    DXFClipContext window;
    window.xmin = bytes.Number();
    window.ymin = bytes.Number();
    window.xmax = bytes.Byte() % 16 != 0 ? window.xmin + std::abs(bytes.Number()) : bytes.Number();
    window.ymax = bytes.Byte() % 16 != 0 ? window.ymin + std::abs(bytes.Number()) : bytes.Number();

    DXF drawing;
    for (int count = 0; bytes.Left() && count < 64; ++count)
        drawing.Add(bytes.Byte() % 4 != 0 ? L"0" : L"1", MakeEntity(bytes), true);
    if (size % 2 != 0) drawing.Extents();
    DXFLayer shared(L"shared");
    shared = *drawing[0ULL];
    const std::size_t before = shared.NumEntities();

    int seen[2] = {};
    const GTL::Extents2D<double> everything({-INFINITY, -INFINITY}, {INFINITY, INFINITY});
    for (int round = 0; round < 2; ++round) {
        Check check(window);
        drawing.Clip(window, GO);
        for (std::size_t i = 0; i < drawing.NumLayers(); ++i) drawing[i]->Draw(check, everything, GO);
        seen[round] = check.Seen();
    }
    if (bytes.Tame() && seen[0] != seen[1]) std::abort();
    if (shared.NumEntities() != before) std::abort();
    return 0;
}

#include "EntityKind.h"

#include "model/DXFWriter.h"

namespace {

enum KIND : std::size_t {
    POINT,
    LINE,
    SOLID,
    FACE,
    CIRCLE,
    ARC,
    POLYLINE,
    POLYGON,
    TEXT,
    MTEXT,
    INSERT,
    IMAGE
};
static_assert(ENTITY_KINDS[POINT] == "POINT" && ENTITY_KINDS[FACE] == "3DFACE"
              && ENTITY_KINDS[POLYGON] == "POLYGON" && ENTITY_KINDS.size() == IMAGE + 1);

class KindFinder : public DXFWriter {
public:
    std::size_t Kind() const { return m_Kind; }

    void Write(const DXFInsert&) override { m_Kind = INSERT; }
    void Write(const DXF3dFace&) override { m_Kind = FACE; }
    void Write(const DXFImage&) override { m_Kind = IMAGE; }
    void Write(const DXFMText&) override { m_Kind = MTEXT; }
    void Write(const DXFText&) override { m_Kind = TEXT; }
    void Write(const DXFArc&) override { m_Kind = ARC; }
    void Write(const DXFCircle&) override { m_Kind = CIRCLE; }
    void Write(const DXFPolygon&) override { m_Kind = POLYGON; }
    void Write(const DXFPolyline&) override { m_Kind = POLYLINE; }
    void Write(const DXFSolid&) override { m_Kind = SOLID; }
    void Write(const DXFPoint&) override { m_Kind = POINT; }
    void Write(const DXFLine&) override { m_Kind = LINE; }

private:
    std::size_t m_Kind = POINT;
};

} // namespace

std::size_t KindOf(const DXFEntity& entity)
{
    KindFinder finder;
    entity.Write(finder);
    return finder.Kind();
}

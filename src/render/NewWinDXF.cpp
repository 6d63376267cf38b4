#include "render/NewWinDXF.h"

#include "model/DXF.h"
#include "platform/CDC.h"
#include "platform/DeviceOperations.h"
#include "render/DrawnExtents.h"
#include "render/WinDXFDrawer.h"

#include <algorithm>

namespace {

constexpr unsigned long WHITE = 0xFFFFFF;

/// Holds the lock of a document or a layer.
template <class Lockable>
class Hold {
public:
    explicit Hold(const Lockable& lockable) : m_Lockable(lockable) { m_Lockable.Lock(); }
    ~Hold() { m_Lockable.Unlock(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    const Lockable& m_Lockable;
};

/// Touching counts; not-a-number does not overlap.
bool Overlap(const GTL::Extents3D<double>& a, const GTL::Extents2D<double>& b)
{
    return std::min(a.MaxX(), b.MaxX()) >= std::max(a.MinX(), b.MinX())
           && std::min(a.MaxY(), b.MaxY()) >= std::max(a.MinY(), b.MinY());
}

} // namespace

NewWinDXF::NewWinDXF(DXF* document) : m_DXF(document), m_ModifiedID(document->ModifiedID()) {}

NewWinDXF::~NewWinDXF() = default;

void NewWinDXF::SetOption(const DrawingOption& option)
{
    m_NeedsRedraw = m_NeedsRedraw || !(option == m_Option);
    m_Option = option;
}

void NewWinDXF::Draw(CDC* dc, const GTL::Extents2D<double>& extents, const CRect& rect)
{
    if (!dc) return;
    const Hold hold(*m_DXF);
    SetExtents(extents, rect);
    CheckDXFChanges();
    FlagInvisibleNodes();
    CheckNodes();
    if (m_NeedsRedraw) Render(dc);
    const CSize size = DeviceOperations::SizeOf(m_Bitmap);
    if (size.cx == 0) return;
    CDC memory;
    memory.CreateCompatibleDC(dc);
    memory.SelectObject(&m_Bitmap);
    dc->BitBlt(0, 0, size.cx, size.cy, &memory, 0, 0, SRCCOPY);
}

void NewWinDXF::SetExtents(const GTL::Extents2D<double>& extents, const CRect& rect)
{
    if (rect.right <= rect.left || rect.bottom <= rect.top) return;
    if (m_HasExtents && extents == m_Extents && rect.EqualRect(m_Rect)) return;
    m_HasExtents = true;
    m_Extents = extents;
    m_Rect = rect;
    m_NeedsRedraw = true;
}

/// The document may have been touched for an edit of a block, which no layer knows of: its inserts are to be
/// measured anew.
void NewWinDXF::CheckDXFChanges()
{
    if (m_DXF->ModifiedID() == m_ModifiedID) return;
    m_ModifiedID = m_DXF->ModifiedID();
    m_NeedsRedraw = true;
    for (Seen& seen : m_Seen) seen.hasBox = false;
}

/// Layers may have gone without a trace in the document's id (clipping removes them so); what is known of
/// them goes by their places.
void NewWinDXF::FlagInvisibleNodes()
{
    const std::size_t count = m_DXF->NumLayers();
    if (m_Seen.size() != count) m_NeedsRedraw = true;
    m_Seen.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        DXFLayer& layer = *(*m_DXF)[i];
        Seen& seen = m_Seen[i];
        if (seen.layer != &layer) {
            seen = Seen();
            seen.layer = &layer;
            m_NeedsRedraw = true;
        }
        const Hold hold(layer);
        const bool isInView = IsInView(layer, seen);
        if (isInView != seen.isInView) m_NeedsRedraw = true;
        seen.isInView = isInView;
        layer.SetShow(isInView);
    }
}

/// Inserts that compose show their blocks in other places than a layer's own box knows.
bool NewWinDXF::IsInView(const DXFLayer& layer, Seen& seen) const
{
    if (!layer.IsVisible()) return false;
    const GTL::Extents3D<double>& box = layer.Extents();
    if (box.IsValid() && Overlap(box, m_Extents)) return true;
    if (!m_Option.composeInserts && !m_Option.extrusions) return false;
    if (!seen.hasBox || seen.boxId != layer.ModifiedID()) {
        seen.box = DrawnExtents().Of(layer);
        seen.boxId = layer.ModifiedID();
        seen.hasBox = true;
    }
    return seen.box.IsValid() && Overlap(seen.box, m_Extents);
}

void NewWinDXF::CheckNodes()
{
    const auto isStale = [](const Seen& seen) {
        return seen.isInView && (!seen.wasDrawn || seen.layer->ModifiedID() != seen.drawnId);
    };
    if (std::any_of(m_Seen.begin(), m_Seen.end(), isStale)) m_NeedsRedraw = true;
}

void NewWinDXF::Render(CDC* dc)
{
    m_Bitmap.DeleteObject();
    CDC memory;
    memory.CreateCompatibleDC(dc);
    if (m_Bitmap.CreateCompatibleBitmap(dc, m_Rect.Width(), m_Rect.Height())) memory.SelectObject(&m_Bitmap);
    memory.FillSolidRect(m_Rect, m_Option.background.value_or(WHITE));
    WinDXFDrawer drawer(m_Option);
    // A drawer that could not be set up draws nothing that shows.
    (void)drawer.Init(&memory, m_Extents, m_Rect);
    DrawNodes(drawer);
}

void NewWinDXF::DrawNodes(WinDXFDrawer& drawer)
{
    const std::atomic<bool> keepGoing{true};
    for (std::size_t i = 0; i < m_Seen.size(); ++i) {
        DXFLayer& layer = *(*m_DXF)[i];
        const Hold hold(layer);
        Seen& seen = m_Seen[i];
        if (!seen.isInView) continue;
        if (m_Option == DrawingOption())
            layer.Draw(drawer, m_Extents, keepGoing);
        else
            drawer.Draw(layer, keepGoing);
        seen.wasDrawn = true;
        seen.drawnId = layer.ModifiedID();
        layer.SetModId(layer.ModifiedID());
    }
    m_NeedsRedraw = false;
}

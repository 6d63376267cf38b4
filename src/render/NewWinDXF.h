#pragma once

#include "platform/CBitmap.h"
#include "platform/CRect.h"
#include "render/DrawingOption.h"
#include "support/Extents.h"

#include <vector>

class CDC;
class DXF;
class DXFLayer;
class WinDXFDrawer;

/// A view of a drawing that keeps its last picture: a paint costs one copy of it as long as nothing that can
/// be seen has changed. It is drawn anew when the view, the size or place of the rectangle, the document's
/// id, the id of a layer in view, or which layers are in view is another than last time.
///
/// A view belongs to one window and its thread. Other threads may edit the document meanwhile if they take
/// the same locks: the document's, then the layer's. Several views may show one document: each keeps its own
/// record of what it drew.
class HALYARD_API NewWinDXF {
public:
    /// The document is not owned and has to outlive the view.
    explicit NewWinDXF(DXF* document);
    ~NewWinDXF();
    NewWinDXF(const NewWinDXF&) = delete;
    NewWinDXF& operator=(const NewWinDXF&) = delete;

    /// Paints a view of the drawing (drawing units), stretched to the size of the rectangle (pixels), at the
    /// origin of the context whatever the rectangle's own is. A rectangle without width or height paints the
    /// picture of the last time.
    void Draw(CDC* dc, const GTL::Extents2D<double>& extents, const CRect& rect);

    DXF* GetDXF() { return m_DXF; }
    /// The next paint draws anew when the options are others. Their background, or white, fills the picture.
    void SetOption(const DrawingOption& option);
    const DrawingOption& GetOption() const { return m_Option; }

private:
    /// What this view knows of a layer.
    struct Seen {
        const DXFLayer* layer = nullptr;
        bool isInView = false;
        bool wasDrawn = false;
        unsigned int drawnId = 0;
        unsigned int boxId = 0; ///< the layer's id when the box was measured
        bool hasBox = false;
        GTL::Extents3D<double> box;
    };

    void SetExtents(const GTL::Extents2D<double>& extents, const CRect& rect);
    void CheckDXFChanges();
    void FlagInvisibleNodes();
    void CheckNodes();
    void Render(CDC* dc);
    void DrawNodes(WinDXFDrawer& drawer);
    bool IsInView(const DXFLayer& layer, Seen& seen) const;

    DXF* m_DXF;
    unsigned int m_ModifiedID;
    GTL::Extents2D<double> m_Extents;
    CRect m_Rect;
    CBitmap m_Bitmap;
    bool m_NeedsRedraw = true;
    bool m_HasExtents = false;
    DrawingOption m_Option;
    std::vector<Seen> m_Seen; ///< one for each layer, in drawing order
};

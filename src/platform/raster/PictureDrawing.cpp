#include "platform/CDC.h"
#include "platform/picture/PicturePlacement.h"
#include "platform/raster/ContextSystem.h"

bool CDC::DrawPicture(const Picture& picture, const CPoint& upperLeft, const CPoint& upperRight,
                      const CPoint& lowerLeft, bool hasTransparency)
{
    if (!PicturePlacement::IsWhole(picture)) return false;
    const DeviceMapping& mapping = m_System->mapping;
    const PicturePlacement placement(picture, mapping.ToDevice(upperLeft), mapping.ToDevice(upperRight),
                                     mapping.ToDevice(lowerLeft));
    if (placement.IsFlat()) return false;
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);
    for (int y = canvas.clip.top; y < canvas.clip.bottom; ++y) {
        int left = canvas.clip.left;
        int right = canvas.clip.right;
        placement.CutRow(y, left, right);
        canvas.ForSpan(y, left, right, [&](int from, int to) {
            placement.DrawSpan(canvas.At(from, y), y, from, to, hasTransparency);
        });
    }
    return true;
}

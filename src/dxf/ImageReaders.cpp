#include "dxf/ReadState.h"

#include "model/DXFImage.h"
#include "support/NumberText.h"

#include <algorithm>

namespace {

/// Pixel centres lie on whole numbers in the file: a boundary reaches half a pixel beyond them.
constexpr double HALF_PIXEL = 0.5;

std::vector<GTL::Point2D<double>> BoundaryOf(const GroupReader& groups)
{
    std::vector<GTL::Point2D<double>> boundary;
    const auto limit = groups.Has(91) ? static_cast<std::size_t>(std::max(ParseInt(groups.First(91)), 0))
                                      : groups.NumGroups();
    std::size_t x = groups.IndexOf(14);
    std::size_t y = groups.IndexOf(24);
    while (boundary.size() < limit && x != GroupReader::NONE && y != GroupReader::NONE) {
        boundary.emplace_back(ParseDouble(groups.ValueAt(x)), ParseDouble(groups.ValueAt(y)));
        x = groups.NextIndexOf(14, x);
        y = groups.NextIndexOf(24, y);
    }
    return boundary;
}

/// From the corners of the file, half a pixel outside, to the corner pixels.
void UndoHalfPixels(std::vector<GTL::Point2D<double>>& corners)
{
    if (corners.size() != 2) return;
    corners[0] = {corners[0].X() + HALF_PIXEL, corners[0].Y() + HALF_PIXEL};
    corners[1] = {corners[1].X() - HALF_PIXEL, corners[1].Y() - HALF_PIXEL};
}

/// From the file's closed ring, rows counted from the top, to an open one with rows counted from below.
void UndoRing(std::vector<GTL::Point2D<double>>& ring, double height)
{
    if (ring.size() > 1 && ring.front() == ring.back()) ring.erase(ring.begin());
    for (auto& corner : ring) corner.Y(height - corner.Y());
}

/// Loads the file of a definition into an image, once for all images of the definition.
void TakeFile(DXFImage& image, const std::wstring& fileName, const DXFImage* loaded)
{
    const double height = image.Height();
    if (loaded)
        image.ShareFile(*loaded);
    else
        (void)image.SetFileName(fileName);
    if (image.ClipType() != DXFImage::CLIP_POLYGON || image.Height() == height) return;
    auto boundary = image.ClipBoundary();
    for (auto& corner : boundary) corner.Y(corner.Y() + image.Height() - height);
    image.SetClipBoundary(image.ClipType(), std::move(boundary));
}

} // namespace

ErrorString DXFFile::ReadImage(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    P3 points[4];
    for (int base = 0; base < 4; ++base)
        if (ErrorString read = ReadPoint(points[base], base); !read) return read;
    auto image = std::make_unique<DXFImage>();
    image->SetInsertPoint(points[0]);
    image->SetUVector(points[1]);
    image->SetVVector(points[2]);
    image->SetSize(points[3].X(), points[3].Y());
    image->SetDrawingFolder(m_ReadState->folder);
    image->SetLayerName(Widen(m_Reader->First(8)));

    auto boundary = BoundaryOf(*m_Reader);
    const bool polygon = ParseInt(m_Reader->First(71)) == DXFImage::CLIP_POLYGON;
    if (polygon)
        UndoRing(boundary, points[3].Y());
    else
        UndoHalfPixels(boundary);
    image->SetClipBoundary(polygon ? DXFImage::CLIP_POLYGON : DXFImage::CLIP_RECTANGLE, std::move(boundary));
    DXFImage* const waiting = image.get();
    if (AddEntity(document, image.release()))
        m_ReadState->imagesByDefinition.emplace(UpperCase(m_Reader->First(340)), waiting);
    return true;
}

/// Definitions stand behind the images that use them; each image takes the first one of its handle.
ErrorString DXFFile::ReadImageDef(DXF& /*document*/)
{
    const std::wstring fileName = Widen(m_Reader->First(1));
    auto& waiting = m_ReadState->imagesByDefinition;
    const auto [first, last] = waiting.equal_range(UpperCase(m_Reader->First(5)));
    const DXFImage* loaded = nullptr;
    for (auto entry = first; entry != last; ++entry) {
        TakeFile(*entry->second, fileName, loaded);
        loaded = entry->second;
    }
    waiting.erase(first, last);
    return true;
}

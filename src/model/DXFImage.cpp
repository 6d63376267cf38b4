#include "model/DXFImage.h"

#include "model/DXFWriter.h"
#include "platform/FilePath.h"
#include "platform/FileSystem.h"

#include <algorithm>

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;

bool DXFImage::SetFileName(std::wstring name)
{
    m_FileName = std::move(name);
    m_Picture = nullptr;
    m_Extents.Reset();
    const std::wstring slashes = FilePath::WithSlashes(m_FileName);
    const std::wstring places[] = {m_FileName, slashes, FilePath::Join(m_DrawingFolder, slashes),
                                   FilePath::Join(m_DrawingFolder, FilePath::FileName(m_FileName))};
    const auto found = std::find_if(std::begin(places), std::end(places), FileSystem::IsRegularFile);
    if (found == std::end(places)) return false;
    m_Picture = LoadPicture(*found);
    if (!m_Picture) return false;
    m_Width = m_Picture->width;
    m_Height = m_Picture->height;
    return true;
}

void DXFImage::ShareFile(const DXFImage& other)
{
    m_FileName = other.m_FileName;
    m_Picture = other.m_Picture;
    m_Extents.Reset();
    if (!m_Picture) return;
    m_Width = m_Picture->width;
    m_Height = m_Picture->height;
}

void DXFImage::SetInsertPoint(const P3& point)
{
    m_InsertPoint = point;
    m_Extents.Reset();
}

void DXFImage::SetUVector(const P3& u)
{
    m_UVector = u;
    m_Extents.Reset();
}

void DXFImage::SetVVector(const P3& v)
{
    m_VVector = v;
    m_Extents.Reset();
}

void DXFImage::SetSize(double width, double height)
{
    m_Width = width;
    m_Height = height;
    m_Extents.Reset();
}

void DXFImage::SetClipBoundary(CLIPTYPE type, std::vector<P2> boundary)
{
    m_ClipType = type;
    m_ClipBoundary = std::move(boundary);
    m_Extents.Reset();
}

std::vector<P3> DXFImage::Outline() const
{
    std::vector<P2> pixels = {{0, 0}, {m_Width, 0}, {m_Width, m_Height}, {0, m_Height}};
    if (m_ClipType == CLIP_POLYGON && m_ClipBoundary.size() >= 3) pixels = m_ClipBoundary;
    if (m_ClipType == CLIP_RECTANGLE && m_ClipBoundary.size() >= 2) {
        const auto [left, right] = std::minmax(m_ClipBoundary[0].X(), m_ClipBoundary[1].X());
        const auto [top, bottom] = std::minmax(m_ClipBoundary[0].Y(), m_ClipBoundary[1].Y());
        const double low = m_Height - (bottom + 1);
        const double high = m_Height - top;
        pixels = {{left, low}, {right + 1, low}, {right + 1, high}, {left, high}};
    }
    std::vector<P3> outline;
    outline.reserve(pixels.size());
    for (const P2& p : pixels)
        outline.emplace_back(m_InsertPoint.X() + p.X() * m_UVector.X() + p.Y() * m_VVector.X(),
                             m_InsertPoint.Y() + p.X() * m_UVector.Y() + p.Y() * m_VVector.Y(),
                             m_InsertPoint.Z() + p.X() * m_UVector.Z() + p.Y() * m_VVector.Z());
    return outline;
}

DXFImage* DXFImage::Copy() const
{
    return new DXFImage(*this);
}

const wchar_t* DXFImage::Name() const
{
    return L"IMAGE";
}

void DXFImage::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

void DXFImage::Transform(const GTL::Transformation<P3>& t)
{
    m_InsertPoint.Transform(t);
    for (P3* side : {&m_UVector, &m_VVector}) {
        const GTL::Vector3D<double> image = t.ApplyLinear({side->X(), side->Y(), side->Z()});
        *side = P3(image.X(), image.Y(), image.Z(), side->B());
    }
    m_Extents.Reset();
}

const GTL::Extents3D<double>& DXFImage::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    for (const P3& corner : Outline()) m_Extents.Update(corner);
    return m_Extents;
}

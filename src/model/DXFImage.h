#pragma once

#include "model/DXFEntity.h"
#include "platform/Picture.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A raster picture from a file, placed in the drawing. Pixel coordinates (u, v), v counted upwards from the
/// lower edge, map to the drawing as insertion point + u U + v V.
class HALYARD_API DXFImage : public DXFEntity {
public:
    /// Kinds of clip boundary, with the numbers of the DXF format.
    enum CLIPTYPE { CLIP_RECTANGLE = 1, CLIP_POLYGON = 2 };

    /// As the drawing gave it.
    const std::wstring& FileName() const { return m_FileName; }
    /// Takes the name and loads the picture: from the name as it stands, then from the drawing's folder,
    /// backslashes taken as separators. Sets the size in pixels from the picture. False when there is no
    /// picture to load; the size then stays as it was and the name is kept all the same.
    bool SetFileName(std::wstring name);
    /// Where the drawing lies, so that names beside it are found. Set before SetFileName.
    void SetDrawingFolder(const std::wstring& folder) { m_DrawingFolder = folder; }
    /// Takes name and picture of another image that has loaded the same file.
    void ShareFile(const DXFImage& other);
    /// The loaded picture; null when there is none. Shared between copies.
    const std::shared_ptr<const Picture>& GetPicture() const { return m_Picture; }

    const GTL::Point3D<double>& InsertPoint() const { return m_InsertPoint; }
    void SetInsertPoint(const GTL::Point3D<double>& point);
    /// Width of one pixel along a row, and height of one pixel along a column, as vectors in drawing units.
    const GTL::Point3D<double>& UVector() const { return m_UVector; }
    void SetUVector(const GTL::Point3D<double>& u);
    const GTL::Point3D<double>& VVector() const { return m_VVector; }
    void SetVVector(const GTL::Point3D<double>& v);
    /// Size in pixels.
    double Width() const { return m_Width; }
    double Height() const { return m_Height; }
    void SetSize(double width, double height);

    CLIPTYPE ClipType() const { return m_ClipType; }
    /// A rectangle: its two corner pixels, rows counted from the top, both inclusive. A polygon: its corners
    /// in pixel coordinates (u, v), v counted upwards, the first not repeated.
    const std::vector<GTL::Point2D<double>>& ClipBoundary() const { return m_ClipBoundary; }
    void SetClipBoundary(CLIPTYPE type, std::vector<GTL::Point2D<double>> boundary);
    /// What is visible of the picture, in drawing coordinates: the clip boundary's corners, or those of the
    /// whole picture when the boundary has too few (2 for a rectangle, 3 for a polygon).
    std::vector<GTL::Point3D<double>> Outline() const;

    /// Percentages as the DXF format has them: brightness and contrast 0 to 100 (50 is neutral), fade 0 to
    /// 100.
    int Brightness() const { return m_Brightness; }
    void SetBrightness(int brightness) { m_Brightness = brightness; }
    int Contrast() const { return m_Contrast; }
    void SetContrast(int contrast) { m_Contrast = contrast; }
    int Fade() const { return m_Fade; }
    void SetFade(int fade) { m_Fade = fade; }

    /// Name of the layer that holds the image; writers keep it up to date.
    const std::wstring& LayerName() const { return m_LayerName; }
    void SetLayerName(const std::wstring& name) { m_LayerName = name; }
    /// Handles of the definition and of the reactor in the file being written; hexadecimal.
    const std::wstring& DefinitionHandle() const { return m_DefinitionHandle; }
    void SetDefinitionHandle(const std::wstring& handle) { m_DefinitionHandle = handle; }
    const std::wstring& ReactorHandle() const { return m_ReactorHandle; }
    void SetReactorHandle(const std::wstring& handle) { m_ReactorHandle = handle; }
    /// For the host's bookkeeping; no file holds it.
    std::uint64_t DefinitionId() const { return m_DefinitionId; }
    void SetDefinitionId(std::uint64_t id) { m_DefinitionId = id; }

    DXFImage* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    /// The vectors follow the linear part of the map.
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    /// Box of the outline.
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    std::wstring m_FileName;
    std::wstring m_DrawingFolder;
    std::shared_ptr<const Picture> m_Picture;
    GTL::Point3D<double> m_InsertPoint;
    GTL::Point3D<double> m_UVector{1, 0, 0};
    GTL::Point3D<double> m_VVector{0, 1, 0};
    double m_Width = 0;
    double m_Height = 0;
    CLIPTYPE m_ClipType = CLIP_RECTANGLE;
    int m_Brightness = 50;
    int m_Contrast = 50;
    int m_Fade = 0;
    std::vector<GTL::Point2D<double>> m_ClipBoundary;
    std::wstring m_LayerName;
    std::wstring m_DefinitionHandle;
    std::wstring m_ReactorHandle;
    std::uint64_t m_DefinitionId = 0;
    mutable GTL::Extents3D<double> m_Extents;
};

#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <list>
#include <string>

/// The definition of a raster image in the OBJECTS section of a DXF file: one for each distinct file. Not an
/// entity; made and owned by the DXF writer.
class HALYARD_API DXFImageDef {
public:
    DXFImageDef() = default;
    DXFImageDef(const DXFImageDef&) = default;
    DXFImageDef& operator=(const DXFImageDef&) = default;
    virtual ~DXFImageDef() = default;

    std::uint64_t m_Id = 0; ///< copied from the image
    std::wstring m_FileName;
    std::wstring m_Handle = L"0"; ///< hexadecimal
    double m_Width = 0;           ///< pixels
    double m_Height = 0;          ///< pixels
    double m_PixelSizeU = 0;
    double m_PixelSizeV = 0;
    std::list<std::wstring> m_Reactors; ///< handles of the reactors of all images that use the definition
};

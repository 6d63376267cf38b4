#pragma once

#include <memory>
#include <string>

#include "platform/Export.h"
#include "platform/Font.h"
#include "platform/GdiConstants.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// A font in one size and direction. One that holds nothing draws as a context's first font does: the
/// replacement face that FindFont gives for an empty name, cell height 16, level.
class HALYARD_API CFont {
public:
    /// Cell height of the first font of a context, in logical units.
    static constexpr int FIRST_HEIGHT = 16;

    CFont() = default;
    virtual ~CFont() = default;

    /// `height` in logical units: above 0 the height of the cell (ascent and descent of the font), below 0
    /// that of the em, 0 the first font's. `escapement` is the direction of the base line in tenths of a
    /// degree: counter-clockwise on the screen from "to the right" while the y axis points down, clockwise
    /// where a context's axes turn y up (the compatible graphics mode). A weight from FW_SEMIBOLD on takes
    /// the bold face. The face is found as FindFont finds it.
    ///
    /// Without effect where the device is software: width (glyphs have the width of the face), orientation
    /// (glyphs follow the escapement, as the compatible graphics mode has it), charset, precisions, quality,
    /// pitch. On Windows they are GDI's. False, and no font, for a null face name.
    [[nodiscard]] bool CreateFontW(int height, int width, int escapement, int orientation, int weight,
                                   bool italic, bool underline, bool strikeOut, int charset, int outPrecision,
                                   int clipPrecision, int quality, int pitch, const wchar_t* faceName);

    /// Leaves a font that holds nothing. False when it held nothing before.
    bool DeleteObject();

    bool IsCreated() const { return m_Face != nullptr; }
    /// The face, also of a font that holds nothing.
    const FontFace& Face() const;
    int Height() const { return m_Height; }
    /// Tenths of a degree, 0 <= e < 3600.
    int Escapement() const { return m_Escapement; }
    bool IsUnderlined() const { return m_IsUnderlined; }
    bool IsStruckOut() const { return m_IsStruckOut; }
    /// What the system draws with (see SystemObjects); null for a font that holds nothing.
    const std::shared_ptr<void>& Handle() const { return m_Handle; }

private:
    const FontFace* m_Face = nullptr;
    int m_Height = FIRST_HEIGHT;
    int m_Escapement = 0;
    bool m_IsUnderlined = false;
    bool m_IsStruckOut = false;
    std::shared_ptr<void> m_Handle;
};

#endif

#pragma once

#include "platform/Export.h"
#include "support/Angle.h"

#include <string>

/// Attributes of a text.
class HALYARD_API TextInfo {
public:
    /// Which point of the text's rectangle lies on its position.
    enum JUSTIFICATION : int {
        BOTTOM_LEFT = 0,
        BOTTOM_CENTER = 1,
        BOTTOM_RIGHT = 2,
        MIDDLE_RIGHT = 3,
        TOP_RIGHT = 4,
        TOP_CENTER = 5,
        TOP_LEFT = 6,
        MIDDLE_LEFT = 7,
        MIDDLE_CENTER = 8,
        BASELINE_LEFT = 9,
        BASELINE_CENTER = 10,
        BASELINE_RIGHT = 11,
    };
    /// Bits of the style.
    enum STYLE : int { REGULAR = 0, BOLD = 1, ITALIC = 2, UNDERLINE = 4 };

    TextInfo() = default;
    TextInfo(const TextInfo&) = default;
    TextInfo(TextInfo&&) = default;
    TextInfo& operator=(const TextInfo&) = default;
    TextInfo& operator=(TextInfo&&) = default;
    virtual ~TextInfo() = default;

    /// Font name as the drawing carries it; may be empty.
    const std::wstring& Font() const { return m_Font; }
    /// Height of a capital letter in drawing units.
    float Size() const { return m_Size; }
    /// Clockwise from +x.
    const Angle& Rotation() const { return m_Rotation; }
    JUSTIFICATION Justification() const { return m_Justification; }
    /// Device colour word 0x00BBGGRR.
    unsigned long Color() const { return m_Color; }
    STYLE Style() const { return m_Style; }
    bool MultiLine() const { return m_MultiLine; }
    /// Width in drawing units at which multi-line text wraps; 0 for none.
    float RectWidth() const { return m_RectWidth; }

    void SetFont(const std::wstring& font) { m_Font = font; }
    void SetSize(float size) { m_Size = size; }
    void SetRotation(const Angle& rotation) { m_Rotation = rotation; }
    void SetJustification(JUSTIFICATION justification) { m_Justification = justification; }
    void SetColor(unsigned long color) { m_Color = color; }
    void SetStyle(STYLE style) { m_Style = style; }
    void SetMultiLine(bool multiLine) { m_MultiLine = multiLine; }
    void SetRectWidth(float width) { m_RectWidth = width; }

    /// From a DXF pair of horizontal (72) and vertical (73) justification: 73 = 0 gives 9/10/11, 1 gives
    /// 0/1/2, 2 gives 7/8/3, 3 gives 6/5/4 for 72 = 0/1/2; 72 = 4 gives 8; 72 = 3 and 5 count as 0, and so do
    /// other values.
    void FromAcadJust(int h, int v);
    /// The pair back; 8 gives (1, 2).
    int AcadHJust() const;
    int AcadVJust() const;
    /// From an MTEXT attachment point, 1 to 9 row by row from top-left to bottom-right; other values change
    /// nothing.
    void AcadAttachmentPoint(int point);
    /// The attachment point back; 9, 10 and 11 give 7, 8 and 9.
    int AcadAttachmentPoint() const;
    /// The reference point of a text rectangle (see GTL::Rectangle) that lies on the position: 0 to 8, or -1
    /// for a justification that has none.
    int ReferencePoint() const;
    /// The GDI text alignment of the justification: a horizontal flag (left 0, right 2, centre 6) plus a
    /// vertical one (top 0, bottom 8, baseline 24); the middle row, for which GDI has none, takes baseline.
    unsigned int WinAlignment() const;

    bool operator==(const TextInfo& other) const = default;

private:
    std::wstring m_Font;
    Angle m_Rotation;
    unsigned long m_Color = 0;
    float m_Size = 0;
    float m_RectWidth = 0;
    JUSTIFICATION m_Justification = BOTTOM_LEFT;
    STYLE m_Style = REGULAR;
    bool m_MultiLine = false;
};

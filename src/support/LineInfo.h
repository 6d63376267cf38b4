#pragma once

/// Attributes of a line: style, width in drawing units, colour 0x00BBGGRR.
class LineInfo {
public:
    enum LINESTYLE : int { CONTINUOUS = 0, DASHED = 1, DOT = 2, DASHDOT = 3 };

    LineInfo() = default;
    LineInfo(LINESTYLE style, float width, unsigned long color)
        : m_Style(style), m_Width(width), m_Color(color)
    {
    }

    LINESTYLE Style() const { return m_Style; }
    float Width() const { return m_Width; }
    unsigned long Color() const { return m_Color; }
    void SetStyle(LINESTYLE style) { m_Style = style; }
    void SetWidth(float width) { m_Width = width; }
    void SetColor(unsigned long color) { m_Color = color; }

    bool operator==(const LineInfo&) const = default;

private:
    LINESTYLE m_Style = CONTINUOUS;
    float m_Width = 0.1F;
    unsigned long m_Color = 1;
};

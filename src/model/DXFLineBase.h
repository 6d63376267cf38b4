#pragma once

#include "model/DXFEntity.h"
#include "support/LineInfo.h"

#include <string>

/// An entity drawn with a line: adds its style and width.
class HALYARD_API DXFLineBase : public DXFEntity {
public:
    /// A LineInfo::LINESTYLE, or any other value as a file gave it.
    int Style() const { return m_Style; }
    void SetStyle(int style) { m_Style = style; }
    /// Width in drawing units.
    float Width() const { return m_Width; }
    void SetWidth(float width) { m_Width = width; }
    /// The style's name: "CONTINUOUS", "DASHED", "DOT" or "DASHDOT".
    std::wstring StyleStr() const;
    /// By name, without regard to case; an unknown name is dashed.
    void SetStyleStr(const std::wstring& name);
    /// Style, width and colour together.
    LineInfo GetInfo() const;
    void SetInfo(const LineInfo& info);

protected:
    DXFLineBase() = default;
    DXFLineBase(LineInfo::LINESTYLE style, double width) : m_Style(style), m_Width(static_cast<float>(width))
    {
    }
    DXFLineBase(const DXFLineBase&) = default;
    DXFLineBase& operator=(const DXFLineBase&) = default;

private:
    int m_Style = LineInfo::CONTINUOUS;
    float m_Width = 0;
};

#include "model/DXFLineBase.h"

#include "support/LineStyle.h"

std::wstring DXFLineBase::StyleStr() const
{
    return LineStyleName(m_Style);
}

void DXFLineBase::SetStyleStr(const std::wstring& name)
{
    m_Style = LineStyleOf(name);
}

LineInfo DXFLineBase::GetInfo() const
{
    return LineInfo(static_cast<LineInfo::LINESTYLE>(m_Style), m_Width, Color());
}

void DXFLineBase::SetInfo(const LineInfo& info)
{
    m_Style = info.Style();
    m_Width = info.Width();
    SetColor(info.Color());
}

#include "model/TextEntity.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

using P3 = GTL::Point3D<double>;

std::vector<std::wstring> TextEntity::s_FontTable;

namespace {

/// Finds entries of the font table without walking through it. The table belongs to the host, who may change
/// it: every hit is compared with the table, and a table of another length is taken in anew.
class FontIndex {
public:
    bool Holds(const std::wstring& font)
    {
        if (IsEntry(m_Last, font)) return true;
        if (m_Known != TextEntity::s_FontTable.size()) Rebuild();
        const auto found = m_Places.find(Folded(font));
        if (found == m_Places.end()) return false;
        m_Last = found->second;
        if (IsEntry(m_Last, font)) return true;
        Rebuild();
        return m_Places.contains(Folded(font));
    }

    void Append(const std::wstring& font)
    {
        m_Last = TextEntity::s_FontTable.size();
        TextEntity::s_FontTable.push_back(font);
        m_Places.emplace(Folded(font), m_Last);
        m_Known = TextEntity::s_FontTable.size();
    }

private:
    static bool IsEntry(std::size_t place, const std::wstring& font)
    {
        return place < TextEntity::s_FontTable.size() && icompareW(TextEntity::s_FontTable[place], font);
    }

    static std::wstring Folded(std::wstring text)
    {
        for (wchar_t& c : text)
            if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - L'a' + L'A');
        return text;
    }

    void Rebuild()
    {
        m_Places.clear();
        for (std::size_t i = 0; i < TextEntity::s_FontTable.size(); ++i)
            m_Places.emplace(Folded(TextEntity::s_FontTable[i]), i);
        m_Known = TextEntity::s_FontTable.size();
    }

    std::unordered_map<std::wstring, std::size_t> m_Places;
    std::size_t m_Known = 0;
    std::size_t m_Last = 0;
};

/// A number beyond the range of single precision is brought to its border.
float Single(double value)
{
    constexpr double BORDER = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -BORDER, BORDER));
}

} // namespace

void TextEntity::SetText(const std::wstring& text)
{
    m_Text = text;
    m_Extents.Reset();
}

void TextEntity::SetPosition(const P3& position)
{
    m_Position = position;
    m_Extents.Reset();
}

void TextEntity::SetTextInfo(const TextInfo& info)
{
    m_Info = info;
    SetColor(info.Color());
    UpdateFontTable();
    m_Extents.Reset();
}

void TextEntity::SetRotation(double degrees)
{
    m_Info.SetRotation(Angle(degrees));
    m_Extents.Reset();
}

void TextEntity::SetSize(float size)
{
    m_Info.SetSize(size);
    m_Extents.Reset();
}

void TextEntity::SetJustification(TextInfo::JUSTIFICATION justification)
{
    m_Info.SetJustification(justification);
    m_Extents.Reset();
}

void TextEntity::SetClipExtents(const GTL::Extents3D<double>& box)
{
    m_ClipExtents = box;
    m_Extents = box;
}

void TextEntity::UpdateExtents() const
{
    const TextRectComp::Rect rectangle = PlacedRectangle();
    m_Extents.Reset();
    for (std::size_t corner = 0; corner < 4; ++corner)
        m_Extents.Update(rectangle[corner].X(), rectangle[corner].Y(), 0);
}

TextRectComp::Rect TextEntity::PlacedRectangle() const
{
    TextRectComp::Rect rectangle = Measure();
    const int reference = m_Info.ReferencePoint();
    if (reference >= 0) rectangle.MoveTo(reference, m_Position);
    return rectangle;
}

void TextEntity::Transform(const GTL::Transformation<P3>& t)
{
    m_Position.Transform(t);
    m_Extents.Reset();
    const double s = m_Info.Rotation().Sin();
    const double c = m_Info.Rotation().Cos();
    const GTL::Vector3D<double> base = t.ApplyLinear({c, -s, 0});
    const GTL::Vector3D<double> up = t.ApplyLinear({s, c, 0});
    const double along = std::hypot(base.X(), base.Y());
    if (along > 0) m_Info.SetRotation(Angle(std::atan2(-base.Y(), base.X()) * MATH::RTD));
    const double across =
        along > 0 ? std::abs(base.X() * up.Y() - base.Y() * up.X()) / along : std::hypot(up.X(), up.Y());
    m_Info.SetSize(Single(m_Info.Size() * across));
    m_Info.SetRectWidth(Single(m_Info.RectWidth() * along));
}

const GTL::Extents3D<double>& TextEntity::Extents() const
{
    if (!m_Extents.IsValid()) UpdateExtents();
    return m_Extents;
}

void TextEntity::UpdateFontTable() const
{
    static FontIndex index;
    const std::wstring& font = m_Info.Font();
    if (!font.empty() && !index.Holds(font)) index.Append(font);
}

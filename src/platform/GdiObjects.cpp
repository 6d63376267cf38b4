#include <algorithm>
#include <cstdlib>
#include <limits>

#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CFont.h"
#include "platform/CPen.h"
#include "platform/SystemObjects.h"

namespace {
int Magnitude(int v)
{
    constexpr int HIGHEST = std::numeric_limits<int>::max();
    return v < -HIGHEST ? HIGHEST : std::abs(v);
}
} // namespace

bool CPen::CreatePen(int style, int width, unsigned long color)
{
    DeleteObject();
    if (style < PS_SOLID || style > PS_INSIDEFRAME) return false;
    m_Style = style;
    m_Width = Magnitude(width);
    m_Color = color & 0xFFFFFF;
    m_IsCreated = true;
    if (SystemObjects::MakePen(*this, m_Handle)) return true;
    DeleteObject();
    return false;
}

bool CPen::CreateGeometricPen(int style, int width, unsigned long color, const int* pattern, int count)
{
    DeleteObject();
    const int line = style & PS_STYLE_MASK;
    const bool isPatterned = line == PS_USERSTYLE;
    if ((style & PS_GEOMETRIC) == 0 || width < 1) return false;
    if (!isPatterned && line != PS_SOLID && line != PS_NULL) return false;
    if (isPatterned && (!pattern || count < 1 || count > static_cast<int>(MAX_PATTERN))) return false;
    const std::span<const int> lengths(pattern, isPatterned ? static_cast<std::size_t>(count) : 0);
    if (std::any_of(lengths.begin(), lengths.end(), [](int length) { return length < 0; })) return false;
    if (isPatterned && std::all_of(lengths.begin(), lengths.end(), [](int length) { return length == 0; }))
        return false;

    m_IsGeometric = true;
    m_Style = line;
    m_Width = width;
    m_Color = color & 0xFFFFFF;
    std::copy(lengths.begin(), lengths.end(), m_Pattern.begin());
    m_PatternCount = lengths.size();
    m_IsCreated = true;
    if (SystemObjects::MakePen(*this, m_Handle)) return true;
    DeleteObject();
    return false;
}

bool CPen::DeleteObject()
{
    const bool wasCreated = m_IsCreated;
    m_IsCreated = false;
    m_IsGeometric = false;
    m_Style = PS_SOLID;
    m_Width = 1;
    m_Color = 0;
    m_PatternCount = 0;
    m_Handle = nullptr;
    return wasCreated;
}

bool CBrush::CreateSolidBrush(unsigned long color)
{
    DeleteObject();
    m_Color = color & 0xFFFFFF;
    m_IsCreated = SystemObjects::MakeBrush(*this, m_Handle);
    if (!m_IsCreated) DeleteObject();
    return m_IsCreated;
}

bool CBrush::DeleteObject()
{
    const bool wasCreated = m_IsCreated;
    m_Color = 0xFFFFFF;
    m_IsCreated = false;
    m_Handle = nullptr;
    return wasCreated;
}

bool CFont::CreateFontW(int height, int width, int escapement, int orientation, int weight, bool italic,
                        bool underline, bool strikeOut, int charset, int outPrecision, int clipPrecision,
                        int quality, int pitch, const wchar_t* faceName)
{
    constexpr int TURN = 3600;
    DeleteObject();
    if (!faceName) return false;
    const int cell = height == 0 ? FIRST_HEIGHT : height;
    const FontWish wish{cell,      width,   escapement,   orientation,   weight,  italic, underline,
                        strikeOut, charset, outPrecision, clipPrecision, quality, pitch,  faceName};
    if (!SystemObjects::MakeFont(wish, m_Handle)) return false;
    m_Face = &FindFont(faceName, weight >= FW_SEMIBOLD, italic);
    m_Height = cell;
    m_Escapement = (escapement % TURN + TURN) % TURN;
    m_IsUnderlined = underline;
    m_IsStruckOut = strikeOut;
    return true;
}

bool CFont::DeleteObject()
{
    const bool wasCreated = IsCreated();
    *this = CFont();
    return wasCreated;
}

const FontFace& CFont::Face() const
{
    static const FontFace& s_First = FindFont({}, false, false);
    return m_Face ? *m_Face : s_First;
}

bool CBitmap::CreateBitmap(int width, int height)
{
    DeleteObject();
    if (width < 1 || height < 1 || width > MAX_SIDE || height > MAX_SIDE) return false;
    const std::int64_t count = std::int64_t{width} * height;
    if (count > MAX_PIXELS) return false;
    if (!SystemObjects::MakeBitmap(width, height, m_Handle, m_Pixels)) return false;
    m_Width = width;
    m_Height = height;
    return true;
}

bool CBitmap::CreateCompatibleBitmap(CDC* /*dc*/, int width, int height)
{
    return CreateBitmap(width, height);
}

bool CBitmap::DeleteObject()
{
    const bool wasCreated = IsCreated();
    m_Handle = nullptr;
    m_Pixels = nullptr;
    m_Width = 0;
    m_Height = 0;
    return wasCreated;
}

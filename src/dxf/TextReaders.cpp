#include "dxf/ReadState.h"

#include "model/DXFMText.h"
#include "model/DXFText.h"
#include "support/NumberText.h"

#include <cmath>

namespace {

constexpr wchar_t DEGREE_SIGN = 0x00B0;
constexpr wchar_t PLUS_MINUS_SIGN = 0x00B1;

/// Letters and signs that reach below the base line.
constexpr std::wstring_view DESCENDERS = L"qyp[]{}|gj;,@$()_";

/// "%%d" becomes the degree sign and "%%p" the plus-minus sign, in either case; other sequences stay.
void ReplaceSymbols(std::wstring& text)
{
    std::size_t to = text.find(L"%%");
    if (to == std::wstring::npos) return;
    for (std::size_t from = to; from < text.size(); ++to) {
        const wchar_t sign =
            text.compare(from, 2, L"%%") == 0 && from + 2 < text.size() ? text[from + 2] : L'\0';
        const bool degree = sign == L'd' || sign == L'D';
        const bool plusMinus = sign == L'p' || sign == L'P';
        text[to] = degree ? DEGREE_SIGN : plusMinus ? PLUS_MINUS_SIGN : text[from];
        from += degree || plusMinus ? 3 : 1;
    }
    text.resize(to);
}

/// All code 3 values in order, then the code 1 value.
std::wstring MTextContent(const GroupReader& groups)
{
    std::wstring text;
    for (std::size_t i = groups.IndexOf(3); i != GroupReader::NONE; i = groups.NextIndexOf(3, i))
        text += Widen(groups.ValueAt(i));
    return text += Widen(groups.First(1));
}

/// The font of the first font switch in upper case; empty when there is none that ends.
std::wstring FontOfSwitch(const std::wstring& text)
{
    const std::size_t start = std::min(text.find(L"\\F"), text.find(L"\\f"));
    if (start == std::wstring::npos) return {};
    const std::size_t end = text.find_first_of(L".\\;", start + 2);
    if (end == std::wstring::npos) return {};
    std::wstring font = text.substr(start + 2, end - start - 2);
    for (wchar_t& c : font)
        if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - L'a' + L'A');
    return font;
}

/// Newer releases (2018) append what they know of columns as an object of its own that follows this code. It
/// uses the codes of the text over again: its 11 and 21 are a place.
constexpr int EMBEDDED_OBJECT = 101;

/// Angle of a text: of its direction vector, turned to clockwise; without one the number of code 50 as it
/// stands.
Angle MTextRotation(const GroupReader& groups)
{
    if (!groups.HasBefore(11, EMBEDDED_OBJECT) || !groups.HasBefore(21, EMBEDDED_OBJECT))
        return Angle(ParseDouble(groups.First(50)));
    return Angle(-std::atan2(ParseDouble(groups.First(21)), ParseDouble(groups.First(11))) * MATH::RTD);
}

/// Horizontal justifications (72) of a text between two points: its height follows from its length, or its
/// width does.
constexpr int ALIGNED = 3;
constexpr int FITTED = 5;

/// Sets a text between its position and the end of its base line. A width of letters is not held: a fitted
/// text that is too long becomes lower instead, and one that is too short stays so.
void Fit(TextEntity& text, const GTL::Point3D<double>& end, bool aligned)
{
    const double dx = end.X() - text.Position().X();
    const double dy = end.Y() - text.Position().Y();
    const double room = std::hypot(dx, dy);
    TextInfo info = text.GetTextInfo();
    info.SetJustification(TextInfo::BASELINE_LEFT);
    info.SetRotation(Angle());
    text.SetTextInfo(info);
    const double length = text.Extents().MaxX() - text.Extents().MinX();
    if (!(room > 0 && length > 0) || !std::isfinite(room / length)) return;
    info.SetRotation(Angle(-std::atan2(dy, dx) * MATH::RTD));
    const double ratio = aligned ? room / length : std::min(room / length, 1.0);
    info.SetSize(static_cast<float>(std::min(info.Size() * ratio, 1e30)));
    text.SetTextInfo(info);
}

} // namespace

ErrorString DXFFile::ReadText(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8, 40}); !verified) return verified;
    const int horizontal = ParseInt(m_Reader->First(72));
    const int vertical = ParseInt(m_Reader->First(73));
    const bool aligned = (horizontal != 0 || vertical != 0) && m_Reader->Has(11);
    const bool fits =
        m_FitsTexts && aligned && vertical == 0 && (horizontal == ALIGNED || horizontal == FITTED);
    P3 position;
    if (ErrorString read = ReadPoint(position, aligned && !fits ? 1 : 0); !read) return read;

    auto text = std::make_unique<DXFText>();
    ReadColor(text.get(), document);
    std::wstring content = Widen(m_Reader->First(1));
    ReplaceSymbols(content);
    TextInfo info;
    info.SetColor(text->Color());
    info.FromAcadJust(horizontal, vertical);
    info.SetRotation(Angle(-ParseDouble(m_Reader->First(50))));
    if (m_Reader->Has(7)) info.SetFont(Widen(m_Reader->First(7)));
    info.SetSize(FloatOf(m_Reader->First(40)));
    text->SetText(std::move(content));
    text->SetPosition(position);
    text->SetTextInfo(std::move(info));
    if (fits) {
        P3 end;
        if (ErrorString read = ReadPoint(end, 1); !read) return read;
        Fit(*text, end, horizontal == ALIGNED);
    }
    AddEntity(document, Mapped(std::move(text), MapToWorld()).release());
    return true;
}

ErrorString DXFFile::ReadMText(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    P3 position;
    if (ErrorString read = ReadPoint(position, 0); !read) return read;

    auto text = std::make_unique<DXFMText>();
    ReadColor(text.get(), document);
    std::wstring content = MTextContent(*m_Reader);
    const std::wstring font = FontOfSwitch(content);
    ReplaceSymbols(content);
    TextInfo info;
    info.SetFont(font.empty() ? L"COURIER" : font);
    info.SetColor(text->Color());
    info.SetRotation(MTextRotation(*m_Reader));
    if (m_Reader->HasBefore(71, EMBEDDED_OBJECT)) info.AcadAttachmentPoint(ParseInt(m_Reader->First(71)));
    if (info.Justification() == TextInfo::BOTTOM_LEFT && !font.empty()
        && content.find_first_of(DESCENDERS) != std::wstring::npos)
        info.SetJustification(TextInfo::BASELINE_LEFT);
    info.SetSize(FloatOf(m_Reader->First(40)));
    info.SetRectWidth(FloatOf(m_Reader->First(41)));
    info.SetMultiLine(info.RectWidth() != 0);
    text->SetText(std::move(content));
    text->SetPosition(position);
    text->SetTextInfo(std::move(info));
    if (ErrorString read = ReadTextBox(*text); !read) return read;
    AddEntity(document, text.release());
    return true;
}

/// The writer keeps the box of an MTEXT in a comment "YES" with its lower corner at base 7 and its upper at
/// base 8.
ErrorString DXFFile::ReadTextBox(TextEntity& text)
{
    if (m_Reader->First(999) != "YES") return true;
    P3 low;
    P3 high;
    if (ErrorString read = ReadPoint(low, 7); !read) return read;
    if (ErrorString read = ReadPoint(high, 8); !read) return read;
    GTL::Extents3D<double> box;
    box.Update(low);
    box.Update(high);
    text.SetClipExtents(box);
    return true;
}

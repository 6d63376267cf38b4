#include "Recognition.h"

#include "platform/FilePath.h"
#include "platform/InputFile.h"

#include <algorithm>
#include <cstdint>

using namespace std::string_view_literals;

namespace {

struct Signature {
    std::string_view bytes;
    const wchar_t* complaint;
};

constexpr wchar_t BINARY_DXF[] = L"binary DXF is not supported; save it as text DXF";
constexpr wchar_t DWG[] = L"a DWG drawing is not supported; save it as text DXF";
constexpr wchar_t UTF_16[] = L"text in UTF-16 is not supported; save it as ordinary text DXF";
constexpr wchar_t ARCHIVE[] = L"is a packed archive, not a drawing; unpack it first";

/// The published first bytes of files that people take for drawings, or mix up with them.
constexpr Signature SIGNATURES[] = {
    {"AutoCAD Binary DXF"sv, BINARY_DXF},
    {"AC1."sv, DWG},
    {"AC2."sv, DWG},
    {"AC10"sv, DWG},
    {"MC0.0"sv, DWG},
    {"\x89PNG"sv, L"is a PNG picture, not a drawing"},
    {"\xFF\xD8\xFF"sv, L"is a JPEG picture, not a drawing"},
    {"GIF8"sv, L"is a GIF picture, not a drawing"},
    {"II*\0"sv, L"is a TIFF picture, not a drawing"},
    {"MM\0*"sv, L"is a TIFF picture, not a drawing"},
    {"8BPS"sv, L"is a PSD picture, not a drawing"},
    {"RIFF"sv, L"is a sound, video or WebP file, not a drawing"},
    {"%PDF"sv, L"is a PDF document, not a drawing"},
    {"%!PS"sv, L"is a PostScript document, not a drawing"},
    {"{\\rtf"sv, L"is a text document, not a drawing"},
    {"\xD0\xCF\x11\xE0"sv, L"is an office document, not a drawing"},
    {"PK\3\4"sv, ARCHIVE},
    {"\x1F\x8B"sv, ARCHIVE},
    {"BZh"sv, ARCHIVE},
    {"\xFD"
     "7zXZ"sv,
     ARCHIVE},
    {"7z\xBC\xAF"sv, ARCHIVE},
    {"Rar!"sv, ARCHIVE},
    {"\x7F"
     "ELF"sv,
     L"is a program, not a drawing"},
    {"MZ"sv, L"is a program, not a drawing"},
    {"<?xml"sv, L"is an XML file (perhaps an SVG picture), not a drawing"},
    {"<svg"sv, L"is an SVG picture, not a drawing"},
    {"<!DOCTYPE"sv, L"is a web page, not a drawing"},
    {"<html"sv, L"is a web page, not a drawing"},
    {"\xFF\xFE"sv, UTF_16},
    {"\xFE\xFF"sv, UTF_16},
};

/// Plot files begin with so much of "HALYARD PLOT FILE" in UTF-16.
constexpr std::string_view PLOT_MAGIC("H\0A\0L\0Y\0A\0R\0D\0 \0P", 17);
constexpr std::string_view UTF_8_MARK = "\xEF\xBB\xBF"sv;

/// "BM", the size of the file, then four bytes that are reserved and 0.
bool IsBmp(std::string_view bytes)
{
    return bytes.starts_with("BM") && bytes.substr(0, 10).ends_with("\0\0\0\0"sv);
}

/// The length that a 3DS chunk states behind its id.
std::uint32_t ChunkLength(std::string_view chunk)
{
    std::uint32_t length = 0;
    for (std::size_t i = 6; i-- > 2;) length = length << 8 | static_cast<unsigned char>(chunk[i]);
    return length;
}

/// A main chunk and in it any chunk that fits. One of those that stand there in most files is enough, so that
/// a file that is cut or states a wrong length is known too; but where the length could be the mark of TIFF,
/// with a place in the file behind it, both are asked for.
bool Is3ds(std::string_view bytes)
{
    constexpr std::size_t HEADER_SIZE = 6;
    constexpr std::string_view CHILDREN[] = {"\x02\0"sv, "=="sv,       ">="sv,    "\0\x40"sv,
                                             "\0\x41"sv, "\xFF\xAF"sv, "\0\xB0"sv};
    if (!bytes.starts_with("MM") || bytes.size() < HEADER_SIZE) return false;
    const std::string_view child = bytes.substr(HEADER_SIZE);
    const bool isKnown = std::any_of(std::begin(CHILDREN), std::end(CHILDREN),
                                     [child](auto id) { return child.starts_with(id); });
    const std::uint32_t length = ChunkLength(bytes);
    const bool fits = child.size() >= HEADER_SIZE && length >= HEADER_SIZE
                      && ChunkLength(child) >= HEADER_SIZE && ChunkLength(child) <= length - HEADER_SIZE;
    if (bytes.starts_with("MM\0*"sv)) return isKnown && fits;
    // Read as lengths, the words of a text could fit.
    return child.empty() || isKnown
           || (fits && bytes.substr(0, 2 * HEADER_SIZE).find('\0') != std::string_view::npos);
}

/// Every second byte of the first few is 0: text in two bytes a character without a mark.
bool LooksLikeUtf16(std::string_view bytes)
{
    constexpr std::size_t LOOK = 8;
    if (bytes.size() < LOOK) return false;
    for (const std::size_t zero : {std::size_t{0}, std::size_t{1}}) {
        bool alternates = true;
        for (std::size_t i = 0; i < LOOK; ++i)
            alternates = alternates && (bytes[i] == '\0') == (i % 2 == zero);
        if (alternates) return true;
    }
    return false;
}

std::string_view Trim(std::string_view line)
{
    constexpr std::string_view BLANKS = " \t\r\f\v";
    const std::size_t first = line.find_first_not_of(BLANKS);
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(BLANKS) - first + 1);
}

bool IsInteger(std::string_view line)
{
    line = Trim(line);
    if (line.starts_with('-') || line.starts_with('+')) line.remove_prefix(1);
    return !line.empty() && line.find_first_not_of("0123456789") == std::string_view::npos;
}

/// A drawing's text is pairs of lines, and the first of each pair is an integer. One damaged line makes no
/// other file of it, so most of the first pairs decide.
bool HasGroupPairs(std::string_view text)
{
    constexpr int MAX_PAIRS = 32;
    int pairs = 0;
    int integers = 0;
    while (pairs < MAX_PAIRS && !text.empty()) {
        const std::size_t codeEnd = text.find('\n');
        const std::size_t valueEnd =
            codeEnd == std::string_view::npos ? codeEnd : text.find('\n', codeEnd + 1);
        if (valueEnd == std::string_view::npos && pairs > 0) break;
        ++pairs;
        integers += IsInteger(text.substr(0, codeEnd)) ? 1 : 0;
        if (valueEnd == std::string_view::npos) break;
        text.remove_prefix(valueEnd + 1);
    }
    return integers * 2 > pairs;
}

Recognition Refuse(const wchar_t* complaint)
{
    return {std::nullopt, complaint};
}

Recognition FindModel(MODEL model, const wchar_t* complaint)
{
    return {std::nullopt, complaint, model};
}

Recognition FindSketchUp()
{
    return FindModel(MODEL::SKETCHUP,
                     L"is a SketchUp model, not a drawing; 'halyard convert' makes one of it");
}

/// Whose bytes tell no kind of file.
Recognition RefuseUnknown(const wchar_t* complaint)
{
    return {std::nullopt, complaint, std::nullopt, true};
}

Recognition RefuseUnknown(std::string_view bytes)
{
    if (bytes.find('\0') != std::string_view::npos)
        return RefuseUnknown(L"is not a drawing of a kind that Halyard reads");
    if (bytes.find('\n') == std::string_view::npos && bytes.find('\r') != std::string_view::npos)
        return RefuseUnknown(L"lines that end with CR alone are not supported; save it with CR LF or LF");
    return RefuseUnknown(L"is text, but not a DXF drawing");
}

} // namespace

Recognition Recognize(std::string_view bytes)
{
    if (bytes.empty()) return RefuseUnknown(L"the file is empty");
    if (bytes.starts_with(PLOT_MAGIC)) return {FORMAT::PLOT, {}};
    if (Is3ds(bytes))
        return FindModel(MODEL::IN_3DS, L"is a 3DS model, not a drawing; 'halyard convert' makes one of it");
    if (bytes.starts_with("\xFF\xFE\xFF"sv)) return FindSketchUp();
    for (const Signature& signature : SIGNATURES)
        if (bytes.starts_with(signature.bytes)) return Refuse(signature.complaint);
    if (IsBmp(bytes)) return Refuse(L"is a BMP picture, not a drawing");
    if (LooksLikeUtf16(bytes)) return Refuse(UTF_16);

    std::string_view text = bytes.substr(0, RECOGNITION_LENGTH);
    if (text.starts_with(UTF_8_MARK)) text.remove_prefix(UTF_8_MARK.size());
    const std::size_t start = text.find_first_not_of(" \t\r\n\f\v");
    if (start == std::string_view::npos) return RefuseUnknown(L"the file holds nothing but blanks");
    // Blank lines before the first code are passed over; blanks of its own line do not matter.
    if (HasGroupPairs(text.substr(start))) return {FORMAT::DXF, {}};
    return RefuseUnknown(text);
}

Recognition RecognizeFile(const std::wstring& file)
{
    InputFile input;
    if (!input.Open(file)) return Refuse(input.Reason().c_str());
    std::string bytes(RECOGNITION_LENGTH, '\0');
    bytes.resize(input.Read(bytes.data(), bytes.size()));
    if (input.Failed()) return Refuse(input.Reason().c_str());
    const Recognition found = Recognize(bytes);
    // The format is not published, and the library that reads it may know other files than those of now.
    if (found.isUnknown && FilePath::SameText(FilePath::Extension(file), L"skp")) return FindSketchUp();
    return found;
}

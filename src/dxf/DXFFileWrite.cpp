#include "dxf/DXFFile.h"

#include "dxf/FixedGroup.h"
#include "dxf/WriterText.h"
#include "model/FetchAhead.h"
#include "platform/FilePath.h"
#include "support/NumberText.h"

#include <array>
#include <cstring>

namespace {

/// The last handle before the first that is given out.
constexpr int HANDLES_START = 2000;
/// Handles of the objects that every file has: "C", "D", "1B" and "1C".
constexpr std::array FIXED_HANDLES{0xC, 0xD, 0x1B, 0x1C};
/// Digits of the largest handle.
constexpr std::size_t HANDLE_MAX_LENGTH = 8;
/// Characters that the header keeps free for the handle seed.
constexpr std::size_t SEED_LENGTH = 7;
/// Room for a group code and two line ends.
constexpr std::size_t CODE_ROOM = INT_MAX_LENGTH + 4;
/// Entities between two marks of progress.
constexpr std::uint64_t PROGRESS_STEP = 1024;

char* AppendLineEnd(char* out)
{
    out[0] = '\r';
    out[1] = '\n';
    return out + 2;
}

/// Codes of two digits, which are nearly all, go the short way.
char* AppendCode(char* out, int code)
{
    if (code < 10 || code > 99) return AppendLineEnd(FormatInt(out, code));
    out[0] = static_cast<char>('0' + code / 10);
    out[1] = static_cast<char>('0' + code % 10);
    return AppendLineEnd(out + 2);
}

char* AppendReal(char* out, int code, double value)
{
    return AppendLineEnd(FormatFixed6(AppendCode(out, code), value));
}

/// Lower-case hexadecimal digits; the handle is above 0.
char* FormatHandle(char* out, int handle)
{
    char digits[HANDLE_MAX_LENGTH];
    char* first = digits + HANDLE_MAX_LENGTH;
    for (unsigned rest = static_cast<unsigned>(handle); rest != 0; rest >>= 4)
        *--first = "0123456789abcdef"[rest & 0xF];
    const auto length = static_cast<std::size_t>(digits + HANDLE_MAX_LENGTH - first);
    std::memcpy(out, first, length);
    return out + length;
}

std::size_t Length(const char* first, const char* end)
{
    return static_cast<std::size_t>(end - first);
}

} // namespace

ErrorString DXFFile::Write(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing)
{
    ResetWriter();
    PrepareImages(document);
    if (ErrorString e = OpenWrite(fileName); !e) return e;
    WriteHeader(document);
    WriteClasses();
    WriteTables(document);
    WriteBlocks();
    WriteEntities(document, keepGoing);
    WriteObjects();
    WriteBegin(L"EOF");
    WriteHandleSeed();
    m_Output.Close();
    return true;
}

/// Everything but the handles in use, which stay so that no number is given out twice by one DXFFile.
void DXFFile::ResetWriter()
{
    for (const int handle : FIXED_HANDLES) m_Handles.Add(handle);
    m_HandleCounter = HANDLES_START;
    m_PendingObjects.clear();
    m_ImageDefs.clear();
    m_RasterVariables = m_ImageDictionary = 0;
    m_StyleName.clear();
    m_StyleFont.clear();
    m_LastColorIndex = -1;
    m_Done.store(0, std::memory_order_relaxed);
    m_Total.store(0, std::memory_order_relaxed);
}

ErrorString DXFFile::OpenWrite(const std::wstring& fileName)
{
    if (m_Output.Open(fileName)) return true;
    ErrorString error(Message::ErrorOpeningFile);
    error << FilePath::FileName(fileName) << Message::ForWriting;
    return error;
}

void DXFFile::WriteEntities(const DXF& document, const std::atomic<bool>& keepGoing)
{
    WriteGroups("0\r\nSECTION\r\n2\r\nENTITIES\r\n");
    std::uint64_t written = 0;
    for (std::size_t i = 0; i < document.NumLayers() && keepGoing.load(std::memory_order_relaxed); ++i) {
        const DXFLayer& layer = *document[i];
        SetCurrentLayer(layer.Name());
        const std::size_t count = layer.NumEntities();
        for (std::size_t k = 0; k < count && keepGoing.load(std::memory_order_relaxed); ++k) {
            FetchAhead(layer, k, count);
            WriteEntity(*layer[k]);
            if (++written % PROGRESS_STEP == 0) m_Done.store(written, std::memory_order_relaxed);
        }
    }
    m_Done.store(written, std::memory_order_relaxed);
    WriteGroups("0\r\nENDSEC\r\n");
}

/// An image writes everything behind its name itself; so an insert, which writes nothing, leaves its bare
/// header.
void DXFFile::WriteEntity(DXFEntity& entity)
{
    WriteBegin(entity.Name());
    if (!ImageOf(entity)) {
        WriteHandle();
        WriteGroups(m_CurrentLayer);
        WriteColor(ColorIndex(entity.Color()));
        WriteColor(entity.Color());
    }
    entity.Write(*this);
}

/// Puts the first handle that no record uses into the place that the header kept free.
void DXFFile::WriteHandleSeed()
{
    char digits[HANDLE_MAX_LENGTH];
    const std::size_t length = Length(digits, FormatHandle(digits, TakeHandle()));
    if (length > SEED_LENGTH) return;
    std::string group = "5\r\n" + std::string(SEED_LENGTH - length, ' ');
    group.append(digits, length);
    // What goes wrong here the output keeps, as everywhere.
    static_cast<void>(m_Output.PatchAt(m_HandleSeedPosition, group.data(), group.size()));
}

int DXFFile::TakeHandle()
{
    m_HandleCounter = m_Handles.NextFree(m_HandleCounter);
    m_Handles.Add(m_HandleCounter);
    return m_HandleCounter;
}

std::wstring DXFFile::GetFreeHandle()
{
    return HandleText(TakeHandle());
}

std::wstring DXFFile::HandleText(int handle)
{
    char digits[HANDLE_MAX_LENGTH];
    return {digits, FormatHandle(digits, handle)};
}

/// Readers demand a name of every entity's layer: an empty one is written as "_".
const std::wstring& DXFFile::WrittenLayerName(const std::wstring& name)
{
    static const std::wstring s_Nameless = L"_";
    return name.empty() ? s_Nameless : name;
}

void DXFFile::SetCurrentLayer(const std::wstring& name)
{
    m_CurrentLayer = "8\r\n";
    AppendName(m_CurrentLayer, WrittenLayerName(name));
    m_CurrentLayer += "\r\n";
}

void DXFFile::WriteGroups(std::span<const FixedGroup> groups)
{
    for (const FixedGroup& group : groups) {
        if (group.code == NEW_HANDLE.code) {
            WriteHandle();
            continue;
        }
        char code[CODE_ROOM];
        m_Output.Write(code, Length(code, AppendCode(code, group.code)));
        WriteGroups(group.value);
        WriteGroups("\r\n");
    }
}

void DXFFile::WriteReal(int code, double value)
{
    char* const room = m_Output.Reserve(CODE_ROOM + FIXED6_MAX_LENGTH);
    m_Output.Commit(Length(room, AppendReal(room, code, value)));
}

void DXFFile::WriteInteger(int code, long long value)
{
    char* const room = m_Output.Reserve(CODE_ROOM + INT_MAX_LENGTH);
    m_Output.Commit(Length(room, AppendLineEnd(FormatInt(AppendCode(room, code), value))));
}

void DXFFile::WriteText(int code, std::wstring_view text)
{
    char* const room = m_Output.Reserve(CODE_ROOM + LONGEST_LINE);
    m_Output.Commit(Length(room, AppendLineEnd(FormatText(AppendCode(room, code), text))));
}

void DXFFile::WriteName(int code, std::wstring_view name)
{
    char* const room = m_Output.Reserve(CODE_ROOM + LONGEST_LINE);
    m_Output.Commit(Length(room, AppendLineEnd(FormatName(AppendCode(room, code), name))));
}

void DXFFile::WriteHandle()
{
    WriteHandle(5, TakeHandle());
}

void DXFFile::WriteHandle(int code, int handle)
{
    char* const room = m_Output.Reserve(CODE_ROOM + HANDLE_MAX_LENGTH);
    m_Output.Commit(Length(room, AppendLineEnd(FormatHandle(AppendCode(room, code), handle))));
}

void DXFFile::WritePoint(const P3& point, int index)
{
    char* const room = m_Output.Reserve(3 * (CODE_ROOM + FIXED6_MAX_LENGTH));
    char* out = AppendReal(room, 10 + index, point.X());
    out = AppendReal(out, 20 + index, point.Y());
    out = AppendReal(out, 30 + index, point.Z());
    m_Output.Commit(Length(room, out));
}

/// The true colour beside an index, when the export mode asks for it.
void DXFFile::WriteColor(unsigned long color)
{
    if (m_ExportMode > 0) WriteInteger(420, static_cast<long long>(SwapRedBlue(color)));
}

/// Entities that follow one another mostly have one colour.
int DXFFile::ColorIndex(unsigned long color)
{
    if (m_LastColorIndex < 0 || m_LastColor != color) {
        m_LastColor = color;
        m_LastColorIndex = DXFColor(color).Index();
    }
    return m_LastColorIndex;
}

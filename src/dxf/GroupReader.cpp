#include "dxf/GroupReader.h"

#include "support/NumberText.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

/// The first line feed in [p, end), or end. Up to 15 bytes behind the end may be read.
const char* FindLineFeed(const char* p, const char* end)
{
#ifdef __SSE2__
    const __m128i lineFeed = _mm_set1_epi8('\n');
    for (; p < end; p += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, lineFeed)));
        if (hits != 0) return std::min(p + std::countr_zero(hits), end);
    }
    return end;
#else
    const void* hit = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
    return hit ? static_cast<const char*>(hit) : end;
#endif
}

bool IsLightweightPolyline(std::string_view name)
{
    static constexpr std::string_view NAME = "LWPOLYLINE";
    return name.size() == NAME.size()
           && std::equal(name.begin(), name.end(), NAME.begin(), [](char a, char b) {
                  return a == b || (a >= 'a' && a <= 'z' && a - 'a' + 'A' == b);
              });
}

} // namespace

bool GroupReader::Open(const std::wstring& fileName)
{
    Close();
    if (!m_File.Open(fileName)) return false;
    m_Capacity = BLOCK;
    m_Buffer = std::make_unique<char[]>(m_Capacity + PADDING);
    m_Next = m_End = m_Object = m_Buffer.get();
    m_FileEnded = false;
    return true;
}

void GroupReader::Close()
{
    Finish();
    m_NumLineEnds = m_NumCrLf = 0;
    m_LongLine = 0;
}

void GroupReader::Finish()
{
    m_File.Close();
    m_Buffer.reset();
    m_Next = m_End = m_Object = nullptr;
    m_FileEnded = true;
    m_Eof = m_Fail = false;
    m_Line = -1;
    m_NameLength = 0;
    m_Groups = {};
    ++m_ObjectNumber;
}

int GroupReader::Line() const
{
    return static_cast<int>(std::min<std::int64_t>(m_Line, INT_MAX));
}

std::string_view GroupReader::ReadLine()
{
    ++m_Line;
    if (m_Eof || m_Fail) {
        m_Fail = true;
        return {};
    }
    if (static_cast<std::size_t>(m_End - m_Next) < LINE_ROOM && !m_FileEnded) Refill();
    const char* line = m_Next;
    const auto atHand = static_cast<std::size_t>(m_End - m_Next);
    const char* limit = line + std::min(atHand, MAX_LINE + 2);
    const char* lineFeed = FindLineFeed(line, limit);
    auto length = static_cast<std::size_t>(lineFeed - line);
    if (lineFeed == limit) {
        if (length > MAX_LINE) return FailLine(line);
        m_Eof = true;
        m_Fail = length == 0;
        m_Next = m_End;
        return {line, length};
    }
    ++m_NumLineEnds;
    if (length > 0 && line[length - 1] == '\r') {
        --length;
        ++m_NumCrLf;
    }
    if (length > MAX_LINE) return FailLine(line);
    m_Next += lineFeed + 1 - line;
    return {line, length};
}

std::string_view GroupReader::FailLine(const char* line)
{
    m_Fail = true;
    m_LongLine = Line();
    m_Next += MAX_LINE;
    return {line, MAX_LINE};
}

void GroupReader::Refill()
{
    GrowOrCompact();
    const auto room = m_Capacity - static_cast<std::size_t>(m_End - m_Buffer.get());
    const std::size_t count = m_File.Read(m_End, room);
    m_End += count;
    m_FileEnded = count < room;
    std::memset(m_End, 0, PADDING);
}

void GroupReader::GrowOrCompact()
{
    const auto kept = static_cast<std::size_t>(m_End - m_Object);
    const auto cut = static_cast<std::size_t>(m_Next - m_Object);
    if (kept * 2 <= m_Capacity) {
        std::memmove(m_Buffer.get(), m_Object, kept);
    } else {
        m_Capacity *= 2;
        auto larger = std::make_unique_for_overwrite<char[]>(m_Capacity + PADDING);
        std::memcpy(larger.get(), m_Object, kept);
        m_Buffer = std::move(larger);
    }
    m_Object = m_Buffer.get();
    m_Next = m_Object + cut;
    m_End = m_Object + kept;
}

void GroupReader::StartObject()
{
    m_Groups.clear();
    if (++m_ObjectNumber == 0) {
        m_Marks.fill({});
        m_ObjectNumber = 1;
    }
    m_Object = m_Next;
    m_NameLength = 0;
    m_PendingBulgeOffset = NO_BULGE;
}

GroupReader::Status GroupReader::ReadObject(int maxCode)
{
    StartObject();
    const std::string_view name = ReadLine();
    if (name.empty() && (m_Fail || m_Eof)) return Status::NO_NAME;
    m_NameLength = name.size();
    const bool lightweight = IsLightweightPolyline(name);
    bool vertexSeen = false;
    while (!m_Eof) {
        int code = 0;
        if (!ReadCode(code)) {
            if (!m_Eof) return Status::NO_CODE;
            m_Fail = false;
            --m_Line;
            break;
        }
        if (code == 0) break;
        if (code > maxCode) {
            m_Code = code;
            return Status::BAD_CODE;
        }
        const std::string_view value = ReadLine();
        if (value.empty() && (m_Fail || m_Eof)) return Status::NO_VALUE;
        if (lightweight && code == 42) {
            m_PendingBulgeOffset = static_cast<std::size_t>(value.data() - m_Object);
            m_PendingBulgeLength = static_cast<std::uint32_t>(value.size());
            continue;
        }
        if (lightweight && code == 10) {
            if (vertexSeen) StoreBulge();
            vertexSeen = true;
        }
        Store(code, value);
    }
    if (lightweight) StoreBulge();
    return m_Fail ? Status::IO_ERROR : Status::OK;
}

/// False when the stream failed. A line that is just a small number, which nearly all are, is read in place.
bool GroupReader::ReadCode(int& code)
{
    if (static_cast<std::size_t>(m_End - m_Next) < LINE_ROOM && !m_FileEnded) Refill();
    const char* p = m_Next;
    for (int blanks = 0; blanks < 6 && *p == ' '; ++blanks) ++p;
    unsigned value = 0;
    const char* digits = p;
    for (; p - digits < 5 && static_cast<unsigned char>(*p - '0') < 10; ++p)
        value = value * 10 + static_cast<unsigned>(*p - '0');
    const bool crLf = *p == '\r' && p[1] == '\n';
    if (p > digits && (crLf || *p == '\n') && p < m_End && !m_Eof && !m_Fail) {
        ++m_Line;
        ++m_NumLineEnds;
        m_NumCrLf += crLf;
        m_Next += p + (crLf ? 2 : 1) - m_Next;
        code = static_cast<int>(value);
        return true;
    }
    const std::string_view line = ReadLine();
    code = ParseInt(line);
    return !(line.empty() && (m_Fail || m_Eof));
}

void GroupReader::Store(int code, std::string_view value)
{
    if (static_cast<unsigned>(code) < NUM_MARKS) {
        Mark& mark = m_Marks[static_cast<std::size_t>(code)];
        if (mark.object != m_ObjectNumber)
            mark = {m_ObjectNumber, static_cast<std::uint32_t>(m_Groups.size())};
    }
    m_Groups.push_back(
        {static_cast<std::size_t>(value.data() - m_Object), static_cast<std::uint32_t>(value.size()), code});
}

void GroupReader::StoreBulge()
{
    Mark& mark = m_Marks[42];
    if (mark.object != m_ObjectNumber) mark = {m_ObjectNumber, static_cast<std::uint32_t>(m_Groups.size())};
    m_Groups.push_back({m_PendingBulgeOffset, m_PendingBulgeLength, 42});
    m_PendingBulgeOffset = NO_BULGE;
}

#pragma once

#include "plot/PlotRecords.h"

#include <limits>

/// What visits the records of a plot file (see PlotRecords.h).
namespace PlotRecords {

constexpr bool WIDE_IS_UTF16 = sizeof(wchar_t) == sizeof(char16_t);
constexpr unsigned long FIRST_BEYOND_16_BITS = 0x10000;
constexpr unsigned long LAST_CHARACTER = 0x10FFFF;

/// Code units of UTF-16 that a character takes. What is no character counts as U+FFFD.
inline std::size_t UnitsOf(wchar_t c)
{
    const auto code = static_cast<unsigned long>(c);
    return !WIDE_IS_UTF16 && code >= FIRST_BEYOND_16_BITS && code <= LAST_CHARACTER ? 2 : 1;
}

inline std::size_t UnitsOf(std::wstring_view text)
{
    std::size_t units = 0;
    for (const wchar_t c : text) units += UnitsOf(c);
    return units;
}

/// Counts the bytes of a record.
class Measure {
public:
    static constexpr std::int32_t Version() { return VERSION; }
    std::uint64_t Bytes() const { return m_Bytes; }

    template <class... Fields>
    void operator()(const Fields&... fields)
    {
        (Add(fields), ...);
    }

private:
    template <Number T>
    void Add(const T&)
    {
        m_Bytes += sizeof(T);
    }
    void Add(const bool&) { m_Bytes += 1; }
    void Add(const Color&) { m_Bytes += sizeof(std::uint32_t); }
    void Add(const P3&) { m_Bytes += POINT_SIZE; }
    void Add(const std::wstring_view& text)
    {
        m_Bytes += sizeof(std::int32_t) + sizeof(char16_t) * std::uint64_t{UnitsOf(text)};
    }
    void Add(const std::span<const P3>& points)
    {
        m_Bytes += sizeof(std::int32_t) + POINT_SIZE * std::uint64_t{points.size()};
    }
    void Add(const std::span<const P2>& pairs)
    {
        m_Bytes += sizeof(std::int32_t) + PAIR_SIZE * std::uint64_t{pairs.size()};
    }
    template <class Record>
    void Add(const Record& record)
    {
        Record::Visit(*this, record);
    }

    std::uint64_t m_Bytes = 0;
};

/// Writes records. Holds the place in the output's buffer and gives it back at its end.
class Put {
public:
    explicit Put(PlotOutput& output) : m_Output(output), m_Next(output.Next()), m_End(output.End()) {}
    ~Put() { m_Output.SetNext(m_Next); }
    Put(const Put&) = delete;
    Put& operator=(const Put&) = delete;

    static constexpr std::int32_t Version() { return VERSION; }

    template <class... Fields>
    void operator()(const Fields&... fields)
    {
        (Add(fields), ...);
    }

private:
    /// No member's address leaves this object, so that the place stays in a register over many small fields.
    void Bytes(const void* bytes, std::size_t count)
    {
        if (count > static_cast<std::size_t>(m_End - m_Next)) {
            m_Next = m_Output.Overflow(m_Next, bytes, count);
            return;
        }
        if (count == 0) return;
        std::memcpy(m_Next, bytes, count);
        m_Next += count;
    }

    template <Number T>
    void Add(const T& value)
    {
        Bytes(&value, sizeof(T));
    }
    void Add(const bool& flag)
    {
        const char byte = flag ? 1 : 0;
        Bytes(&byte, 1);
    }
    void Add(const Color& color) { Add(static_cast<std::uint32_t>(color.device & 0xFFFFFF)); }
    void Add(const P3& point)
    {
        static_assert(sizeof(P3) == POINT_SIZE);
        Bytes(&point, POINT_SIZE);
    }
    /// What is no character becomes U+FFFD; halves of pairs stay.
    static unsigned long Character(wchar_t c)
    {
        constexpr unsigned long REPLACEMENT = 0xFFFD;
        const auto code = static_cast<unsigned long>(c);
        if (WIDE_IS_UTF16) return code & 0xFFFF;
        return code <= LAST_CHARACTER ? code : REPLACEMENT;
    }
    void Unit(unsigned long unit)
    {
        const auto narrow = static_cast<char16_t>(unit);
        Bytes(&narrow, sizeof narrow);
    }
    /// A record that would not fit into 32 bits has been refused before, so counts do.
    void Count(std::size_t count) { Add(static_cast<std::int32_t>(count)); }
    void Add(const std::wstring_view& text)
    {
        const std::size_t units = UnitsOf(text);
        Count(units);
        const bool hasPairs = units != text.size();
        if (!hasPairs && units <= static_cast<std::size_t>(m_End - m_Next) / sizeof(char16_t)) {
            char* next = m_Next;
            for (const wchar_t c : text) {
                const auto unit = static_cast<char16_t>(Character(c));
                std::memcpy(next, &unit, sizeof unit);
                next += sizeof unit;
            }
            m_Next = next;
            return;
        }
        for (const wchar_t c : text) {
            unsigned long code = Character(c);
            if (code >= FIRST_BEYOND_16_BITS) {
                code -= FIRST_BEYOND_16_BITS;
                Unit(0xD800 + (code >> 10));
                code = 0xDC00 + (code & 0x3FF);
            }
            Unit(code);
        }
    }
    void Add(const std::span<const P3>& points)
    {
        Count(points.size());
        Bytes(points.data(), points.size_bytes());
    }
    void Add(const std::span<const P2>& pairs)
    {
        static_assert(sizeof(P2) == PAIR_SIZE);
        Count(pairs.size());
        Bytes(pairs.data(), pairs.size_bytes());
    }
    template <class Record>
    void Add(const Record& record)
    {
        Record::Visit(*this, record);
    }

    PlotOutput& m_Output;
    char* m_Next;
    char* const m_End;
};

/// Reads records. After a failure of the input, which is asked once at the end of a record, fields keep what
/// they have.
class Take {
public:
    Take(PlotInput& input, std::int32_t version) : m_Input(input), m_Version(version) {}

    std::int32_t Version() const { return m_Version; }

    template <class... Fields>
    void operator()(Fields&... fields)
    {
        (Get(fields), ...);
    }

private:
    template <Number T>
    void Get(T& value)
    {
        (void)m_Input.Take(&value, sizeof(T));
    }
    void Get(bool& flag)
    {
        char byte = 0;
        Get1(byte);
        flag = byte != 0;
    }
    void Get1(char& byte) { (void)m_Input.Take(&byte, 1); }
    void Get(Color& color)
    {
        std::uint32_t word = 0;
        Get(word);
        if (m_Version >= FIRST_WITH_DEVICE_COLORS)
            color.device = word & 0xFFFFFF;
        else
            color.device = DXFColor(static_cast<int>(word)); // what is no index counts as 0
    }
    void Get(P3& point)
    {
        double values[POINT_SIZE / sizeof(double)] = {};
        (void)m_Input.Take(values, sizeof values);
        point = P3(values[0], values[1], values[2]);
    }
    /// A count of items of this size. One that the bytes left cannot hold, or a negative one, fails.
    std::size_t Count(std::size_t itemSize)
    {
        std::int32_t count = 0;
        Get(count);
        if (count >= 0 && static_cast<std::uint64_t>(count) <= m_Input.Left() / itemSize)
            return static_cast<std::size_t>(count);
        m_Input.Fail();
        return 0;
    }
    /// Hands over the values of so many items, as they come.
    template <class Value, std::size_t N, class Use>
    void Items(std::size_t count, const Use& use)
    {
        while (count > 0) {
            std::size_t items = 0;
            const char* run = m_Input.TakeRun(N * sizeof(Value), count, items);
            if (!run) return;
            for (std::size_t i = 0; i < items; ++i) {
                Value values[N];
                std::memcpy(values, run + i * sizeof values, sizeof values);
                use(values);
            }
            count -= items;
        }
    }
    void Get(std::wstring& text)
    {
        const std::size_t units = Count(sizeof(char16_t));
        text.resize(units);
        wchar_t* const begin = text.data();
        wchar_t* next = begin;
        Items<char16_t, 1>(units, [&next, begin](const char16_t(&unit)[1]) {
            const bool isSecond = !WIDE_IS_UTF16 && (unit[0] & 0xFC00) == 0xDC00 && next != begin;
            if (isSecond && (static_cast<unsigned long>(next[-1]) & ~0x3FFUL) == 0xD800)
                next[-1] = static_cast<wchar_t>(FIRST_BEYOND_16_BITS
                                                + ((static_cast<unsigned long>(next[-1]) & 0x3FF) << 10)
                                                + (unit[0] & 0x3FFU));
            else
                *next++ = static_cast<wchar_t>(unit[0]);
        });
        text.resize(static_cast<std::size_t>(next - begin));
    }
    void Get(std::vector<P3>& points)
    {
        const std::size_t count = Count(POINT_SIZE);
        points.reserve(count);
        Items<double, 4>(count, [&points](const double(&v)[4]) { points.emplace_back(v[0], v[1], v[2]); });
    }
    void Get(std::vector<P2>& pairs)
    {
        const std::size_t count = Count(PAIR_SIZE);
        pairs.reserve(count);
        Items<double, 2>(count, [&pairs](const double(&v)[2]) { pairs.emplace_back(v[0], v[1]); });
    }
    template <class Record>
    void Get(Record& record)
    {
        Record::Visit(*this, record);
    }

    PlotInput& m_Input;
    std::int32_t m_Version;
};

} // namespace PlotRecords
